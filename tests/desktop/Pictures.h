// Picture files for tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace test {

struct Colour {
    int red;
    int green;
    int blue;

    friend bool operator==(const Colour&, const Colour&) = default;
};

constexpr Colour red{255, 0, 0};
constexpr Colour blue{0, 0, 255};

/// A picture whose left half is red and whose right half is blue.
/// @param format  "bmp", "gif", "jpg" or "png"
/// @return the file's bytes
std::string encodedPicture(const std::string& format, unsigned width, unsigned height);

/// Pages like that, uncompressed, as a TIFF file holds them.
/// @param orientation  the value of the tag in each
std::string tiffPicture(unsigned pages, unsigned width, unsigned height, unsigned orientation = 1);

/// A TIFF file that only claims to hold a page of that size.
std::string emptyTiff(unsigned width, unsigned height);

} // namespace test
