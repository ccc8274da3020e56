// The engines in a host whose extensions begin with their dot.
#include "../DirectoryExportFixture.h"
#include "../MailExportFixture.h"
#include "../ZipExportFixture.h"

namespace {

class DottedExtensionTest : public DirectoryExportFixture {};
class DottedExtensionInMailTest : public MailExportFixture {};
class DottedExtensionInZipTest : public ZipExportFixture {};

TEST_F(DottedExtensionTest, GivesASingleDot) {
    addPage(L"page.tif", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(target.list(), testing::ElementsAre(L"Scan001.tif"));
}

TEST_F(DottedExtensionInMailTest, GivesASingleDot) {
    addPage(L"page.tif", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(attachmentNames(), testing::ElementsAre("Page-1.tif"));
}

TEST_F(DottedExtensionInZipTest, GivesASingleDot) {
    addPage(L"page.tif", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(entryNames(), testing::ElementsAre("Scan_1.tif"));
}

} // namespace
