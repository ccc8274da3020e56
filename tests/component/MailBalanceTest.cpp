// What a thousand exports to e-mail leave behind in the process and on the disk.
#include "MailExportFixture.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "support/ProcessHandles.h"

namespace {

using testing::ElementsAre;

class MailBalanceTest : public MailExportFixture {
protected:
    /// Exports into a root of its own, which Wine looks through for each new directory.
    void exportTimes(std::size_t count) {
        const test::TempFolder root;
        bxdisk::setTempRoot(root.path());
        for (std::size_t i = 0; i < count; ++i)
            ASSERT_EQ(engine->exportData(nullptr, errors), 0);
        const std::vector<std::wstring> directories = root.list();
        EXPECT_EQ(directories.size(), count);
        for (const std::wstring& directory : directories)
            ASSERT_THAT(test::namesIn(root / directory), ElementsAre(L"Page-1.tif", L"Page-2.tif"));
    }
};

TEST_F(MailBalanceTest, OfAThousandExportsIsTheirDirectories) {
    addPage(L"a.tif", "a");
    addPageWithoutFile("b");
    // What is made once and kept is there after the first.
    exportTimes(3);
    const std::size_t handles = test::countHandles();
    const std::size_t modules = test::countModules();
    const std::size_t windows = test::countWindows();
    for (int i = 0; i < 10; ++i)
        exportTimes(100);
    EXPECT_EQ(test::countHandles(), handles);
    EXPECT_EQ(test::countModules(), modules);
    EXPECT_EQ(test::countWindows(), windows);
    EXPECT_EQ(client.finished, 1003);
    EXPECT_THAT(scratch.list(), ElementsAre(L"texts.ini"));
}

} // namespace
