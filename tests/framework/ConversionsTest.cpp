// Conversions between the host's kinds of text, and from text to numbers.
#include "SorvaneBase/Conversions.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <climits>
#include <random>

namespace {

using Sorvane::c_u16u8;
using Sorvane::c_u8acp;
using Sorvane::c_u8cp;
using Sorvane::c_u8u16;

std::wstring encodeUtf16(char32_t codePoint) {
    if (codePoint < 0x10000)
        return std::wstring(1, static_cast<wchar_t>(codePoint));
    return {static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10)),
            static_cast<wchar_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF))};
}

struct Pair {
    std::wstring utf16;
    std::string utf8;
};

const std::vector<Pair> WELL_FORMED = {
    {L"", ""},
    {L"Scan 1", "Scan 1"},
    {std::wstring(L"a\0b", 3), std::string("a\0b", 3)},
    {L"\u007F\u0080\u07FF\u0800\uFFFF", "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF"},
    {L"Pěnkava", "P\xC4\x9Bnkava"},
    {L"\xD83D\xDE00", "\xF0\x9F\x98\x80"},
    {L"\xDBFF\xDFFF", "\xF4\x8F\xBF\xBF"},
    {L"x\xD800", "x\xED\xA0\x80"},
    {L"\xDFFFy", "\xED\xBF\xBFy"},
    {L"\xDC00\xD800", "\xED\xB0\x80\xED\xA0\x80"},
};

TEST(ConversionsTest, WellFormedTextConvertsBothWays) {
    for (const auto& [utf16, utf8] : WELL_FORMED) {
        std::string narrow = "old";
        std::wstring wide = L"old";
        EXPECT_TRUE(c_u16u8(narrow, utf16));
        EXPECT_EQ(narrow, utf8);
        EXPECT_TRUE(c_u8u16(wide, utf8));
        EXPECT_EQ(wide, utf16);
    }
}

TEST(ConversionsTest, EveryCodePointAndEveryLoneSurrogateRoundTrips) {
    std::string utf8;
    std::wstring utf16;
    for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
        const std::wstring text = encodeUtf16(codePoint);
        ASSERT_TRUE(c_u16u8(utf8, text)) << std::hex << static_cast<std::uint32_t>(codePoint);
        ASSERT_TRUE(c_u8u16(utf16, utf8)) << std::hex << static_cast<std::uint32_t>(codePoint);
        ASSERT_EQ(utf16, text) << std::hex << static_cast<std::uint32_t>(codePoint);
    }
}

TEST(ConversionsTest, RandomWideTextRoundTrips) {
    std::mt19937 random(1);
    for (int round = 0; round < 20000; ++round) {
        std::wstring text(random() % 12, L'\0');
        for (wchar_t& unit : text)
            unit = static_cast<wchar_t>(random() % 3 ? 0xD700 + random() % 0xA00 : random() % 0x10000);
        std::string utf8;
        std::wstring back;
        ASSERT_TRUE(c_u16u8(utf8, text));
        ASSERT_TRUE(c_u8u16(back, utf8));
        ASSERT_EQ(back, text);
    }
}

TEST(ConversionsTest, MalformedUtf8GetsReplacementCharacters) {
    const std::vector<Pair> cases = {
        {L"\uFFFD", "\x80"}, // a trail byte alone
        {L"a\uFFFD\uFFFDb", "a\xFE\xFF"
                            "b"},                // bytes that never occur
        {L"\uFFFD\uFFFD", "\xC0\xAF"},           // overlong, two bytes
        {L"\uFFFD\uFFFD\uFFFD", "\xE0\x80\xAF"}, // overlong, three bytes
        {L"\uFFFD\uFFFD\uFFFD\uFFFD", "\xF0\x80\x80\xAF"},
        {L"\uFFFD\uFFFD\uFFFD\uFFFD", "\xF4\x90\x80\x80"}, // beyond U+10FFFF
        {L"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD", "\xF8\x88\x80\x80\x80"},
        {L"\uFFFD", "\xE2\x82"},   // cut off at the end
        {L"\uFFFD(", "\xE2\x82("}, // cut off by another character
        {L"\uFFFD\u20AC", "\xF0\x9F\x98\xE2\x82\xAC"},
    };
    for (const auto& [utf16, utf8] : cases) {
        std::wstring wide;
        EXPECT_FALSE(c_u8u16(wide, utf8));
        EXPECT_EQ(wide, utf16) << testing::PrintToString(utf8);
    }
}

