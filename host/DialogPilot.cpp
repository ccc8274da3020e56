// Drives modal dialogs from inside the program, as a user would.
#include "host/DialogPilot.h"

#include "host/Text.h"

#include <algorithm>

namespace host {
namespace {

constexpr UINT tickMilliseconds = 10;
constexpr wchar_t dialogClass[] = L"#32770";
// The identifier that the system gives to the text of a message box.
constexpr int messageBoxTextId = 0xFFFF;

thread_local DialogPilot* current = nullptr;

std::vector<HWND> answerableWindows() {
    std::vector<HWND> windows;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM list) -> BOOL {
            if (IsWindowVisible(window) && IsWindowEnabled(window))
                reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&windows));
    return windows;
}

bool isDialog(HWND window) {
    return windowClass(window) == dialogClass;
}

} // namespace

DialogPilot::DialogPilot(std::chrono::milliseconds limit)
    : limit(limit), lastProgress(std::chrono::steady_clock::now()) {
    current = this;
    timer = SetTimer(nullptr, 0, tickMilliseconds, onTimer);
}

DialogPilot::~DialogPilot() {
    KillTimer(nullptr, timer);
    current = nullptr;
}

DialogPilot& DialogPilot::then(std::string name, Match match, Action action) {
    steps.push_back({std::move(name), std::move(match), std::move(action)});
    return *this;
}

DialogPilot& DialogPilot::always(Match match, Action action) {
    rules.push_back({{}, std::move(match), std::move(action)});
    return *this;
}

DialogPilot& DialogPilot::ignore(Match match) {
    ignored.push_back(std::move(match));
    return *this;
}

std::string DialogPilot::failure() const {
    if (!failureText.empty() || steps.empty())
        return failureText;
    return "not reached: " + steps.front().name;
}

void CALLBACK DialogPilot::onTimer(HWND, UINT, UINT_PTR, DWORD) {
    // An action may pump messages itself, and then the timer comes again while it still runs.
    if (current && !current->acting)
        current->tick();
}

std::vector<HWND> DialogPilot::windowsToAnswer() const {
    std::vector<HWND> windows = answerableWindows();
    std::erase_if(windows, [this](HWND window) {
        return std::ranges::any_of(ignored, [window](const Match& match) { return match(window); });
    });
    return windows;
}

void DialogPilot::tick() {
    const std::vector<HWND> windows = windowsToAnswer();
    if (!failureText.empty()) {
        giveUp(windows);
        return;
    }
    for (HWND window : windows) {
        if (!steps.empty() && actOn(window, steps.front().match, steps.front().action)) {
            steps.pop_front();
            return;
        }
    }
    for (HWND window : windows) {
        for (const Step& rule : rules) {
            if (actOn(window, rule.match, rule.action))
                return;
        }
    }
    const bool waiting = !steps.empty() || std::any_of(windows.begin(), windows.end(), isDialog);
    if (!waiting)
        lastProgress = std::chrono::steady_clock::now();
    else if (limit.count() > 0 && std::chrono::steady_clock::now() - lastProgress > limit)
        giveUp(windows);
}

bool DialogPilot::actOn(HWND window, const Match& match, const Action& action) {
    acting = true;
    bool done = false;
    try {
        done = match(window) && action(window);
    } catch (const std::exception& error) {
        // It must not travel through the window procedure that the timer was called from.
        failureText = std::string("an action failed: ") + error.what();
    }
    acting = false;
    if (done)
        lastProgress = std::chrono::steady_clock::now();
    return done;
}

void DialogPilot::giveUp(const std::vector<HWND>& windows) {
    if (failureText.empty()) {
        failureText =
            steps.empty() ? "nobody answered:" : "waited in vain for: " + steps.front().name + "; open:";
        for (HWND window : windows)
            failureText += " [" + utf8(windowClass(window)) + "] \"" + utf8(windowText(window)) + "\"";
    }
    for (HWND window : windows) {
        if (!isDialog(window))
            continue;
        // A box with Yes and No has no Cancel.
        for (int answer : {IDCANCEL, IDNO, IDOK})
            PostMessageW(window, WM_COMMAND, MAKEWPARAM(answer, BN_CLICKED), 0);
    }
}

DialogPilot::Match dialogTitled(std::wstring title) {
    return
        [title = std::move(title)](HWND window) { return isDialog(window) && windowText(window) == title; };
}

DialogPilot::Match dialogWith(int controlId) {
    return [controlId](HWND window) { return isDialog(window) && GetDlgItem(window, controlId); };
}

DialogPilot::Match anyMessageBox() {
    return [](HWND window) {
        return isDialog(window) && windowClass(GetDlgItem(window, messageBoxTextId)) == L"Static";
    };
}

DialogPilot::Action click(int controlId) {
    return [controlId](HWND window) {
        HWND button = GetDlgItem(window, controlId);
        return button && IsWindowEnabled(button) && PostMessageW(button, BM_CLICK, 0, 0);
    };
}

DialogPilot::Action enterText(int controlId, std::wstring text) {
    return [controlId, text = std::move(text)](HWND window) {
        HWND control = GetDlgItem(window, controlId);
        return control && IsWindowEnabled(control) && SetWindowTextW(control, text.c_str());
    };
}

DialogPilot::Action inOrder(std::vector<DialogPilot::Action> actions) {
    return [actions = std::move(actions)](HWND window) {
        return std::all_of(actions.begin(), actions.end(),
                           [window](const auto& action) { return action(window); });
    };
}

HWND windowOf(DWORD processId, const DialogPilot::Match& match) {
    struct Search {
        DWORD processId;
        const DialogPilot::Match& match;
        HWND found;
    } search{processId, match, nullptr};
    EnumWindows(
        [](HWND window, LPARAM parameter) -> BOOL {
            auto& search = *reinterpret_cast<Search*>(parameter);
            DWORD owner = 0;
            GetWindowThreadProcessId(window, &owner);
            if (owner == search.processId && IsWindowVisible(window) && IsWindowEnabled(window) &&
                search.match(window))
                search.found = window;
            return !search.found;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::wstring windowText(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

std::wstring windowClass(HWND window) {
    wchar_t name[256] = {};
    return {name, static_cast<std::size_t>(GetClassNameW(window, name, 256))};
}

std::wstring messageBoxText(HWND box) {
    return windowText(GetDlgItem(box, messageBoxTextId));
}

HICON messageBoxIcon(HWND box) {
    for (HWND child = GetWindow(box, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (windowClass(child) == L"Static" && (GetWindowLongPtrW(child, GWL_STYLE) & SS_TYPEMASK) == SS_ICON)
            return reinterpret_cast<HICON>(SendMessageW(child, STM_GETICON, 0, 0));
    }
    return nullptr;
}

} // namespace host
