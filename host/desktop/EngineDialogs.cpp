// What the person enters and answers in the windows of engines.
#include "host/desktop/EngineDialogs.h"

#include "SorvaneBase/bxdisk/File.h"
#include "host/DialogPilot.h"
#include "host/OverwriteQuestion.h"
#include "host/Text.h"

#include <algorithm>
#include <new>
#include <utility>

namespace host {
namespace {

EngineDialogs* current = nullptr;

bool isFullPath(const std::wstring& path) {
    return path.starts_with(L"\\\\") ||
           (path.size() > 2 && path[1] == L':' && (path[2] == L'\\' || path[2] == L'/'));
}

std::vector<std::wstring> textsOfEdits(HWND dialog) {
    std::vector<std::wstring> texts;
    EnumChildWindows(
        dialog,
        [](HWND control, LPARAM list) -> BOOL {
            if (windowClass(control) == L"Edit" && IsWindowVisible(control))
                reinterpret_cast<std::vector<std::wstring>*>(list)->push_back(windowText(control));
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&texts));
    return texts;
}

} // namespace

EngineDialogs::EngineDialogs()
    : hook(SetWindowsHookExW(WH_CALLWNDPROC, onMessage, nullptr, GetCurrentThreadId())) {
    current = this;
}

EngineDialogs::~EngineDialogs() {
    UnhookWindowsHookEx(hook);
    current = nullptr;
}

std::optional<std::wstring> EngineDialogs::place() const {
    const auto exists = [](const std::wstring& text) {
        return isFullPath(text) && bxdisk::File(text).exists();
    };
    auto found = std::ranges::find_if(entries, exists);
    if (found == entries.end())
        found = std::ranges::find_if(entries, isFullPath);
    return found == entries.end() ? std::nullopt : std::optional(*found);
}

void EngineDialogs::exportBegins() {
    isExporting = true;
}

void EngineDialogs::forgetAnswers() {
    overwrittenFile.reset();
    refused = false;
}

LRESULT CALLBACK EngineDialogs::onMessage(int code, WPARAM wParam, LPARAM lParam) {
    const auto* const message = reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code == HC_ACTION && message->message == WM_COMMAND && HIWORD(message->wParam) == BN_CLICKED) {
        try {
            current->pressed(message->hwnd, LOWORD(message->wParam));
        } catch (const std::bad_alloc&) {
            // What was entered stays unknown. The system's code, which calls this, lets no exception through.
        }
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void EngineDialogs::pressed(HWND dialog, int button) {
    switch (button) {
    case IDOK:
        // The box that refuses an entry has none, and the dialog stays open behind it.
        if (isExporting)
            break;
        if (auto texts = textsOfEdits(dialog); !texts.empty())
            entries = std::move(texts);
        break;
    case IDYES:
        refused = false;
        if (auto path = pathToOverwrite(utf8(messageBoxText(dialog))))
            overwrittenFile = std::move(path);
        break;
    case IDNO:
        refused = true;
        break;
    default:
        break;
    }
}

} // namespace host
