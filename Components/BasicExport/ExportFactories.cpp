// Names and pictures of the three kinds of export.
#include "ExportFactories.h"

#include "BXImage/Image.h"
#include "ExportApp.h"
#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "bxbase/ReferencedImpl.h"
#include "resource.h"

namespace {

Sorvane::u8string displayName(const char* key) {
    return bxutils::getResourceManager()->getText("Scan", key);
}

bxbase::Reference<BXImage::Image> loadIcon(WORD resourceId) {
    bxbase::Reference<BXImage::Image> icon;
    // A factory without an icon is still useful, so nobody is told why there is none.
    SorvaneException ignored;
    if (BXImage::Bitmap* bitmap = BXImage::FreeImage_LoadFromResource(
            BXImage::FORMAT_PNG, getModuleInstance(), L"PNG", MAKEINTRESOURCEW(resourceId), ignored)) {
        icon = new bxbase::ReferencedImpl<BXImage::Image>;
        icon->Attach(bitmap);
    }
    return icon;
}

} // namespace

ExportToDirectoryFactory::ExportToDirectoryFactory() {
    name = displayName("BasicExport.ExportToDirectory");
    icon = loadIcon(IDB_EXPORT_TO_DIRECTORY);
}

ExportToDirectoryFactory::~ExportToDirectoryFactory() = default;

const char* ExportToDirectoryFactory::getId() const {
    return "com.brellix.sorvane.exportdata-factory.dir.file";
}

bool ExportToDirectoryFactory::isAvailable() const {
    return true;
}

ExportToMailFactory::ExportToMailFactory() {
    name = displayName("BasicExport.SendAsEmail");
    icon = loadIcon(IDB_EXPORT_TO_MAIL);
}

ExportToMailFactory::~ExportToMailFactory() = default;

const char* ExportToMailFactory::getId() const {
    return "com.brellix.sorvane.exportdata-factory.mail.file";
}

bool ExportToMailFactory::isAvailable() const {
    return true;
}

ExportToZipFactory::ExportToZipFactory() {
    name = displayName("BasicExport.ExportToZIP");
    icon = loadIcon(IDB_EXPORT_TO_ZIP);
}

ExportToZipFactory::~ExportToZipFactory() = default;

const char* ExportToZipFactory::getId() const {
    return "com.brellix.sorvane.exportdata-factory.zip.file";
}

bool ExportToZipFactory::isAvailable() const {
    return true;
}
