// Texts and bytes in the forms that mail messages allow.
#include "draftmail/MimeText.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace draftmail {
namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view wordStart = "=?utf-8?B?";
constexpr std::string_view wordEnd = "?=";

bool isControl(char character) {
    return static_cast<unsigned char>(character) < ' ' || character == '\x7f';
}

std::string oneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(line.begin(), line.end(), isControl, ' ');
    return line;
}

/// Whether a header field may hold the text as it is. Blanks at its ends would get lost.
bool isPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; }) &&
           !text.starts_with(' ') && !text.ends_with(' ') && text.find("=?") == std::string_view::npos;
}

/// Cuts as many whole characters as fit into `most` bytes off the front, but at least one.
std::string_view cutCharacters(std::string_view& text, std::size_t most) {
    const auto startsCharacter = [&](std::size_t at) { return (text[at] & 0xC0) != 0x80; };
    std::size_t length = std::min(std::max<std::size_t>(most, 1), text.size());
    while (length > 1 && length < text.size() && !startsCharacter(length))
        --length;
    while (length < text.size() && !startsCharacter(length))
        ++length;
    const std::string_view front = text.substr(0, length);
    text.remove_prefix(length);
    return front;
}

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Two digits for each value of twelve bits: half the look-ups of one digit for each six.
constexpr auto base64Pairs = [] {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t value = 0; value < pairs.size(); ++value)
        pairs[value] = {base64Digits[value >> 6], base64Digits[value & 63]};
    return pairs;
}();

constexpr std::size_t base64Size(std::size_t bytes) {
    return (bytes + 2) / 3 * 4;
}

/// Writes base64Size(bytes.size()) digits and returns where they end.
char* encodeLine(std::string_view bytes, char* out) {
    const auto byte = [&](std::size_t at) {
        return at < bytes.size() ? static_cast<unsigned>(static_cast<unsigned char>(bytes[at])) : 0U;
    };
    const auto put = [&](unsigned twelveBits) { out = std::copy_n(base64Pairs[twelveBits].data(), 2, out); };
    std::size_t at = 0;
    for (; at + 3 <= bytes.size(); at += 3) {
        const unsigned group = byte(at) << 16 | byte(at + 1) << 8 | byte(at + 2);
        put(group >> 12);
        put(group & 0xFFF);
    }
    const std::size_t rest = bytes.size() - at;
    if (rest != 0) {
        const unsigned group = byte(at) << 16 | byte(at + 1) << 8;
        put(group >> 12);
        put(group & 0xFFF);
        std::fill(out - (3 - rest), out, '=');
    }
    return out;
}

/// @param column     how much of the first line is taken already
/// @param following  how many columns the last line must leave
std::string encodedWords(std::string_view text, std::size_t column, std::size_t following = 0) {
    std::string words;
    while (!text.empty()) {
        const std::size_t digits = longestLine - column - following - wordStart.size() - wordEnd.size();
        const std::string_view piece = cutCharacters(text, digits / 4 * 3);
        words += wordStart;
        words.resize(words.size() + base64Size(piece.size()));
        encodeLine(piece, words.data() + words.size() - base64Size(piece.size()));
        words += wordEnd;
        if (!text.empty())
            words.append(lineEnd).append(" ");
        column = 1;
    }
    return words;
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            result += '\\';
        result += c;
    }
    return result + '"';
}

std::string percentEncoded(std::string_view text) {
    constexpr std::string_view hexDigits = "0123456789ABCDEF";
    constexpr std::string_view asTheyAre =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (asTheyAre.find(c) != std::string_view::npos)
            result += c;
        else
            result.append(1, '%').append(1, hexDigits[byte >> 4]).append(1, hexDigits[byte & 15]);
    }
    return result;
}

std::string parameterStart(std::string_view name) {
    return std::string(";").append(lineEnd).append(" ").append(name);
}

/// Whether the parameter can be the plain text in quotes, on one line.
bool fitsQuoted(std::string_view start, std::string_view value) {
    // Not every program undoes the backslash before a quote.
    return isPlain(value) && value.find_first_of("\"\\") == std::string_view::npos &&
           start.size() + std::string_view("=").size() + quoted(value).size() < lineEnd.size() + longestLine;
}

/// The text percent-encoded and cut into pieces of at most `most` columns. Characters stay whole: some programs
/// decode each piece for itself.
std::vector<std::string> percentEncodedPieces(std::string_view text, std::size_t most) {
    std::vector<std::string> pieces(1);
    while (!text.empty()) {
        const std::string character = percentEncoded(cutCharacters(text, 1));
        if (pieces.back().size() + character.size() > most)
            pieces.emplace_back();
        pieces.back() += character;
    }
    return pieces;
}

} // namespace

