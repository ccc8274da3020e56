// The program's main window.
#include "host/desktop/MainWindow.h"

#include "SorvaneBase/bxutils/SystemLog.h"
#include "host/LogFile.h"
#include "host/Text.h"
#include "host/desktop/Commands.h"
#include "host/desktop/DroppedFiles.h"
#include "host/desktop/ExportRun.h"
#include "host/desktop/LeftOutText.h"
#include "host/desktop/OpenDialogs.h"
#include "host/desktop/Texts.h"
#include "version.h"

#include <shlwapi.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <utility>

namespace host {
namespace {

constexpr char section[] = "ScanHost.Window";

constexpr WORD programIcon = 1; ///< the one that the system shows for the program
enum ControlId : UINT { exportBarId = 1, statusBarId, viewId };

/// Which target an export's command is for.
std::size_t targetOf(UINT command) {
    return (command - commandExport) % mostExports;
}

} // namespace

BEGIN_MESSAGE_MAP(MainWindow, CWnd)
    ON_MESSAGE(WM_CREATE, &MainWindow::OnCreate)
    ON_MESSAGE(WM_CLOSE, &MainWindow::OnClose)
    ON_MESSAGE(WM_ENDSESSION, &MainWindow::OnEndSession)
    ON_MESSAGE(WM_DESTROY, &MainWindow::OnDestroy)
    ON_MESSAGE(WM_ACTIVATE, &MainWindow::OnActivate)
    ON_MESSAGE(WM_SETFOCUS, &MainWindow::OnSetFocus)
    ON_MESSAGE(WM_DPICHANGED, &MainWindow::OnDpiChanged)
    ON_MESSAGE(WM_SYSCOLORCHANGE, &MainWindow::OnColoursChanged)
    ON_MESSAGE(WM_INITMENUPOPUP, &MainWindow::OnInitMenuPopup)
    ON_WM_SIZE()
    ON_NOTIFY(TBN_GETINFOTIPW, exportBarId, &MainWindow::OnExportTip)
    ON_COMMAND(commandAddFiles, &MainWindow::OnAddFiles)
    ON_COMMAND(commandAddFolder, &MainWindow::OnAddFolder)
    ON_COMMAND(commandExit, &MainWindow::OnExit)
    ON_COMMAND(commandUndo, &MainWindow::OnUndo)
    ON_COMMAND(commandRedo, &MainWindow::OnRedo)
    ON_COMMAND(commandPaste, &MainWindow::OnPaste)
    ON_COMMAND(commandSelectAll, &MainWindow::OnSelectAll)
    ON_COMMAND(commandOpen, &MainWindow::OnOpen)
    ON_COMMAND(commandRemove, &MainWindow::OnRemove)
    ON_COMMAND(commandMoveBack, &MainWindow::OnMoveBack)
    ON_COMMAND(commandMoveForward, &MainWindow::OnMoveForward)
    ON_COMMAND(commandOwnOrder, &MainWindow::OnOwnOrder)
    ON_COMMAND(commandSortByName, &MainWindow::OnSortByName)
    ON_COMMAND(commandSortByDate, &MainWindow::OnSortByDate)
    ON_COMMAND_RANGE(commandExport, commandExportsEnd - 1, &MainWindow::OnExport)
    ON_COMMAND(commandSettings, &MainWindow::OnSettings)
    ON_COMMAND(commandAbout, &MainWindow::OnAbout)
    ON_COMMAND(commandNextPane, &MainWindow::OnNextPane)
END_MESSAGE_MAP()

MainWindow::MainWindow(const EnginesManager& manager, DesktopSettings settings)
    : manager(manager), settings(settings), thumbnails([this] { view.thumbnailsLoaded(); }),
      adder(
          pages,
          [this](std::size_t) {
              pagesChanged();
              if (firstNew)
                  view.show(*std::exchange(firstNew, std::nullopt));
          },
          [this](const std::vector<LeftOut>& leftOut) {
              sort();
              if (!leftOut.empty())
                  tellLeftOut(leftOut);
          }) {
    view.whenSelectionChanges = [this] { update(); };
    view.whenReordered = [this] { keepOrder(PageOrder::Own); };
    view.whenOpened = [this] { PostMessage(WM_COMMAND, commandOpen); };
    view.whenDropped = [this](const std::vector<std::wstring>& paths, std::size_t position) {
        addAt(position, paths);
    };
    view.whenMenuWanted = [this](CPoint screen) { showPagesMenu(screen); };
}

MainWindow::~MainWindow() {
    DestroyWindow();
    DestroyAcceleratorTable(shortcuts);
}

BOOL MainWindow::create() {
    const LPCTSTR windowClass =
        AfxRegisterWndClass(0, LoadCursor(nullptr, IDC_ARROW), reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1),
                            LoadIcon(GetModuleHandle(nullptr), MAKEINTRESOURCE(programIcon)));
    return CreateEx(0, windowClass, AfxGetAppName(), WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, CW_USEDEFAULT,
                    CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr);
}

