// What the person enters and answers in the windows of engines.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace host {

/// Looks over the person's shoulder, because engines tell the host neither where they export to nor what they have
/// asked. It reads the dialogs of the thread when a button ends them, and touches nothing.
///
/// One at a time. Thread: the user-interface thread.
class EngineDialogs {
public:
    EngineDialogs();
    ~EngineDialogs();
    EngineDialogs(const EngineDialogs&) = delete;
    EngineDialogs& operator=(const EngineDialogs&) = delete;

    /// The first of the full paths entered in the dialog that was confirmed last before the export; one that exists comes before those
    /// that do not. None when no path was entered.
    std::optional<std::wstring> place() const;

    /// The last file that the person has let the engine overwrite.
    const std::optional<std::wstring>& overwritten() const { return overwrittenFile; }

    /// Whether the person's last answer to a question was No.
    bool isRefused() const { return refused; }

    /// The engine's dialog is over. What is entered from now on, say in a mail client's windows, is no place.
    void exportBegins();

    /// The engine goes on: what was answered so far explains nothing that comes.
    void forgetAnswers();

private:
    static LRESULT CALLBACK onMessage(int code, WPARAM wParam, LPARAM lParam);
    void pressed(HWND dialog, int button);

    HHOOK hook;
    bool isExporting = false;
    std::vector<std::wstring> entries;
    std::optional<std::wstring> overwrittenFile;
    bool refused = false;
};

} // namespace host
