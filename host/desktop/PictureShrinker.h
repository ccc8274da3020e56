// Makes a small picture out of the rows of a large one.
#pragma once

#include "host/desktop/Thumbnail.h"

#include <cstdint>
#include <vector>

namespace host {

/// Each pixel of the small picture is the mean of those that fall on it, so that thin lines and writing become grey and
/// do not vanish. Holds one row at a time.
class PictureShrinker {
public:
    /// A picture that is small enough keeps its size.
    /// @param width, height  of the large picture, neither of them 0
    /// @param side           how many pixels the small one may have along its longer side
    PictureShrinker(unsigned width, unsigned height, int side);

    /// Takes the next row, from the top. Its pixels are like a thumbnail's.
    void addRow(const std::uint8_t* pixels);

    /// The small picture, on white where the large one was transparent. Complete once all rows have come.
    Thumbnail picture() const { return small; }

private:
    unsigned firstColumnOf(unsigned x) const;
    void finishRow();

    unsigned width;
    unsigned height;
    unsigned row = 0;
    unsigned rowsInSum = 0;
    std::vector<std::uint64_t> sums;
    Thumbnail small;
};

/// A picture turned and mirrored the way that EXIF and TIFF number, from 1 (as it is) to 8; others are ignored.
Thumbnail turned(Thumbnail picture, unsigned orientation);

} // namespace host
