// What the console program tells about a page that did not get to its directory.
#include "host/DirectoryTarget.h"

#include "bxbase/ReferencedImpl.h"
#include "host/Options.h"
#include "host/Text.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using host::utf8;

class DirectoryTargetTest : public testing::Test {
protected:
    std::string reason() const { return target.reasonForFailure(*page, 0, 1); }

    const test::TempFolder folder;
    const test::TempFolder out;
    const std::wstring copy = out / L"1.tif";
    const bxbase::Reference<host::FilePage> page{new bxbase::ReferencedImpl<host::FilePage>(
        folder.write(L"a.tif", "0123456789"), std::make_shared<host::FileFolder>(folder.path()), nullptr)};
    const host::DirectoryTarget target{host::parseOptions({L"--to-dir", out.path(), L"a.tif"}).toDirectory};
};

TEST_F(DirectoryTargetTest, AShorterFileLeftAtTheTargetIsCalledIncomplete) {
    out.write(L"1.tif", "01234");

    EXPECT_EQ(reason(),
              "Windows did not copy it to " + utf8(copy) + ", and " + utf8(copy) + " is incomplete");
}

TEST_F(DirectoryTargetTest, AFileFromBeforeThatTheCopyCannotHaveLeftIsNotCalledIncomplete) {
    out.write(L"1.tif", "longer than the page");

    EXPECT_EQ(reason(), "Windows did not copy it to " + utf8(copy));
}

TEST_F(DirectoryTargetTest, TheSearchForTheReasonLeavesNoFile) {
    EXPECT_EQ(reason(), "Windows did not copy it to " + utf8(copy));
    EXPECT_TRUE(out.list().empty());
}

} // namespace
