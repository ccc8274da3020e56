// Pages whose data are files on the disk.
#include "host/FilePage.h"

#include "SorvaneBase/SorvaneException.h"
#include "bxbase/ReferencedImpl.h"
#include "host/HostError.h"
#include "host/TemporaryRoot.h"
#include "host/Text.h"
#include "support/OpenFile.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

namespace {

using bxbase::Reference;
using host::FilePage;
using host::utf8;

class FilePageTest : public testing::Test {
protected:
    Reference<FilePage> page(const std::wstring& path, host::PageWatcher* watcher = nullptr) {
        return Reference<FilePage>(new bxbase::ReferencedImpl<FilePage>(
            path, std::make_shared<host::FileFolder>(folder.path()), watcher));
    }

    std::string refusalOf(const std::wstring& path) {
        try {
            page(path);
        } catch (const host::HostError& error) {
            return error.what();
        }
        return "accepted";
    }

    test::TempFolder folder;
};

TEST_F(FilePageTest, GivesTheFileItself) {
    const auto scan = page(folder.write(L"Účet 1.TIF", "data"));

    std::string name;
    scan->getFileName(name);
    std::wstring path;
    EXPECT_TRUE(scan->getFilePath(path));
    EXPECT_EQ(name, "Účet 1.TIF");
    EXPECT_EQ(path, folder / L"Účet 1.TIF");
}

TEST_F(FilePageTest, LiesInTheFolderByItsName) {
    const auto scan = page(folder.write(L"a.tif", "data"));

    ASSERT_NE(scan->getParentFolder(), nullptr);
    EXPECT_EQ(scan->getParentFolder()->getFolderName(),
              folder.path().substr(folder.path().find_last_of(L'\\') + 1));
}

TEST_F(FilePageTest, WritesACopyThatBelongsToTheCaller) {
    const host::TemporaryRoot root(folder / L"temp");
    const auto scan = page(folder.write(L"a.tif", "data"));

    std::wstring copy;
    SorvaneException error;
    ASSERT_TRUE(scan->createDataCopy(copy, error));
    EXPECT_TRUE(copy.starts_with(root.path()));
    EXPECT_TRUE(copy.ends_with(L"\\a.tif"));
    EXPECT_EQ(test::readFile(copy), "data");
    EXPECT_TRUE(error.isEmpty());
}

TEST_F(FilePageTest, HasNoFileOnceItHasVanished) {
    const host::TemporaryRoot root(folder / L"temp");
    const auto scan = page(folder.write(L"a.tif", "data"));
    ASSERT_TRUE(DeleteFileW((folder / L"a.tif").c_str()));

    std::wstring path = L"untouched";
    SorvaneException error;
    EXPECT_FALSE(scan->getFilePath(path));
    EXPECT_FALSE(scan->createDataCopy(path, error));
    EXPECT_EQ(path, L"untouched");
    EXPECT_EQ(error.what(), utf8(folder / L"a.tif") + " cannot be copied: it does not exist");
    EXPECT_EQ(GetFileAttributesW((root.path() + L"\\page-1").c_str()), INVALID_FILE_ATTRIBUTES)
        << "something was left behind";
}

TEST_F(FilePageTest, TellsItsWatcherWhenTheEngineAsks) {
    struct Watcher : host::PageWatcher {
        void pageAsked(const FilePage& page) override { asked.push_back(&page); }
        std::vector<const FilePage*> asked;
    } watcher;
    const auto scan = page(folder.write(L"a.tif", "data"), &watcher);

    scan->getParentFolder();
    EXPECT_TRUE(watcher.asked.empty());
    std::string name;
    scan->getFileName(name);
    EXPECT_EQ(watcher.asked, std::vector<const FilePage*>{scan.get()});
}

TEST_F(FilePageTest, RefusesAFileThatIsNotThere) {
    EXPECT_EQ(refusalOf(folder / L"a.tif"),
              "The page " + utf8(folder / L"a.tif") + " cannot be exported: it does not exist.");
}

TEST_F(FilePageTest, RefusesAFolder) {
    EXPECT_EQ(refusalOf(folder.path()), "The page " + folder.utf8() + " cannot be exported: it is a folder.");
}

TEST_F(FilePageTest, RefusesAnEmptyFile) {
    const std::wstring file = folder.write(L"a.tif", "");

    EXPECT_EQ(refusalOf(file), "The page " + utf8(file) + " cannot be exported: it is empty.");
}

TEST_F(FilePageTest, RefusesALockedFile) {
    const std::wstring file = folder.write(L"a.tif", "data");
    const test::OpenFile lock(file);

    EXPECT_EQ(refusalOf(file),
              "The page " + utf8(file) + " cannot be exported: another program is using it.");
}

TEST(FileFolderTest, TheRootOfADriveOrShareHasNoName) {
    EXPECT_EQ(host::FileFolder(L"Z:").getFolderName(), nullptr);
    EXPECT_EQ(host::FileFolder(L"\\\\server\\share").getFolderName(), nullptr);
    EXPECT_STREQ(host::FileFolder(L"Z:\\Faktury").getFolderName(), L"Faktury");
    EXPECT_STREQ(host::FileFolder(L"\\\\server\\share\\Faktury").getFolderName(), L"Faktury");
}

} // namespace
