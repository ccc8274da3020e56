// The program with a window, from its start to its end.
#include "host/desktop/DesktopProgram.h"

#include "host/HostError.h"
#include "host/LanguageFile.h"
#include "host/LogFile.h"
#include "host/ScanExport.h"
#include "host/Text.h"
#include "host/ThreadLanguage.h"
#include "host/desktop/ComponentFolder.h"
#include "host/desktop/CrashWindow.h"
#include "host/desktop/DesktopOptions.h"
#include "host/desktop/ExportRun.h"
#include "host/desktop/MainWindow.h"
#include "host/desktop/SettingsDialog.h"
#include "host/desktop/Texts.h"

#include <afxwin.h>

#include <ole2.h>
#include <shellapi.h>

#include <optional>
#include <utility>

namespace host {
namespace {

constexpr wchar_t programName[] = L"ScanHost";

/// The system's dialogs, the clipboard and dropping files need OLE.
class Ole {
public:
    Ole() : isOpen(SUCCEEDED(OleInitialize(nullptr))) {}
    ~Ole() {
        if (isOpen)
            OleUninitialize();
    }
    Ole(const Ole&) = delete;
    Ole& operator=(const Ole&) = delete;

private:
    bool isOpen;
};

/// Opens it with whatever program the person opens such files with. The system tells when that fails.
void openFile(HWND owner, const std::wstring& path) {
    SHELLEXECUTEINFOW execution{};
    execution.cbSize = sizeof(execution);
    execution.hwnd = owner;
    execution.lpFile = path.c_str();
    execution.nShow = SW_SHOWNORMAL;
    ShellExecuteExW(&execution);
}

/// The window and what is behind it. Gone again in the opposite order.
class DesktopSession {
public:
    DesktopSession(const Surroundings& surroundings, std::optional<std::wstring> languageOption)
        : surroundings(surroundings), languageOption(std::move(languageOption)),
          temporaryRoot(surroundings.temporaryFolder), application(surroundings.baseRegistryPath),
          settings(*application.getSettingsStore()), window(manager, settings) {}

    /// Speaks the language chosen and loads the components, whose texts are in that language from then on.
    void load() {
        useLanguage(surroundings.programFolder, language());
        prepareCrashWindow();
        components.emplace(surroundings.programFolder, manager);
    }

    int run(const std::vector<std::wstring>& paths, int showCommand) {
        window.whenSettingsWanted = [this] { showSettings(); };
        window.whenPageWanted = [this](const std::wstring& path) { openFile(window, path); };
        if (!window.create())
            throw HostError("The window cannot be made: " + reasonFor(GetLastError()) + ".");
        AfxGetApp()->m_pMainWnd = &window;
        window.setTexts();
        window.showFirst(showCommand);
        tell("ComponentsFailed", components->failures());
        window.add(paths);
        return handleMessages();
    }

private:
    std::wstring language() const {
        const std::wstring& folder = surroundings.programFolder;
        if (languageOption)
            return *languageOption;
        const std::wstring chosen = settings.language();
        return isLanguageOffered(folder, chosen) ? chosen
                                                 : preferredLanguage(folder, surroundings.uiLanguage);
    }

    void showSettings() {
        SettingsTargets targets{
            settings,
            MailClients(mailClientPlaces(), surroundings.programFolder + L"\\DraftMail.dll"),
            surroundings.programFolder,
            surroundings.uiLanguage,
            logFilePath(),
            [this] { languageChanged(); },
            showInFolder,
        };
        SettingsDialog(&window, std::move(targets)).DoModal();
    }

    void languageChanged() {
        prepareCrashWindow();
        // The names of its exports a component has in the language in which it was loaded.
        const std::vector<std::string> failures = components->unload();
        components.emplace(surroundings.programFolder, manager);
        window.setTexts();
        tell("ComponentsEndedBadly", failures);
        tell("ComponentsFailed", components->failures());
    }

    void tell(const char* key, const std::vector<std::string>& failures) {
        std::string reasons;
        for (const std::string& failure : failures)
            reasons += (reasons.empty() ? "" : "\n") + failure;
        if (!reasons.empty())
            ::MessageBoxW(window.GetLastActivePopup()->m_hWnd,
                          localText("ScanHost.Window", key, {{L"reasons", wide(reasons)}}).c_str(),
                          AfxGetAppName(), MB_OK | MB_ICONWARNING);
    }

    int handleMessages() {
        MSG message;
        while (GetMessageW(&message, nullptr, 0, 0) > 0) {
            if (window.translate(message))
                continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        return static_cast<int>(message.wParam);
    }

    const Surroundings& surroundings;
    std::optional<std::wstring> languageOption;
    TemporaryRoot temporaryRoot;
    HostApplication application;
    DesktopSettings settings;
    EnginesManager manager;
    std::optional<ComponentFolder> components;
    MainWindow window;
};

} // namespace

int runDesktopProgram(const std::vector<std::wstring>& arguments, const Surroundings& surroundings,
                      int showCommand) {
    const ThreadLanguageKeeper language;
    const Ole ole;
    CWinApp program(programName);
    try {
        const DesktopOptions options = parseDesktopOptions(arguments);
        if (options.language && !isLanguageOffered(surroundings.programFolder, *options.language))
            throw UsageError("There is no language \"" + utf8(*options.language) + "\".");
        DesktopSession session(surroundings, options.language);
        session.load();
        return session.run(options.paths, showCommand);
    } catch (const HostError& error) {
        AfxMessageBox(wide(error.what()).c_str(), MB_OK | MB_ICONERROR);
        return dynamic_cast<const UsageError*>(&error) ? exitUsage : exitFailed;
    }
}

} // namespace host
