// Exports to a disk that gets full. full_disk.sh gives the test the disk.
#include "desktop/ExportRunFixture.h"

#include <array>
#include <cstdlib>
#include <random>

namespace {

using host::ExportResult;

class DesktopFullDiskTest : public test::ExportRunFixture {
protected:
    void SetUp() override {
        std::array<wchar_t, MAX_PATH> path{};
        // full_disk.sh makes the disk and runs these tests; without it there is none that may be filled.
        if (!GetEnvironmentVariableW(L"SMALL_DISK", path.data(), MAX_PATH))
            GTEST_SKIP() << "no small disk here";
        disk = path.data();
        addPages(1, noise(20'000));
        addPages(1, noise(400'000));
    }

    /// Bytes that cannot be compressed.
    static std::string noise(std::size_t size) {
        std::minstd_rand random;
        std::string bytes(size, ' ');
        for (char& byte : bytes)
            byte = static_cast<char>(random() >> 8);
        return bytes;
    }

    std::wstring disk;
};

TEST_F(DesktopFullDiskTest, IsTheReasonThatAPageIsNotInAFolder) {
    question = IDOK;

    EXPECT_EQ(exportToDirectory(disk + L"\\out"), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"Page 2 could not be exported.\nThe disk is full.");
    EXPECT_EQ(shown.path, disk + L"\\out");
}

TEST_F(DesktopFullDiskTest, IsTheReasonThatAPageIsNotInAnArchive) {
    EXPECT_EQ(exportToZip(disk + L"\\scans.zip"), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"Page 2 could not be added to the archive.\nThe disk is full.");
    EXPECT_EQ(shown.path, disk + L"\\scans.zip");
}

} // namespace
