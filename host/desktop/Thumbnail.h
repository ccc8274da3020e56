// A small picture of a page.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace host {

/// Thread: any, for a thumbnail that nobody changes.
struct Thumbnail {
    enum class Kind {
        Picture,  ///< what the page shows
        Document, ///< an icon for what the system has no pictures of, such as PDF files
        Broken,   ///< an icon for a picture that cannot be read
    };

    Kind kind = Kind::Broken;
    SIZE size{}; ///< pixels; as large as was asked for along its longer side, or a small picture's own size
    unsigned frames = 1; ///< how many pages the file holds

    /// Rows from top to bottom, four bytes a pixel in the order blue, green, red, alpha, with the colours multiplied
    /// by alpha. Pictures are opaque.
    std::vector<std::uint8_t> pixels;

    std::size_t bytes() const noexcept { return sizeof(Thumbnail) + pixels.capacity(); }
};

/// Draws a thumbnail, scaled to the rectangle if that has another size, over what is there.
void drawThumbnail(HDC dc, const RECT& where, const Thumbnail& thumbnail);

} // namespace host
