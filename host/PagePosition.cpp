// Follows which page an engine is at.
#include "host/PagePosition.h"

#include <algorithm>

namespace host {

void PagePosition::pageAsked(const FilePage& page) {
    if (started && pages[index].get() == &page)
        return;
    // Pages come in their order, so the next one is nearly always the right one.
    const auto from = pages.begin() + static_cast<std::ptrdiff_t>(index);
    const auto isPage = [&page](const auto& other) { return other.get() == &page; };
    auto found = std::find_if(from, pages.end(), isPage);
    if (found == pages.end())
        found = std::find_if(pages.begin(), from, isPage);
    if (found == pages.end())
        return;
    started = true;
    index = static_cast<std::size_t>(found - pages.begin());
    whenAtPage(index);
}

} // namespace host
