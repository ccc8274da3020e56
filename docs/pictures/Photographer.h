// Takes the picture of one window, for programs that show windows over example data.
#pragma once

#include "host/DialogPilot.h"
#include "host/HostError.h"

#include <windows.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>

/// How long a window may take to come.
constexpr std::chrono::seconds patience{30};

class Photographer {
public:
    using Action = host::DialogPilot::Action;

    /// @param path  of the picture
    explicit Photographer(std::wstring path) : path(std::move(path)) {}

    /// Takes the picture of a dialog of this thread. Throws HostError when it does not come.
    /// @param control  tells the window from others
    /// @param close    the button that closes it
    /// @param show     shows it and returns when it is closed
    /// @param fill     makes it as it is to be in the picture
    void take(
        int control, int close, const std::function<void()>& show,
        const Action& fill = [](HWND) { return true; }) const;

    /// The same of one that is queued behind the pilot's other windows.
    void queue(
        host::DialogPilot& pilot, int control, int close,
        const Action& fill = [](HWND) { return true; }) const;

    /// Takes the picture of a window of another thread once it looks no different any more.
    void takeSettled(HWND window) const;

private:
    std::wstring path;
};

/// The entry of that name in a table of pictures or languages. Throws UsageError when there is none.
template <class Entry, std::size_t count>
const Entry& find(const Entry (&entries)[count], const wchar_t* Entry::*name, const std::wstring& wanted) {
    for (const Entry& entry : entries)
        if (wanted == entry.*name)
            return entry;
    throw host::UsageError("There is no such picture or language.");
}
