// The directory engine in a host whose extensions begin with their dot.
#include "../DirectoryExportFixture.h"

namespace {

class DottedExtensionTest : public DirectoryExportFixture {};

TEST_F(DottedExtensionTest, GivesASingleDot) {
    addPage(L"page.tif", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), testing::ElementsAre(L"Scan001.tif"));
}

} // namespace
