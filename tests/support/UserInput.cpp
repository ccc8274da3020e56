#include "support/UserInput.h"

#include <gtest/gtest.h>

#include <utility>

namespace test {
namespace {

constexpr std::chrono::seconds LIMIT{10};
/// Drag and drop looks where the pointer is only so often: 20 times in a second under Wine.
constexpr std::chrono::milliseconds REST{150};

UserInput* current;

void send(const INPUT& input) {
    INPUT sent = input;
    SendInput(1, &sent, sizeof(sent));
}

void sendMouse(DWORD flags, LONG x = 0, LONG y = 0) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.dx = x;
    input.mi.dy = y;
    send(input);
}

void sendKey(WORD virtualKey, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.dwFlags = flags;
    send(input);
}

void handleMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

} // namespace

UserInput::UserInput()
    : lastProgress(std::chrono::steady_clock::now()), timer(SetTimer(nullptr, 0, 10, &onTimer)) {
    current = this;
}

UserInput::~UserInput() {
    KillTimer(nullptr, timer);
    current = nullptr;
    if (buttonIsDown)
        sendMouse(MOUSEEVENTF_LEFTUP);
}

void CALLBACK UserInput::onTimer(HWND, UINT, UINT_PTR, DWORD) {
    if (current)
        current->tick();
}

void UserInput::tick() {
    const auto now = std::chrono::steady_clock::now();
    if (steps.empty())
        return;
    // The step may end in a modal loop, in which the next one comes.
    Step step = std::move(steps.front());
    steps.pop_front();
    if (step.act()) {
        lastProgress = now;
    } else if (now - lastProgress < LIMIT) {
        steps.push_front(std::move(step));
    } else {
        ADD_FAILURE() << "waited in vain: " << step.name;
        gaveUp = true;
        steps.clear();
        sendKey(VK_ESCAPE, 0);
        sendKey(VK_ESCAPE, KEYEVENTF_KEYUP);
    }
}

UserInput& UserInput::then(std::string name, std::function<bool()> act) {
    steps.push_back({std::move(name), std::move(act)});
    return *this;
}

UserInput& UserInput::moveTo(std::function<POINT()> place) {
    return then("move", [this, place = std::move(place)] {
        lastMove = std::chrono::steady_clock::now();
        const POINT to = place();
        // The whole screen is 65,536 wide and high.
        const auto part = [](LONG pixels, int metric) {
            return (pixels * 65536 + 32768) / GetSystemMetrics(metric);
        };
        sendMouse(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE, part(to.x, SM_CXSCREEN), part(to.y, SM_CYSCREEN));
        return true;
    });
}

UserInput& UserInput::press() {
    return then("press", [this] {
        sendMouse(MOUSEEVENTF_LEFTDOWN);
        return buttonIsDown = true;
    });
}

UserInput& UserInput::release() {
    return then("release", [this] {
        if (std::chrono::steady_clock::now() - lastMove < REST)
            return false;
        sendMouse(MOUSEEVENTF_LEFTUP);
        buttonIsDown = false;
        return true;
    });
}

UserInput& UserInput::keyDown(WORD virtualKey) {
    return then("key down", [virtualKey] {
        sendKey(virtualKey, 0);
        return true;
    });
}

UserInput& UserInput::keyUp(WORD virtualKey) {
    return then("key up", [virtualKey] {
        sendKey(virtualKey, KEYEVENTF_KEYUP);
        return true;
    });
}

UserInput& UserInput::key(WORD virtualKey) {
    return keyDown(virtualKey).keyUp(virtualKey);
}

UserInput& UserInput::waitFor(std::string name, std::function<bool()> condition) {
    return then(std::move(name), std::move(condition));
}

bool UserInput::run() {
    lastProgress = std::chrono::steady_clock::now();
    while (!steps.empty()) {
        handleMessages();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    handleMessages();
    return !gaveUp;
}

bool pumpUntil(const std::function<bool()>& condition) {
    const auto limit = std::chrono::steady_clock::now() + LIMIT;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > limit)
            return false;
        handleMessages();
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
    }
    return true;
}

} // namespace test
