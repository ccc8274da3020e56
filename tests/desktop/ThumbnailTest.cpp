// Drawing thumbnails.
#include "host/desktop/Thumbnail.h"

#include "desktop/Canvas.h"
#include "host/desktop/PageIcons.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

using host::Thumbnail;
using test::Canvas;

Thumbnail redAndTransparent() {
    Thumbnail thumbnail;
    thumbnail.size = {2, 2};
    thumbnail.pixels = {0, 0, 255, 255, 0, 0, 0, 0, //
                        0, 0, 255, 255, 0, 0, 0, 0};
    return thumbnail;
}

TEST(ThumbnailTest, IsDrawnOverWhatIsThere) {
    const Canvas canvas({10, 10});
    drawThumbnail(canvas.dc, {3, 4, 5, 6}, redAndTransparent());
    EXPECT_EQ(canvas.at(3, 4), RGB(255, 0, 0));
    EXPECT_EQ(canvas.at(3, 5), RGB(255, 0, 0));
    EXPECT_EQ(canvas.at(4, 4), Canvas::ground) << "transparent";
    EXPECT_EQ(canvas.at(2, 4), Canvas::ground);
    EXPECT_EQ(canvas.at(3, 6), Canvas::ground);
}

TEST(ThumbnailTest, IsScaledToTheRectangle) {
    const Canvas canvas({10, 10});
    drawThumbnail(canvas.dc, {0, 0, 8, 8}, redAndTransparent());
    EXPECT_EQ(canvas.at(0, 7), RGB(255, 0, 0));
    EXPECT_EQ(canvas.at(7, 7), Canvas::ground);
    EXPECT_EQ(canvas.at(0, 8), Canvas::ground);
}

std::uint8_t alphaAt(const Thumbnail& icon, int x, int y) {
    return icon.pixels[static_cast<std::size_t>(y * icon.size.cx + x) * 4 + 3];
}

TEST(PageIconsTest, AreSheetsWithACornerFoldedAway) {
    for (const int side : {32, 136, 300}) {
        for (const Thumbnail& icon : {host::documentIcon(side), host::brokenIcon(side)}) {
            EXPECT_EQ(icon.size.cx, side * 3 / 4);
            EXPECT_EQ(icon.size.cy, side);
            ASSERT_EQ(icon.pixels.size(), static_cast<std::size_t>(icon.size.cx * icon.size.cy * 4));
            EXPECT_EQ(alphaAt(icon, 0, 0), 255);
            EXPECT_EQ(alphaAt(icon, icon.size.cx - 1, 0), 0);
            EXPECT_EQ(alphaAt(icon, icon.size.cx / 2, side - 1), 255);
        }
    }
}

TEST(PageIconsTest, OnlyTheBrokenSheetIsTorn) {
    const auto holesInTheMiddle = [](const Thumbnail& icon) {
        int holes = 0;
        for (int y = 0; y < icon.size.cy; ++y)
            holes += alphaAt(icon, icon.size.cx / 2, y) == 0;
        return holes;
    };
    EXPECT_EQ(holesInTheMiddle(host::documentIcon(136)), 0);
    EXPECT_GT(holesInTheMiddle(host::brokenIcon(136)), 4);
    EXPECT_EQ(host::documentIcon(136).kind, Thumbnail::Kind::Document);
    EXPECT_EQ(host::brokenIcon(136).kind, Thumbnail::Kind::Broken);
}

} // namespace
