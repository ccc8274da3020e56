// A small picture of a page.
#include "host/desktop/Thumbnail.h"

#include <cstring>

namespace host {

void drawThumbnail(HDC dc, const RECT& where, const Thumbnail& thumbnail) {
    const int width = thumbnail.size.cx;
    const int height = thumbnail.size.cy;
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* pixels = nullptr;
    const HBITMAP bitmap = CreateDIBSection(dc, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    if (!bitmap)
        return;
    std::memcpy(pixels, thumbnail.pixels.data(), thumbnail.pixels.size());
    const HDC source = CreateCompatibleDC(dc);
    const HGDIOBJ before = SelectObject(source, bitmap);
    GdiAlphaBlend(dc, where.left, where.top, where.right - where.left, where.bottom - where.top, source, 0, 0,
                  width, height, {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA});
    SelectObject(source, before);
    DeleteDC(source);
    DeleteObject(bitmap);
}

} // namespace host
