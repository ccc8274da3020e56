// Why the mail client did not take a message.
#include "host/MailFailure.h"

#include <windows.h>

#include <mapi.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>
#include <system_error>

namespace host {
namespace {

struct Meaning {
    ULONG code;
    const char* textKey; ///< in the section ScanHost.Export
    const char* text;
};

// Those that a new message with attachments and without recipients can meet.
constexpr Meaning meanings[] = {
    {MAPI_E_DISK_FULL, "Reason.DiskFull", "the disk is full"},
    {MAPI_E_INSUFFICIENT_MEMORY, "Reason.NoMemory", "there is not enough memory"},
    {MAPI_E_ACCESS_DENIED, "Reason.MailDenied", "the mail client was denied access"},
    {MAPI_E_TOO_MANY_SESSIONS, "Reason.TooManySessions", "too many programs are using the mail client"},
    {MAPI_E_TOO_MANY_FILES, "Reason.TooManyAttachments", "the mail client does not take so many attachments"},
    {MAPI_E_ATTACHMENT_NOT_FOUND, "Reason.AttachmentMissing", "the mail client did not find an attachment"},
    {MAPI_E_ATTACHMENT_OPEN_FAILURE, "Reason.AttachmentNotOpened",
     "the mail client could not open an attachment"},
    {MAPI_E_ATTACHMENT_WRITE_FAILURE, "Reason.AttachmentNotStored",
     "the mail client could not store an attachment"},
    {MAPI_E_TEXT_TOO_LARGE, "Reason.SubjectTooLong", "the subject is too long"},
    {MAPI_E_NETWORK_FAILURE, "Reason.Network", "the network failed"},
    {MAPI_E_NOT_SUPPORTED, "Reason.NoMailProgram",
     "no mail client takes messages from programs here; --register-draft-mail provides one"},
};

const Meaning* meaningOf(int code) {
    const auto* const meaning = std::ranges::find(meanings, static_cast<ULONG>(code), &Meaning::code);
    return meaning == std::end(meanings) ? nullptr : meaning;
}

} // namespace

MailFailure::MailFailure() {
    bxutils::setSystemLogListener(this);
}

MailFailure::~MailFailure() {
    bxutils::setSystemLogListener(nullptr);
}

void MailFailure::logged(std::int32_t, const char* message, const char*, std::int32_t) noexcept {
    if (const auto logged = codeIn(message))
        code = logged;
}

std::optional<int> MailFailure::codeIn(std::string_view message) {
    constexpr std::string_view prefix = "MAPI failure, error code=";
    if (!message.starts_with(prefix))
        return std::nullopt;
    const std::string_view number = message.substr(prefix.size());
    int value = 0;
    if (std::from_chars(number.data(), number.data() + number.size(), value).ec != std::errc())
        return std::nullopt;
    return value;
}

const char* MailFailure::textKey(int code) {
    const Meaning* const meaning = meaningOf(code);
    return meaning ? meaning->textKey : nullptr;
}

std::optional<std::string> MailFailure::reason() const {
    if (!code)
        return std::nullopt;
    const Meaning* const meaning = meaningOf(*code);
    const std::string name = "Simple MAPI code " + std::to_string(*code);
    if (!meaning)
        return "the mail client gave no reason but " + name;
    return meaning->text + (" (" + name + ")");
}

} // namespace host
