// What the program with a window remembers.
#include "host/desktop/DesktopSettings.h"

#include "support/TestHost.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

class DesktopSettingsTest : public testing::Test {
protected:
    test::MemoryStore store;
    host::DesktopSettings settings{store};
};

TEST_F(DesktopSettingsTest, AreThoseOfWindowsAtFirst) {
    EXPECT_EQ(settings.language(), L"");
    EXPECT_FALSE(settings.windowPlace());
    EXPECT_EQ(settings.pageOrder(), host::PageOrder::Own);
    EXPECT_FALSE(settings.mailLimit());
}

TEST_F(DesktopSettingsTest, AreReadEachTime) {
    store.values = {{"ScanHost.Language", "cs"},
                    {"ScanHost.WindowPlace", "1 2 30 40"},
                    {"ScanHost.PageOrder", "date"},
                    {"Export.ToMail.MaxTotalSizeInKb", "2048"}};
    EXPECT_EQ(settings.language(), L"cs");
    ASSERT_TRUE(settings.windowPlace());
    EXPECT_EQ(settings.windowPlace()->rect.right, 30);
    EXPECT_EQ(settings.pageOrder(), host::PageOrder::Date);
    EXPECT_EQ(settings.mailLimit(), 2048);
    store.values["ScanHost.PageOrder"] = "name";
    EXPECT_EQ(settings.pageOrder(), host::PageOrder::Name);
    store.values["ScanHost.PageOrder"] = "colour";
    EXPECT_EQ(settings.pageOrder(), host::PageOrder::Own);
}

TEST_F(DesktopSettingsTest, AreWrittenWhenTheyChange) {
    EXPECT_TRUE(settings.setLanguage(L"de"));
    EXPECT_TRUE(settings.setWindowPlace({{1, 2, 30, 40}, true}));
    EXPECT_TRUE(settings.setPageOrder(host::PageOrder::Name));
    EXPECT_TRUE(settings.setMailLimit(10240));
    EXPECT_THAT(store.written, ElementsAre(Pair("ScanHost.Language", "de"),
                                           Pair("ScanHost.WindowPlace", "1 2 30 40 maximized"),
                                           Pair("ScanHost.PageOrder", "name"),
                                           Pair("Export.ToMail.MaxTotalSizeInKb", "10240")));
}

TEST_F(DesktopSettingsTest, AreNotWrittenWhenTheyAreSoAlready) {
    settings.setLanguage(L"");
    settings.setPageOrder(host::PageOrder::Own);
    settings.setMailLimit(std::nullopt);
    store.values = {{"ScanHost.Language", "de"},
                    {"ScanHost.WindowPlace", "1 2 30 40"},
                    {"ScanHost.PageOrder", "date"},
                    {"Export.ToMail.MaxTotalSizeInKb", "10240"}};
    settings.setLanguage(L"de");
    settings.setPageOrder(host::PageOrder::Date);
    settings.setWindowPlace({{1, 2, 30, 40}, false});
    settings.setMailLimit(10240);
    EXPECT_THAT(store.written, IsEmpty());
}

TEST_F(DesktopSettingsTest, ALimitIsTakenAwayByAZero) {
    store.values = {{"Export.ToMail.MaxTotalSizeInKb", "10240"}};
    settings.setMailLimit(std::nullopt);
    EXPECT_THAT(store.written, ElementsAre(Pair("Export.ToMail.MaxTotalSizeInKb", "0")));
}

TEST_F(DesktopSettingsTest, WhatTheEngineTakesForNoLimitIsNone) {
    for (const char* text : {"", "0", "-1", "much", "10 MB", "2097152", "99999999999"}) {
        store.values = {{"Export.ToMail.MaxTotalSizeInKb", text}};
        EXPECT_FALSE(settings.mailLimit()) << text;
    }
}

TEST_F(DesktopSettingsTest, AStoreThatTakesNothingIsTold) {
    store.readOnly = true;
    EXPECT_FALSE(settings.setLanguage(L"de"));
    EXPECT_FALSE(settings.setWindowPlace({{1, 2, 30, 40}, false}));
    EXPECT_FALSE(settings.setPageOrder(host::PageOrder::Date));
    EXPECT_FALSE(settings.setMailLimit(1));
}

} // namespace
