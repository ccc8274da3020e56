#include "host/desktop/PagePainter.h"

#include "desktop/Canvas.h"
#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <atltypes.h>

#include <memory>
#include <string>

namespace {

using host::PageCell;
using host::PagePainter;
using test::Canvas;

PageCell somePage() {
    PageCell page;
    page.number = 12;
    page.name = L"a page with a name that is far too long for any cell of the view.tif";
    return page;
}

class PagePainterTest : public testing::TestWithParam<UINT> {
protected:
    PagePainter painter{GetParam()};
    CSize size = painter.cellSize();
};

INSTANTIATE_TEST_SUITE_P(Resolutions, PagePainterTest, testing::Values(96U, 120U, 144U, 192U));

TEST_P(PagePainterTest, StaysInsideTheCell) {
    constexpr int AROUND = 20;
    Canvas canvas({size.cx + 2 * AROUND, size.cy + 2 * AROUND});
    CRect cell(AROUND, AROUND, AROUND + size.cx, AROUND + size.cy);
    PageCell page = somePage();
    page.selected = page.focused = true;
    painter.paint(canvas.dc, cell, page);
    EXPECT_TRUE(canvas.holds(CRect(0, 0, canvas.size.cx, AROUND), Canvas::ground));
    EXPECT_TRUE(canvas.holds(CRect(0, cell.bottom, canvas.size.cx, canvas.size.cy), Canvas::ground));
    EXPECT_TRUE(canvas.holds(CRect(0, 0, AROUND, canvas.size.cy), Canvas::ground));
    EXPECT_TRUE(canvas.holds(CRect(cell.right, 0, canvas.size.cx, canvas.size.cy), Canvas::ground));
}

TEST_P(PagePainterTest, WritesTheFolderOverAllItsCellsOfARowButNoOthers) {
    Canvas canvas({4 * size.cx, size.cy});
    const auto cell = [this](int index) { return CRect(index * size.cx, 0, (index + 1) * size.cx, size.cy); };
    painter.paintFolder(canvas.dc, cell(1), cell(2),
                        L"a folder with a name that is far too long for two cells, as few folders have one, "
                        L"but those of other people",
                        true);
    EXPECT_TRUE(canvas.holds(cell(0), Canvas::ground));
    EXPECT_FALSE(canvas.holds(cell(1), Canvas::ground));
    EXPECT_FALSE(canvas.holds(cell(2), Canvas::ground));
    EXPECT_TRUE(canvas.holds(cell(3), Canvas::ground));
}

TEST_P(PagePainterTest, JoinsThePagesOfARunWithALine) {
    Canvas canvas({4 * size.cx, size.cy});
    const bool begins[] = {true, false, false, true};
    const bool ends[] = {false, false, true, true};
    for (int i = 0; i < 4; ++i) {
        PageCell page = somePage();
        page.run = i < 3 ? 0 : 1;
        page.beginsRun = begins[i];
        page.endsRun = ends[i];
        painter.paint(canvas.dc, CRect(i * size.cx, 0, (i + 1) * size.cx, size.cy), page);
    }
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    // The strip's lowest row, just above the page of the icon.
    const int y =
        canvas.lowestOther(size.cx, painter.insertionMark(CRect(0, 0, size.cx, size.cy), false).top, window);
    const COLORREF first = canvas.at(size.cx, y);
    EXPECT_NE(first, window);
    EXPECT_TRUE(canvas.holds(CRect(size.cx / 2, y, 5 * size.cx / 2, y + 1), first));
    EXPECT_EQ(canvas.at(0, y), window);
    EXPECT_EQ(canvas.at(3 * size.cx - 1, y), window);
    EXPECT_EQ(canvas.at(3 * size.cx, y), window);
    EXPECT_NE(canvas.at(7 * size.cx / 2, y), first);
}

/// The colour around the page in a cell.
COLORREF groundOf(const PagePainter& painter, bool selected, bool active) {
    const CSize size = painter.cellSize();
    Canvas canvas(size);
    PageCell page = somePage();
    page.selected = selected;
    page.viewIsActive = active;
    painter.paint(canvas.dc, CRect(0, 0, size.cx, size.cy), page);
    const CRect icon = painter.iconIn(CRect(0, 0, size.cx, size.cy));
    return canvas.at(icon.left + 4, icon.bottom - 4);
}

TEST_P(PagePainterTest, TellsASelectionInAnActiveViewFromOthers) {
    EXPECT_EQ(groundOf(painter, false, true), GetSysColor(COLOR_WINDOW));
    EXPECT_NE(groundOf(painter, true, true), groundOf(painter, false, true));
    EXPECT_NE(groundOf(painter, true, false), groundOf(painter, false, true));
    EXPECT_NE(groundOf(painter, true, false), groundOf(painter, true, true));
}

TEST_P(PagePainterTest, PaintsAPartAsItPaintsTheWhole) {
    const CRect cell(0, 0, size.cx, size.cy);
    PageCell page = somePage();
    page.selected = true;
    Canvas whole(size);
    painter.paint(whole.dc, cell, page);
    Canvas upper(size);
    const int middle = size.cy / 2;
    IntersectClipRect(upper.dc, 0, 0, size.cx, middle);
    painter.paint(upper.dc, cell, page);
    int different = 0;
    for (int y = 0; y < middle; ++y)
        for (int x = 0; x < size.cx; ++x)
            different += whole.at(x, y) != upper.at(x, y);
    EXPECT_EQ(different, 0);
}

constexpr COLORREF PURPLE = RGB(128, 0, 128);

DWORD WINAPI darkColour(int index) {
    return index == COLOR_WINDOW ? RGB(32, 32, 32) : index == COLOR_HIGHLIGHT ? PURPLE : RGB(255, 255, 255);
}

BOOL WINAPI highContrast(UINT action, UINT, void* value, UINT) {
    if (action == SPI_GETHIGHCONTRAST)
        static_cast<HIGHCONTRASTW*>(value)->dwFlags = HCF_HIGHCONTRASTON;
    return action == SPI_GETHIGHCONTRAST;
}

TEST_P(PagePainterTest, ShowsTheSelectionInItsFullColourOnDarkGround) {
    const test::ImportHook colours("GetSysColor", reinterpret_cast<void*>(darkColour));
    EXPECT_EQ(groundOf(painter, false, true), RGB(32, 32, 32));
    EXPECT_EQ(groundOf(painter, true, true), PURPLE);
    EXPECT_EQ(groundOf(painter, true, false), PURPLE);
}

TEST_P(PagePainterTest, MixesNoColoursOfHighContrast) {
    const test::ImportHook contrast("SystemParametersInfoW", reinterpret_cast<void*>(highContrast));
    EXPECT_EQ(groundOf(painter, true, true), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(groundOf(painter, true, false), GetSysColor(COLOR_HIGHLIGHT));
}

TEST_P(PagePainterTest, PutsTheInsertionMarkBetweenTheCells) {
    const CRect cell(size.cx, 0, 2 * size.cx, size.cy);
    CRect next = cell;
    next.OffsetRect(size.cx, 0);
    EXPECT_EQ(painter.insertionMark(cell, true), painter.insertionMark(next, false));
    const CRect mark = painter.insertionMark(cell, false);
    EXPECT_LT(mark.left, cell.left);
    EXPECT_GT(mark.right, cell.left);
}

TEST_P(PagePainterTest, KeepsTheInsertionMarkInTheView) {
    EXPECT_GE(painter.insertionMark(CRect(0, 0, size.cx, size.cy), false).left, 0);
}

TEST(PagePainterSizeTest, GrowsWithTheResolution) {
    const PagePainter single(96);
    const PagePainter twofold(192);
    EXPECT_EQ(twofold.thumbnailSize(), 2 * single.thumbnailSize());
    EXPECT_NEAR(twofold.cellSize().cy, 2 * single.cellSize().cy, 8);
}

class ShortenedTest : public testing::Test {
protected:
    int widthOf(const std::wstring& text) const {
        SIZE size{};
        GetTextExtentPoint32W(canvas.dc, text.data(), static_cast<int>(text.size()), &size);
        return size.cx;
    }

    Canvas canvas{{9, 9}};
};

TEST_F(ShortenedTest, LeavesATextThatFits) {
    const std::wstring text = L"scan 0001.tif";
    EXPECT_EQ(host::shortened(canvas.dc, text, widthOf(text)), text);
}

TEST_F(ShortenedTest, LeavesOutTheMiddleAndKeepsAsMuchAsFits) {
    const std::wstring text = L"document scanned in March 0001.tif";
    const int width = widthOf(text) / 2;
    const std::wstring result = host::shortened(canvas.dc, text, width);
    const std::size_t gap = result.find(L'…');
    ASSERT_NE(gap, std::wstring::npos);
    EXPECT_TRUE(text.starts_with(result.substr(0, gap)));
    EXPECT_TRUE(text.ends_with(result.substr(gap + 1)));
    EXPECT_TRUE(result.ends_with(L"1.tif"));
    EXPECT_LE(widthOf(result), width);
    EXPECT_GT(widthOf(result) + 2 * widthOf(L"W"), width);
}

TEST_F(ShortenedTest, NeverCutsACharacterInTwo) {
    std::wstring text;
    for (int i = 0; i < 12; ++i)
        text += L"\U0001F4C4";
    for (int width = widthOf(text); width > 0; --width) {
        const std::wstring result = host::shortened(canvas.dc, text, width);
        const std::size_t gap = result.find(L'…');
        if (gap != std::wstring::npos) {
            EXPECT_EQ(gap % 2, 0U) << width;
            EXPECT_EQ(result.size() % 2, 1U) << width;
        }
    }
}

} // namespace
