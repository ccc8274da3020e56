// What callers of Simple MAPI hand over, read into drafts.
#pragma once

#include "draftmail/Draft.h"

#include <windows.h>

#include <mapi.h>

namespace draftmail {

// The records in UTF-16, which not every <mapi.h> has.

struct FileDescW {
    ULONG ulReserved;
    ULONG flFlags;
    ULONG nPosition;
    LPWSTR lpszPathName;
    LPWSTR lpszFileName;
    LPVOID lpFileType;
};

struct RecipDescW {
    ULONG ulReserved;
    ULONG ulRecipClass;
    LPWSTR lpszName;
    LPWSTR lpszAddress;
    ULONG ulEIDSize;
    LPVOID lpEntryID;
};

struct MessageW {
    ULONG ulReserved;
    LPWSTR lpszSubject;
    LPWSTR lpszNoteText;
    LPWSTR lpszMessageType;
    LPWSTR lpszDateReceived;
    LPWSTR lpszConversationID;
    FLAGS flFlags;
    RecipDescW* lpOriginator;
    ULONG nRecipCount;
    RecipDescW* lpRecips;
    ULONG nFileCount;
    FileDescW* lpFiles;
};

/// More cannot be meant: no mail program opens such a message, and a count that a caller forgot to set must not
/// make us read on and on.
constexpr ULONG mostFiles = 100'000;
constexpr ULONG mostRecipients = 10'000;

// Subject, note, recipients and attachments. The rest has no place in a draft: originator, type, date,
// conversation and the attachments' positions within the text. A recipient has an address, or a name that is one,
// with or without "SMTP:" or "mailto:" before it; there is no address book to look other names up in. A recipient without
// one is left out, because the message would be lost otherwise, which the user is about to address anyway. Throws
// MapiError.

/// A message whose ulReserved is CP_UTF8 has texts in UTF-8.
/// @param codePage  of all other messages' texts; callers of MAPISendMail use CP_ACP
Draft draftOf(const MapiMessage& message, UINT codePage);
Draft draftOf(const MessageW& message);

/// A draft with the documents whose paths, and names if there are any, the texts list. Nothing between two delimiters,
/// or after the last, is no document.
/// @param delimiter  what separates them: the text's first character
Draft draftOfDocuments(const char* delimiter, const char* paths, const char* names, UINT codePage);

} // namespace draftmail
