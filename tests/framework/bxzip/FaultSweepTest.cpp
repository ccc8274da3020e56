// A fixed job of ten pages, run again and again while another one of its operations fails.
#include "SorvaneBase/bxzip/WindowsStorage.h"
#include "support/AllocationFaults.h"
#include "support/FaultyStorage.h"
#include "support/MemoryStorage.h"
#include "support/TempFolder.h"
#include "support/ZipJob.h"
#include "support/ZipParser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <random>

namespace {

using Operation = test::FaultPlan::Operation;

const char* const operationNames[] = {"Open",  "State",   "Read",  "ShortRead", "Change", "HiddenChange",
                                      "Write", "SetSize", "Flush", "Link",      "Move",   "Remove"};

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

/// What the exporter does with a failure, and what it says itself.
enum class Course { StopAtFailure, GoOn, DeclareIncomplete };

/// The job up to its end; true when one of its steps failed.
bool addPages(test::ZipJob& job, const std::vector<Page>& pages, Course course) {
    bool failed = !job.create();
    if (failed)
        return true;
    for (const Page& page : pages) {
        failed |= !job.add(page.name, page.path, page.content);
        if (failed && course == Course::StopAtFailure)
            break;
    }
    if (course == Course::DeclareIncomplete)
        job.setIncomplete();
    return failed;
}

/// Its end; true when that failed.
bool close(test::ZipJob& job) {
    job.close();
    return !job.outcome().status.isOk();
}

/// Whether an operation that failed while pages were added, or later, may come to nothing.
bool mayGoUnnoticed(const test::FaultPlan& plan, bool wasClosing) {
    switch (plan.operation) {
    case Operation::ShortRead:
    case Operation::HiddenChange:
        return plan.once; // when only the look at a page's first bytes met it
    case Operation::Link:
        return true; // the old file is moved instead
    case Operation::Write:
    case Operation::SetSize:
    case Operation::Move:
        return plan.once && wasClosing; // for closing tries again
    default:
        return false;
    }
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

    /// The names of the files in the archive's folder.
    std::vector<std::wstring> list() const {
        std::vector<std::wstring> names;
        for (const auto& [path, file] : disk.files)
            if (path.starts_with(L"C:\\out\\"))
                names.push_back(path.substr(7));
        return names;
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

    std::vector<std::wstring> list() const { return folder->list(); }

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

    /// What is wrong after one run of the job; empty when nothing is.
    template <class Run> std::string faultIn(Run& run, test::FaultPlan& plan, Course course) const {
        test::FaultyStorage storage(run.disk, plan);
        test::ZipJob job(storage, run.target, old);
        bool failed = addPages(job, run.pages, course);
        const bool wasClosing = plan.seen < plan.number;
        failed |= close(job);
        const bool struck = plan.seen >= plan.number;
        if (failed && !struck)
            return "a failure without a cause";
        if (struck && !failed && !mayGoUnnoticed(plan, wasClosing))
            return "a failure that nobody heard of";
        if (job.leavesTemporaryFile(run.list()))
            return "a temporary file was left";
        return job.verdict([&](const std::wstring& path) { return run.read(path); }, !once);
    }
};

TEST_P(FaultSweepTest, LosesAndHidesNothingOnADiskInMemory) {
    std::vector<Course> courses = {Course::GoOn};
    if (operation >= Operation::Write) // the others have no part in closing
        courses.push_back(Course::DeclareIncomplete);
    for (const Course course : courses) {
        for (int number = 1;; ++number) {
            MemoryRun run(pages, old);
            test::FaultPlan plan{operation, number, once};
            ASSERT_EQ(faultIn(run, plan, course), "") << "number " << number;
            if (plan.seen < number) {
                std::printf("%d runs\n", number);
                break;
            }
        }
    }
}

TEST_P(FaultSweepTest, LosesAndHidesNothingOnARealDisk) {
    // Only an incomplete archive needs a backup.
    const bool isForBackups = operation == Operation::Link || operation == Operation::Move;
    const Course course = isForBackups ? Course::DeclareIncomplete : Course::StopAtFailure;
    DiskRun run(pages, old);
    for (int number = 1;; ++number) {
        run.prepare(old);
        test::FaultPlan plan{operation, number, once};
        ASSERT_EQ(faultIn(run, plan, course), "") << "number " << number;
        if (plan.seen < number) {
            EXPECT_EQ(run.list().size(), isForBackups && old ? 2u : 1u);
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

class KillSweepTest : public testing::TestWithParam<Course> {
protected:
    KillSweepTest() { pages.resize(3); }

    const Old old = "the old archive";
    std::vector<Page> pages = makePages();

    /// What is wrong after the process was killed at the operation with the plan's number; empty when nothing is.
    template <class Run> std::string faultIn(Run& run, test::FaultPlan& plan, bool alwaysHasFile) const {
        {
            test::FaultyStorage storage(run.disk, plan);
            test::ZipJob job(storage, run.target, old);
            addPages(job, run.pages, GetParam());
            job.close();
        }
        const std::optional<std::string> found = run.read(run.target);
        const bool isKept = found == old || run.read(run.target + L".bak") == old;
        if (alwaysHasFile && !found)
            return "there is no file at the path";
        if (found != old && found && !test::parseZip(*found).error.empty())
            return "half an archive at the path";
        if (!isKept && (GetParam() == Course::DeclareIncomplete || !found))
            return "the old file is lost";

        bxzip::ArchiveFile next(run.disk);
        if (!next.create(run.target + L".another").isOk() || !next.close().status.isOk())
            return "the next archive cannot be written";
        const std::vector<std::wstring> names = run.list();
        const bool isClean = std::none_of(names.begin(), names.end(),
                                          [](const auto& name) { return name.starts_with(L"~bxzip-"); });
        return isClean ? "" : "a temporary file outlives the next archive";
    }
};

TEST_P(KillSweepTest, LosesNothingOnADiskInMemory) {
    for (const bool hasLinks : {true, false}) {
        for (int number = 1;; ++number) {
            MemoryRun run(pages, old);
            run.disk.hasLinks = hasLinks;
            test::FaultPlan plan{Operation::Kill, number, false};
            ASSERT_EQ(faultIn(run, plan, hasLinks), "") << "number " << number;
            if (plan.seen < number) {
                std::printf("%d runs\n", number);
                break;
            }
        }
    }
}

TEST_P(KillSweepTest, LosesNothingOnARealDisk) {
    DiskRun run(pages, old);
    for (int number = 1;; ++number) {
        run.prepare(old);
        test::FaultPlan plan{Operation::Kill, number, false};
        ASSERT_EQ(faultIn(run, plan, true), "") << "number " << number;
        if (plan.seen < number) {
            std::printf("%d runs\n", number);
            break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Courses, KillSweepTest,
                         testing::Values(Course::StopAtFailure, Course::DeclareIncomplete),
                         [](const auto& test) {
                             return test.param == Course::StopAtFailure ? "Complete" : "Incomplete";
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
        bool failed = addPages(job, run.pages, Course::StopAtFailure);
        failed |= close(job);
        const auto read = [&](const std::wstring& path) { return run.read(path); };
        ASSERT_EQ(job.verdict(read, !once), "") << "number " << number;
        ASSERT_FALSE(job.leavesTemporaryFile(run.list())) << "number " << number;
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
