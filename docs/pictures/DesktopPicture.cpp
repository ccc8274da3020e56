// Takes the picture of a window that the program with a window opens, over an export of example pages.
#include "Photographer.h"

#include "draftmail/Registration.h"
#include "host/ComponentModule.h"
#include "host/DirectoryDialogControls.h"
#include "host/EnginesManager.h"
#include "host/HostApplication.h"
#include "host/LanguageFile.h"
#include "host/PageList.h"
#include "host/ProgramFolder.h"
#include "host/TemporaryRoot.h"
#include "host/desktop/ExportControls.h"
#include "host/desktop/ExportRun.h"
#include "host/desktop/ExportWatch.h"
#include "host/desktop/SettingsControls.h"
#include "host/desktop/SettingsDialog.h"

#include "afxwin.h"

#include <objbase.h>

#include <cstdio>
#include <filesystem>

namespace {

using host::DialogPilot;

constexpr wchar_t registryBase[] = L"Sorvane\\DesktopPicture";
const std::wstring registryPath = std::wstring(L"SOFTWARE\\") + registryBase;
constexpr char factoryId[] = "com.brellix.sorvane.exportdata-factory.dir.file";
constexpr std::size_t examplePage = 5; ///< during which something happens
constexpr int exampleMailLimit = 20480;

struct Example {
    const wchar_t* language;
    LANGID systemLanguage;
    const wchar_t* folder; ///< made for the picture, which has the other two
    const wchar_t* pageFolder;
    const wchar_t* exportFolder;
    const wchar_t* prefix;
    const wchar_t* logFile;
};

constexpr Example examples[] = {
    {L"en", MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), L"C:\\Scans", L"C:\\Scans\\Invoices",
     L"C:\\Scans\\Archive", L"Invoice", L"C:\\Users\\Eva\\AppData\\Local\\Sorvane\\ScanHost\\ScanHost.log"},
    {L"cs", MAKELANGID(LANG_CZECH, SUBLANG_DEFAULT), L"C:\\Skeny", L"C:\\Skeny\\Faktury",
     L"C:\\Skeny\\Archiv", L"Faktura", L"C:\\Users\\Eva\\AppData\\Local\\Sorvane\\ScanHost\\ScanHost.log"},
};

/// A folder for pages and what they are exported to. Nobody's own files are touched.
class ExampleFolder {
public:
    explicit ExampleFolder(const std::wstring& path) : path(path) {
        if (!std::filesystem::create_directory(path))
            throw host::HostError("The folder of the example exists already.");
    }
    ~ExampleFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    ExampleFolder(const ExampleFolder&) = delete;
    ExampleFolder& operator=(const ExampleFolder&) = delete;

private:
    std::wstring path;
};

/// Where settings go. Nothing is left of it at the end.
class RegistryTree {
public:
    RegistryTree() = default;
    ~RegistryTree() { RegDeleteTreeW(HKEY_CURRENT_USER, registryPath.c_str()); }
    RegistryTree(const RegistryTree&) = delete;
    RegistryTree& operator=(const RegistryTree&) = delete;
};

/// Does something when the engine comes to the example's page.
class ActingWatch : public host::ExportWatch {
public:
    void pageAsked(const host::FilePage& page) override {
        ExportWatch::pageAsked(page);
        if (current() == examplePage && whenAtPage)
            std::exchange(whenAtPage, nullptr)();
    }

    std::function<void()> whenAtPage;
};

/// Waits as a thread must to which the other window's thread may send messages.
HWND awaitProgressWindow() {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (std::chrono::steady_clock::now() < end) {
        if (const HWND window = host::windowOf(GetCurrentProcessId(), host::dialogWith(IDC_PROGRESS_BAR)))
            return window;
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        Sleep(10);
    }
    throw host::HostError("The picture was not taken: the progress is not shown.");
}

/// The program's window, without what is in it.
class Owner : public CWnd {
public:
    Owner() {
        CreateEx(0, AfxRegisterWndClass(0), L"ScanHost", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 800, 600,
                 nullptr, nullptr);
    }
    ~Owner() override { DestroyWindow(); }
};

