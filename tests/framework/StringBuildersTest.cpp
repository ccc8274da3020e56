// Builders that put texts together piece by piece.
#include "SorvaneBase/StringBuilders.h"

#include "SorvaneBase/Conversions.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

TEST(U8StringBuilderTest, JoinsPiecesInOrder) {
    Sorvane::U8StringBuilder builder;
    EXPECT_STREQ(builder.c_str(), "");
    builder.append("error code=").append(-7).append(Sorvane::u8string(", ")).append(INT_MIN);
    EXPECT_STREQ(builder.c_str(), "error code=-7, -2147483648");
}

TEST(U8StringBuilderTest, KeepsWideTextLossless) {
    const std::wstring text = L"D:\\Účty;漢字 \xD83D\xDE00 \xD800";
    Sorvane::U8StringBuilder builder;
    builder.append("x").appendInAcp(text.c_str());
    std::wstring back;
    EXPECT_TRUE(Sorvane::c_u8u16(back, static_cast<const Sorvane::u8string&>(builder)));
    EXPECT_EQ(back, L"x" + text);
}

TEST(U8StringBuilderTest, AppendsNothingForNull) {
    Sorvane::U8StringBuilder builder;
    builder.append("a").append(static_cast<const char*>(nullptr)).appendInAcp(nullptr);
    EXPECT_STREQ(builder.c_str(), "a");
}

TEST(AStringBuilderTest, JoinsPiecesInOrder) {
    Sorvane::AStringBuilder builder;
    EXPECT_STREQ(builder.c_str(), L"");
    builder.append(L"SOFTWARE")
        .append(L"\\")
        .append(Sorvane::astring(L"Báze"))
        .append(static_cast<const wchar_t*>(nullptr));
    EXPECT_STREQ(builder.c_str(), L"SOFTWARE\\Báze");
    EXPECT_EQ(static_cast<const Sorvane::astring&>(builder), L"SOFTWARE\\Báze");
}

} // namespace
