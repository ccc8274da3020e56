// Turns the page arguments of a command line into pages.
#pragma once

#include "host/FilePage.h"

#include <string>
#include <vector>

namespace host {

/// The pages that were asked for, in order, and what of it was left out.
struct PageList {
    FilePages pages;
    /// One sentence for each folder of which files were left out.
    std::vector<std::string> remarks;
};

/// Collects pages from the arguments, of which each is
/// - a file, taken whatever its type;
/// - a folder: the images and PDF files directly in it, sorted as people count ("2" before "10"), without
///   hidden ones. Its other files are left out with a remark;
/// - "@" and the name of a list in UTF-8 with the path of one file on each line; empty lines do not count.
///
/// Throws HostError at the first file that cannot be exported, list that cannot be read, or folder without
/// pages.
PageList collectPages(const std::vector<std::wstring>& arguments, PageWatcher* watcher);

} // namespace host
