// Texts and bytes in the forms that mail messages allow.
#include "draftmail/MimeText.h"

#include <gmock/gmock.h>

#include <cmath>
#include <numeric>

namespace {

using draftmail::addressField;
using draftmail::encodeBase64;
using draftmail::encodedParameter;
using draftmail::isAddress;
using draftmail::Moment;
using draftmail::parameter;
using draftmail::textField;
using draftmail::utf8;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2)
        lines.push_back(text.substr(start, end - start));
    lines.push_back(text.substr(start));
    return lines;
}

std::string base64(const std::string& bytes) {
    std::string lines = "what was there before";
    encodeBase64(bytes, lines);
    return lines;
}

std::string fromBase64(std::string_view digits) {
    constexpr std::string_view order = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0;
    unsigned count = 0;
    for (const char digit : digits.substr(0, digits.find('='))) {
        bits = bits << 6 | static_cast<unsigned>(order.find(digit));
        count += 6;
        if (count >= 8)
            bytes += static_cast<char>(bits >> (count -= 8) & 0xFF);
    }
    return bytes;
}

/// What stands in each encoded word (RFC 2047) of the text.
std::vector<std::string> encodedWordsIn(const std::string& text) {
    constexpr std::string_view start = "=?utf-8?B?";
    std::vector<std::string> words;
    for (std::size_t at = 0; (at = text.find(start, at)) != std::string::npos;) {
        at += start.size();
        words.push_back(fromBase64(std::string_view(text).substr(at, text.find("?=", at) - at)));
    }
    return words;
}

std::string joined(const std::vector<std::string>& texts) {
    return std::accumulate(texts.begin(), texts.end(), std::string());
}

MATCHER(IsWholeUtf8, "") {
    return MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, arg.data(), static_cast<int>(arg.size()),
                               nullptr, 0) != 0;
}

struct Encoding {
    std::string bytes;
    std::string lines;
};

class Base64Test : public testing::TestWithParam<Encoding> {};

TEST_P(Base64Test, IsThatOfTheStandard) {
    EXPECT_EQ(base64(GetParam().bytes), GetParam().lines);
}

INSTANTIATE_TEST_SUITE_P(Bytes, Base64Test,
                         testing::Values(Encoding{"", ""}, Encoding{"f", "Zg==\r\n"},
                                         Encoding{"fo", "Zm8=\r\n"}, Encoding{"foo", "Zm9v\r\n"},
                                         Encoding{"foob", "Zm9vYg==\r\n"}, Encoding{"foobar", "Zm9vYmFy\r\n"},
                                         Encoding{std::string(3, '\0'), "AAAA\r\n"},
                                         Encoding{"\xFF\xFE\xFD", "//79\r\n"},
                                         Encoding{"\xFB\xEF\xBE", "++++\r\n"}));

TEST(Base64LinesTest, HaveSeventySixColumns) {
    EXPECT_EQ(base64(std::string(57, '\0')), std::string(76, 'A') + "\r\n");
    EXPECT_EQ(base64(std::string(58, '\0')), std::string(76, 'A') + "\r\nAA==\r\n");
    EXPECT_EQ(base64(std::string(114, '\0')), std::string(76, 'A') + "\r\n" + std::string(76, 'A') + "\r\n");
}

TEST(TextFieldTest, KeepsShortAscii) {
    EXPECT_EQ(textField("Subject", "Invoices (3) = \"paid\""), "Subject: Invoices (3) = \"paid\"\r\n");
}

TEST(TextFieldTest, PutsOtherScriptsIntoAnEncodedWord) {
    EXPECT_EQ(textField("Subject", "Faktury \xC5\x99\xC3\xADjen"),
              "Subject: =?utf-8?B?RmFrdHVyeSDFmcOtamVu?=\r\n");
}

TEST(TextFieldTest, KeepsAsciiOfSeventySixColumnsAndEncodesMore) {
    EXPECT_EQ(textField("Subject", std::string(67, 'x')), "Subject: " + std::string(67, 'x') + "\r\n");
    EXPECT_THAT(textField("Subject", std::string(68, 'x')), testing::StartsWith("Subject: =?utf-8?B?"));
}

