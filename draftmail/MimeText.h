// Texts and bytes in the forms that mail messages allow.
//
// Texts are UTF-8. Every line made here ends with CR LF and has at most 76 columns where there is a choice; a line
// of an address cannot be broken and may be longer, but never nears the 998 columns that messages allow.
#pragma once

#include "draftmail/Moment.h"

#include <string>
#include <string_view>
#include <vector>

namespace draftmail {

/// UTF-16 to UTF-8; half a surrogate pair becomes U+FFFD.
std::string utf8(std::wstring_view text);

/// A header field with a free text, folded, in encoded words (RFC 2047) where it is not short, plain ASCII.
/// Characters that would end the line or have no place in one become blanks.
std::string textField(std::string_view name, std::string_view text);

struct Mailbox {
    std::string name; ///< the person's; may be empty
    std::string address;
};

/// A header field with a list of mailboxes, which must not be empty.
std::string addressField(std::string_view name, const std::vector<Mailbox>& mailboxes);

/// Whether it is the plain ASCII "local@domain" that can stand between angle brackets as it is.
bool isAddress(std::string_view text);

/// A parameter to follow a header field's value, with the ";" before it: quoted where that can hold the value,
/// otherwise in the extended form of RFC 2231, in several pieces if need be. Without a line end after it.
std::string parameter(std::string_view name, std::string_view value);

/// The same, but instead of the extended form encoded words (RFC 2047) between the quotes. No standard has them there;
/// but many mail programs write and read them, and some of those do not know the extended form, or not in pieces.
std::string encodedParameter(std::string_view name, std::string_view value);

/// The value of a "Date" field.
std::string dateText(const Moment& moment);

/// In columns, where there is a choice.
constexpr std::size_t longestLine = 76;

/// How many bytes make one line of base64.
constexpr std::size_t bytesPerBase64Line = 57;

/// Replaces `lines` with the bytes in base64. A text may be encoded piecemeal when all pieces but the last have
/// whole lines of bytes.
void encodeBase64(std::string_view bytes, std::string& lines);

} // namespace draftmail
