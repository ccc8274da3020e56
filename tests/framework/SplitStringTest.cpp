// Splits a text at a separator.
#include "SorvaneBase/bxparse/splitString.h"

#include <gtest/gtest.h>

namespace {

using Pieces = std::list<Sorvane::u8string>;

TEST(SplitStringTest, GivesOnePieceMoreThanSeparators) {
    const std::pair<const char*, Pieces> cases[] = {
        {"", {}},
        {"a", {"a"}},
        {";", {"", ""}},
        {"a;", {"a", ""}},
        {";a", {"", "a"}},
        {"D:\\Scans;C:\\Out;;D:\\Scans", {"D:\\Scans", "C:\\Out", "", "D:\\Scans"}},
        {"\xC5\xBE;\xE6\xBC\xA2", {"\xC5\xBE", "\xE6\xBC\xA2"}},
        {"a,b", {"a,b"}},
    };
    for (const auto& [text, expected] : cases) {
        Pieces pieces;
        bxparse::splitString(text, pieces, ';');
        EXPECT_EQ(pieces, expected) << '"' << text << '"';
    }
}

TEST(SplitStringTest, AppendsToWhatTheListHolds) {
    Pieces pieces = {"first"};
    bxparse::splitString("a,b", pieces, ',');
    EXPECT_EQ(pieces, (Pieces{"first", "a", "b"}));
}

} // namespace
