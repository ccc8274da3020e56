// The line at the bottom of the main window.
#pragma once

#include <afxwin.h>

#include <string>

namespace host {

/// Says how many pages there are and which of them an export takes.
class StatusBar : public CWnd {
public:
    BOOL create(CWnd& parent, UINT id);

    void show(const std::wstring& pages, const std::wstring& exported);

    /// Moves to the bottom of the parent and gives its height.
    int fitHeight();

private:
    int widthOf(const std::wstring& text) const;
};

} // namespace host
