// The entry point of every test program.
#include "bxbase/LiveObjects.h"
#include "support/CrashReport.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <map>
#include <string>

namespace {

/// Fails a test after which other shared objects are alive than before it.
class LeakListener : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { before = bxbase::LiveObjects::byType(); }
    void OnTestEnd(const testing::TestInfo&) override {
        EXPECT_EQ(bxbase::LiveObjects::byType(), before) << "objects outlive the test, or died twice";
    }

    std::map<std::string, int> before;
};

} // namespace

int main(int argc, char** argv) {
    reportCrashes();
    // ctest reads the list of tests from our output; a carriage return would become part of each name.
    _setmode(_fileno(stdout), _O_BINARY);
    testing::InitGoogleMock(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
    return RUN_ALL_TESTS();
}
