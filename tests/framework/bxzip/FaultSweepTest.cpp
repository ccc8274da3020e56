// A fixed job of ten pages, run again and again while another one of its operations fails.
#include "SorvaneBase/bxzip/WindowsStorage.h"
#include "support/AllocationFaults.h"
#include "support/FaultyStorage.h"
#include "support/MemoryStorage.h"
#include "support/TempFolder.h"
#include "support/ZipJob.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <random>

namespace {

using Operation = test::FaultPlan::Operation;

const char* const operationNames[] = {"Open",    "State", "Read", "ShortRead", "Write",
                                      "SetSize", "Flush", "Move", "Remove"};

struct Page {
    std::string name;
    std::wstring path;
    std::string content;
};

/// Ten pages of all kinds: empty, small, stored, deflated, of several chunks, and found not to get smaller.
std::vector<Page> makePages() {
    std::mt19937 random(3);
    const auto noise = [&](std::size_t size) {
        std::string result(size, '\0');
        for (char& byte : result)
            byte = static_cast<char>(random());
        return result;
    };
    const auto pattern = [&](std::size_t size) {
        const std::string piece = noise(50);
        std::string result;
        while (result.size() < size)
            result += piece;
        return result;
    };
    using namespace std::string_literals;
    std::vector<Page> pages;
    for (const std::string& content :
         {pattern(30000), ""s, "\xFF\xD8\xFF" + noise(30000), pattern(5000), noise(700), pattern(1300000),
          "II*\0\x08\0\0\0"s + pattern(20000), "x"s, noise(600000), pattern(50000)})
        pages.push_back({"Page_" + std::to_string(pages.size() + 1), {}, content});
    return pages;
}

/// A file's content before the archive is written.
using Old = std::optional<std::string>;

/// What is wrong after a run of the job; `failed` tells whether one of its steps said so.
std::string runJob(test::ZipJob& job, const test::ZipJob::Reader& read, const std::vector<Page>& pages,
                   bool stopAtFailure, bool mayLackArchive, bool& failed) {
    failed = !job.create();
    if (!failed) {
        for (const Page& page : pages) {
            failed |= !job.add(page.name, page.path, page.content);
            if (failed && stopAtFailure)
                break;
        }
        job.close();
    }
    failed |= !job.outcome().status.isOk();
    return job.verdict(read, mayLackArchive);
}

/// The job on a disk in memory.
struct MemoryRun {
    MemoryRun(const std::vector<Page>& plan, const Old& old) : pages(plan) {
        for (Page& page : pages)
            disk.put(page.path = L"C:\\pages\\" + std::wstring(page.name.begin(), page.name.end()),
                     page.content);
        if (old)
            disk.put(target, *old);
    }
    std::optional<std::string> read(const std::wstring& path) const {
        return disk.files.contains(path) ? std::optional(disk.get(path)) : std::nullopt;
    }

    const std::wstring target = L"C:\\out\\pages.zip";
    test::MemoryStorage disk;
    std::vector<Page> pages;
};

/// The same on a real one.
struct DiskRun {
    DiskRun(const std::vector<Page>& plan, const Old& old) : pages(plan) {
        for (Page& page : pages)
            page.path = pagesFolder.write(std::wstring(page.name.begin(), page.name.end()), page.content);
        prepare(old);
    }
    void prepare(const Old& old) {
        folder.emplace();
        target = *folder / L"pages.zip";
        if (old)
            folder->write(L"pages.zip", *old);
    }
    std::optional<std::string> read(const std::wstring& path) {
        return disk.exists(path) ? std::optional(test::readFile(path)) : std::nullopt;
    }

    test::TempFolder pagesFolder;
    std::optional<test::TempFolder> folder;
    std::wstring target;
    bxzip::WindowsStorage disk;
    std::vector<Page> pages;
};

class FaultSweepTest : public testing::TestWithParam<std::tuple<Operation, bool, bool>> {
protected:
    const Operation operation = std::get<0>(GetParam());
    const bool once = std::get<1>(GetParam());
    const Old old = std::get<2>(GetParam()) ? Old("the old archive") : std::nullopt;
    const std::vector<Page> pages = makePages();
};

TEST_P(FaultSweepTest, LosesNothingOnADiskInMemory) {
    for (const bool stopAtFailure : {true, false}) {
        for (int number = 1;; ++number) {
            MemoryRun run(pages, old);
            test::FaultPlan plan{operation, number, once};
            test::FaultyStorage storage(run.disk, plan);
            test::ZipJob job(storage, run.target, old);
            bool failed = false;
            const auto read = [&](const std::wstring& path) { return run.read(path); };
            ASSERT_EQ(runJob(job, read, run.pages, stopAtFailure, !once, failed), "") << "number " << number;
            if (plan.seen < number) {
                EXPECT_FALSE(failed);
                std::printf("%d runs\n", number);
                break;
            }
        }
    }
}

TEST_P(FaultSweepTest, LosesNothingOnARealDisk) {
    DiskRun run(pages, old);
    for (int number = 1;; ++number) {
        run.prepare(old);
        test::FaultPlan plan{operation, number, once};
        test::FaultyStorage storage(run.disk, plan);
        test::ZipJob job(storage, run.target, old);
        bool failed = false;
        const auto read = [&](const std::wstring& path) { return run.read(path); };
        ASSERT_EQ(runJob(job, read, run.pages, true, !once, failed), "") << "number " << number;
        if (plan.seen < number) {
            EXPECT_FALSE(failed);
            EXPECT_EQ(run.folder->list(), std::vector<std::wstring>{L"pages.zip"});
            std::printf("%d runs\n", number);
            break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, FaultSweepTest,
                         testing::Combine(testing::ValuesIn(test::FaultPlan::all), testing::Bool(),
                                          testing::Bool()),
                         [](const auto& test) {
                             return std::string(operationNames[static_cast<int>(std::get<0>(test.param))]) +
                                    (std::get<1>(test.param) ? "Once" : "FromThenOn") +
                                    (std::get<2>(test.param) ? "WithOldFile" : "");
                         });

class AllocationSweepTest : public testing::TestWithParam<std::tuple<bool, bool>> {};

TEST_P(AllocationSweepTest, LosesNothing) {
    const bool once = std::get<0>(GetParam());
    const Old old = std::get<1>(GetParam()) ? Old("the old archive") : std::nullopt;
    DiskRun run(makePages(), old);
    for (int number = 1;; ++number) {
        run.prepare(old);
        test::AllocationFaults faults(number, once);
        test::ZipJob job(run.disk, run.target, old, &faults);
        bool failed = false;
        const auto read = [&](const std::wstring& path) { return run.read(path); };
        ASSERT_EQ(runJob(job, read, run.pages, true, !once, failed), "") << "number " << number;
        if (!faults.hasStruck()) {
            EXPECT_FALSE(failed);
            std::printf("%d runs\n", number);
            break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, AllocationSweepTest, testing::Combine(testing::Bool(), testing::Bool()),
                         [](const auto& test) {
                             return std::string(std::get<0>(test.param) ? "Once" : "FromThenOn") +
                                    (std::get<1>(test.param) ? "WithOldFile" : "");
                         });

} // namespace
