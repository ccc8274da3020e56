// The icons of export targets, in the size in which they are shown.
#include "host/desktop/FactoryIcon.h"

#include "BXImage/Image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace host {
namespace {

using BXImage::Bitmap;

/// Blue, green and red times alpha, and alpha: only these can be averaged.
using Colour = std::array<float, 4>;

Colour colourAt(const Bitmap& bitmap, int x, int y) {
    const int column = std::clamp(x, 0, bitmap.width - 1);
    const int row = std::clamp(y, 0, bitmap.height - 1);
    const std::uint8_t* const pixel =
        &bitmap.pixels[(static_cast<std::size_t>(row) * static_cast<std::size_t>(bitmap.width) +
                        static_cast<std::size_t>(column)) *
                       4];
    const auto channel = [pixel](int index) { return static_cast<float>(pixel[index]); };
    const float alpha = channel(3);
    return {channel(0) * alpha, channel(1) * alpha, channel(2) * alpha, alpha};
}

Colour between(const Colour& a, const Colour& b, float part) {
    Colour result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = a[i] + (b[i] - a[i]) * part;
    return result;
}

/// The colour at a place between the middles of four pixels.
Colour smoothAt(const Bitmap& bitmap, float x, float y) {
    const float left = std::floor(x);
    const float top = std::floor(y);
    const int column = static_cast<int>(left);
    const int row = static_cast<int>(top);
    return between(
        between(colourAt(bitmap, column, row), colourAt(bitmap, column + 1, row), x - left),
        between(colourAt(bitmap, column, row + 1), colourAt(bitmap, column + 1, row + 1), x - left), y - top);
}

std::vector<std::uint8_t> stretched(const Bitmap& bitmap, int size) {
    std::vector<std::uint8_t> pixels;
    pixels.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size) * 4);
    const auto place = [size](int index, int length) {
        return (static_cast<float>(index) + 0.5F) * static_cast<float>(length) / static_cast<float>(size) -
               0.5F;
    };
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const Colour colour = smoothAt(bitmap, place(x, bitmap.width), place(y, bitmap.height));
            const float alpha = colour[3];
            for (std::size_t i = 0; i < 3; ++i)
                pixels.push_back(static_cast<std::uint8_t>(alpha > 0 ? std::lround(colour[i] / alpha) : 0));
            pixels.push_back(static_cast<std::uint8_t>(std::lround(alpha)));
        }
    }
    return pixels;
}

} // namespace

HICON factoryIcon(const SorvaneCommon::ExportEngineFactory& factory, int size) {
    bxbase::Reference<BXImage::Image> image;
    if (!factory.getIcon(image) || !image->getBitmap() || image->getBitmap()->pixels.empty())
        return nullptr;
    const std::vector<std::uint8_t> pixels = stretched(*image->getBitmap(), size);
    // Each row of the mask fills whole words.
    const std::vector<std::uint8_t> mask(static_cast<std::size_t>((size + 15) / 16 * 2 * size));
    return CreateIcon(nullptr, size, size, 1, 32, mask.data(), pixels.data());
}

} // namespace host
