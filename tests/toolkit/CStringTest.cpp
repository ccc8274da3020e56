// CString and CList.
#include "afxtempl.h"
#include "afxwin.h"
#include "resource.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(CStringTest, NullPointerIsEmpty) {
    const CString text(static_cast<LPCWSTR>(nullptr));
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_STREQ(text, L"");
}

TEST(CStringTest, TakesPartOfAText) {
    EXPECT_EQ(CString(L"abcdef", 3), L"abc");
}

TEST(CStringTest, Appends) {
    CString text(L"a");
    text += L"b";
    text += L'c';
    text += CString(L"d");
    text += text;
    EXPECT_EQ(text + L"!" + CString(L"?"), L"abcdabcd!?");
    EXPECT_EQ(L"<" + text, L"<abcdabcd");
    EXPECT_EQ(text.GetLength(), 8);
}

TEST(CStringTest, Compares) {
    const CString text(L"Účet");
    EXPECT_EQ(text.Compare(L"Účet"), 0);
    EXPECT_LT(text.Compare(L"Účty"), 0);
    EXPECT_GT(text.Compare(L"Úč"), 0);
    EXPECT_EQ(CString(L"ABC").CompareNoCase(L"abc"), 0);
    EXPECT_NE(CString(L"ABC").CompareNoCase(L"abd"), 0);
    EXPECT_TRUE(CString(L"a") < CString(L"b"));
    EXPECT_TRUE(text != L"Účty");
}

TEST(CStringTest, FormatsWideText) {
    CString text;
    text.Format(L"%s: %u pages, %d %%", L"Příliš žluťoučký", 12u, -3);
    EXPECT_EQ(text, L"Příliš žluťoučký: 12 pages, -3 %");
}

TEST(CStringTest, FormatsItsOwnText) {
    CString text(L"x");
    text.Format(L"<%s>", text.GetString());
    EXPECT_EQ(text, L"<x>");
}

TEST(CStringTest, FormatsLongText) {
    const std::wstring longText(5000, L'ř');
    CString text;
    text.Format(L"%s", longText.c_str());
    EXPECT_EQ(text.GetString(), longText);
}

TEST(CStringTest, BufferHoldsTheTextAndTakesANewOne) {
    CString text(L"ab");
    LPWSTR buffer = text.GetBuffer(10);
    EXPECT_STREQ(buffer, L"ab");
    buffer[1] = L'c';
    buffer[2] = L'd';
    buffer[3] = L'\0';
    text.ReleaseBuffer();
    EXPECT_EQ(text, L"acd");
    text.GetBuffer();
    text.ReleaseBuffer(1);
    EXPECT_EQ(text, L"a");
}

TEST(CStringTest, LoadsFromTheStringTable) {
    CString text;
    EXPECT_TRUE(text.LoadString(IDS_GREETING));
    EXPECT_EQ(text, L"Dobrý den");
    EXPECT_FALSE(text.LoadString(9999));
    EXPECT_TRUE(text.IsEmpty());
}

TEST(CListTest, KeepsOrderAndPositions) {
    CList<UINT, UINT> list;
    const POSITION first = list.AddTail(5);
    for (UINT value = 6; value < 600; ++value)
        list.AddTail(value);
    EXPECT_EQ(list.GetHeadPosition(), first);
    UINT expected = 5;
    for (POSITION position = first; position;)
        EXPECT_EQ(list.GetNext(position), expected++);
    EXPECT_EQ(expected, 600u);
}

TEST(CListTest, FindsByValue) {
    CList<UINT, UINT> list;
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.GetHeadPosition(), nullptr);
    list.AddTail(1);
    const POSITION second = list.AddTail(2);
    EXPECT_EQ(list.Find(2), second);
    EXPECT_EQ(list.Find(3), nullptr);
    EXPECT_EQ(list.GetCount(), 2);
}

} // namespace
