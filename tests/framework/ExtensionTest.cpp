// Extensions of page names.
#include "SorvaneCommon/ExportUtils/Extension.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char* name;
    const char* extension;
};

class ExtensionTest : public testing::TestWithParam<Case> {};

TEST_P(ExtensionTest, IsWhatFollowsTheLastDotOfTheLastComponent) {
    EXPECT_EQ(ExportUtils::getExtension(GetParam().name), GetParam().extension);
}

INSTANTIATE_TEST_SUITE_P(Names, ExtensionTest,
                         testing::Values(Case{"page.tif", "tif"}, Case{"Page.TIF", "TIF"},
                                         Case{"archive.tar.gz", "gz"}, Case{"C:\\scans\\page.jpg", "jpg"},
                                         Case{"C:/scans/page.jpg", "jpg"}, Case{"page..pdf", "pdf"},
                                         Case{".tif", "tif"}, Case{"page", ""}, Case{"page.", ""},
                                         Case{"", ""}, Case{"scans.old\\page", ""},
                                         Case{"scans.old/page", ""}, Case{"scans.old\\", ""},
                                         Case{"stránka.pří", "pří"}));

} // namespace
