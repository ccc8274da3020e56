// What stands for a page that there is no picture of.
#include "host/desktop/PageIcons.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace host {
namespace {

// A sheet is drawn in the measures of its height, 1, by asking what colour each place has.
constexpr double sheetWidth = 0.75;
constexpr double fold = 0.2;
constexpr double border = 0.012;

struct Colour {
    int red;
    int green;
    int blue;
    int alpha = 255;
};

constexpr Colour nothing{0, 0, 0, 0};
constexpr Colour paper{255, 255, 255};
constexpr Colour edge{128, 134, 142};
constexpr Colour foldedPaper{214, 219, 225};
constexpr Colour writing{176, 184, 194};

Colour sheetAt(double x, double y) {
    const double cornerDistance = (x - (sheetWidth - fold)) - y;
    if (cornerDistance > 0)
        return nothing;
    if (x > sheetWidth - fold && y < fold)
        return cornerDistance > -2 * border ? edge : foldedPaper;
    if (std::min({x, y, sheetWidth - x, 1 - y}) < border)
        return edge;
    return paper;
}

Colour documentAt(double x, double y) {
    constexpr double margin = 0.12;
    constexpr double lineDistance = 0.11;
    const bool inLine = std::fmod(y, lineDistance) < lineDistance / 3;
    if (inLine && y > 2 * lineDistance && y < 1 - margin && x > margin && x < sheetWidth - margin)
        return writing;
    return sheetAt(x, y);
}

Colour brokenAt(double x, double y) {
    constexpr double tooth = 0.1;
    const double tear = 0.5 + std::abs(std::fmod(x, 2 * tooth) - tooth);
    const double distance = std::abs(y - tear);
    if (distance < 0.035)
        return nothing;
    const Colour sheet = sheetAt(x, y);
    return distance < 0.035 + 1.5 * border && sheet.alpha ? edge : sheet;
}

/// The mean of many places in each pixel makes smooth edges.
Thumbnail draw(Thumbnail::Kind kind, int side, Colour (*colourAt)(double x, double y)) {
    constexpr int places = 4;
    Thumbnail icon;
    icon.kind = kind;
    icon.size = {std::max(1L, std::lround(side * sheetWidth)), side};
    icon.pixels.reserve(static_cast<std::size_t>(icon.size.cx) * static_cast<std::size_t>(icon.size.cy) * 4);
    const double step = 1.0 / (side * places);
    for (int y = 0; y < icon.size.cy; ++y) {
        for (int x = 0; x < icon.size.cx; ++x) {
            Colour sum = nothing;
            for (int place = 0; place < places * places; ++place) {
                const int column = x * places + place % places;
                const int row = y * places + place / places;
                const Colour colour = colourAt((column + 0.5) * step, (row + 0.5) * step);
                if (colour.alpha == 0)
                    continue;
                sum.blue += colour.blue;
                sum.green += colour.green;
                sum.red += colour.red;
                sum.alpha += colour.alpha;
            }
            for (const int part : {sum.blue, sum.green, sum.red, sum.alpha})
                icon.pixels.push_back(static_cast<std::uint8_t>(part / (places * places)));
        }
    }
    return icon;
}

} // namespace

Thumbnail documentIcon(int side) {
    return draw(Thumbnail::Kind::Document, side, documentAt);
}

Thumbnail brokenIcon(int side) {
    return draw(Thumbnail::Kind::Broken, side, brokenAt);
}

} // namespace host