void MainWindow::showFirst(int showCommand) {
    if (const auto place = settings.windowPlace())
        showAt(m_hWnd, *place);
    else
        ShowWindow(showCommand);
}

void MainWindow::setTexts() {
    const HMENU replaced = GetMenu(m_hWnd);
    SetMenu(m_hWnd, createMenuBar(exportNames()));
    if (replaced)
        DestroyMenu(replaced);
    Font replacedFont = std::exchange(font, messageFont(GetDpiForWindow(m_hWnd)));
    for (const CWnd* bar : {static_cast<CWnd*>(&exports), static_cast<CWnd*>(&status)})
        bar->SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font.get()));
    exports.setFactories(manager.getFactories());
    view.setTexts();
    update();
    layOut();
}

void MainWindow::add(const std::vector<std::wstring>& paths) {
    addAt(pages.size(), paths);
}

bool MainWindow::translate(MSG& message) {
    return (message.hwnd == m_hWnd || IsChild(m_hWnd, message.hwnd)) &&
           TranslateAcceleratorW(m_hWnd, shortcuts, &message);
}

LRESULT MainWindow::OnCreate(WPARAM, LPARAM) {
    shortcuts = createShortcuts();
    return exports.create(*this, exportBarId) && view.create(*this, viewId) &&
                   status.create(*this, statusBarId)
               ? 0
               : -1;
}

LRESULT MainWindow::OnClose(WPARAM, LPARAM) {
    if (!watch.isRunning()) {
        // Whoever shows a dialog still needs the window when that is closed.
        if (!IsWindowEnabled()) {
            ::SetForegroundWindow(GetLastActivePopup()->m_hWnd);
            return 0;
        }
        settings.setWindowPlace(placeOf(m_hWnd));
        return Default();
    }
    if (MessageBox(localText(section, "CloseStops").c_str(), nullptr,
                   MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES) {
        watch.stop();
        closesAfterExport = true;
    }
    return 0;
}

// The program ends without a further message.
LRESULT MainWindow::OnEndSession(WPARAM isEnding, LPARAM) {
    if (isEnding)
        settings.setWindowPlace(placeOf(m_hWnd));
    return 0;
}

LRESULT MainWindow::OnDestroy(WPARAM, LPARAM) {
    PostQuitMessage(0);
    return Default();
}

LRESULT MainWindow::OnActivate(WPARAM wParam, LPARAM) {
    if (LOWORD(wParam) != WA_INACTIVE)
        return Default();
    rememberFocus();
    return 0;
}

LRESULT MainWindow::OnSetFocus(WPARAM, LPARAM) {
    ::SetFocus(lastFocus && IsChild(m_hWnd, lastFocus) ? lastFocus : view.m_hWnd);
    return 0;
}

LRESULT MainWindow::OnDpiChanged(WPARAM, LPARAM suggested) {
    MoveWindow(reinterpret_cast<const RECT*>(suggested));
    setTexts();
    return 0;
}

// Common controls learn of it only from their parents.
LRESULT MainWindow::OnColoursChanged(WPARAM wParam, LPARAM lParam) {
    for (HWND child : {exports.m_hWnd, view.m_hWnd, status.m_hWnd})
        ::SendMessageW(child, WM_SYSCOLORCHANGE, wParam, lParam);
    return Default();
}

LRESULT MainWindow::OnInitMenuPopup(WPARAM popup, LPARAM) {
    const auto menu = reinterpret_cast<HMENU>(popup);
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        const UINT command = GetMenuItemID(menu, i);
        if (command && command != static_cast<UINT>(-1))
            EnableMenuItem(menu, command, isPossible(command) ? MF_ENABLED : MF_GRAYED);
    }
    CheckMenuRadioItem(menu, commandOwnOrder, commandSortByDate, commandOwnOrder + static_cast<UINT>(order),
                       MF_BYCOMMAND);
    return 0;
}

