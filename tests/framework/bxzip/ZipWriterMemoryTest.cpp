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

    /// What the export of two pages says; `added` counts those that it reported as added.
    bool exportPages(test::AllocationFaults& faults, std::size_t& added) const {
        added = 0;
        faults.arm();
        bool done = false;
        {
            bxzip::ZipWriterPtr writer(nullptr);
            done = writer.createZipFile(target);
            for (const std::string* name : {&firstName, &secondName}) {
                done = done && writer.addItemFromFile(*name, page);
                added += done;
            }
        }
        faults.disarm();
        return done;
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
        std::size_t added = 0;
        const bool done = exportPages(faults, added);
        bxutils::setSystemLogFile({});

        const std::string archive = test::readFile(folder / L"a.zip");
        const bool replaced = archive != "old";
        const std::vector<std::wstring> files = folder.list();
        if (replaced) {
            const test::ZipListing listing = test::parseZip(archive);
            ASSERT_EQ(listing.error, "") << "number " << number;
            ASSERT_EQ(listing.items.size(), added) << "number " << number;
            if (!done) {
                ASSERT_EQ(test::readFile(folder / L"a.zip.bak"), "old") << "number " << number;
            }
        }
        if (once && (!done || !replaced)) {
            ASSERT_NE(test::readFile(logFile), "") << "number " << number;
        }
        for (const std::wstring& name : files)
            DeleteFileW((folder / name).c_str());
        if (!faults.hasStruck()) {
            EXPECT_TRUE(done);
            std::printf("%d runs\n", number);
            break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, ZipWriterMemoryTest, testing::Bool(),
                         [](const auto& test) { return test.param ? "Once" : "FromThenOn"; });

} // namespace
