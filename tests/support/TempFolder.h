// A fresh, empty folder for one test.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace test {

/// Made empty under the user's temporary directory, removed with all its content at the end.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::wstring& path() const { return folder; }
    std::string utf8() const;

    /// The full path of a file or folder inside.
    std::wstring operator/(const std::wstring& name) const { return folder + L"\\" + name; }

    /// Writes a file inside, replacing one of that name, and returns its full path.
    std::wstring write(const std::wstring& name, const std::string& bytes) const;

    /// The names of all files and folders directly inside, sorted.
    std::vector<std::wstring> list() const;

    /// The full paths of all files inside, however deep, but for those that hold the bytes of some write().
    std::vector<std::wstring> filesOfOthers() const;

private:
    std::wstring folder;
    mutable std::set<std::string> ownContents; ///< what write() wrote
};

/// The names of all files and folders directly inside a folder, sorted.
std::vector<std::wstring> namesIn(const std::wstring& folder);

/// The bytes of a file; a file that cannot be read fails the test and reads as empty.
std::string readFile(const std::wstring& path);

} // namespace test
