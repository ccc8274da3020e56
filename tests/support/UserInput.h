// The mouse and the keyboard as a user works them.
#pragma once

#include <windows.h>

#include <chrono>
#include <deque>
#include <functional>
#include <string>

namespace test {

/// Moves the real pointer and presses real buttons and keys, one step after the other, from a timer of the thread: so
/// it goes on inside the modal loops of others, and each step finds what came before it dealt with. Tests that use
/// it need the pointer for themselves.
class UserInput {
public:
    UserInput();
    /// Releases the left button if it is down.
    ~UserInput();
    UserInput(const UserInput&) = delete;
    UserInput& operator=(const UserInput&) = delete;

    /// Where to, on the screen, is asked when the step comes.
    UserInput& moveTo(std::function<POINT()> place);
    UserInput& press();
    /// Waits until the pointer has rested for a moment.
    UserInput& release();
    UserInput& click(std::function<POINT()> place) { return moveTo(std::move(place)).press().release(); }
    UserInput& key(WORD virtualKey);
    UserInput& keyDown(WORD virtualKey);
    UserInput& keyUp(WORD virtualKey);
    /// Goes on when the condition holds.
    UserInput& waitFor(std::string name, std::function<bool()> condition);

    /// Handles the thread's messages until all steps are done. False when one took longer than ten seconds, which
    /// fails the test; a drag under way is then given up.
    bool run();

private:
    struct Step {
        std::string name;
        std::function<bool()> act; ///< whether it is done
    };

    static void CALLBACK onTimer(HWND, UINT, UINT_PTR, DWORD);
    UserInput& then(std::string name, std::function<bool()> act);
    void tick();

    std::deque<Step> steps;
    std::chrono::steady_clock::time_point lastProgress;
    std::chrono::steady_clock::time_point lastMove;
    UINT_PTR timer;
    bool buttonIsDown = false;
    bool gaveUp = false;
};

/// Handles the thread's messages until the condition holds; false when it does not within ten seconds.
bool pumpUntil(const std::function<bool()>& condition);

} // namespace test
