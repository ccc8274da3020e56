// A whole host in one file: exports pages that are in memory only, as a scanner delivers them.
//
//     minimal-host                   lists the kinds of export
//     minimal-host KIND IMAGE...     exports the images, read into memory beforehand, by the kind with that identifier
//
// The exit code is the engine's: 0 done, 1 failed (the reports are on the error output), 2 stopped by the user.
//
// Engines talk to the host through the contracts in framework/SorvaneCommon. Two of them are pages and their folder,
// which every host has in its own form: the classes below. For the rest this host uses the host library (namespace
// host): the application object with its settings, the register of factories, the loader, the temporary files, and the
// protection against the mail client. docs/host-developers.md tells what each of them does and how to write one's own.
#include "BXImage/Image.h"
#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/ExportDataItem.h"
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportFolder.h"
#include "afxwin.h"
#include "bxbase/ReferencedImpl.h"
#include "host/ComponentModule.h"
#include "host/EnginesManager.h"
#include "host/GuardedExport.h"
#include "host/HostApplication.h"
#include "host/HostError.h"
#include "host/LanguageFile.h"
#include "host/ProgramFolder.h"
#include "host/TemporaryRoot.h"
#include "host/Text.h"
#include "host/ThreadLanguage.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <vector>

namespace {

/// The pages that were scanned in one go. To engines it is the folder that they lie in.
class Batch : public ExportFolder {
public:
    const wchar_t* getFolderName() const override { return L"Scanned"; }
    using ExportFolder::getFolderName;
};

/// A page without a file: it writes one whenever an engine needs its data.
class ScannedPage : public ExportDataItem {
public:
    /// @param name  its extension becomes that of the exported file
    ScannedPage(std::shared_ptr<Batch> batch, std::string name, std::string data)
        : batch(std::move(batch)), name(std::move(name)), data(std::move(data)) {}

    ExportFolder* getParentFolder() override { return batch.get(); }
    void getFileName(Sorvane::u8string& fileName) override { fileName = name; }
    bool getFilePath(std::wstring&) override { return false; }

    bool createDataCopy(std::wstring& path, SorvaneException& error) override {
        std::wstring folder;
        if (host::createPageCopyDirectory(folder)) {
            const std::filesystem::path copy = folder + L"\\" + host::wide(name);
            std::ofstream file(copy, std::ios::binary);
            file << data;
            file.close();
            if (file) {
                path = copy.wstring();
                return true;
            }
            std::error_code ignored;
            std::filesystem::remove_all(folder, ignored);
        }
        error.reportError("examples/minimal-host/main", __LINE__, name + " cannot be written to a file");
        return false;
    }

private:
    std::shared_ptr<Batch> batch; // engines may ask for it as long as they hold the page
    std::string name;
    std::string data;
};

bxbase::Reference<ScannedPage> scan(const std::shared_ptr<Batch>& batch, const std::filesystem::path& image) {
    std::ifstream file(image, std::ios::binary);
    std::string data{std::istreambuf_iterator<char>(file), {}};
    if (!file)
        throw host::HostError("The image " + host::utf8(image.wstring()) + " cannot be read.");
    // A new object has no reference yet; the handle takes the first.
    return bxbase::Reference<ScannedPage>(new bxbase::ReferencedImpl<ScannedPage>(
        batch, host::utf8(image.filename().wstring()), std::move(data)));
}

void list(const host::EnginesManager& manager) {
    for (const auto& factory : manager.getFactories()) {
        std::cout << factory->getId() << "\t" << factory->getName();
        bxbase::Reference<BXImage::Image> icon;
        if (factory->getIcon(icon))
            std::cout << "\t" << icon->getWidth() << "x" << icon->getHeight();
        std::cout << "\n";
    }
}

int exportImages(const host::EnginesManager& manager, CWnd& window, const std::string& kind,
                 const std::vector<std::wstring>& images) {
    SorvaneCommon::ExportEngineFactory* const factory = manager.findFactory(kind);
    bxbase::Reference<SorvaneCommon::ExportEngine> engine; // createEngine() wants it empty
    if (!factory || !factory->isAvailable() || !factory->createEngine(&window, engine))
        throw host::HostError("There is no export \"" + kind + "\".");
    const auto batch = std::make_shared<Batch>();
    for (const std::wstring& image : images)
        engine->addData(scan(batch, image).get()); // from here on the engine alone holds the page
    if (!engine->showDialog())
        return 2;

    SorvaneException errors;
    const int result = host::exportGuarded(*engine, window, errors);
    for (const auto& report : errors.getReports())
        std::cerr << report.sourceFile << ":" << report.line << ": " << report.message << "\n";
    return result;
}

/// What a component finds around it comes first and is destroyed last; the engine and the icons, whose code is the
/// component's, are gone by the time the component is unloaded.
int run(CWinApp& program, const std::vector<std::wstring>& arguments) {
    const std::wstring folder = host::programFolder();
    const std::wstring language = host::preferredLanguage(folder, GetUserDefaultUILanguage());
    bxutils::getResourceManager()->loadLanguageFile(host::languageFile(folder, language));
    host::setThreadLanguage(language);
    const host::TemporaryRoot temporaryFiles;
    const host::HostApplication application(L"Sorvane\\MinimalHost");
    host::EnginesManager manager;
    const host::ComponentModule component(folder + L"\\BasicExport.dll", manager);

    if (arguments.empty()) {
        list(manager);
        return 0;
    }
    CWnd window;
    window.CreateEx(0, AfxRegisterWndClass(0), L"Minimal host", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                    CW_USEDEFAULT, CW_USEDEFAULT, 480, 320, nullptr, nullptr);
    program.m_pMainWnd = &window;
    const int result =
        exportImages(manager, window, host::utf8(arguments[0]), {arguments.begin() + 1, arguments.end()});
    program.m_pMainWnd = nullptr;
    return result;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    SetConsoleOutputCP(CP_UTF8);
    CWinApp program(L"Minimal host"); // its name is the caption of the component's prompts
    try {
        return run(program, {argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