std::string utf8(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    std::string result(text.size() * 3, '\0');
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(),
                                         static_cast<int>(result.size()), nullptr, nullptr);
    result.resize(static_cast<std::size_t>(size));
    return result;
}

std::string textField(std::string_view name, std::string_view text) {
    const std::string line = oneLine(text);
    std::string field = std::string(name) + ": ";
    if (isPlain(line) && field.size() + line.size() <= longestLine)
        field += line;
    else
        field += encodedWords(line, field.size());
    return field.append(lineEnd);
}

std::string addressField(std::string_view name, const std::vector<Mailbox>& mailboxes) {
    std::string field = std::string(name) + ":";
    std::size_t lineStart = 0;
    for (const Mailbox& mailbox : mailboxes) {
        if (&mailbox != &mailboxes.front()) {
            field.append(",").append(lineEnd);
            lineStart = field.size();
        }
        field += ' ';
        const std::string person = oneLine(mailbox.name);
        if (person.empty()) {
            field += mailbox.address;
            continue;
        }
        const std::string address = "<" + mailbox.address + ">";
        const std::string plain = quoted(person) + " " + address;
        if (isPlain(person) && field.size() - lineStart + plain.size() < longestLine)
            field += plain;
        else
            field.append(encodedWords(person, field.size() - lineStart))
                .append(lineEnd)
                .append(" " + address);
    }
    return field.append(lineEnd);
}

bool isAddress(std::string_view text) {
    // The longest that mail servers take.
    constexpr std::size_t longest = 254;
    const std::size_t at = text.find('@');
    return text.size() <= longest && at != std::string_view::npos && at != 0 && at + 1 != text.size() &&
           text.find('@', at + 1) == std::string_view::npos &&
           std::all_of(text.begin(), text.end(), [](char c) {
               return c > ' ' && c <= '~' &&
                      std::string_view("()<>[]\\,;:\"").find(c) == std::string_view::npos;
           });
}

std::string parameter(std::string_view name, std::string_view value) {
    const std::string start = parameterStart(name);
    if (fitsQuoted(start, value))
        return start + "=" + quoted(value);

    constexpr std::string_view charset = "utf-8''";
    // Room for a number of four digits, its stars, the equals sign and the semicolon.
    const std::size_t room = longestLine - 1 - name.size() - 8 - charset.size();
    const std::vector<std::string> pieces = percentEncodedPieces(value, room);
    if (pieces.size() == 1)
        return start + "*=" + std::string(charset) + pieces.front();
    std::string all;
    for (std::size_t number = 0; number < pieces.size(); ++number) {
        all += start + "*" + std::to_string(number) + "*=";
        if (number == 0)
            all += charset;
        all += pieces[number];
    }
    return all;
}

std::string encodedParameter(std::string_view name, std::string_view value) {
    const std::string start = parameterStart(name);
    if (fitsQuoted(start, value))
        return start + "=" + quoted(value);

    const std::string opened = start + "=\"";
    const std::size_t column = opened.size() - opened.rfind('\n') - 1;
    return opened + encodedWords(oneLine(value), column, 1) + '"';
}

std::string dateText(const Moment& moment) {
    // Of the language of mail, not of the person.
    constexpr std::array days{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const SYSTEMTIME& time = moment.local;
    const int offset = std::abs(moment.minutesAheadOfUtc);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s, %d %s %04d %02d:%02d:%02d %c%02d%02d",
                  days.at(time.wDayOfWeek), time.wDay, months.at(time.wMonth - 1U), time.wYear, time.wHour,
                  time.wMinute, time.wSecond, moment.minutesAheadOfUtc < 0 ? '-' : '+', offset / 60,
                  offset % 60);
    return text.data();
}

void encodeBase64(std::string_view bytes, std::string& lines) {
    const std::size_t count = (bytes.size() + bytesPerBase64Line - 1) / bytesPerBase64Line;
    lines.resize(base64Size(bytes.size()) + count * lineEnd.size());
    char* out = lines.data();
    for (; !bytes.empty(); bytes.remove_prefix(std::min(bytesPerBase64Line, bytes.size()))) {
        out = encodeLine(bytes.substr(0, bytesPerBase64Line), out);
        out = std::copy(lineEnd.begin(), lineEnd.end(), out);
    }
}

} // namespace draftmail
