// Takes the picture of the program's window with the pages that it is given, once it looks no different any more.
#include "Photograph.h"

#include "afxwin.h"
#include "host/CommandLinePath.h"
#include "host/HostError.h"
#include "host/ProgramFolder.h"
#include "host/desktop/DesktopProgram.h"

#include <cstdio>
#include <optional>
#include <string>
#include <utility>

namespace {

constexpr wchar_t registryBase[] = L"Sorvane\\WindowPicture";
constexpr UINT interval = 700; // in milliseconds; thumbnails come faster than this
constexpr RECT place{0, 0, 1000, 700};

/// Looks at the window time and again, takes its picture when two are the same, and closes it.
class Photographer {
public:
    explicit Photographer(std::wstring path)
        : path(std::move(path)), timer(SetTimer(nullptr, 0, interval, onTimer)) {
        current = this;
    }
    ~Photographer() { KillTimer(nullptr, timer); }
    Photographer(const Photographer&) = delete;
    Photographer& operator=(const Photographer&) = delete;

    std::string failure;
    bool isDone = false;

private:
    static void CALLBACK onTimer(HWND, UINT, UINT_PTR, DWORD) noexcept {
        try {
            current->look();
        } catch (const host::HostError& error) {
            current->failure = error.what();
            PostQuitMessage(0);
        }
    }

    void look() {
        const HWND window = AfxGetMainWnd()->GetSafeHwnd();
        if (!IsWindowVisible(window))
            return;
        if (const HWND popup = GetLastActivePopup(window); popup != window) {
            PostMessageW(popup, WM_CLOSE, 0, 0);
            return;
        }
        if (!before)
            MoveWindow(window, place.left, place.top, place.right, place.bottom, TRUE);
        // Without a window manager the title bar is drawn as that of a window in the background.
        SendMessageW(window, WM_NCACTIVATE, TRUE, 0);
        Photograph now(window);
        isDone = before && *before == now;
        if (isDone) {
            now.writePng(path);
            PostMessageW(window, WM_CLOSE, 0, 0);
        }
        before = std::move(now);
    }

    static inline Photographer* current = nullptr;

    std::wstring path;
    UINT_PTR timer;
    std::optional<Photograph> before;
};

} // namespace

int wmain(int argumentCount, wchar_t** arguments) {
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: WindowPicture PICTURE [ARGUMENTS OF SCANHOST]\n");
        return 1;
    }
    Photographer photographer(host::fullPathOf(arguments[1]));
    host::Surroundings surroundings{host::programFolder()};
    surroundings.baseRegistryPath = registryBase;
    host::runDesktopProgram({arguments + 2, arguments + argumentCount}, surroundings, SW_SHOWNORMAL);
    RegDeleteTreeW(HKEY_CURRENT_USER, (std::wstring(L"SOFTWARE\\") + registryBase).c_str());
    if (!photographer.isDone)
        std::fprintf(stderr, "The picture was not taken. %s\n", photographer.failure.c_str());
    return photographer.isDone ? 0 : 1;
}
