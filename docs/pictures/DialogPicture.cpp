// Takes the picture of a dialog or message box, shown by the real component over example settings.
#include "Photographer.h"

#include "host/ComponentModule.h"
#include "host/DialogPilot.h"
#include "host/DirectoryDialogControls.h"
#include "host/EnginesManager.h"
#include "host/FilePage.h"
#include "host/HostApplication.h"
#include "host/HostError.h"
#include "host/MailDialogControls.h"
#include "host/ProgramFolder.h"
#include "host/TemporaryRoot.h"
#include "host/ZipDialogControls.h"

#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportEngineFactory.h"
#include "bxbase/ReferencedImpl.h"

#include "afxwin.h"

#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

namespace {

constexpr wchar_t registryBase[] = L"Sorvane\\DialogPicture";

constexpr char directoryFactoryId[] = "com.brellix.sorvane.exportdata-factory.dir.file";
constexpr char mailFactoryId[] = "com.brellix.sorvane.exportdata-factory.mail.file";
constexpr char zipFactoryId[] = "com.brellix.sorvane.exportdata-factory.zip.file";

struct Example {
    const wchar_t* language;
    LANGID systemLanguage;
    const wchar_t* archive; ///< entered in the ZIP dialog, which offers nothing, as is the prefix
    const wchar_t* prefix;
    const wchar_t* recentFolders; ///< the first is the one offered
    const wchar_t* pageFolder;    ///< its name is offered as the start of the file names
    const char* subject;
};

constexpr Example examples[] = {
    {L"en", MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), L"C:\\Scans\\Invoices 2024.zip", L"Invoice_",
     L"C:\\Scans\\Invoices;C:\\Scans\\Contracts;D:\\Archive\\2024\\Letters;\\\\office\\scans\\Incoming",
     L"C:\\Scanner\\Invoice", "Invoices of October"},
    {L"cs", MAKELANGID(LANG_CZECH, SUBLANG_DEFAULT), L"C:\\Skeny\\Faktury 2024.zip", L"Faktura_",
     L"C:\\Skeny\\Faktury;C:\\Skeny\\Smlouvy;D:\\Archiv\\2024\\Dopisy;\\\\kancelar\\skeny\\Došlá pošta",
     L"C:\\Skener\\Faktura", "Faktury za říjen"},
};

/// What the component has remembered of earlier exports.
class Settings {
public:
    Settings(host::HostApplication& application, const Example& example)
        : root(L"SOFTWARE\\" + application.getBaseRegistryPath()) {
        const std::wstring key =
            root + L"\\" + application.getRegistryVersion() + L"\\Components\\BasicExport";
        const std::wstring folders = example.recentFolders;
        RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), L"ExportPath", REG_SZ, folders.c_str(),
                        static_cast<DWORD>((folders.size() + 1) * sizeof(wchar_t)));
        application.getSettingsStore()->write("Export.ToMail.Subject", example.subject);
        // Less than the pages.
        application.getSettingsStore()->write("Export.ToMail.MaxTotalSizeInKb", "1");
    }
    ~Settings() { RegDeleteTreeW(HKEY_CURRENT_USER, root.c_str()); }
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

private:
    std::wstring root;
};

/// A host with the component and two pages.
class Stage {
public:
    Stage(const Example& example, std::wstring page)
        : example(example), page(std::move(page)), settings(application, example),
          component(host::programFolder() + L"\\BasicExport.dll", manager),
          owner(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr)) {}
    ~Stage() { DestroyWindow(owner); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    bxbase::Reference<SorvaneCommon::ExportEngine> createEngine(const char* factoryId) const {
        bxbase::Reference<SorvaneCommon::ExportEngine> engine;
        manager.findFactory(factoryId)->createEngine(CWnd::FromHandle(owner), engine);
        const auto folder = std::make_shared<host::FileFolder>(example.pageFolder);
        for (int count = 0; count < 2; ++count) {
            const bxbase::Reference<host::FilePage> item(
                new bxbase::ReferencedImpl<host::FilePage>(page, folder, nullptr));
            engine->addData(item.get());
        }
        return engine;
    }

    const Example& example;

private:
    std::wstring page;
    host::TemporaryRoot temporaryFiles;
    host::HostApplication application{registryBase};
    Settings settings;
    host::EnginesManager manager;
    host::ComponentModule component;
    HWND owner;
};

// The pictures.

void directoryDialog(const Stage& stage, const Photographer& photographer) {
    const auto engine = stage.createEngine(directoryFactoryId);
    photographer.take(host::directoryDialog::pathEdit, IDCANCEL, [&] { engine->showDialog(); });
}

void zipDialog(const Stage& stage, const Photographer& photographer) {
    using namespace host::zipDialog;
    const auto engine = stage.createEngine(zipFactoryId);
    photographer.take(
        pathEdit, IDCANCEL, [&] { engine->showDialog(); },
        host::inOrder({host::enterText(pathEdit, stage.example.archive),
                       host::enterText(prefixEdit, stage.example.prefix)}));
}

void mailDialog(const Stage& stage, const Photographer& photographer) {
    const auto engine = stage.createEngine(mailFactoryId);
    photographer.take(host::mailDialog::subjectEdit, IDCANCEL, [&] { engine->showDialog(); });
}

void mailSizeQuestion(const Stage& stage, const Photographer& photographer) {
    const auto engine = stage.createEngine(mailFactoryId);
    {
        host::DialogPilot pilot(patience);
        pilot.then("the mail dialog", host::dialogWith(host::mailDialog::subjectEdit), host::click(IDOK));
        engine->showDialog();
    }
    SorvaneException refused;
    photographer.take(IDYES, IDNO, [&] { engine->exportData(nullptr, refused); });
}

template <UINT prompt> void mailPrompt(const Stage&, const Photographer& photographer) {
    photographer.take(IDOK, IDOK, [] { AfxMessageBox(prompt, MB_OK, static_cast<UINT>(-1)); });
}

struct Picture {
    const wchar_t* name;
    void (*take)(const Stage& stage, const Photographer& photographer);
};

constexpr Picture pictures[] = {
    {L"directory-dialog", &directoryDialog},
    {L"zip-dialog", &zipDialog},
    {L"mail-dialog", &mailDialog},
    {L"mail-size-question", &mailSizeQuestion},
    {L"mail-invalid-library", &mailPrompt<AFX_IDP_INVALID_MAPI_DLL>},
    {L"mail-failed-send", &mailPrompt<AFX_IDP_FAILED_MAPI_SEND>},
};

} // namespace

int wmain(int argumentCount, wchar_t** arguments) {
    try {
        if (argumentCount != 5)
            throw host::UsageError("usage: DialogPicture NAME LANGUAGE PAGE PICTURE");
        const Picture& picture = find(pictures, &Picture::name, arguments[1]);
        const Example& example = find(examples, &Example::language, arguments[2]);
        CoInitialize(nullptr);
        // The buttons of message boxes are the system's; Windows goes by the one and Wine by the other.
        SetThreadUILanguage(example.systemLanguage);
        SetThreadLocale(MAKELCID(example.systemLanguage, SORT_DEFAULT));
        if (!bxutils::getResourceManager()->loadLanguageFile(host::programFolder() + L"\\lang\\" +
                                                             example.language + L".ini"))
            throw host::HostError("The language file cannot be read.");
        CWinApp program(L"Scanner");
        picture.take(Stage(example, arguments[3]), Photographer(arguments[4]));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
