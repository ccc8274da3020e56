// Points, sizes and rectangles.
#pragma once

#include <windows.h>

class CSize : public tagSIZE {
public:
    CSize() noexcept : tagSIZE{0, 0} {}
    CSize(int initCX, int initCY) noexcept : tagSIZE{initCX, initCY} {}
    CSize(SIZE initSize) noexcept : tagSIZE(initSize) {}

    BOOL operator==(SIZE size) const noexcept { return cx == size.cx && cy == size.cy; }
    BOOL operator!=(SIZE size) const noexcept { return !(*this == size); }
};

class CPoint : public tagPOINT {
public:
    CPoint() noexcept : tagPOINT{0, 0} {}
    CPoint(int initX, int initY) noexcept : tagPOINT{initX, initY} {}
    CPoint(POINT initPt) noexcept : tagPOINT(initPt) {}
    /// The position packed into a mouse message's lParam: two signed 16-bit numbers, since screens to the left
    /// of and above the main one have negative coordinates.
    explicit CPoint(LPARAM dwPoint) noexcept
        : tagPOINT{static_cast<short>(LOWORD(dwPoint)), static_cast<short>(HIWORD(dwPoint))} {}

    void Offset(int xOffset, int yOffset) noexcept {
        x += xOffset;
        y += yOffset;
    }
    BOOL operator==(POINT point) const noexcept { return x == point.x && y == point.y; }
    BOOL operator!=(POINT point) const noexcept { return !(*this == point); }
};

class CRect : public tagRECT {
public:
    CRect() noexcept : tagRECT{0, 0, 0, 0} {}
    CRect(int l, int t, int r, int b) noexcept : tagRECT{l, t, r, b} {}
    CRect(const RECT& srcRect) noexcept : tagRECT(srcRect) {}

    int Width() const noexcept { return right - left; }
    int Height() const noexcept { return bottom - top; }
    CSize Size() const noexcept { return {Width(), Height()}; }
    CPoint TopLeft() const noexcept { return {left, top}; }
    CPoint CenterPoint() const noexcept { return {(left + right) / 2, (top + bottom) / 2}; }

    operator LPRECT() noexcept { return this; }
    operator LPCRECT() const noexcept { return this; }

    BOOL PtInRect(POINT point) const noexcept { return ::PtInRect(this, point); }
    void OffsetRect(int x, int y) noexcept { ::OffsetRect(this, x, y); }

    BOOL operator==(const RECT& rect) const noexcept { return ::EqualRect(this, &rect); }
    BOOL operator!=(const RECT& rect) const noexcept { return !(*this == rect); }
};
