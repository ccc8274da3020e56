// The subject and the size limit in the host's settings store.
#include "ExportToMailData.h"

#include "support/TestHost.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::Pair;

class ExportToMailDataTest : public testing::Test {
protected:
    ExportToMailDataTest() { host.settingsStore = &store; }

    test::MemoryStore store;
    test::TestHost host;
    ExportToMailData data;
};

TEST_F(ExportToMailDataTest, StartsWithoutSubjectAndLimit) {
    EXPECT_EQ(data.subject, "");
    EXPECT_EQ(data.maxTotalSizeInKb, 0);
}

TEST_F(ExportToMailDataTest, LoadsBoth) {
    store.values = {{"Export.ToMail.Subject", "Účty"}, {"Export.ToMail.MaxTotalSizeInKb", "2048"}};
    EXPECT_TRUE(data.load());
    EXPECT_EQ(data.subject, "Účty");
    EXPECT_EQ(data.maxTotalSizeInKb, 2048);
}

TEST_F(ExportToMailDataTest, SubjectThatIsNotStoredStaysAsItIs) {
    data.subject = "before";
    EXPECT_TRUE(data.load());
    EXPECT_EQ(data.subject, "before");
}

TEST_F(ExportToMailDataTest, LimitThatIsNotStoredIsNone) {
    data.maxTotalSizeInKb = 7;
    EXPECT_TRUE(data.load());
    EXPECT_EQ(data.maxTotalSizeInKb, 0);
}

TEST_F(ExportToMailDataTest, SavesTheSubjectOnly) {
    data.subject = "Účty";
    data.maxTotalSizeInKb = 7;
    EXPECT_TRUE(data.save());
    EXPECT_THAT(store.written, ElementsAre(Pair("Export.ToMail.Subject", "Účty")));
}

TEST_F(ExportToMailDataTest, SaysWhenTheStoreDidNotTakeIt) {
    store.readOnly = true;
    EXPECT_FALSE(data.save());
}

TEST_F(ExportToMailDataTest, WithoutStoreLoadsAndSavesNothing) {
    host.settingsStore = nullptr;
    data.subject = "before";
    data.maxTotalSizeInKb = 7;
    EXPECT_FALSE(data.load());
    EXPECT_FALSE(data.save());
    EXPECT_EQ(data.subject, "before");
    EXPECT_EQ(data.maxTotalSizeInKb, 7);
}

} // namespace
