// Draws one page of the page view, and what the view shows around the pages.
#pragma once

#include "host/desktop/MessageFont.h"
#include "host/desktop/Thumbnail.h"

#include <windows.h>

#include <atltypes.h>

#include <cstddef>
#include <string>

namespace host {

/// What one cell of the view shows.
struct PageCell {
    std::size_t number = 0; ///< as people count
    std::wstring name;
    std::size_t run = 0;                  ///< which run of pages of one folder; neighbours differ in colour
    bool beginsRun = false;               ///< nothing before it belongs to the run
    bool endsRun = false;                 ///< nor after it
    const Thumbnail* thumbnail = nullptr; ///< null while it is being made
    bool selected = false;
    bool focused = false;     ///< has the focus rectangle
    bool viewIsActive = true; ///< a selection in a view without the focus is paler
};

/// Knows the measures of a cell for one resolution. Colours are the system's at the time of drawing.
///
/// From the top: a strip with the folder's name over the line that joins the pages of a run, the page, its number
/// and its file name. Cells touch each other, so that the line goes on from one to the next.
class PagePainter {
public:
    explicit PagePainter(UINT dpi);

    CSize cellSize() const { return cell; }
    /// The side of the square that a page is drawn into.
    int thumbnailSize() const { return thumbnail; }
    /// The strip and the page, which is where a list view has an item's icon; the texts below are its label.
    CRect iconIn(const CRect& cell) const;

    void paint(HDC dc, const CRect& cell, const PageCell& page) const;
    /// The name of a run's folder, in the strips of those of its cells that are in one row.
    /// @param beginsRun  false in the rows in which the run only goes on, where the name is paler
    void paintFolder(HDC dc, const CRect& first, const CRect& last, const std::wstring& name,
                     bool beginsRun) const;

    /// The bar that shows where pages will be inserted: before the cell or after it.
    CRect insertionMark(const CRect& cell, bool after) const;
    void paintInsertionMark(HDC dc, const CRect& mark) const;

    /// What a view without pages says.
    void paintHint(HDC dc, const CRect& view, const std::wstring& text) const;

private:
    int scaled(int pixelsAt96) const;
    void paintStrip(HDC dc, const CRect& cell, const PageCell& page) const;
    void paintSelection(HDC dc, const CRect& around, const PageCell& page) const;
    void paintPage(HDC dc, const CRect& square, const PageCell& page) const;
    void paintSheet(HDC dc, const CRect& sheet, COLORREF ground) const;
    void paintFrameCount(HDC dc, const CRect& sheet, unsigned frames) const;
    void paintTexts(HDC dc, const CRect& cell, const PageCell& page) const;

    UINT dpi;
    Font font;
    Font boldFont;
    int lineHeight = 0;
    int thumbnail = 0;
    int stripHeight = 0;
    CSize cell;
};

/// The text as it fits into a width: where it is too long its middle gives way, because the names of scans differ at
/// their ends.
std::wstring shortened(HDC dc, const std::wstring& text, int width);

} // namespace host
