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
    const char* text;
};

// Those that a new message with attachments and without recipients can meet.
constexpr Meaning meanings[] = {
    {MAPI_E_DISK_FULL, "the disk is full"},
    {MAPI_E_INSUFFICIENT_MEMORY, "there is not enough memory"},
    {MAPI_E_ACCESS_DENIED, "the mail client was denied access"},
    {MAPI_E_TOO_MANY_SESSIONS, "too many programs are using the mail client"},
    {MAPI_E_TOO_MANY_FILES, "the mail client does not take so many attachments"},
    {MAPI_E_ATTACHMENT_NOT_FOUND, "the mail client did not find an attachment"},
    {MAPI_E_ATTACHMENT_OPEN_FAILURE, "the mail client could not open an attachment"},
    {MAPI_E_ATTACHMENT_WRITE_FAILURE, "the mail client could not store an attachment"},
    {MAPI_E_TEXT_TOO_LARGE, "the subject is too long"},
    {MAPI_E_NETWORK_FAILURE, "the network failed"},
    {MAPI_E_NOT_SUPPORTED,
     "no mail client takes messages from programs here; --register-draft-mail provides one"},
};

} // namespace

MailFailure::MailFailure() {
    bxutils::setSystemLogListener(this);
}

MailFailure::~MailFailure() {
    bxutils::setSystemLogListener(nullptr);
}

void MailFailure::logged(std::int32_t, const char* message, const char*, std::int32_t) noexcept {
    constexpr std::string_view prefix = "MAPI failure, error code=";
    const std::string_view text = message;
    if (!text.starts_with(prefix))
        return;
    const std::string_view number = text.substr(prefix.size());
    int value = 0;
    if (std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc())
        code = value;
}

std::optional<std::string> MailFailure::reason() const {
    if (!code)
        return std::nullopt;
    const auto* const meaning = std::ranges::find(meanings, static_cast<ULONG>(*code), &Meaning::code);
    const std::string name = "Simple MAPI code " + std::to_string(*code);
    if (meaning == std::end(meanings))
        return "the mail client gave no reason but " + name;
    return meaning->text + (" (" + name + ")");
}

} // namespace host
