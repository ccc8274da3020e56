// Makes the compiler lay out the table and the fields of every class that crosses the component's boundary. Compiled by check.py.
#include "ExportFactories.h"
#include "ExportToDirectory.h"
#include "ExportToDirectoryData.h"
#include "ExportToMail.h"
#include "ExportToZip.h"
#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxutils/SystemLog.h"
#include "SorvaneCommon/Application.h"
#include "SorvaneCommon/ExportDataItem.h"
#include "SorvaneCommon/ExportEnginesManager.h"
#include "SorvaneCommon/ExportFolder.h"
#include "SorvaneCommon/SettingsStore.h"
#include "SorvaneMail.h"
#include "bxbase/ReferencedImpl.h"

// A table is laid out where an object of the class is made, so each interface gets a class that can be made.

struct Page : ExportDataItem {
    void addRef() override;
    void release() override;
    ExportFolder* getParentFolder() override;
    void getFileName(Sorvane::u8string& name) override;
    bool getFilePath(std::wstring& path) override;
    bool createDataCopy(std::wstring& path, SorvaneException& error) override;
};

struct Folder : ExportFolder {
    const wchar_t* getFolderName() const override;
};

struct Log : bxutils::LogFormaterInterface {
    bool isEnabled(std::int32_t level) const override;
    void flush() override;
    void log(std::int32_t level, const char* message, const char* sourceFile, std::int32_t line) override;
};

struct Manager : SorvaneCommon::ExportEnginesManager {
    void registerFactory(SorvaneCommon::ExportEngineFactory* factory) override;
    void unregisterFactory(SorvaneCommon::ExportEngineFactory* factory) override;
};

struct Settings : SorvaneCommon::SettingsStore {
    bool read(const Sorvane::u8string& key, Sorvane::u8string& value) override;
    bool write(const Sorvane::u8string& key, const Sorvane::u8string& value) override;
};

struct Host : SorvaneCommon::Application {
    std::wstring getBaseRegistryPath() const override;
    std::wstring getRegistryVersion() const override;
    SorvaneCommon::SettingsStore* getSettingsStore() override;
};

// The tables of these come with their destructors, whose real definitions are compiled elsewhere.
SorvaneCommon::Application::~Application() = default;
SorvaneException::~SorvaneException() = default;
ExportUtils::ExportEngineBase::~ExportEngineBase() = default;
ExportUtils::ExportFactoryBase::~ExportFactoryBase() = default;
ExportToDirectory::~ExportToDirectory() = default;
ExportToMail::~ExportToMail() = default;
ExportToZip::~ExportToZip() = default;
ExportToDirectoryFactory::~ExportToDirectoryFactory() = default;
ExportToMailFactory::~ExportToMailFactory() = default;
ExportToZipFactory::~ExportToZipFactory() = default;
ExportToDirectoryData::~ExportToDirectoryData() = default;
ExportToMailData::~ExportToMailData() = default;
SorvaneMail::~SorvaneMail() = default;
SorvaneMailMessage::~SorvaneMailMessage() = default;
BXImage::Image::~Image() = default;

void makeAll() {
    new Page;
    new Folder;
    new Log;
    new Manager;
    new Settings;
    new Host;
    new bxbase::ReferencedImpl<ExportToDirectory>;
    new bxbase::ReferencedImpl<ExportToMail>;
    new bxbase::ReferencedImpl<ExportToZip>;
    new bxbase::ReferencedImpl<ExportToDirectoryFactory>;
    new bxbase::ReferencedImpl<ExportToMailFactory>;
    new bxbase::ReferencedImpl<ExportToZipFactory>;
    new bxbase::ReferencedImpl<BXImage::Image>;
    new SorvaneMail;
    new SorvaneMailMessage(nullptr);
}
