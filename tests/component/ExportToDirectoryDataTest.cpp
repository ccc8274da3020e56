// The directory and prefix kept in the host's settings store.
#include "ExportToDirectoryData.h"

#include "support/TestHost.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::Pair;

class ExportToDirectoryDataTest : public testing::Test {
protected:
    ExportToDirectoryDataTest() { host.settingsStore = &store; }

    test::MemoryStore store;
    test::TestHost host;
    ExportToDirectoryData data{"Export.ToDirectory.Path"};
};

TEST_F(ExportToDirectoryDataTest, StartsWithTheKeyAlone) {
    EXPECT_EQ(data.key, "Export.ToDirectory.Path");
    EXPECT_EQ(data.path, "");
    EXPECT_EQ(data.prefix, "");
}

TEST_F(ExportToDirectoryDataTest, SavesThePathUnderItsKeyAndThePrefixUnderTheFixedOne) {
    data.path = "C:\\Účty";
    data.prefix = "Scan";
    EXPECT_TRUE(data.save());
    EXPECT_THAT(store.written, ElementsAre(Pair("Export.ToDirectory.Path", "C:\\Účty"),
                                           Pair("Export.ToDirectory.Prefix", "Scan")));
}

TEST_F(ExportToDirectoryDataTest, SavesEmptyTextsToo) {
    EXPECT_TRUE(data.save());
    EXPECT_THAT(store.written,
                ElementsAre(Pair("Export.ToDirectory.Path", ""), Pair("Export.ToDirectory.Prefix", "")));
}

TEST_F(ExportToDirectoryDataTest, SaveDoesNotLookAtWhatTheStoreMakesOfIt) {
    store.readOnly = true;
    EXPECT_TRUE(data.save());
    EXPECT_EQ(store.written.size(), 2U);
}

TEST_F(ExportToDirectoryDataTest, WithoutStoreSavesNothing) {
    host.settingsStore = nullptr;
    EXPECT_FALSE(data.save());
    EXPECT_TRUE(store.written.empty());
}

TEST_F(ExportToDirectoryDataTest, WithoutStoreLoadsNothing) {
    host.settingsStore = nullptr;
    data.path = "old path";
    data.prefix = "old prefix";
    EXPECT_FALSE(data.load());
    EXPECT_EQ(data.path, "old path");
    EXPECT_EQ(data.prefix, "old prefix");
}

TEST_F(ExportToDirectoryDataTest, LoadsBoth) {
    store.values = {{"Export.ToDirectory.Path", "C:\\Out"}, {"Export.ToDirectory.Prefix", "Scan"}};
    EXPECT_TRUE(data.load());
    EXPECT_EQ(data.path, "C:\\Out");
    EXPECT_EQ(data.prefix, "Scan");
}

TEST_F(ExportToDirectoryDataTest, WithoutPathLeavesThePrefixUntouched) {
    store.values = {{"Export.ToDirectory.Prefix", "Scan"}};
    data.prefix = "old prefix";
    EXPECT_FALSE(data.load());
    EXPECT_EQ(data.prefix, "old prefix");
}

TEST_F(ExportToDirectoryDataTest, WithoutPrefixHasReadThePathAndFails) {
    store.values = {{"Export.ToDirectory.Path", "C:\\Out"}};
    data.prefix = "old prefix";
    EXPECT_FALSE(data.load());
    EXPECT_EQ(data.path, "C:\\Out");
    EXPECT_EQ(data.prefix, "old prefix");
}

TEST_F(ExportToDirectoryDataTest, TwoKeysShareOnePrefix) {
    ExportToDirectoryData other("Other");
    other.prefix = "Letter";
    other.save();
    EXPECT_THAT(store.written, ElementsAre(Pair("Other", ""), Pair("Export.ToDirectory.Prefix", "Letter")));
}

} // namespace
