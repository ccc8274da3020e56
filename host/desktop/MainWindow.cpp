// The program's main window.
#include "host/desktop/MainWindow.h"

#include "SorvaneBase/bxutils/SystemLog.h"
#include "host/Text.h"
#include "host/desktop/Commands.h"
#include "host/desktop/Texts.h"
#include "version.h"

#include <algorithm>
#include <exception>

namespace host {
namespace {

constexpr char section[] = "ScanHost.Window";
constexpr WORD programIcon = 1; ///< the one that the system shows for the program
enum ControlId : UINT { exportBarId = 1, statusId };

} // namespace

BEGIN_MESSAGE_MAP(MainWindow, CWnd)
    ON_MESSAGE(WM_CREATE, &MainWindow::OnCreate)
    ON_MESSAGE(WM_DESTROY, &MainWindow::OnDestroy)
    ON_MESSAGE(WM_DPICHANGED, &MainWindow::OnDpiChanged)
    ON_MESSAGE(WM_INITMENUPOPUP, &MainWindow::OnInitMenuPopup)
    ON_WM_SIZE()
    ON_COMMAND(commandExit, &MainWindow::OnExit)
    ON_COMMAND(commandAbout, &MainWindow::OnAbout)
END_MESSAGE_MAP()

MainWindow::~MainWindow() {
    DestroyWindow();
    DestroyAcceleratorTable(shortcuts);
}

BOOL MainWindow::create() {
    const LPCTSTR windowClass =
        AfxRegisterWndClass(0, LoadCursor(nullptr, IDC_ARROW), reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1),
                            LoadIcon(GetModuleHandle(nullptr), MAKEINTRESOURCE(programIcon)));
    return CreateEx(0, windowClass, AfxGetAppName(), WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                    CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr);
}

void MainWindow::setTexts() {
    std::vector<std::wstring> names;
    for (const auto& factory : manager.getFactories())
        names.push_back(wide(factory->getName()));
    const HMENU replaced = GetMenu(m_hWnd);
    SetMenu(m_hWnd, createMenuBar(names));
    if (replaced)
        DestroyMenu(replaced);
    exports.setFactories(manager.getFactories());
    updateCommands();
    layOut();
}

bool MainWindow::translate(MSG& message) {
    return (message.hwnd == m_hWnd || IsChild(m_hWnd, message.hwnd)) &&
           TranslateAcceleratorW(m_hWnd, shortcuts, &message);
}

LRESULT MainWindow::OnCreate(WPARAM, LPARAM) {
    shortcuts = createShortcuts();
    const bool isMade =
        exports.create(*this, exportBarId) &&
        status.Create(STATUSCLASSNAMEW, nullptr, WS_VISIBLE | SBARS_SIZEGRIP, CRect(), this, statusId);
    return isMade ? 0 : -1;
}

LRESULT MainWindow::OnDestroy(WPARAM, LPARAM) {
    PostQuitMessage(0);
    return Default();
}

LRESULT MainWindow::OnDpiChanged(WPARAM, LPARAM suggested) {
    MoveWindow(reinterpret_cast<const RECT*>(suggested));
    setTexts();
    return 0;
}

LRESULT MainWindow::OnInitMenuPopup(WPARAM popup, LPARAM) {
    const auto menu = reinterpret_cast<HMENU>(popup);
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        const UINT command = GetMenuItemID(menu, i);
        if (command && command != static_cast<UINT>(-1))
            EnableMenuItem(menu, command, isPossible(command) ? MF_ENABLED : MF_GRAYED);
    }
    return 0;
}

void MainWindow::OnAbout() {
    MessageBox(localText(section, "AboutText", {{L"version", L"" PRODUCT_VERSION}}).c_str(), nullptr,
               MB_OK | MB_ICONINFORMATION);
}

void MainWindow::OnSize(UINT nType, int, int) {
    if (nType != SIZE_MINIMIZED)
        layOut();
}

BOOL MainWindow::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult) {
    try {
        return CWnd::OnWndMsg(message, wParam, lParam, pResult);
    } catch (const std::exception& error) {
        bxutils::getSystemLogFormater()->log(0, error.what(), "host/desktop/MainWindow", __LINE__);
        MessageBox(localText(section, "Failed", {{L"reason", wide(error.what())}}).c_str(), nullptr,
                   MB_OK | MB_ICONERROR);
        return TRUE;
    }
}

void MainWindow::layOut() {
    CRect area;
    GetClientRect(area);
    status.SendMessage(WM_SIZE);
    exports.SetWindowPos(nullptr, 0, 0, area.Width(), exports.fitHeight(), SWP_NOZORDER | SWP_NOACTIVATE);
}

bool MainWindow::isPossible(UINT command) const {
    return command < commandExport;
}

void MainWindow::updateCommands() {
    for (std::size_t i = 0; i < manager.getFactories().size(); ++i)
        exports.enable(i, isPossible(commandExport + static_cast<UINT>(i)));
}

} // namespace host
