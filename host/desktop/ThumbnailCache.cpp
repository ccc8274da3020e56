// Keeps the thumbnails that were used last.
#include "host/desktop/ThumbnailCache.h"

namespace host {

std::shared_ptr<const Thumbnail> ThumbnailCache::find(const PageVersion& page) {
    const auto place = places.find(page);
    if (place == places.end())
        return nullptr;
    entries.splice(entries.begin(), entries, place->second);
    return place->second->second;
}

void ThumbnailCache::put(const PageVersion& page, std::shared_ptr<const Thumbnail> thumbnail) {
    if (const auto place = places.find(page); place != places.end()) {
        total -= place->second->second->bytes();
        entries.erase(place->second);
        places.erase(place);
    }
    total += thumbnail->bytes();
    entries.emplace_front(page, std::move(thumbnail));
    places[page] = entries.begin();
    while (total > limit)
        removeOldest();
}

void ThumbnailCache::clear() {
    entries.clear();
    places.clear();
    total = 0;
}

void ThumbnailCache::removeOldest() {
    total -= entries.back().second->bytes();
    places.erase(entries.back().first);
    entries.pop_back();
}

} // namespace host
