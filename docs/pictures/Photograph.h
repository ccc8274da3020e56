// A picture of a window.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

/// The window as it stands on the screen, with its title bar.
class Photograph {
public:
    explicit Photograph(HWND window);

    /// Throws HostError. COM is open on the thread.
    void writePng(const std::wstring& path) const;

    bool operator==(const Photograph&) const = default;

private:
    UINT width = 0;
    UINT height = 0;
    std::vector<std::uint8_t> pixels; ///< rows from the top, three bytes a pixel, each row of whole words
};
