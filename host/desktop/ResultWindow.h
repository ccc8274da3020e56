// Tells how an export has ended.
#pragma once

#include "afxwin.h"

#include <functional>
#include <string>

namespace host {

/// What is told of an export, in the person's language.
struct ExportReport {
    enum class Kind { Done, Stopped, Failed };

    Kind kind = Kind::Done;
    std::wstring title;
    std::wstring text;
    std::wstring pathLabel;
    std::wstring path;    ///< empty when there is none to show
    bool canOpen = false; ///< whether the path is one that can be opened
    std::wstring details; ///< for who is asked for help, in lines; empty when there are none
};

class ResultWindow : public CDialog {
public:
    /// @param report  must outlive the dialog, as must what opens the path
    ResultWindow(CWnd& owner, const ExportReport& report,
                 const std::function<void(const std::wstring&)>& open);

protected:
    BOOL OnInitDialog() override;
    afx_msg void OnOpen();
    afx_msg void OnCopy();

    DECLARE_MESSAGE_MAP()

private:
    void fitText();
    void removeBand(int label, int field);
    /// Moves what lies below a place up, and makes the window smaller by as much.
    void moveUp(LONG from, LONG distance);
    /// On the screen.
    CRect placeOf(int control) const;

    const ExportReport& report;
    const std::function<void(const std::wstring&)>& open;
};

} // namespace host