TEST(TextFieldTest, EncodesWhatWouldReadAsAnEncodedWordOrLoseItsBlanks) {
    EXPECT_EQ(textField("Subject", "=?x?="), "Subject: =?utf-8?B?PT94Pz0=?=\r\n");
    EXPECT_EQ(textField("Subject", " a"), "Subject: =?utf-8?B?IGE=?=\r\n");
    EXPECT_EQ(textField("Subject", "a "), "Subject: =?utf-8?B?YSA=?=\r\n");
}

TEST(TextFieldTest, CannotBeMadeToHoldAnotherField) {
    EXPECT_EQ(textField("Subject", "a\r\nBcc: b@example.com"), "Subject: a  Bcc: b@example.com\r\n");
}

TEST(TextFieldTest, FoldsBetweenWholeCharactersWithinTheColumns) {
    std::string text;
    for (int i = 0; i < 100; ++i)
        text += "x\xC5\x99\xE2\x82\xAC\xF0\x9F\x93\xA7";
    const std::string field = textField("Subject", text);
    std::vector<std::string> lines = linesOf(field);
    ASSERT_EQ(lines.back(), "");
    lines.pop_back();
    EXPECT_GT(lines.size(), 20U);
    EXPECT_THAT(lines, Each(SizeIs(testing::Le(76U))));
    const std::vector<std::string> words = encodedWordsIn(field);
    EXPECT_EQ(words.size(), lines.size());
    EXPECT_THAT(words, Each(IsWholeUtf8()));
    EXPECT_EQ(joined(words), text);
}

TEST(AddressFieldTest, NamesEachMailboxOnALineOfItsOwn) {
    EXPECT_EQ(addressField("To", {{"", "a@example.com"}, {"Jan \"Honza\" Nov", "b@example.com"}}),
              "To: a@example.com,\r\n \"Jan \\\"Honza\\\" Nov\" <b@example.com>\r\n");
}

TEST(AddressFieldTest, EncodesNamesInOtherScripts) {
    EXPECT_EQ(addressField("Cc", {{"Ji\xC5\x99\xC3\xAD", "j@example.com"}}),
              "Cc: =?utf-8?B?SmnFmcOt?=\r\n <j@example.com>\r\n");
}

TEST(AddressFieldTest, CannotBeMadeToHoldAnotherField) {
    EXPECT_EQ(addressField("To", {{"a\r\nBcc: x", "b@example.com"}}),
              "To: \"a  Bcc: x\" <b@example.com>\r\n");
}

TEST(AddressTest, IsOneAtSignBetweenPlainCharacters) {
    EXPECT_TRUE(isAddress("a.b+c@example.com"));
    for (const char* wrong :
         {"", "a", "@b", "a@", "a@b@c", "a b@c", "<a@b>", "a@b,c@d", "a@b\r\nX: y", "\xC5\x99@example.com"})
        EXPECT_FALSE(isAddress(wrong)) << wrong;
    EXPECT_TRUE(isAddress("a@" + std::string(252, 'b')));
    EXPECT_FALSE(isAddress("a@" + std::string(253, 'b')));
}

TEST(ParameterTest, QuotesPlainNames) {
    EXPECT_EQ(parameter("filename", "Page 1.jpg"), ";\r\n filename=\"Page 1.jpg\"");
}

TEST(ParameterTest, ExtendsNamesInOtherScriptsAndWithQuotes) {
    EXPECT_EQ(parameter("filename", "\xC5\x99 1.tif"), ";\r\n filename*=utf-8''%C5%99%201.tif");
    EXPECT_EQ(parameter("filename", "a\"b\\.tif"), ";\r\n filename*=utf-8''a%22b%5C.tif");
}

