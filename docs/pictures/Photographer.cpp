// Takes the picture of one window, for programs that show windows over example data.
#include "Photographer.h"

#include "Photograph.h"

#include <optional>

namespace {

constexpr DWORD settlingMilliseconds = 200;

/// Leaves neither selection nor caret, which would look different each time.
void makeSteady(HWND window) {
    const HWND focus = GetFocus();
    if (host::windowClass(focus) == L"Edit") {
        SendMessageW(focus, EM_SETSEL, static_cast<WPARAM>(-1), 0);
        HideCaret(focus);
    }
    // Without a window manager the title bar is drawn as that of a window in the background.
    SendMessageW(window, WM_NCACTIVATE, TRUE, 0);
    RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

} // namespace

void Photographer::take(int control, int close, const std::function<void()>& show, const Action& fill) const {
    host::DialogPilot pilot(patience);
    queue(pilot, control, close, fill);
    show();
    if (!pilot.succeeded())
        throw host::HostError("The picture was not taken: " + pilot.failure());
}

void Photographer::queue(host::DialogPilot& pilot, int control, int close, const Action& fill) const {
    pilot.then("the window", host::dialogWith(control),
               host::inOrder({fill,
                              [this](HWND window) {
                                  makeSteady(window);
                                  Photograph(window).writePng(path);
                                  return true;
                              },
                              host::click(close)}));
}

void Photographer::takeSettled(HWND window) const {
    const auto end = std::chrono::steady_clock::now() + patience;
    std::optional<Photograph> before;
    for (;;) {
        SendMessageW(window, WM_NCACTIVATE, TRUE, 0);
        const Photograph now(window);
        if (before && *before == now)
            return now.writePng(path);
        if (std::chrono::steady_clock::now() > end)
            throw host::HostError("The picture was not taken: the window does not settle.");
        before = now;
        Sleep(settlingMilliseconds);
    }
}
