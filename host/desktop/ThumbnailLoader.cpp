// Makes thumbnails in the background.
#include "host/desktop/ThumbnailLoader.h"

#include "host/desktop/PageDecoder.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <new>
#include <utility>

namespace host {
namespace {

constexpr std::size_t cacheBytes = 64 << 20;

} // namespace

ThumbnailLoader::ThumbnailLoader(std::function<void()> whenLoaded)
    : whenLoaded(std::move(whenLoaded)), cache(cacheBytes), window([this] { takeResults(); }),
      thread([this] { makeThumbnails(); }) {}

ThumbnailLoader::~ThumbnailLoader() {
    {
        const std::lock_guard lock(mutex);
        ending = true;
    }
    requestArrived.notify_one();
    thread.join();
}

void ThumbnailLoader::setSize(int pixels) {
    if (pixels == size)
        return;
    size = pixels;
    cache.clear();
    forgetRequests();
}

std::shared_ptr<const Thumbnail> ThumbnailLoader::find(const PageVersion& page) {
    if (auto thumbnail = cache.find(page))
        return thumbnail;
    const Request request{page, size};
    const std::lock_guard lock(mutex);
    if (beingMade == request || std::ranges::find(results, request, &Result::request) != results.end())
        return nullptr;
    std::erase(requests, request);
    requests.push_back(request);
    requestArrived.notify_one();
    return nullptr;
}

void ThumbnailLoader::forgetRequests() {
    const std::lock_guard lock(mutex);
    requests.clear();
}

void ThumbnailLoader::makeThumbnails() {
    SetThreadPriority(GetCurrentThread(), THREAD_PRIORITY_BELOW_NORMAL);
    // Decoders that others have installed may be COM objects like any.
    const bool initialized = SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    while (const std::optional<Request> request = nextRequest()) {
        try {
            Result result{*request, std::make_shared<const Thumbnail>(
                                        decodePage(request->page.path, request->size, ending))};
            const std::lock_guard lock(mutex);
            results.push_back(std::move(result));
            window.callSoon();
        } catch (const std::bad_alloc&) {
            // Who shows the page asks again when it paints, and there may be more memory by then.
        }
        const std::lock_guard lock(mutex);
        beingMade.reset();
    }
    if (initialized)
        CoUninitialize();
}

std::optional<ThumbnailLoader::Request> ThumbnailLoader::nextRequest() {
    std::unique_lock lock(mutex);
    requestArrived.wait(lock, [this] { return ending || !requests.empty(); });
    if (ending)
        return std::nullopt;
    beingMade = std::move(requests.back());
    requests.pop_back();
    return beingMade;
}

void ThumbnailLoader::takeResults() {
    std::vector<Result> taken;
    {
        const std::lock_guard lock(mutex);
        taken.swap(results);
    }
    for (Result& result : taken)
        if (result.request.size == size)
            cache.put(result.request.page, std::move(result.thumbnail));
    whenLoaded();
}

} // namespace host
