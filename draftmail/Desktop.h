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

    /// Shows the draft to the user, or tells the user where it is. Returns ERROR_SUCCESS when a program was started
    /// for it, ERROR_CANCELLED when the user wanted none, or why there is none.
    /// @param owner  of windows that ask or tell the user something; may be null, or no window at all
    virtual DWORD open(const std::wstring& draft, HWND owner) noexcept = 0;
};

/// Windows' own: the folder "Drafts" among the user's documents, where a person finds what a mail program did not
/// take, and the program that the system has for the draft's kind of file. Where there is none, the system lets the
/// user choose one; when that comes to nothing, a message tells the user where the draft is.
class WindowsDesktop : public Desktop {
public:
    WindowsDesktop();
    /// @param visible  whether somebody sees windows: otherwise nothing is asked and nothing told, because nobody
    ///                 would answer
    explicit WindowsDesktop(bool visible);

    std::wstring draftsFolder() override;
    DWORD open(const std::wstring& draft, HWND owner) noexcept override;

private:
    bool visible;
};

} // namespace draftmail
