// A picture for tests of what draws.
#pragma once

#include <windows.h>

#include <atltypes.h>

namespace test {

/// A picture in memory to draw on, all of one colour at first.
class Canvas {
public:
    explicit Canvas(CSize size) : size(size) {
        BITMAPINFO info{};
        info.bmiHeader = {sizeof(info.bmiHeader), size.cx, -size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, nullptr, nullptr, 0);
        previous = SelectObject(dc, bitmap);
        SetDCBrushColor(dc, ground);
        FillRect(dc, CRect(0, 0, size.cx, size.cy), static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    }
    ~Canvas() {
        SelectObject(dc, previous);
        DeleteObject(bitmap);
        DeleteDC(dc);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    COLORREF at(int x, int y) const { return GetPixel(dc, x, y); }
    bool holds(const CRect& rect, COLORREF colour) const {
        for (int y = rect.top; y < rect.bottom; ++y)
            for (int x = rect.left; x < rect.right; ++x)
                if (at(x, y) != colour)
                    return false;
        return true;
    }
    /// The lowest row of a column that is not of the colour, above a limit.
    int lowestOther(int x, int limit, COLORREF colour) const {
        int y = limit - 1;
        while (y > 0 && at(x, y) == colour)
            --y;
        return y;
    }

    static constexpr COLORREF ground = RGB(1, 2, 3); ///< nothing is drawn with it

    const CSize size;
    const HDC dc = CreateCompatibleDC(nullptr);

private:
    HBITMAP bitmap;
    HGDIOBJ previous;
};

} // namespace test
