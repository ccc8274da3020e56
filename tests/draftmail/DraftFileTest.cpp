// A draft's way into the drafts folder.
#include "draftmail/DraftFile.h"
#include "draftmail/MapiError.h"
#include "host/UniqueHandle.h"
#include "support/ImportHook.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <optional>

namespace {

using draftmail::DraftFile;
using draftmail::draftName;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr SYSTEMTIME time{2026, 1, 6, 3, 4, 5, 6, 0};

struct Naming {
    std::wstring subject;
    std::wstring start;
};

class DraftNameTest : public testing::TestWithParam<Naming> {};

TEST_P(DraftNameTest, IsTheSubjectAsFarAsAFileNameCanHoldItAndTheTime) {
    EXPECT_EQ(draftName(GetParam().subject, time), GetParam().start + L" 2026-01-03 04.05.06");
}

INSTANTIATE_TEST_SUITE_P(
    Subjects, DraftNameTest,
    testing::Values(Naming{L"Faktury \u0159\u00EDjen", L"Faktury \u0159\u00EDjen"}, Naming{L"", L"Draft"},
                    Naming{L"a<b>c:d\"e/f\\g|h?i*j\tk\r\nl", L"a_b_c_d_e_f_g_h_i_j_k__l"},
                    Naming{L"a\x7F\x85z", L"a__z"}, Naming{L"..\\..\\evil", L".._.._evil"},
                    Naming{L"  x. . ", L"x"}, Naming{L" .. ", L"Draft"}, Naming{L"NUL", L"NUL"},
                    Naming{L"\xD83D\xDCE7 \xD83D x", L"\xD83D\xDCE7 _ x"},
                    Naming{std::wstring(61, L'\u20AC'), std::wstring(60, L'\u20AC')},
                    Naming{std::wstring(59, L'x') + L"\xD83D\xDCE7", std::wstring(59, L'x')}));

class DraftFileTest : public testing::Test {
protected:
    template <typename Action> static ULONG codeOf(const Action& action) {
        try {
            action();
        } catch (const draftmail::MapiError& error) {
            return error.code();
        }
        return SUCCESS_SUCCESS;
    }

    test::TempFolder folder;
    std::wstring drafts = folder / L"Drafts";
};

TEST_F(DraftFileTest, HasItsNameOnlyWhenItIsWhole) {
    DraftFile file(drafts, "id");
    file.write("a");
    file.write("b");
    EXPECT_THAT(folder.list(), ElementsAre(L"Drafts"));
    EXPECT_EQ(GetFileAttributesW((drafts + L"\\x.eml").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(file.publish(L"x"), drafts + L"\\x.eml");
    EXPECT_EQ(test::readFile(drafts + L"\\x.eml"), "ab");
}

TEST_F(DraftFileTest, LeavesNothingElseBehind) {
    {
        DraftFile file(folder.path(), "id");
        file.write("a");
        file.publish(L"x");
    }
    EXPECT_THAT(folder.list(), ElementsAre(L"x.eml"));
}

TEST_F(DraftFileTest, VanishesUnlessItIsPublished) {
    {
        DraftFile file(folder.path(), "id");
        file.write("a");
        EXPECT_EQ(folder.list().size(), 1U);
    }
    EXPECT_THAT(folder.list(), IsEmpty());
}

TEST_F(DraftFileTest, GetsANumberWhenTheNameIsTaken) {
    folder.write(L"x.eml", "first");
    folder.write(L"x (2).eml", "second");
    DraftFile file(folder.path(), "id");
    EXPECT_EQ(file.publish(L"x"), folder / L"x (3).eml");
    EXPECT_EQ(test::readFile(folder / L"x.eml"), "first");
    EXPECT_EQ(test::readFile(folder / L"x (2).eml"), "second");
}

TEST_F(DraftFileTest, TakesTheLongestNameThereIs) {
    DraftFile file(folder.path(), "id");
    const std::wstring name = draftName(std::wstring(100, L'\u20AC'), time);
    folder.write(name + L".eml", "");
    EXPECT_EQ(file.publish(name), folder / name + L" (2).eml");
}

TEST_F(DraftFileTest, IsDeniedWhereAFileIsInThePlaceOfTheFolder) {
    folder.write(L"Drafts", "a file");
    EXPECT_EQ(codeOf([&] { DraftFile(drafts, "id"); }), static_cast<ULONG>(MAPI_E_ACCESS_DENIED));
    EXPECT_EQ(test::readFile(drafts), "a file");
}

TEST_F(DraftFileTest, IsDeniedWhereTheFolderCannotBeMade) {
    EXPECT_EQ(codeOf([&] { DraftFile(folder / L"none\\Drafts", "id"); }),
              static_cast<ULONG>(MAPI_E_ACCESS_DENIED));
}

BOOL WINAPI writeAllButOneByte(HANDLE, const void*, DWORD size, DWORD* written, OVERLAPPED*) {
    *written = size - 1;
    return TRUE;
}

// As under Wine when the disk gets full.
TEST_F(DraftFileTest, FailsWhenTheDiskTakesOnlyAPartOfTheBytes) {
    DraftFile file(folder.path(), "id");
    const test::ImportHook hook("WriteFile", reinterpret_cast<void*>(&writeAllButOneByte));
    EXPECT_EQ(codeOf([&] { file.write("bytes"); }), static_cast<ULONG>(MAPI_E_DISK_FULL));
}

BOOL WINAPI failToFlush(HANDLE) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

// As on a share, whose disk may turn out to be full long after a write.
TEST_F(DraftFileTest, FailsWhenItsBytesDoNotReachTheDisk) {
    const test::ImportHook hook("FlushFileBuffers", reinterpret_cast<void*>(&failToFlush));
    {
        DraftFile file(folder.path(), "id");
        file.write("a");
        EXPECT_EQ(codeOf([&] { file.publish(L"x"); }), static_cast<ULONG>(MAPI_E_DISK_FULL));
    }
    EXPECT_THAT(folder.list(), IsEmpty());
}

/// Keeps files from being renamed as long as it lives.
host::UniqueHandle openAsScannersDo(const std::wstring& path) {
    return host::UniqueHandle(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                          nullptr, OPEN_EXISTING, 0, nullptr));
}

/// What has the file open until the first time that renaming it failed.
std::optional<host::UniqueHandle> scanner;
unsigned failures = 0;

BOOL WINAPI renameAndLetGo(const wchar_t* from, const wchar_t* to, DWORD flags) {
    // Out of reach of the hook.
    using Rename = decltype(MoveFileExW);
    static auto* const rename = reinterpret_cast<Rename*>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "MoveFileExW")));
    if (rename(from, to, flags))
        return TRUE;
    const DWORD error = GetLastError();
    ++failures;
    scanner.reset();
    SetLastError(error);
    return FALSE;
}

