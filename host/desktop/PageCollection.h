// The pages that the person has put together, in the order of their export.
#pragma once

#include "host/FilePage.h"
#include "host/desktop/PageOrder.h"

#include <windows.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace host {

/// A file or folder that was to be added and was not.
struct LeftOut {
    enum class Why {
        NoPage,     ///< a folder's file that is neither an image nor a PDF file
        NoPages,    ///< a folder that holds none of these
        Unreadable, ///< a file or folder of which `error` tells why it cannot be used, as FileError does
    };

    Why why = Why::Unreadable;
    std::wstring path;
    DWORD error = ERROR_SUCCESS;
};

/// A list of pages, each of which is a file of its own or the same as others'. Nobody is told of changes: who makes
/// them knows. Positions lie before a page, or at the end.
///
/// Thread: the user-interface thread.
class PageCollection {
public:
    /// @param watcher  given to each page; not owned; may be null
    explicit PageCollection(PageWatcher* watcher) : maker(watcher) {}

    std::size_t size() const noexcept { return list.size(); }
    const bxbase::Reference<FilePage>& operator[](std::size_t index) const { return list[index]; }

    /// All pages, as an export takes them.
    const FilePages& pages() const noexcept { return list; }
    FilePages pages(const std::vector<std::size_t>& indices) const;

    /// Looks each file over, of whatever type, and makes pages of those that can be read, in the order given; the
    /// others are appended to what was left out. Waits for the disk: PageAdder takes it a file at a time. The pages
    /// are not in the list until they are inserted.
    /// @param files  full paths
    FilePages make(const std::vector<std::wstring>& files, std::vector<LeftOut>& leftOut);

    /// Puts pages before the page at the position.
    /// @param position  not beyond the end
    void insert(std::size_t position, const FilePages& pages);

    /// @param indices  in ascending order, each once
    void remove(const std::vector<std::size_t>& indices);

    /// Puts pages, which need not be neighbours, one behind the other before the page that is now at the position.
    /// @param indices  in ascending order, each once
    /// @return where the pages are now
    std::vector<std::size_t> move(const std::vector<std::size_t>& indices, std::size_t position);

    /// Leaves the pages where they are when the order is the person's own.
    void sort(PageOrder order);

    /// Replaces all of them.
    void set(FilePages pages) { list = std::move(pages); }

private:
    PageMaker maker;
    FilePages list;
};

} // namespace host
