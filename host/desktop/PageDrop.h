// Drag and drop between the page view and whatever pages come from.
#pragma once

#include <windows.h>

#include <atltypes.h>
#include <ole2.h>
#include <wrl/client.h>

#include <string>
#include <vector>

namespace host {

/// Takes what is dropped on its window. All calls come on the window's thread.
class PageDropReceiver {
public:
    /// Pages or files are dragged over the window.
    virtual void draggedOver(CPoint screen) = 0;
    /// Nothing is over the window any longer, because it was dropped, has left, or was given up.
    virtual void dragEnded() = 0;
    /// Comes after dragEnded().
    virtual void filesDropped(std::vector<std::wstring> paths, CPoint screen) = 0;
    virtual void pagesDropped(CPoint screen) = 0;

protected:
    ~PageDropReceiver() = default;
};

/// Makes a window of this thread a target for files and folders, and for the window's own pages. OLE is open on the
/// thread for the target's lifetime. Where the window cannot be a target nothing can be dropped on it.
class PageDropTarget {
public:
    /// @param receiver  not owned
    PageDropTarget(HWND window, PageDropReceiver& receiver);
    ~PageDropTarget();
    PageDropTarget(const PageDropTarget&) = delete;
    PageDropTarget& operator=(const PageDropTarget&) = delete;

    /// Lets the user drag pages from this window, which only it itself accepts. Returns after the drop, which the
    /// receiver is told of, or when the user gave up.
    void dragPages();

private:
    class Target;

    HWND window;
    Microsoft::WRL::ComPtr<Target> target;
};

} // namespace host