TEST_F(DraftFileTest, GetsItsNameAsSoonAsAScannerLetsGoOfIt) {
    DraftFile file(folder.path(), "id");
    file.write("a");
    scanner.emplace(openAsScannersDo(folder / folder.list().at(0)));
    ASSERT_TRUE(*scanner);
    const test::ImportHook hook("MoveFileExW", reinterpret_cast<void*>(&renameAndLetGo));
    EXPECT_EQ(file.publish(L"x"), folder / L"x.eml");
    EXPECT_EQ(failures, 1U);
    EXPECT_THAT(folder.list(), ElementsAre(L"x.eml"));
}

TEST_F(DraftFileTest, RemovesUnfinishedDraftsOfTheDayBefore) {
    const auto age = [&](const wchar_t* name, LONGLONG hours) {
        FILETIME now;
        GetSystemTimeAsFileTime(&now);
        ULARGE_INTEGER time{{now.dwLowDateTime, now.dwHighDateTime}};
        time.QuadPart -= static_cast<ULONGLONG>(hours) * 60 * 60 * 10'000'000;
        const FILETIME then{time.LowPart, time.HighPart};
        const host::UniqueHandle file(CreateFileW(folder.write(name, "").c_str(), GENERIC_WRITE, 0, nullptr,
                                                  OPEN_EXISTING, 0, nullptr));
        EXPECT_TRUE(SetFileTime(file.get(), nullptr, nullptr, &then));
    };
    age(L"~DraftMail-1.tmp", 25);
    age(L"~DraftMail-2.tmp", 25);
    age(L"~DraftMail-3.tmp", 23);
    age(L"~DraftMail-4.eml", 25);
    age(L"~WRL0001.tmp", 25);
    { DraftFile file(folder.path(), "id"); }
    EXPECT_THAT(folder.list(),
                testing::UnorderedElementsAre(L"~DraftMail-3.tmp", L"~DraftMail-4.eml", L"~WRL0001.tmp"));
}

TEST_F(DraftFileTest, IsDeniedAndGoneWhenSomebodyKeepsItFromItsName) {
    std::optional<DraftFile> file(std::in_place, folder.path(), "id");
    const std::wstring temporary = folder / folder.list().at(0);
    {
        const host::UniqueHandle reader = openAsScannersDo(temporary);
        ASSERT_TRUE(reader);
        EXPECT_EQ(codeOf([&] { file->publish(L"x"); }), static_cast<ULONG>(MAPI_E_ACCESS_DENIED));
    }
    file.reset();
    EXPECT_THAT(folder.list(), IsEmpty());
}

} // namespace
