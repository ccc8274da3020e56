// The pages that lie in a folder.
#pragma once

#include <string>
#include <vector>

namespace host {

/// The paths of the files directly in a folder, each list sorted by comesBefore(). Hidden files and those of the system
/// are in neither.
struct FolderFiles {
    std::vector<std::wstring> pages; ///< images and PDF files, as their extensions tell
    std::vector<std::wstring> others;
};

/// Lists a folder. Throws FileError when it cannot be read.
/// @param folder  the full path, with or without a separator at the end
FolderFiles filesOfFolder(const std::wstring& folder);

/// Whether a name or path comes before another as people count ("2" before "10"). The order is the system's own, which
/// may contradict itself: sort by it with std::stable_sort only.
bool comesBefore(const std::wstring& a, const std::wstring& b);

} // namespace host