TEST(ParameterTest, BreaksLongNamesBetweenWholeCharacters) {
    std::string name;
    for (int i = 0; i < 60; ++i)
        name += "\xE2\x82\xAC";
    const std::vector<std::string> lines = linesOf(parameter("filename", name + ".tif"));
    ASSERT_GT(lines.size(), 3U);
    EXPECT_EQ(lines[0], ";");
    EXPECT_THAT(lines[1], testing::StartsWith(" filename*0*=utf-8''%E2%82%AC"));
    EXPECT_THAT(lines[2], testing::StartsWith(" filename*1*=%E2%82%AC"));
    EXPECT_THAT(lines, Each(SizeIs(testing::Le(76U))));
}

TEST(ParameterTest, BreaksLongAsciiNames) {
    const std::string longest(60, 'x');
    EXPECT_EQ(parameter("filename", longest), ";\r\n filename=\"" + longest + "\"");
    EXPECT_THAT(linesOf(parameter("filename", std::string(200, 'x'))), Each(SizeIs(testing::Le(76U))));
}

TEST(EncodedParameterTest, QuotesPlainNames) {
    EXPECT_EQ(encodedParameter("name", "Page 1.jpg"), ";\r\n name=\"Page 1.jpg\"");
}

TEST(EncodedParameterTest, PutsOtherScriptsAndQuotesIntoAnEncodedWord) {
    EXPECT_EQ(encodedParameter("name", "P\xC5\x99\xC3\xADloha.tif"),
              ";\r\n name=\"=?utf-8?B?UMWZw61sb2hhLnRpZg==?=\"");
    EXPECT_THAT(encodedWordsIn(encodedParameter("name", "a\"b")), ElementsAre("a\"b"));
}

TEST(EncodedParameterTest, CannotBeMadeToHoldAnotherField) {
    EXPECT_THAT(encodedWordsIn(encodedParameter("name", "a\r\nBcc: b")), ElementsAre("a  Bcc: b"));
}

class LongEncodedParameterTest : public testing::TestWithParam<std::string> {};

TEST_P(LongEncodedParameterTest, IsFoldedBetweenWholeCharactersWithinTheColumns) {
    std::string value;
    for (int i = 0; i < 200; ++i)
        value += GetParam();
    const std::string text = encodedParameter("name", value);
    EXPECT_THAT(linesOf(text), Each(SizeIs(testing::Le(76U))));
    EXPECT_TRUE(text.ends_with("?=\""));
    const std::vector<std::string> words = encodedWordsIn(text);
    EXPECT_THAT(words, Each(IsWholeUtf8()));
    EXPECT_EQ(joined(words), value);
}

// The third fills the columns in another way than the second.
INSTANTIATE_TEST_SUITE_P(Characters, LongEncodedParameterTest,
                         testing::Values("x", "\xC5\x99", "x\xE2\x82\xAC"));

TEST(DateTest, IsEnglishWithTheOffsetFromUtc) {
    Moment moment;
    moment.local = {2026, 11, 6, 7, 1, 2, 3, 0};
    moment.minutesAheadOfUtc = 60;
    EXPECT_EQ(dateText(moment), "Sat, 7 Nov 2026 01:02:03 +0100");
    moment.minutesAheadOfUtc = -210;
    EXPECT_EQ(dateText(moment), "Sat, 7 Nov 2026 01:02:03 -0330");
}

TEST(MomentTest, AgreesWithTheClockAndItsZone) {
    const Moment moment = Moment::now();
    FILETIME local;
    FILETIME utc;
    GetSystemTimeAsFileTime(&utc);
    ASSERT_TRUE(SystemTimeToFileTime(&moment.local, &local));
    const auto seconds = [](const FILETIME& time) {
        return static_cast<double>(ULARGE_INTEGER{{time.dwLowDateTime, time.dwHighDateTime}}.QuadPart) / 1e7;
    };
    EXPECT_LT(std::abs(seconds(local) - 60.0 * moment.minutesAheadOfUtc - seconds(utc)), 60.0);
}

TEST(Utf8Test, ReplacesHalfASurrogatePair) {
    EXPECT_EQ(utf8(L"\u0159\xD83D\xDCE7"), "\xC5\x99\xF0\x9F\x93\xA7");
    EXPECT_EQ(utf8(L"a\xD800z"), "a\xEF\xBF\xBDz");
    EXPECT_EQ(utf8(L""), "");
}

} // namespace
