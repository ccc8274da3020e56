// Adds many files without keeping the window from its work.
#pragma once

#include "host/desktop/CallbackWindow.h"
#include "host/desktop/PageCollection.h"

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace host {

/// Adds files and the pages of folders to a collection, working for a short time again and again: in between, the
/// thread's message loop, whoever's it is, handles what else there is. The first pages are added at once, more of them a
/// few times in a second, because showing thousands anew takes longer than looking at a file.
///
/// The collection may be changed meanwhile. What is being added goes before the page that stood at its position, and
/// once that one is gone, to where it was last.
///
/// Thread: the user-interface thread. The callbacks come from its message loop.
class PageAdder {
public:
    /// @param pages      not owned; outlives the adder
    /// @param whenAdded  comes each time that some pages have been added, with how many
    /// @param whenDone   comes with all that was left out when everything that add() was given, in however many calls,
    ///                   has been dealt with. May show a dialog, and may add.
    PageAdder(PageCollection& pages, std::function<void(std::size_t added)> whenAdded,
              std::function<void(std::vector<LeftOut> leftOut)> whenDone);

    /// Starts adding, behind what is being added already. A folder stands for the images and PDF files directly in
    /// it, sorted as people count; a file is taken whatever its type.
    /// @param filesAndFolders  full paths
    /// @param position         before which page, or the end
    void add(std::vector<std::wstring> filesAndFolders, std::size_t position);

    bool isAdding() const noexcept { return timer.isCalling(); }

private:
    /// What one call of add() asked for.
    struct Job {
        std::deque<std::wstring> paths; ///< of files and folders
        std::deque<std::wstring> files; ///< those of the first of them, which is no longer among the paths
        FilePages made;                 ///< what the files before them became, to be put among the pages soon
        bxbase::Reference<FilePage> before; ///< null for the end
        std::size_t position = 0;           ///< where that was last
    };

    void addSome();
    bool makeNext(Job& job);
    void openNextPath(Job& job);
    std::size_t insertMade(Job& job);
    std::size_t currentPosition(const Job& job) const;

    PageCollection& pages;
    std::function<void(std::size_t)> whenAdded;
    std::function<void(std::vector<LeftOut>)> whenDone;
    std::deque<Job> jobs;
    std::vector<LeftOut> leftOut;
    std::chrono::steady_clock::time_point nextShow; ///< when pages may be added again although more will come
    CallbackWindow timer;
};

} // namespace host
