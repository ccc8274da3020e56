// The calls of Simple MAPI that make a draft.
//
// They return the codes of Simple MAPI and let no exception out. The attachments are in the draft when they return,
// so that the caller may remove its files. After a failure there is no draft:
//
//   MAPI_E_TOO_MANY_FILES, MAPI_E_TOO_MANY_RECIPIENTS             more than MapiMessages.h allows
//   MAPI_E_ATTACHMENT_NOT_FOUND                                   there is no such file, or no path is given
//   MAPI_E_ATTACHMENT_OPEN_FAILURE                                the file cannot be opened or read
//   MAPI_E_BAD_RECIPTYPE                                          a recipient is of none of the classes
//   MAPI_E_ACCESS_DENIED                                          the user may not write to the drafts folder
//   MAPI_E_DISK_FULL                                              the draft does not fit
//   MAPI_E_INSUFFICIENT_MEMORY, MAPI_E_FAILURE                    anything else
#pragma once

#include "draftmail/Desktop.h"
#include "draftmail/MapiMessages.h"

#include <windows.h>

#include <mapi.h>

namespace draftmail {

// SUCCESS_SUCCESS means that the draft is there. That no program opened it is no failure: the user has been told where
// it is and can open it by hand, and a caller told of a failure would be asked to try again and leave a second draft.
// When the user wants no program to open it, the result is MAPI_E_USER_ABORT; the draft stays.
//
// Texts are in the ANSI code page of the process, which may be UTF-8.
//
// Only a call with MAPI_DIALOG is served. Without it the caller wants the message sent with no further question,
// which nobody here can do: MAPI_E_NOT_SUPPORTED.

/// @param owner  the caller's window or 0
ULONG sendMail(const MapiMessage* message, FLAGS flags, ULONG_PTR owner, Desktop& desktop) noexcept;
ULONG sendMail(const MessageW* message, FLAGS flags, ULONG_PTR owner, Desktop& desktop) noexcept;

/// The same for files listed in texts, as MAPISendDocuments takes them.
ULONG sendDocuments(ULONG_PTR owner, const char* delimiter, const char* paths, const char* names,
                    Desktop& desktop) noexcept;

// On the user's own desktop.

ULONG sendMail(const MapiMessage* message, FLAGS flags, ULONG_PTR owner) noexcept;
ULONG sendMail(const MessageW* message, FLAGS flags, ULONG_PTR owner) noexcept;
ULONG sendDocuments(ULONG_PTR owner, const char* delimiter, const char* paths, const char* names) noexcept;

} // namespace draftmail
