// A draft on its way into the drafts folder.
#pragma once

#include "host/UniqueHandle.h"

#include <windows.h>

#include <string>
#include <string_view>

namespace draftmail {

/// The name of a draft's file: its subject, as far as a file name can hold it, and the time.
std::wstring draftName(std::wstring_view subject, const SYSTEMTIME& local);

/// A file that appears in the folder only when it is whole. Everything throws MapiError.
class DraftFile {
public:
    /// Makes the folder when it is missing, but not the one that it lies in. Removes drafts there that were never
    /// finished.
    /// @param id  makes the temporary name unique
    DraftFile(const std::wstring& folder, const std::string& id);
    /// Removes what was written unless it was published.
    ~DraftFile();
    DraftFile(const DraftFile&) = delete;
    DraftFile& operator=(const DraftFile&) = delete;

    void write(std::string_view bytes);

    /// Gives the file its name once its bytes are on the disk, with a number after it while another file has that
    /// name, and the extension ".eml". Nothing may be written afterwards. Returns the full path.
    std::wstring publish(const std::wstring& name);

private:
    std::wstring folder;
    std::wstring path; ///< in the form for any length: the destructor must not need memory for it
    host::UniqueHandle file;
};

} // namespace draftmail
