// Drives modal dialogs from inside the program, as a user would.
#pragma once

#include <windows.h>

#include <chrono>
#include <deque>
#include <exception>
#include <functional>
#include <string>
#include <vector>

namespace host {

/// Answers the windows that come up while the thread is inside somebody else's modal loop.
///
/// A timer of the thread looks at the thread's visible, enabled top-level windows and acts on those that match:
/// first the next step of a queue, which must come in order, then any standing rule. The windows of other
/// threads and processes are never touched.
///
/// An action that makes a window wait for the user must post its message rather than send it, or the timer
/// would be stuck inside that window. One pilot per thread at a time.
class DialogPilot {
public:
    using Match = std::function<bool(HWND)>;
    /// Returns whether it could do its work; false tries again with the next tick.
    using Action = std::function<bool(HWND)>;

    /// @param limit  how long a step may wait for its window, and a dialog nobody answers may stay open, before
    ///               the pilot gives up and cancels what is open; zero waits forever
    explicit DialogPilot(std::chrono::milliseconds limit = std::chrono::milliseconds::zero());
    ~DialogPilot();
    DialogPilot(const DialogPilot&) = delete;
    DialogPilot& operator=(const DialogPilot&) = delete;

    /// Queues a step. The name appears in failure().
    DialogPilot& then(std::string name, Match match, Action action);

    /// Adds a standing rule, which applies whenever no step does.
    DialogPilot& always(Match match, Action action);

    /// Leaves such windows to whoever uses them: it does not act on them, nor count the time that they are open.
    DialogPilot& ignore(Match match);

    /// Whether every step has been done and the pilot has not given up.
    bool succeeded() const { return steps.empty() && failureText.empty(); }

    /// Why it has not: the step that waits and the windows that were open instead. Empty on success.
    std::string failure() const;

private:
    struct Step {
        std::string name;
        Match match;
        Action action;
    };

    static void CALLBACK onTimer(HWND, UINT, UINT_PTR, DWORD);
    std::vector<HWND> windowsToAnswer() const;
    void tick();
    bool actOn(HWND window, const Match& match, const Action& action);
    void giveUp(const std::vector<HWND>& windows);

    std::chrono::milliseconds limit;
    std::chrono::steady_clock::time_point lastProgress;
    std::deque<Step> steps;
    std::vector<Step> rules;
    std::vector<Match> ignored;
    std::string failureText;
    UINT_PTR timer = 0;
    bool acting = false;
};

// Matches.

/// A dialog or message box with exactly this title.
DialogPilot::Match dialogTitled(std::wstring title);
/// A dialog that has a control with this identifier.
DialogPilot::Match dialogWith(int controlId);
/// A system message box.
DialogPilot::Match anyMessageBox();

// Actions.

/// Presses a button; waits while it is disabled.
DialogPilot::Action click(int controlId);
/// Puts text into a control.
DialogPilot::Action enterText(int controlId, std::wstring text);
/// Does one after the other in the same tick.
DialogPilot::Action inOrder(std::vector<DialogPilot::Action> actions);

// Windows that no pilot reaches.

/// One of a process's top-level windows that can be seen and used and that matches, or null.
HWND windowOf(DWORD processId, const DialogPilot::Match& match);

// What can be read off a window.

std::wstring windowText(HWND window);
std::wstring windowClass(HWND window);
/// The text of a message box, without its title and buttons.
std::wstring messageBoxText(HWND box);
/// The picture of a message box, or null.
HICON messageBoxIcon(HWND box);

} // namespace host
