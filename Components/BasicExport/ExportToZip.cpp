// Packs the pages into a ZIP archive.
#include "ExportToZip.h"

#include "EngineCreation.h"
#include "ExportFactories.h"
#include "ExportToZipDlg.h"
#include "PageName.h"
#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/bxzip/ZipWriterPtr.h"
#include "SorvaneCommon/ExportUtils/Extension.h"

#include <afxwin.h>

#include <cstdint>
#include <string>

namespace {

constexpr int DONE = 0;
constexpr int FAILED = 1;

// The host tells the reports apart by these numbers, so they stay when the code around them moves.
constexpr char SOURCE_FILE[] = "Components/BasicExport/ExportToZip";
constexpr int LINE_TARGET_PATH = 49;
constexpr int LINE_CREATE = 56;
constexpr int LINE_DATA_COPY = 97;
constexpr int LINE_ADD_ITEM = 105;

} // namespace

bool ExportToZipFactory::createEngine(CWnd* parent, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) {
    return createEngineOf<ExportToZip>(parent, engine);
}

ExportToZip::ExportToZip() = default;

ExportToZip::~ExportToZip() = default;

bool ExportToZip::showDialog() {
    AFX_MAINTAIN_STATE2 maintainState(AfxGetStaticModuleState());
    ExportToZipDlg dialog;
    if (dialog.DoModal() != IDOK)
        return false;

    Sorvane::c_u16u8(targetPath, dialog.getPath());
    Sorvane::c_u16u8(prefix, dialog.getPrefix());
    return true;
}

int ExportToZip::exportData(void*, ExportErrorSink& errors) {
    if (targetPath.empty()) {
        errors.reportError(SOURCE_FILE, LINE_TARGET_PATH, "targetPath is empty");
        return FAILED;
    }
    bxzip::ZipWriterPtr zip(nullptr);
    if (!zip.createZipFile(targetPath)) {
        errors.reportError(SOURCE_FILE, LINE_CREATE, "Failed to create zip file");
        return FAILED;
    }

    const std::uint32_t width = countDecimalDigits(pages.size());
    std::uint32_t number = 1;
    for (const bxbase::Reference<ExportDataItem>& added : pages) {
        // Questions about the page let the host run, which must not take it from under us.
        const bxbase::Reference<ExportDataItem> page = added;
        Sorvane::u8string fileName;
        page->getFileName(fileName);
        const Sorvane::u8string entryName =
            prefix + paddedNumber(number, width) + dottedExtension(ExportUtils::getExtension(fileName));

        std::wstring source;
        if (!page->getFilePath(source) && !page->createDataCopy(source, errors)) {
            // The writer has to learn that a page is missing, so that it keeps the archive it replaces.
            zip.addItemFromFile(entryName, {});
            errors.reportError(SOURCE_FILE, LINE_DATA_COPY, "Failed to get data copy");
            return FAILED;
        }
        Sorvane::u8string sourcePath;
        Sorvane::c_u16u8(sourcePath, source);
        if (!zip.addItemFromFile(entryName, sourcePath)) {
            errors.reportError(SOURCE_FILE, LINE_ADD_ITEM, "Failed to add item");
            return FAILED;
        }
        ++number;
    }
    return DONE;
}
