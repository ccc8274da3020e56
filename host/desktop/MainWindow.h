// The program's main window.
#pragma once

#include "host/EnginesManager.h"
#include "host/desktop/DesktopSettings.h"
#include "host/desktop/ExportBar.h"
#include "host/desktop/ExportWatch.h"
#include "host/desktop/MessageFont.h"
#include "host/desktop/PageAdder.h"
#include "host/desktop/PageCollection.h"
#include "host/desktop/PageHistory.h"
#include "host/desktop/PageView.h"
#include "host/desktop/StatusBar.h"
#include "host/desktop/ThumbnailLoader.h"

#include <afxwin.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// Holds the pages and does with them what the person wants. What fails is told and never ends the program.
///
/// An export takes the selected pages when there are several, otherwise all: a single one is often selected just by
/// looking at it. The status bar and the tips say which, and a menu has exports of the one and the other kind.
/// For the same reason only what is pasted comes behind the selected pages; other new pages come at the end.
///
/// What is done to the list of pages can be undone; all that happens while pages are being added counts as one step.
///
/// In the order by name or date the pages stay, those that are added as well, until the person moves some by hand.
///
/// Thread: the user-interface thread. Destroying the window ends the thread's message loop.
class MainWindow : public CWnd {
public:
    /// @param manager   has the export targets; not owned
    /// @param settings  has where the window was and the order of the pages
    explicit MainWindow(const EnginesManager& manager, DesktopSettings settings);
    ~MainWindow() override;

    /// Made hidden, without texts. False when the system refuses.
    BOOL create();
    /// Shows it where it was last, or otherwise as the system was told to.
    void showFirst(int showCommand);

    /// Takes all texts from the current language and all targets from the manager, again.
    void setTexts();

    /// Adds files and the pages of folders at the end, in the background, and shows the first of them.
    /// @param paths  full ones
    void add(const std::vector<std::wstring>& paths);

    /// To be asked for each message of the loop: true for one that was a shortcut and has been dealt with.
    bool translate(MSG& message);

    /// Asked when the person wants to see the settings.
    std::function<void()> whenSettingsWanted;
    /// Asked when the person wants to see a page as large as it is.
    std::function<void(const std::wstring& path)> whenPageWanted;

private:
    LRESULT OnCreate(WPARAM wParam, LPARAM lParam);
    LRESULT OnClose(WPARAM wParam, LPARAM lParam);
    LRESULT OnEndSession(WPARAM wParam, LPARAM lParam);
    LRESULT OnDestroy(WPARAM wParam, LPARAM lParam);
    LRESULT OnActivate(WPARAM wParam, LPARAM lParam);
    LRESULT OnSetFocus(WPARAM wParam, LPARAM lParam);
    LRESULT OnDpiChanged(WPARAM wParam, LPARAM lParam);
    LRESULT OnColoursChanged(WPARAM wParam, LPARAM lParam);
    LRESULT OnInitMenuPopup(WPARAM wParam, LPARAM lParam);
    afx_msg void OnSize(UINT nType, int cx, int cy);
    void OnExportTip(NMHDR* header, LRESULT* result);
    void OnAddFiles();
    void OnAddFolder();
    void OnExit() { PostMessage(WM_CLOSE); }
    void OnUndo() { restore(history.undo()); }
    void OnRedo() { restore(history.redo()); }
    void OnPaste();
    void OnSelectAll() { view.selectAll(); }
    void OnOpen();
    void OnRemove();
    void OnMoveBack() { view.moveSelectionBack(); }
    void OnMoveForward() { view.moveSelectionForward(); }
    void OnOwnOrder() { keepOrder(PageOrder::Own); }
    void OnSortByName() { keepOrder(PageOrder::Name); }
    void OnSortByDate() { keepOrder(PageOrder::Date); }
    void OnExport(UINT command);
    void OnSettings() { whenSettingsWanted(); }
    void OnAbout();
    void OnNextPane();
    BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    DECLARE_MESSAGE_MAP()

    void layOut();
    void addAt(std::size_t position, const std::vector<std::wstring>& paths);
    void rememberFocus();
    void pagesChanged();
    void update();
    void restore(const PageState& state);
    void keepOrder(PageOrder wanted);
    void sort();
    void remember();
    void showPagesMenu(CPoint screen);
    void tellLeftOut(const std::vector<LeftOut>& leftOut);

    bool isPossible(UINT command) const;
    bool isExportPossible(UINT command) const;
    bool takesSelection(UINT command) const;
    std::wstring pagesText() const;
    std::wstring exportedText() const;
    std::vector<std::wstring> exportNames() const;

    const EnginesManager& manager;
    DesktopSettings settings;
    PageOrder order = settings.pageOrder();
    ExportWatch watch;
    PageCollection pages{&watch};
    ThumbnailLoader thumbnails;
    PageHistory history{{{}, order}};
    PageView view{pages, thumbnails};
    PageAdder adder;
    ExportBar exports;
    StatusBar status;
    Font font;
    HACCEL shortcuts = nullptr;
    std::optional<std::size_t> firstNew; ///< where the pages that are being added begin, until that is shown
    HWND lastFocus = nullptr;            ///< the pane that had the focus last, to get it again
    bool closesAfterExport = false;
};

} // namespace host
