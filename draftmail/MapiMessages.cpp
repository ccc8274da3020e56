// What callers of Simple MAPI hand over, read into drafts.
#include "draftmail/MapiMessages.h"

#include "draftmail/FileNameText.h"
#include "draftmail/MapiError.h"

#include <shlwapi.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace draftmail {
namespace {

/// @param flags  MB_ERR_INVALID_CHARS to get nothing for a text that is none of the code page
std::wstring fromCodePage(const char* text, UINT codePage, DWORD flags = 0) {
    if (!text || !*text)
        return {};
    const int size = MultiByteToWideChar(codePage, flags, text, -1, nullptr, 0);
    if (size == 0) {
        if (GetLastError() == ERROR_NO_UNICODE_TRANSLATION)
            return {};
        throw MapiError(MAPI_E_FAILURE);
    }
    std::wstring result(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(codePage, flags, text, -1, result.data(), size);
    result.pop_back();
    return result;
}

/// Programs that hand over UTF-8 differ in which texts they mean by it; what is no UTF-8 is in the code page.
std::wstring fromUtf8Or(UINT codePage, const char* text) {
    std::wstring result = fromCodePage(text, CP_UTF8, MB_ERR_INVALID_CHARS);
    return result.empty() ? fromCodePage(text, codePage) : result;
}

std::wstring afterLast(const wchar_t* separators, const std::wstring& text) {
    return text.substr(text.find_last_of(separators) + 1);
}

Attachment attachment(const std::wstring& path, const std::wstring& name) {
    if (path.empty())
        throw MapiError(MAPI_E_ATTACHMENT_NOT_FOUND);
    // Some callers give a path as the name too; others write "1/2" and mean it.
    std::wstring shown = fileNameText(afterLast(L"\\", name));
    if (shown.find_first_not_of(L" .") == std::wstring::npos)
        shown = fileNameText(afterLast(L"\\/", path));
    return {path, std::move(shown)};
}

/// What is the address in the forms that callers write it in: "SMTP:" or "mailto:" before it, angle brackets and blanks
/// around it.
std::wstring bareAddress(std::wstring_view text) {
    const auto trim = [&text] {
        constexpr std::wstring_view around = L" \t<>";
        text.remove_prefix(std::min(text.find_first_not_of(around), text.size()));
        text = text.substr(0, text.find_last_not_of(around) + 1);
    };
    trim();
    for (const std::wstring_view prefix : {std::wstring_view(L"SMTP:"), std::wstring_view(L"mailto:")})
        if (text.size() >= prefix.size() &&
            StrCmpNIW(text.data(), prefix.data(), static_cast<int>(prefix.size())) == 0)
            text.remove_prefix(prefix.size());
    trim();
    return std::wstring(text);
}

std::optional<Mailbox> mailbox(const std::wstring& name, const std::wstring& address) {
    Mailbox box{utf8(name), utf8(bareAddress(address))};
    if (!isAddress(box.address))
        box = {"", utf8(bareAddress(name))};
    if (!isAddress(box.address))
        return std::nullopt;
    return box;
}

std::vector<Mailbox>& recipientsOf(Draft& draft, ULONG recipientClass) {
    switch (recipientClass) {
    case MAPI_TO:
        return draft.to;
    case MAPI_CC:
        return draft.cc;
    case MAPI_BCC:
        return draft.bcc;
    default:
        throw MapiError(MAPI_E_BAD_RECIPTYPE);
    }
}

/// @param text  makes UTF-16 of the message's texts, which may be missing
template <typename Message, typename Text> Draft draftOf(const Message& message, const Text& text) {
    if (message.nFileCount > mostFiles)
        throw MapiError(MAPI_E_TOO_MANY_FILES);
    if (message.nRecipCount > mostRecipients)
        throw MapiError(MAPI_E_TOO_MANY_RECIPIENTS);
    if ((message.nFileCount != 0 && !message.lpFiles) || (message.nRecipCount != 0 && !message.lpRecips))
        throw MapiError(MAPI_E_FAILURE);

    Draft draft;
    draft.subject = text(message.lpszSubject);
    draft.note = text(message.lpszNoteText);
    for (ULONG i = 0; i < message.nRecipCount; ++i) {
        const auto& recipient = message.lpRecips[i];
        std::vector<Mailbox>& recipients = recipientsOf(draft, recipient.ulRecipClass);
        if (std::optional<Mailbox> box = mailbox(text(recipient.lpszName), text(recipient.lpszAddress)))
            recipients.push_back(std::move(*box));
    }
    for (ULONG i = 0; i < message.nFileCount; ++i) {
        const auto& file = message.lpFiles[i];
        draft.attachments.push_back(attachment(text(file.lpszPathName), text(file.lpszFileName)));
    }
    return draft;
}

std::vector<std::wstring> split(const std::wstring& list, wchar_t delimiter) {
    std::vector<std::wstring> parts;
    if (list.empty())
        return parts;
    std::size_t start = 0;
    for (std::size_t end = 0; (end = list.find(delimiter, start)) != std::wstring::npos; start = end + 1)
        parts.push_back(list.substr(start, end - start));
    parts.push_back(list.substr(start));
    return parts;
}

} // namespace

Draft draftOf(const MapiMessage& message, UINT codePage) {
    if (message.ulReserved == CP_UTF8)
        return draftOf(message, [codePage](const char* text) { return fromUtf8Or(codePage, text); });
    return draftOf(message, [codePage](const char* text) { return fromCodePage(text, codePage); });
}

Draft draftOf(const MessageW& message) {
    return draftOf(message, [](const wchar_t* text) { return text ? std::wstring(text) : std::wstring(); });
}

Draft draftOfDocuments(const char* delimiter, const char* paths, const char* names, UINT codePage) {
    // Without a delimiter there is one document.
    const wchar_t separator = fromCodePage(delimiter, codePage).c_str()[0];
    const std::vector<std::wstring> pathList = split(fromCodePage(paths, codePage), separator);
    std::vector<std::wstring> nameList = split(fromCodePage(names, codePage), separator);
    if (pathList.size() > mostFiles)
        throw MapiError(MAPI_E_TOO_MANY_FILES);
    nameList.resize(pathList.size());
    Draft draft;
    for (std::size_t i = 0; i < pathList.size(); ++i)
        if (!pathList[i].empty())
            draft.attachments.push_back(attachment(pathList[i], nameList[i]));
    return draft;
}

} // namespace draftmail
