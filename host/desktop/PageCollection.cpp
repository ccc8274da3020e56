// The pages that the person has put together, in the order of their export.
#include "host/desktop/PageCollection.h"

#include "host/FolderFiles.h"
#include "host/HostError.h"

#include <algorithm>
#include <numeric>
#include <tuple>
#include <utility>

namespace host {
namespace {

std::ptrdiff_t offset(std::size_t position) {
    return static_cast<std::ptrdiff_t>(position);
}

/// Splits the pages of a range into those at the ascending indices and the others, each in their order.
std::pair<FilePages, FilePages> split(const FilePages& pages, const std::vector<std::size_t>& indices) {
    std::pair<FilePages, FilePages> result;
    auto next = indices.begin();
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const bool chosen = next != indices.end() && *next == i;
        (chosen ? result.first : result.second).push_back(pages[i]);
        next += chosen;
    }
    return result;
}

struct SortedPage {
    bxbase::Reference<FilePage> page;
    std::wstring name;
};

bool comesBeforeByName(const SortedPage& a, const SortedPage& b) {
    const FileFolder& folderOfA = a.page->parentFolder();
    const FileFolder& folderOfB = b.page->parentFolder();
    return &folderOfA == &folderOfB ? comesBefore(a.name, b.name)
                                    : comesBefore(folderOfA.path(), folderOfB.path());
}

bool comesBeforeByDate(const SortedPage& a, const SortedPage& b) {
    return a.page->written() == b.page->written() ? comesBeforeByName(a, b)
                                                  : a.page->written() < b.page->written();
}

} // namespace

FilePages PageCollection::pages(const std::vector<std::size_t>& indices) const {
    FilePages chosen;
    for (const std::size_t index : indices)
        chosen.push_back(list[index]);
    return chosen;
}

FilePages PageCollection::make(const std::vector<std::wstring>& files, std::vector<LeftOut>& leftOut) {
    FilePages made;
    for (const std::wstring& file : files) {
        try {
            made.push_back(maker.make(file));
        } catch (const FileError& error) {
            leftOut.push_back({LeftOut::Why::Unreadable, file, error.code()});
        }
    }
    return made;
}

void PageCollection::insert(std::size_t position, const FilePages& pages) {
    list.insert(list.begin() + offset(position), pages.begin(), pages.end());
}

void PageCollection::remove(const std::vector<std::size_t>& indices) {
    list = split(list, indices).second;
}

std::vector<std::size_t> PageCollection::move(const std::vector<std::size_t>& indices, std::size_t position) {
    auto [moved, others] = split(list, indices);
    const auto movedBefore = std::ranges::lower_bound(indices, position) - indices.begin();
    const std::size_t first = position - static_cast<std::size_t>(movedBefore);
    others.insert(others.begin() + offset(first), moved.begin(), moved.end());
    list = std::move(others);

    std::vector<std::size_t> newIndices(indices.size());
    std::iota(newIndices.begin(), newIndices.end(), first);
    return newIndices;
}

void PageCollection::sort(PageOrder order) {
    if (order == PageOrder::Own)
        return;
    std::vector<SortedPage> sorted;
    for (const auto& page : list)
        sorted.push_back({page, page->fileName()});
    std::ranges::stable_sort(sorted, order == PageOrder::Date ? comesBeforeByDate : comesBeforeByName);
    std::ranges::transform(sorted, list.begin(), &SortedPage::page);
}

} // namespace host
