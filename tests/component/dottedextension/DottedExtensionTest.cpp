// The directory and ZIP engines in a host whose extensions begin with their dot.
#include "../DirectoryExportFixture.h"
#include "../ZipExportFixture.h"

namespace {

class DottedExtensionTest : public DirectoryExportFixture {};
class DottedExtensionInZipTest : public ZipExportFixture {};

TEST_F(DottedExtensionTest, GivesASingleDot) {
    addPage(L"page.tif", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), testing::ElementsAre(L"Scan001.tif"));
}

TEST_F(DottedExtensionInZipTest, GivesASingleDot) {
    addPage(L"page.tif", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entryNames(), testing::ElementsAre("Scan_1.tif"));
}

} // namespace