TEST(ConversionsTest, APairInThreeByteFormsIsReadButNotCalledWellFormed) {
    std::wstring wide;
    EXPECT_FALSE(c_u8u16(wide, "\xED\xA0\xBD\xED\xB8\x80"));
    EXPECT_EQ(wide, L"\xD83D\xDE00");
}

TEST(ConversionsTest, RandomBytesGiveTextThatConvertsBackAndForth) {
    std::mt19937 random(2);
    // Mostly bytes that begin or continue sequences, so that near misses come up.
    constexpr unsigned char LEADS[] = {0xC2, 0xDF, 0xE0, 0xED, 0xEF, 0xF0, 0xF4, 0x80, 0x9F, 0xA0, 0xBF};
    for (int round = 0; round < 50000; ++round) {
        std::string bytes(random() % 12, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random() % 4 ? LEADS[random() % std::size(LEADS)] : random() % 256);
        std::wstring wide;
        std::string utf8;
        std::wstring again;
        const bool wellFormed = c_u8u16(wide, bytes);
        ASSERT_TRUE(c_u16u8(utf8, wide));
        ASSERT_TRUE(c_u8u16(again, utf8));
        ASSERT_EQ(again, wide);
        ASSERT_EQ(wellFormed, utf8 == bytes) << testing::PrintToString(bytes);
    }
}

TEST(ConversionsTest, AMissingTextGivesAnEmptyOneAndFalse) {
    std::string narrow = "old";
    std::wstring wide = L"old";
    std::string acp = "old";
    EXPECT_FALSE(c_u16u8(narrow, static_cast<const wchar_t*>(nullptr)));
    EXPECT_FALSE(c_u8u16(wide, static_cast<const char*>(nullptr)));
    EXPECT_FALSE(c_u8acp(acp, static_cast<const char*>(nullptr)));
    EXPECT_EQ(narrow, "");
    EXPECT_EQ(wide, L"");
    EXPECT_EQ(acp, "");
}

TEST(ConversionsTest, TheInputMayBeTheOutput) {
    std::string text = "P\xC4\x9Bnkava";
    EXPECT_TRUE(c_u8cp(text, text, 1250));
    EXPECT_EQ(text, "P\xECnkava");
}

TEST(ConversionsTest, PointerFormsReadToTheTerminator) {
    std::string narrow;
    std::wstring wide;
    EXPECT_TRUE(c_u16u8(narrow, L"ž\0x"));
    EXPECT_TRUE(c_u8u16(wide, "\xC5\xBE\0x"));
    EXPECT_EQ(narrow, "\xC5\xBE");
    EXPECT_EQ(wide, L"ž");
}

struct CodePageCase {
    unsigned codePage;
    std::wstring text;
    std::string expected;
    bool lossless;
};

