// Keeps the thumbnails that were used last.
#pragma once

#include "host/desktop/Thumbnail.h"

#include <windows.h>

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

namespace host {

/// A page's file as it was at one time, so that a file that was scanned anew is not shown as it was before.
struct PageVersion {
    std::wstring path;
    LONGLONG written = 0; ///< as FilePage::written() tells

    bool operator==(const PageVersion&) const = default;
    bool operator<(const PageVersion& other) const {
        return std::tie(path, written) < std::tie(other.path, other.written);
    }
};

/// Thumbnails of up to a number of bytes in all; those that have not been used for the longest time make room. One that
/// is larger by itself is not kept.
///
/// Thread: one at a time.
class ThumbnailCache {
public:
    explicit ThumbnailCache(std::size_t limit) : limit(limit) {}

    /// Null when it is not there.
    std::shared_ptr<const Thumbnail> find(const PageVersion& page);
    void put(const PageVersion& page, std::shared_ptr<const Thumbnail> thumbnail);
    void clear();

    std::size_t bytes() const noexcept { return total; }

private:
    using Entry = std::pair<PageVersion, std::shared_ptr<const Thumbnail>>;

    void removeOldest();

    std::size_t limit;
    std::size_t total = 0;
    std::list<Entry> entries; ///< the one used last comes first
    std::map<PageVersion, std::list<Entry>::iterator> places;
};

} // namespace host
