// The pages as the user sees them.
#pragma once

#include "host/FilePage.h"
#include "host/desktop/PageDrop.h"
#include "host/desktop/PageGrid.h"
#include "host/desktop/PagePainter.h"
#include "host/desktop/ThumbnailSource.h"

#include <afxwin.h>

#include <commctrl.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

class PageCollection;

/// Shows a collection's pages in their order, lets the user select them, move them about by dragging and with
/// Ctrl+Shift+arrow keys, and takes files and folders that are dropped between them.
///
/// The view looks at the collection only when it is told of a change and while it draws. It changes the collection
/// itself only by moving pages. The functions below may be empty; all are called on the window's thread.
class PageView : public CWnd, private PageDropReceiver {
public:
    /// @param pages       shown; not owned
    /// @param thumbnails  asked for pictures; not owned; after it has loaded some, call thumbnailsLoaded()
    PageView(PageCollection& pages, ThumbnailSource& thumbnails);
    ~PageView() override;

    BOOL create(CWnd& parent, UINT id);

    /// To be called after each change of the collection. What was selected stays so, wherever it is now, and so does
    /// where Shift selects from.
    void pagesChanged();
    void thumbnailsLoaded();
    /// To be called after a change of the language.
    void setTexts();

    std::vector<std::size_t> selection() const { return grid.selection(); }
    std::size_t selectedCount() const { return grid.selectedCount(); }
    /// The page that the keyboard is at, or as many as there are pages.
    std::size_t focused() const { return grid.focused(); }
    /// Selects these pages and no others, and shows the first.
    void select(const std::vector<std::size_t>& indices);
    void selectAll() { grid.selectAll(); }
    /// Scrolls only as far as is needed to see the page.
    void show(std::size_t index) { grid.show(index); }

    /// Moves the selected pages together before the page in front of them, or behind the page after them.
    void moveSelectionBack();
    void moveSelectionForward();

    /// Where to put what is added without a place: after the selected pages, or at the end.
    std::size_t insertPosition() const;

    /// Comes a moment after the selection has changed, once for many changes.
    std::function<void()> whenSelectionChanges;
    /// The user has moved pages.
    std::function<void()> whenReordered;
    /// The user has double-clicked a page or pressed Enter at it.
    std::function<void()> whenOpened;
    /// Files and folders were dropped before the page of that position.
    std::function<void(std::vector<std::wstring> paths, std::size_t position)> whenDropped;
    /// The user asks for a menu at that place of the screen. The page there is selected, if there is one.
    std::function<void(CPoint screen)> whenMenuWanted;

private:
    LRESULT OnSize(WPARAM wParam, LPARAM lParam);
    LRESULT OnSetFocus(WPARAM wParam, LPARAM lParam);
    LRESULT OnContextMenu(WPARAM wParam, LPARAM lParam);
    LRESULT OnTimer(WPARAM wParam, LPARAM lParam);
    LRESULT OnDpiChanged(WPARAM wParam, LPARAM lParam);
    LRESULT OnColoursChanged(WPARAM wParam, LPARAM lParam);
    LRESULT OnSelectionSettled(WPARAM wParam, LPARAM lParam);
    LRESULT OnDestroy(WPARAM wParam, LPARAM lParam);
    BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* pResult) override;
    DECLARE_MESSAGE_MAP()

    void draggedOver(CPoint screen) override;
    void dragEnded() override;
    void filesDropped(std::vector<std::wstring> paths, CPoint screen) override;
    void pagesDropped(CPoint screen) override;

    LRESULT draw(const NMLVCUSTOMDRAW& drawing);
    void drawPage(HDC dc, std::size_t index);
    void drawFolders(HDC dc);
    void drawMark(HDC dc);
    bool pressed(UINT virtualKey);
    void tell(NMLVDISPINFOW& item) const;
    void tellPath(NMLVGETINFOTIPW& tip) const;
    LRESULT find(const NMLVFINDITEMW& wanted) const;
    std::wstring itemText(std::size_t index) const;
    bool beginsRun(std::size_t index) const;
    bool sameFolder(std::size_t index, std::size_t other) const;

    void measure();
    void requestVisible();
    void selectionChanged();
    void moveSelection(std::size_t position);
    void mark(std::optional<InsertionPlace> place);
    CRect markRect() const;
    void scrollNearEdge();

    PageCollection& pages;
    ThumbnailSource& thumbnails;
    PageGrid grid;
    std::optional<PagePainter> painter;
    std::optional<PageDropTarget> dropTarget;

    FilePages shown;               ///< as they were when the view was last told of a change
    std::vector<std::size_t> runs; ///< for each page, which run of pages of one folder it belongs to
    std::pair<std::size_t, std::size_t>
        requested; ///< the pages that could be seen when pictures were last asked for
    std::optional<InsertionPlace> insertion; ///< what the mark shows
    bool selectionIsSettling = false;
};

} // namespace host
