// The list view that the page view shows its pages in: where each cell lies, and how it scrolls.
#pragma once

#include <afxwin.h>

#include <commctrl.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace host {

class PagePainter;

/// A place between two pages.
struct InsertionPlace {
    std::size_t position; ///< before which page; as many as there are pages for the end
    bool afterPrevious;   ///< shown after the page before it, as at the end of a row

    bool operator==(const InsertionPlace&) const = default;
};

/// What becomes of the selection on the way to another page.
enum class Going {
    Select, ///< the page and no others
    Extend, ///< all from where the selection began to the page, and no others
    Add,    ///< those as well
    Leave,
};

/// A virtual icon view, which keeps nothing of its items but which are selected. It tells its parent about what it
/// shows and what happens to it by a list view's notifications.
///
/// Keys and Shift go along the line in which the pages stand. A list view's own keys stop at the end of a row, and what
/// it selects with Shift are the icons in a rectangle.
class PageGrid : public CWnd {
public:
    BOOL create(CWnd& parent, UINT id);
    /// Sets the sizes of the cells; to be called whenever the painter's have changed.
    void setMeasures(const PagePainter& painter);

    /// To be called when the system's colours have changed.
    void setColours();

    void setCount(std::size_t count);
    std::size_t count() const;

    /// Where the cell lies now, in the window's coordinates, which may be outside of it.
    CRect cell(std::size_t index) const;
    /// The first page that can be seen and the one after the last; the same where there are none.
    std::pair<std::size_t, std::size_t> visible() const;
    bool beginsRow(std::size_t index) const;
    /// The place between two pages that is nearest to a point of the window.
    InsertionPlace placeAt(CPoint point) const;

    std::vector<std::size_t> selection() const;
    /// Much quicker than asking for all of them.
    std::size_t selectedCount() const;
    /// Selects these and no others.
    void select(const std::vector<std::size_t>& indices);
    void selectAll();
    /// The page that the keyboard is at, or as many as there are pages.
    std::size_t focused() const;
    /// The selection begins there as well.
    void setFocused(std::size_t index);
    /// The page that Shift selects from, or as many as there are pages.
    std::size_t selectionBegin() const;
    void setSelectionBegin(std::size_t index);
    /// Does what the key does that leads to another page; false for any other key.
    bool go(UINT virtualKey, Going going);
    void show(std::size_t index);
    void scroll(int pixels);
    void redraw(std::size_t index);

    /// Is asked first for each key; true when that was all there was to do.
    std::function<bool(UINT virtualKey)> whenKey;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    struct ImageListDeleter {
        void operator()(HIMAGELIST images) const { ImageList_Destroy(images); }
    };

    CRect icon(std::size_t index) const;
    std::optional<std::size_t> at(CPoint point) const;
    std::size_t firstBelow(int y) const;
    std::size_t columns() const;
    std::optional<std::size_t> reachedBy(UINT virtualKey) const;
    void goTo(std::size_t index, Going going);
    void arrange();

    std::unique_ptr<std::remove_pointer_t<HIMAGELIST>, ImageListDeleter> images;
    CSize cellSize;
    CSize iconSize;
};

} // namespace host
