// Makes thumbnails in the background.
#pragma once

#include "host/desktop/CallbackWindow.h"
#include "host/desktop/ThumbnailCache.h"
#include "host/desktop/ThumbnailSource.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace host {

/// Makes the thumbnails that are asked for, one at a time, on a thread of low priority of its own: the one asked for last
/// comes first, because that is what the person looks at now. Keeps 64 MB of those made.
///
/// Thread: the user-interface thread.
class ThumbnailLoader final : public ThumbnailSource {
public:
    /// @param whenLoaded  called from the message loop when some have come since the last call
    explicit ThumbnailLoader(std::function<void()> whenLoaded);
    /// Ends the making, in the middle of a picture too.
    ~ThumbnailLoader();
    ThumbnailLoader(const ThumbnailLoader&) = delete;
    ThumbnailLoader& operator=(const ThumbnailLoader&) = delete;

    /// Forgets those that have been made with another size.
    void setSize(int pixels) override;
    std::shared_ptr<const Thumbnail> find(const PageVersion& page) override;
    void forgetRequests() override;

private:
    struct Request {
        PageVersion page;
        int size = 0;

        friend bool operator==(const Request&, const Request&) = default;
    };
    struct Result {
        Request request;
        std::shared_ptr<const Thumbnail> thumbnail;
    };

    void makeThumbnails();
    std::optional<Request> nextRequest();
    void takeResults();

    std::function<void()> whenLoaded;
    ThumbnailCache cache;
    int size = 0;
    CallbackWindow window;
    std::atomic<bool> ending = false;

    std::mutex mutex;
    std::condition_variable requestArrived;
    std::vector<Request> requests;    ///< the newest comes last
    std::optional<Request> beingMade; ///< by the thread, now
    std::vector<Result> results;      ///< not yet taken

    std::thread thread;
};

} // namespace host