void MainWindow::OnSize(UINT nType, int, int) {
    if (nType != SIZE_MINIMIZED)
        layOut();
}

void MainWindow::OnExportTip(NMHDR* header, LRESULT*) {
    const auto* tip = reinterpret_cast<NMTBGETINFOTIPW*>(header);
    const auto command = static_cast<UINT>(tip->iItem);
    std::wstring text = exportNames()[targetOf(command)];
    if (const std::wstring shortcut = shortcutText(command); !shortcut.empty())
        text += L" (" + shortcut + L')';
    StrCpyNW(tip->pszText, (text + L'\n' + exportedText()).c_str(), tip->cchTextMax);
}

void MainWindow::OnAddFiles() {
    add(askForFiles(m_hWnd));
}

void MainWindow::OnAddFolder() {
    add(askForFolders(m_hWnd));
}

void MainWindow::OnPaste() {
    addAt(view.insertPosition(), pathsOnClipboard(m_hWnd));
}

void MainWindow::OnOpen() {
    if (const std::size_t index = view.focused(); index < pages.size())
        whenPageWanted(pages[index]->path());
}

void MainWindow::OnRemove() {
    const auto removed = view.selection();
    pages.remove(removed);
    pagesChanged();
    // So that the same key removes one page after the other, and arrows go on from where the person was.
    if (pages.size() > 0)
        view.select({std::min(removed.front(), pages.size() - 1)});
}

void MainWindow::OnExport(UINT command) {
    // A mail program is called without a focus, so later it could not be learnt.
    rememberFocus();
    const auto factory = manager.getFactories()[targetOf(command)];
    runExport(*this, *factory, takesSelection(command) ? pages.pages(view.selection()) : pages.pages(),
              watch);
    if (closesAfterExport)
        PostMessage(WM_CLOSE);
}

void MainWindow::OnAbout() {
    MessageBox(
        localText(section, "AboutText", {{L"version", L"" PRODUCT_VERSION}, {L"log", logFilePath()}}).c_str(),
        nullptr, MB_OK | MB_ICONINFORMATION);
}

