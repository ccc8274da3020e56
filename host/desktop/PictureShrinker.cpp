// Makes a small picture out of the rows of a large one.
#include "host/desktop/PictureShrinker.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace host {
namespace {

constexpr unsigned channels = 4;
constexpr unsigned alpha = 3;

LONG scaled(unsigned length, unsigned longer, int side) {
    if (longer <= static_cast<unsigned>(side))
        return static_cast<LONG>(length);
    const std::uint64_t rounded = (std::uint64_t{length} * static_cast<unsigned>(side) + longer / 2) / longer;
    return std::max(1L, static_cast<LONG>(rounded));
}

} // namespace

PictureShrinker::PictureShrinker(unsigned width, unsigned height, int side) : width(width), height(height) {
    const unsigned longer = std::max(width, height);
    small.kind = Thumbnail::Kind::Picture;
    small.size = {scaled(width, longer, side), scaled(height, longer, side)};
    sums.resize(static_cast<std::size_t>(small.size.cx) * channels);
    small.pixels.reserve(sums.size() * static_cast<std::size_t>(small.size.cy));
}

unsigned PictureShrinker::firstColumnOf(unsigned x) const {
    return static_cast<unsigned>(std::uint64_t{x} * width / static_cast<unsigned>(small.size.cx));
}

void PictureShrinker::addRow(const std::uint8_t* pixels) {
    unsigned column = 0;
    for (unsigned x = 0; x < static_cast<unsigned>(small.size.cx); ++x) {
        unsigned inRow[channels] = {};
        for (const unsigned end = firstColumnOf(x + 1); column < end; ++column, pixels += channels)
            for (unsigned channel = 0; channel < channels; ++channel)
                inRow[channel] += pixels[channel];
        for (unsigned channel = 0; channel < channels; ++channel)
            sums[x * channels + channel] += inRow[channel];
    }
    ++row;
    ++rowsInSum;
    const auto rowsOfSmall = static_cast<std::uint64_t>(small.size.cy);
    if (row * rowsOfSmall / height != (row - 1) * rowsOfSmall / height)
        finishRow();
}

void PictureShrinker::finishRow() {
    for (unsigned x = 0; x < static_cast<unsigned>(small.size.cx); ++x) {
        const std::uint64_t count = std::uint64_t{firstColumnOf(x + 1) - firstColumnOf(x)} * rowsInSum;
        const std::uint64_t* const sum = &sums[std::size_t{x} * channels];
        const std::uint64_t white = 255 * count - sum[alpha];
        for (unsigned channel = 0; channel < alpha; ++channel)
            small.pixels.push_back(static_cast<std::uint8_t>(
                std::min<std::uint64_t>(255, (sum[channel] + white + count / 2) / count)));
        small.pixels.push_back(255);
    }
    std::ranges::fill(sums, 0);
    rowsInSum = 0;
}

Thumbnail turned(Thumbnail picture, unsigned orientation) {
    if (orientation < 2 || orientation > 8)
        return picture;
    const bool swapped = orientation >= 5;
    const bool mirrored = orientation == 2 || orientation == 3 || orientation == 6 || orientation == 7;
    const bool upsideDown = orientation == 3 || orientation == 4 || orientation == 7 || orientation == 8;
    Thumbnail result = picture;
    if (swapped)
        std::swap(result.size.cx, result.size.cy);
    std::uint8_t* target = result.pixels.data();
    for (LONG y = 0; y < result.size.cy; ++y) {
        for (LONG x = 0; x < result.size.cx; ++x, target += channels) {
            LONG fromX = mirrored ? result.size.cx - 1 - x : x;
            LONG fromY = upsideDown ? result.size.cy - 1 - y : y;
            if (swapped)
                std::swap(fromX, fromY);
            std::memcpy(target,
                        &picture.pixels[static_cast<std::size_t>(fromY * picture.size.cx + fromX) * channels],
                        channels);
        }
    }
    return result;
}

} // namespace host
