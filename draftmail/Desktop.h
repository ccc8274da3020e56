// What drafts need from the user's desktop.
#pragma once

#include <windows.h>

#include <string>

namespace draftmail {

class Desktop {
public:
    virtual ~Desktop() = default;

    /// The folder that drafts are put into; the one that it lies in exists. Throws MapiError.
    virtual std::wstring draftsFolder() = 0;

    /// Shows the draft to the user. Returns ERROR_SUCCESS, or why not.
    /// @param owner  of windows that ask or tell the user something; may be null
    virtual DWORD open(const std::wstring& draft, HWND owner) noexcept = 0;
};

/// Windows' own: the folder "Drafts" among the user's documents, where a person finds what a mail program did not
/// take, and the program that the system has for the draft's kind of file. Where there is none, the system asks
/// the user which to take.
class WindowsDesktop : public Desktop {
public:
    std::wstring draftsFolder() override;
    DWORD open(const std::wstring& draft, HWND owner) noexcept override;
};

} // namespace draftmail