void MainWindow::OnNextPane() {
    if (GetFocus() == &exports)
        view.SetFocus();
    else
        exports.SetFocus();
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

// Shortcuts and buttons come even when their command has just become impossible.
BOOL MainWindow::OnCommand(WPARAM wParam, LPARAM lParam) {
    return !isPossible(LOWORD(wParam)) || CWnd::OnCommand(wParam, lParam);
}

void MainWindow::layOut() {
    CRect area;
    GetClientRect(area);
    const int bottom = area.bottom - status.fitHeight();
    const int top = exports.fitHeight(area.Width());
    view.MoveWindow(CRect(0, top, area.right, std::max(top, bottom)));
}

void MainWindow::addAt(std::size_t position, const std::vector<std::wstring>& paths) {
    if (paths.empty())
        return;
    if (!adder.isAdding())
        firstNew = position;
    adder.add(paths, position);
    update();
}

void MainWindow::rememberFocus() {
    if (const HWND focus = ::GetFocus(); IsChild(m_hWnd, focus))
        lastFocus = focus;
}

void MainWindow::pagesChanged() {
    view.pagesChanged();
    remember();
    update();
}

void MainWindow::update() {
    status.show(pagesText(), exportedText());
    for (std::size_t i = 0; i < manager.getFactories().size(); ++i)
        exports.enable(i, isExportPossible(commandExport + static_cast<UINT>(i)));
}

void MainWindow::keepOrder(PageOrder wanted) {
    order = wanted;
    settings.setPageOrder(order);
    sort();
}

void MainWindow::sort() {
    if (order != PageOrder::Own) {
        pages.sort(order);
        view.pagesChanged();
    }
    remember();
    update();
}

void MainWindow::remember() {
    if (!adder.isAdding())
        history.record({pages.pages(), order});
}

void MainWindow::restore(const PageState& state) {
    FilePages before = pages.pages();
    std::ranges::sort(before, {}, &bxbase::Reference<FilePage>::get);
    pages.set(state.pages);
    order = state.order;
    settings.setPageOrder(order);
    view.pagesChanged();

    std::vector<std::size_t> back;
    for (std::size_t i = 0; i < pages.size(); ++i)
        if (!std::ranges::binary_search(before, pages[i].get(), {}, &bxbase::Reference<FilePage>::get))
            back.push_back(i);
    view.select(back.empty() ? view.selection() : back);
    update();
}

void MainWindow::showPagesMenu(CPoint screen) {
    const HMENU menu = createPagesMenu(exportNames());
    TrackPopupMenu(menu, TPM_RIGHTBUTTON, screen.x, screen.y, 0, m_hWnd, nullptr);
    DestroyMenu(menu);
}

void MainWindow::tellLeftOut(const std::vector<LeftOut>& leftOut) {
    ::MessageBoxW(GetLastActivePopup()->m_hWnd, leftOutText(leftOut).c_str(), AfxGetAppName(),
                  MB_OK | MB_ICONWARNING);
}

bool MainWindow::isPossible(UINT command) const {
    if (command >= commandExport && command < commandExportsEnd)
        return isExportPossible(command);
    // The settings would load components anew of which one is at work.
    if (watch.isRunning())
        return command == commandExit;
    const std::size_t selected = view.selectedCount();
    switch (command) {
    case commandUndo:
        return history.canUndo() && !adder.isAdding();
    case commandRedo:
        return history.canRedo() && !adder.isAdding();
    case commandPaste:
        return IsClipboardFormatAvailable(CF_HDROP);
    case commandSelectAll:
        return pages.size() > 0;
    case commandOpen:
    case commandRemove:
        return selected > 0;
    case commandMoveBack:
        return selected && view.selection().back() >= selected;
    case commandMoveForward:
        return selected && view.selection().front() + selected < pages.size();
    default:
        return true;
    }
}

bool MainWindow::isExportPossible(UINT command) const {
    const std::size_t target = targetOf(command);
    const bool hasPages = takesSelection(command) ? view.selectedCount() > 0 : pages.size() > 0;
    return hasPages && !adder.isAdding() && !watch.isRunning() && target < manager.getFactories().size() &&
           manager.getFactories()[target]->isAvailable();
}

bool MainWindow::takesSelection(UINT command) const {
    if (command < commandExportAll)
        return view.selectedCount() > 1;
    return command >= commandExportSelected;
}

std::wstring MainWindow::pagesText() const {
    if (adder.isAdding())
        return localCount(section, "Adding", pages.size());
    std::wstring text = localCount(section, "Pages", pages.size());
    if (const std::size_t selected = view.selectedCount())
        text += L", " + localCount(section, "Selected", selected);
    return text;
}

std::wstring MainWindow::exportedText() const {
    const std::size_t selected = view.selectedCount();
    if (!pages.size())
        return {};
    return selected > 1 ? localCount(section, "ExportsSelected", selected)
                        : localCount(section, "ExportsAll", pages.size());
}

std::vector<std::wstring> MainWindow::exportNames() const {
    std::vector<std::wstring> names;
    for (const auto& factory : manager.getFactories())
        names.push_back(wide(factory->getName()));
    return names;
}

} // namespace host
