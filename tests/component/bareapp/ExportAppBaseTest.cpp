// The application object over a base class that fails, in a program without icons.
#include "ExportApp.h"

#include "BXImage/Image.h"
#include "bxbase/LiveObjects.h"
#include "support/TestHost.h"

#include <gmock/gmock.h>

namespace {

class ExportAppBaseTest : public testing::Test {
protected:
    ~ExportAppBaseTest() override {
        theApp.ExitInstance();
        theApp.startResult = TRUE;
        theApp.exitCode = 0;
    }

    test::TestHost host;
    test::TestEnginesManager manager;
};

TEST_F(ExportAppBaseTest, LeavesItsNameToTheBase) {
    EXPECT_FALSE(theApp.hadName);
}

TEST_F(ExportAppBaseTest, StartThatTheBaseRefusesRegistersNothing) {
    theApp.startResult = FALSE;
    EXPECT_EQ(theApp.InitInstance(), FALSE);
    EXPECT_TRUE(manager.calls.empty());
    EXPECT_EQ(bxbase::LiveObjects::total(), 0);
}

TEST_F(ExportAppBaseTest, ExitCodeOfTheBaseIsIgnored) {
    theApp.InitInstance();
    theApp.exitCode = 7;
    theApp.exits = 0;
    EXPECT_EQ(theApp.ExitInstance(), 0);
    EXPECT_EQ(theApp.exits, 1);
}

TEST_F(ExportAppBaseTest, FactoriesWithoutIconsAreRegisteredAllTheSame) {
    EXPECT_EQ(theApp.InitInstance(), 1);
    ASSERT_EQ(manager.factories.size(), 3U);
    for (const auto& factory : manager.factories) {
        bxbase::Reference<BXImage::Image> icon;
        EXPECT_FALSE(factory->getIcon(icon));
        EXPECT_FALSE(icon);
    }
    EXPECT_EQ(bxbase::LiveObjects::counter(typeid(BXImage::Image)), 0);
    EXPECT_TRUE(host.messages.empty());
}

} // namespace
