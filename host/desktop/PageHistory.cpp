// What the pages were before the changes to them.
#include "host/desktop/PageHistory.h"

namespace host {
namespace {

constexpr std::size_t mostStates = 100;

} // namespace

void PageHistory::record(PageState now) {
    if (now.pages == states[present].pages) {
        states[present].order = now.order;
        return;
    }
    states.resize(present + 1);
    states.push_back(std::move(now));
    if (states.size() > mostStates)
        states.erase(states.begin());
    present = states.size() - 1;
}

} // namespace host
