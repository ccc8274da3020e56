// Follows an export and can end it.
#include "host/desktop/ExportWatch.h"

#include <utility>

namespace host {

void ExportWatch::pageAsked(const FilePage& page) {
    if (position)
        position->pageAsked(page);
}

bool ExportWatch::mayGiveData() {
    if (!position || !stopped)
        return true;
    refused = true;
    return false;
}

void ExportWatch::begin(const FilePages& pages, std::function<void(std::size_t)> whenAtPage) {
    stopped = false;
    refused = false;
    position.emplace(pages, std::move(whenAtPage));
}

void ExportWatch::end() {
    position.reset();
}

std::optional<std::size_t> ExportWatch::current() const {
    return position ? position->current() : std::nullopt;
}

} // namespace host