TEST(ConversionsTest, CodePagesGetAnUnderscoreForEachCharacterTheyLack) {
    const std::vector<CodePageCase> cases = {
        {1250, L"", "", true},
        {1250, L"Žluťoučký kůň", "\x8Elu\x9Dou\xE8k\xFD k\xF9\xF2", true},
        {1252, L"€ è", "\x80 \xE8", true},
        {1252, L"漢字 x", "__ x", false},
        {1252, L"\u0159", "_", false},               // not "r"
        {1252, L"\uFF21\u2215\u221E", "___", false}, // look-alikes of A, / and 8
        {1252, L"a\xD83D\xDE00z", "a_z", false},     // a pair is one character
        {1252, L"a\xD83Dz", "a_z", false},           // half of one too
        {1252, L"e\u0301", "e_", false},
        {437, L"a_b\u00E9", "a_b\x82", true},
        {932, L"漢字 \u00E9", "\x8A\xBF\x8E\x9A _", false},
        {932, L"\u00A5\u203E", "__", false}, // not the backslash and the tilde
        {CP_UTF8, L"ž\xD83D\xDE00", "\xC5\xBE\xF0\x9F\x98\x80", true},
        {CP_UTF8, L"ž\xD83Dž", "\xC5\xBE_\xC5\xBE", false},
    };
    for (const CodePageCase& c : cases) {
        std::string utf8;
        c_u16u8(utf8, c.text);
        std::string out = "old";
        EXPECT_EQ(c_u8cp(out, utf8, c.codePage), c.lossless) << c.codePage << ": " << utf8;
        EXPECT_EQ(out, c.expected) << c.codePage << ": " << utf8;
    }
}

TEST(ConversionsTest, TheAnsiCodePageIsTheSystems) {
    std::string expected;
    const bool lossless = c_u8cp(expected, "P\xC4\x9Bnkava \xE6\xBC\xA2", GetACP());

    std::string out;
    EXPECT_EQ(c_u8acp(out, "P\xC4\x9Bnkava \xE6\xBC\xA2"), lossless);
    EXPECT_EQ(out, expected);
    EXPECT_TRUE(c_u8acp(out, std::string("plain\0text", 10)));
    EXPECT_EQ(out, std::string("plain\0text", 10));
}

TEST(ConversionsTest, EveryAnsiCodePageYieldsOnlyWhatItReadsBack) {
    for (const unsigned codePage :
         {874u, 932u, 936u, 949u, 950u, 1250u, 1251u, 1252u, 1253u, 1254u, 1255u, 1256u, 1257u, 1258u}) {
        for (char32_t codePoint = 0x20; codePoint < 0x3000; ++codePoint) {
            const std::wstring text = encodeUtf16(codePoint);
            std::string utf8;
            std::string bytes;
            c_u16u8(utf8, text);
            if (!c_u8cp(bytes, utf8, codePage)) {
                ASSERT_EQ(bytes, "_");
                continue;
            }
            wchar_t back[4] = {};
            const int units =
                MultiByteToWideChar(codePage, 0, bytes.data(), static_cast<int>(bytes.size()), back, 4);
            ASSERT_EQ(std::wstring(back, static_cast<std::size_t>(units)), text) << codePage;
        }
    }
}

struct IntCase {
    const char* text;
    int value;
    bool ok;
};

TEST(ConversionsTest, WholeDecimalIntegersAreRead) {
    const IntCase cases[] = {
        {"0", 0, true},
        {"007", 7, true},
        {"+12", 12, true},
        {"-12", -12, true},
        {" \t42\r\n", 42, true},
        {"2147483647", INT_MAX, true},
        {"-2147483648", INT_MIN, true},
        {"2147483648", 0, false},
        {"-2147483649", 0, false},
        {"99999999999999999999", 0, false},
        {"", 0, false},
        {"  ", 0, false},
        {"+", 0, false},
        {"-", 0, false},
        {"+-5", 0, false},
        {"--5", 0, false},
        {"- 5", 0, false},
        {"12a", 0, false},
        {"1 2", 0, false},
        {"0x10", 0, false},
        {"1.0", 0, false},
    };
    for (const IntCase& c : cases) {
        bool ok = !c.ok;
        EXPECT_EQ(Sorvane::string2Int(c.text, ok), c.value) << '"' << c.text << '"';
        EXPECT_EQ(ok, c.ok) << '"' << c.text << '"';
    }
}

TEST(ConversionsTest, AnIntegerWithANulInsideIsNone) {
    bool ok = true;
    EXPECT_EQ(Sorvane::string2Int(std::string("1\0", 2), ok), 0);
    EXPECT_FALSE(ok);
}

} // namespace
