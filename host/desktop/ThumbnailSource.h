// Where the page view gets its pictures from.
#pragma once

#include "host/desktop/ThumbnailCache.h"

#include <memory>

namespace host {

/// Gives thumbnails as they are made.
///
/// Thread: the user-interface thread.
class ThumbnailSource {
public:
    /// How many pixels the longer side of thumbnails may have from now on; must be called before the first is asked for.
    virtual void setSize(int pixels) = 0;
    /// Null when it has not been made yet; then it is asked for, and the one asked for last is made before all others.
    virtual std::shared_ptr<const Thumbnail> find(const PageVersion& page) = 0;
    /// Forgets what has been asked for and is not being made yet.
    virtual void forgetRequests() = 0;

protected:
    ~ThumbnailSource() = default;
};

} // namespace host
