// The program with a window, from its start to its end.
#include "host/desktop/DesktopProgram.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "host/HostError.h"
#include "host/LanguageFile.h"
#include "host/Text.h"
#include "host/ThreadLanguage.h"
#include "host/desktop/ComponentFolder.h"
#include "host/desktop/MainWindow.h"

#include <afxwin.h>

namespace host {
namespace {

constexpr wchar_t programName[] = L"ScanHost";

void loadLanguage(const Surroundings& surroundings) {
    const std::wstring& folder = surroundings.programFolder;
    const std::wstring language = preferredLanguage(folder, surroundings.uiLanguage);
    if (!bxutils::getResourceManager()->loadLanguageFile(languageFile(folder, language)))
        throw HostError("The language file " + utf8(languageFile(folder, language)) + " cannot be read.");
    setThreadLanguage(language);
}

int runMessageLoop(MainWindow& window) {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (window.translate(message))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

} // namespace

int runDesktopProgram(const Surroundings& surroundings, int showCommand) {
    const ThreadLanguageKeeper language;
    CWinApp program(programName);
    try {
        loadLanguage(surroundings);
        const TemporaryRoot temporaryRoot(surroundings.temporaryFolder);
        HostApplication application(surroundings.baseRegistryPath);
        EnginesManager manager;
        const ComponentFolder components(surroundings.programFolder, manager);
        MainWindow window(manager);
        if (!window.create())
            throw HostError("The window cannot be made: " + reasonFor(GetLastError()) + ".");
        program.m_pMainWnd = &window;
        window.setTexts();
        window.ShowWindow(showCommand);
        return runMessageLoop(window);
    } catch (const HostError& error) {
        AfxMessageBox(wide(error.what()).c_str(), MB_OK | MB_ICONERROR);
        return EXIT_FAILURE;
    }
}

} // namespace host
