// The program's main window.
#pragma once

#include "host/EnginesManager.h"
#include "host/desktop/ExportBar.h"

#include <afxwin.h>

namespace host {

/// Shows what can be done with the pages and does it. What fails is told to the person and never ends the program.
///
/// Thread: the user-interface thread. Destroying the window ends the thread's message loop.
class MainWindow : public CWnd {
public:
    /// @param manager  has the export targets; not owned
    explicit MainWindow(const EnginesManager& manager) : manager(manager) {}
    ~MainWindow() override;

    /// Made hidden. False when the system refuses.
    BOOL create();

    /// Takes all texts from the current language and all export targets from the manager, again.
    void setTexts();

    /// To be asked for each message of the loop: true for one that was a shortcut and has been dealt with.
    bool translate(MSG& message);

private:
    LRESULT OnCreate(WPARAM wParam, LPARAM lParam);
    LRESULT OnDestroy(WPARAM wParam, LPARAM lParam);
    LRESULT OnDpiChanged(WPARAM wParam, LPARAM lParam);
    LRESULT OnInitMenuPopup(WPARAM wParam, LPARAM lParam);
    void OnExit() { PostMessage(WM_CLOSE); }
    void OnAbout();
    afx_msg void OnSize(UINT nType, int cx, int cy);
    BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult) override;
    DECLARE_MESSAGE_MAP()

    void layOut();
    bool isPossible(UINT command) const;
    void updateCommands();

    const EnginesManager& manager;
    ExportBar exports;
    CWnd status;
    HACCEL shortcuts = nullptr;
};

} // namespace host
