// Conversions between the host's kinds of text, and from text to numbers.
#include "SorvaneBase/Conversions.h"

#include <windows.h>

#include <charconv>
#include <string_view>

namespace Sorvane {

namespace {

constexpr char32_t REPLACEMENT = 0xFFFD;

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Takes one code point, or one lone surrogate, off the front of a non-empty text.
char32_t takeCodePoint(std::wstring_view& text) {
    const char32_t unit = text[0];
    if (isHighSurrogate(unit) && text.size() > 1 && isLowSurrogate(text[1])) {
        const char32_t low = text[1];
        text.remove_prefix(2);
        return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
    }
    text.remove_prefix(1);
    return unit;
}

void appendUtf8(std::string& out, char32_t codePoint) {
    const auto trail = [&](unsigned shift) {
        out += static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        trail(0);
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        trail(6);
        trail(0);
    } else {
        out += static_cast<char>(0xF0 | (codePoint >> 18));
        trail(12);
        trail(6);
        trail(0);
    }
}

void appendUtf16(std::wstring& out, char32_t codePoint) {
    if (codePoint < 0x10000) {
        out += static_cast<wchar_t>(codePoint);
    } else {
        out += static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        out += static_cast<wchar_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    }
}

/// Takes one sequence off the front of a non-empty text. False for a malformed one: then `codePoint` is the
/// replacement and only the bytes that could have begun a well-formed sequence are gone.
bool takeSequence(std::string_view& text, char32_t& codePoint) {
    const auto byteAt = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned char lead = byteAt(0);
    if (lead < 0x80) {
        codePoint = lead;
        text.remove_prefix(1);
        return true;
    }

    std::size_t length = 0;
    // The second byte's range shuts out overlong forms and values beyond U+10FFFF.
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        codePoint = lead & 0x1F;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        codePoint = lead & 0x0F;
        lowest = lead == 0xE0 ? 0xA0 : 0x80;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        codePoint = lead & 0x07;
        lowest = lead == 0xF0 ? 0x90 : 0x80;
        highest = lead == 0xF4 ? 0x8F : 0xBF;
    }

    std::size_t used = 1;
    while (used < length && used < text.size() && byteAt(used) >= lowest && byteAt(used) <= highest) {
        codePoint = (codePoint << 6) | (byteAt(used) & 0x3F);
        lowest = 0x80;
        highest = 0xBF;
        ++used;
    }
    text.remove_prefix(used);
    if (used == length)
        return true;
    codePoint = REPLACEMENT;
    return false;
}

void encodeUtf8(u8string& out, std::wstring_view text) {
    u8string result;
    result.reserve(text.size());
    while (!text.empty())
        appendUtf8(result, takeCodePoint(text));
    out = std::move(result);
}

bool decodeUtf8(std::wstring& out, std::string_view text) {
    std::wstring result;
    result.reserve(text.size());
    bool wellFormed = true;
    while (!text.empty()) {
        char32_t codePoint = 0;
        if (!takeSequence(text, codePoint))
            wellFormed = false;
        // A pair in two three-byte forms reads as the character it means, but no encoder of ours wrote it.
        if (isLowSurrogate(codePoint) && !result.empty() && isHighSurrogate(result.back()))
            wellFormed = false;
        appendUtf16(result, codePoint);
    }
    out = std::move(result);
    return wellFormed;
}

/// Appends what the code page has for the text. False, with nothing appended, when it lacks a part of it.
bool appendInCodePage(std::string& out, std::wstring_view text, UINT codePage) {
    // UTF-8 lacks only lone surrogates, and refuses to be asked about replacements.
    const bool isUtf8 = codePage == CP_UTF8;
    const DWORD flags = isUtf8 ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    const char* const replacement = isUtf8 ? nullptr : "_";
    BOOL replaced = FALSE;
    BOOL* const replacedOut = isUtf8 ? nullptr : &replaced;

    const int units = static_cast<int>(text.size());
    const int size =
        WideCharToMultiByte(codePage, flags, text.data(), units, nullptr, 0, replacement, replacedOut);
    if (size <= 0 || replaced)
        return false;
    const std::size_t before = out.size();
    out.resize(before + static_cast<std::size_t>(size));
    WideCharToMultiByte(codePage, flags, text.data(), units, out.data() + before, size, nullptr, nullptr);
    return true;
}

} // namespace

bool c_u16u8(u8string& out, const wchar_t* utf16) {
    encodeUtf8(out, utf16 ? utf16 : L"");
    return utf16 != nullptr;
}

bool c_u16u8(u8string& out, const std::wstring& utf16) {
    encodeUtf8(out, utf16);
    return true;
}

bool c_u8u16(std::wstring& out, const char* utf8) {
    return decodeUtf8(out, utf8 ? utf8 : "") && utf8 != nullptr;
}

bool c_u8u16(std::wstring& out, const u8string& utf8) {
    return decodeUtf8(out, utf8);
}

bool c_u8acp(std::string& out, const char* utf8) {
    return c_u8acp(out, std::string(utf8 ? utf8 : "")) && utf8 != nullptr;
}

bool c_u8acp(std::string& out, const std::string& utf8) {
    return c_u8cp(out, utf8, GetACP());
}

bool c_u8cp(std::string& out, const std::string& utf8, unsigned codePage) {
    std::wstring wide;
    bool lossless = decodeUtf8(wide, utf8);
    std::string result;
    if (!wide.empty() && !appendInCodePage(result, wide, codePage)) {
        // One "_" for each character, not for each of a pair's two units.
        for (std::wstring_view rest = wide; !rest.empty();) {
            std::wstring_view character = rest;
            takeCodePoint(rest);
            character.remove_suffix(rest.size());
            if (!appendInCodePage(result, character, codePage)) {
                result += '_';
                lossless = false;
            }
        }
    }
    out = std::move(result);
    return lossless;
}

int string2Int(const std::string& text, bool& ok) {
    constexpr const char* BLANKS = " \t\r\n\v\f";
    ok = false;
    const std::size_t first = text.find_first_not_of(BLANKS);
    if (first == std::string::npos)
        return 0;
    std::string_view number(text);
    number = number.substr(first, number.find_last_not_of(BLANKS) + 1 - first);
    if (number[0] == '+') {
        number.remove_prefix(1);
        if (number.starts_with('-'))
            return 0;
    }
    int value = 0;
    const char* const end = number.data() + number.size();
    const auto [stop, error] = std::from_chars(number.data(), end, value);
    if (error != std::errc() || stop != end)
        return 0;
    ok = true;
    return value;
}

} // namespace Sorvane
