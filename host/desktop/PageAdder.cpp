// Adds many files without keeping the window from its work.
#include "host/desktop/PageAdder.h"

#include "SorvaneBase/bxdisk/File.h"
#include "host/FolderFiles.h"
#include "host/HostError.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host {
namespace {

// Hardly felt as a delay of what the person does meanwhile.
constexpr std::chrono::milliseconds slice{30};
constexpr std::chrono::milliseconds betweenShows{250};

} // namespace

PageAdder::PageAdder(PageCollection& pages, std::function<void(std::size_t)> whenAdded,
                     std::function<void(std::vector<LeftOut>)> whenDone)
    : pages(pages), whenAdded(std::move(whenAdded)), whenDone(std::move(whenDone)),
      timer([this] { addSome(); }) {}

void PageAdder::add(std::vector<std::wstring> filesAndFolders, std::size_t position) {
    Job job;
    job.paths.assign(std::move_iterator(filesAndFolders.begin()), std::move_iterator(filesAndFolders.end()));
    if (position < pages.size())
        job.before = pages[position];
    job.position = position;
    jobs.push_back(std::move(job));
    timer.startCalls();
}

void PageAdder::addSome() {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + slice;
    std::size_t added = 0;
    while (!jobs.empty() && Clock::now() < end) {
        if (makeNext(jobs.front()))
            continue;
        added += insertMade(jobs.front());
        jobs.pop_front();
    }
    if (!jobs.empty() && Clock::now() >= nextShow)
        added += insertMade(jobs.front());
    if (added) {
        whenAdded(added);
        nextShow = Clock::now() + betweenShows;
    }
    if (jobs.empty()) {
        timer.stopCalls();
        whenDone(std::exchange(leftOut, {}));
    }
}

/// Returns false when nothing is left to be made.
bool PageAdder::makeNext(Job& job) {
    if (!job.files.empty()) {
        std::ranges::move(pages.make({job.files.front()}, leftOut), std::back_inserter(job.made));
        job.files.pop_front();
        return true;
    }
    if (job.paths.empty())
        return false;
    openNextPath(job);
    return true;
}

void PageAdder::openNextPath(Job& job) {
    const std::wstring path = std::move(job.paths.front());
    job.paths.pop_front();
    if (!bxdisk::File(path).isDirectory()) {
        job.files.push_back(path);
        return;
    }
    try {
        const FolderFiles found = filesOfFolder(path);
        job.files.assign(found.pages.begin(), found.pages.end());
        for (const std::wstring& other : found.others)
            leftOut.push_back({LeftOut::Why::NoPage, other, ERROR_SUCCESS});
        if (found.pages.empty())
            leftOut.push_back({LeftOut::Why::NoPages, path, ERROR_SUCCESS});
    } catch (const FileError& error) {
        leftOut.push_back({LeftOut::Why::Unreadable, path, error.code()});
    }
}

std::size_t PageAdder::insertMade(Job& job) {
    const FilePages made = std::exchange(job.made, {});
    job.position = currentPosition(job);
    pages.insert(job.position, made);
    job.position += made.size();
    return made.size();
}

std::size_t PageAdder::currentPosition(const Job& job) const {
    if (!job.before)
        return pages.size();
    if (job.position < pages.size() && pages[job.position] == job.before)
        return job.position;
    const auto found = std::ranges::find(pages.pages(), job.before);
    return found == pages.pages().end() ? std::min(job.position, pages.size())
                                        : static_cast<std::size_t>(found - pages.pages().begin());
}

} // namespace host
