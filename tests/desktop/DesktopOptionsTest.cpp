#include "host/desktop/DesktopOptions.h"

#include "host/HostError.h"

#include <gmock/gmock.h>

namespace {

using host::parseDesktopOptions;
using testing::ElementsAre;

TEST(DesktopOptionsTest, TakesALanguageAndPaths) {
    for (const std::vector<std::wstring>& arguments :
         {std::vector<std::wstring>{L"--lang", L"cs", L"C:\\a.tif", L"C:\\scans"},
          std::vector<std::wstring>{L"C:\\a.tif", L"--lang=cs", L"C:\\scans"}}) {
        const host::DesktopOptions options = parseDesktopOptions(arguments);
        EXPECT_EQ(options.language, L"cs");
        EXPECT_THAT(options.paths, ElementsAre(L"C:\\a.tif", L"C:\\scans"));
    }
    EXPECT_FALSE(parseDesktopOptions({}).language);
}

TEST(DesktopOptionsTest, TakesEverythingBehindTwoHyphensForPaths) {
    EXPECT_THAT(parseDesktopOptions({L"--", L"C:\\--lang", L"C:\\cs"}).paths,
                ElementsAre(L"C:\\--lang", L"C:\\cs"));
    EXPECT_EQ(parseDesktopOptions({L"--", L"--lang"}).paths.size(), 1);
}

TEST(DesktopOptionsTest, RefusesWhatItDoesNotKnow) {
    EXPECT_THROW(parseDesktopOptions({L"--to-dir", L"C:\\out"}), host::UsageError);
    EXPECT_THROW(parseDesktopOptions({L"--lang"}), host::UsageError);
}

} // namespace