/// The program's window over an export of the samples to a folder.
class Stage {
public:
    Stage(const Example& example, const std::wstring& samples)
        : example(example), folder(example.folder),
          component(host::programFolder() + L"\\BasicExport.dll", manager) {
        std::filesystem::copy(samples, example.pageFolder);
        pages = host::collectPages({example.pageFolder}, &watch).pages;
    }

    void exportPages() { host::runExport(owner, *manager.findFactory(factoryId), pages, watch); }

    /// Fills in the dialog of the export.
    /// @param whenConfirmed  done before it is closed
    DialogPilot& confirmDialog(
        DialogPilot& pilot, const std::function<void()>& whenConfirmed = [] {}) const {
        using namespace host::directoryDialog;
        const auto act = [whenConfirmed](HWND) {
            whenConfirmed();
            return true;
        };
        return pilot.then(
            "the dialog of the export", host::dialogWith(pathEdit),
            host::inOrder({host::enterText(pathEdit, example.exportFolder),
                           host::enterText(prefixEdit, example.prefix), act, host::click(IDOK)}));
    }

    const Example& example;
    host::HostApplication application{registryBase};
    ActingWatch watch;
    host::FilePages pages;
    Owner owner;

private:
    RegistryTree registry;
    ExampleFolder folder;
    host::TemporaryRoot temporaryFiles;
    host::EnginesManager manager;
    host::ComponentModule component;
};

void check(const DialogPilot& pilot) {
    if (!pilot.succeeded())
        throw host::HostError("The picture was not taken: " + pilot.failure());
}

// The pictures.

void exportProgress(Stage& stage, const Photographer& photographer) {
    stage.watch.whenAtPage = [&] { photographer.takeSettled(awaitProgressWindow()); };
    DialogPilot pilot(patience);
    stage.confirmDialog(pilot).then("the result", host::dialogWith(IDC_RESULT_TEXT), host::click(IDOK));
    stage.exportPages();
    check(pilot);
}

void exportDone(Stage& stage, const Photographer& photographer) {
    DialogPilot pilot(patience);
    photographer.queue(stage.confirmDialog(pilot), IDC_RESULT_TEXT, IDOK);
    stage.exportPages();
    check(pilot);
}

void exportFailed(Stage& stage, const Photographer& photographer) {
    DialogPilot pilot(patience);
    const std::wstring lost = stage.pages[examplePage]->path();
    photographer.queue(stage.confirmDialog(pilot, [lost] { DeleteFileW(lost.c_str()); }), IDC_RESULT_TEXT,
                       IDOK);
    stage.exportPages();
    check(pilot);
}

void settings(Stage& stage, const Photographer& photographer) {
    const draftmail::ClientsKey clients{HKEY_CURRENT_USER, registryPath + L"\\Clients"};
    const std::wstring draftMail = host::programFolder() + L"\\DraftMail.dll";
    draftmail::registerDraftMail(clients, draftMail);
    host::DesktopSettings settings(*stage.application.getSettingsStore());
    settings.setMailLimit(exampleMailLimit);
    host::SettingsTargets targets{settings,
                                  host::MailClients({clients}, draftMail),
                                  host::programFolder(),
                                  stage.example.systemLanguage,
                                  stage.example.logFile,
                                  [] {},
                                  [](const std::wstring&) {}};
    photographer.take(IDC_SETTINGS_LANGUAGE, IDCANCEL,
                      [&] { host::SettingsDialog(&stage.owner, std::move(targets)).DoModal(); });
}

struct Picture {
    const wchar_t* name;
    void (*take)(Stage& stage, const Photographer& photographer);
};

constexpr Picture pictures[] = {
    {L"export-progress", &exportProgress},
    {L"export-done", &exportDone},
    {L"export-failed", &exportFailed},
    {L"settings", &settings},
};

} // namespace

int wmain(int argumentCount, wchar_t** arguments) {
    try {
        if (argumentCount != 5)
            throw host::UsageError("usage: DesktopPicture NAME LANGUAGE SAMPLES PICTURE");
        const Picture& picture = find(pictures, &Picture::name, arguments[1]);
        const Example& example = find(examples, &Example::language, arguments[2]);
        CoInitialize(nullptr);
        host::useLanguage(host::programFolder(), example.language);
        CWinApp program(L"ScanHost");
        Stage stage(example, arguments[3]);
        picture.take(stage, Photographer(arguments[4]));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
