// The system's font for messages at a resolution.
#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace host {

struct FontDeleter {
    void operator()(HFONT font) const { DeleteObject(font); }
};
using Font = std::unique_ptr<std::remove_pointer_t<HFONT>, FontDeleter>;

/// The one that the person has chosen for menus, messages and the like.
inline Font messageFont(UINT dpi, bool isBold = false) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi);
    if (isBold)
        metrics.lfMessageFont.lfWeight = FW_BOLD;
    return Font(CreateFontIndirectW(&metrics.lfMessageFont));
}

} // namespace host
