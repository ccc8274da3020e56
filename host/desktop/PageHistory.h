// What the pages were before the changes to them.
#pragma once

#include "host/FilePage.h"
#include "host/desktop/PageOrder.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace host {

/// The pages at one time. The references keep the pages alive, also those that have been removed from the list.
struct PageState {
    FilePages pages;
    PageOrder order = PageOrder::Own;
};

/// Goes back to earlier states of the list of pages, and forward again until something else is done. It knows a limited
/// number of states.
///
/// Thread: any one.
class PageHistory {
public:
    explicit PageHistory(PageState first) : states{std::move(first)} {}

    /// To be called after each change. One of the order alone is none of its own: nobody sees it.
    void record(PageState now);

    bool canUndo() const noexcept { return present > 0; }
    bool canRedo() const noexcept { return present + 1 < states.size(); }

    /// Returns what to go to. Only when there is something to go to; valid until the next call.
    const PageState& undo() { return states[--present]; }
    const PageState& redo() { return states[++present]; }

private:
    std::vector<PageState> states; ///< in the order in which they came; never empty
    std::size_t present = 0;
};

} // namespace host
