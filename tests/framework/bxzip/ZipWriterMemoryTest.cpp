// The ZIP writer as the component uses it, run again and again while another one of its allocations fails.
#include "SorvaneBase/Text.h"
#include "SorvaneBase/bxutils/SystemLog.h"
#include "SorvaneBase/bxzip/ZipWriterPtr.h"
#include "support/AllocationFaults.h"
#include "support/TempFolder.h"
#include "support/ZipParser.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>

namespace {

class ZipWriterMemoryTest : public testing::TestWithParam<bool> {
protected:
    ~ZipWriterMemoryTest() override { bxutils::setSystemLogFile({}); }

    /// Exports two pages; `added` counts those that were reported as added.
    void exportPages(test::AllocationFaults& faults, bool& created, std::size_t& added) const {
        added = 0;
        faults.arm();
        {
            bxzip::ZipWriterPtr writer(nullptr);
            created = writer.createZipFile(target);
            for (const std::string* name : {&firstName, &secondName})
                added += created && writer.addItemFromFile(*name, page);
        }
        faults.disarm();
    }

    const bool once = GetParam();
    const test::TempFolder pages;
    const test::TempFolder folder;
    const std::string page = Sorvane::utf8(pages.write(L"page.txt", std::string(3000, 'p')));
    const std::string target = Sorvane::utf8(folder / L"a.zip");
    const std::string firstName = "a name that takes memory of its own";
    const std::string secondName = "another name that takes memory of its own";
};

TEST_P(ZipWriterMemoryTest, LosesAndHidesNothing) {
    for (int number = 1;; ++number) {
        folder.write(L"a.zip", "old");
        const std::wstring logFile = pages / L"log.txt";
        pages.write(L"log.txt", "");
        ASSERT_TRUE(bxutils::setSystemLogFile(logFile));
        test::AllocationFaults faults(number, once);
        bool created = false;
        std::size_t added = 0;
        exportPages(faults, created, added);
        bxutils::setSystemLogFile({});

        SCOPED_TRACE(number);
        const std::vector<std::wstring> files = folder.list();
        const std::string archive = test::readFile(folder / L"a.zip");
        if (archive != "old") {
            const test::ZipListing listing = test::parseZip(archive);
            ASSERT_EQ(listing.error, "");
            ASSERT_EQ(listing.items.size(), added);
            if (added < 2) {
                ASSERT_EQ(test::readFile(folder / L"a.zip.bak"), "old");
            }
        }
        if (once) {
            const std::string log = test::readFile(logFile);
            ASSERT_EQ(created, log.find("cannot be created") == std::string::npos);
            ASSERT_EQ(created && added < 2, log.find("cannot be added") != std::string::npos);
            ASSERT_EQ(created && added < 2, log.find("is incomplete") != std::string::npos);
        }
        for (const std::wstring& name : files)
            DeleteFileW((folder / name).c_str());
        if (!faults.hasStruck()) {
            EXPECT_EQ(added, 2u);
            std::printf("%d runs\n", number);
            break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, ZipWriterMemoryTest, testing::Bool(),
                         [](const auto& test) { return test.param ? "Once" : "FromThenOn"; });

} // namespace
