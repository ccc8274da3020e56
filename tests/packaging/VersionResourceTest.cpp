// Each binary that people get says what it is, and programs have their icon.
#include "host/ProgramFolder.h"
#include "host/Text.h"
#include "version.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Binary {
    const char* file;
    const char* description;
    bool isProgram;

    std::wstring path() const { return host::programFolder() + L"\\" + host::wide(file); }
    std::string name() const { return std::string(file).substr(0, std::string(file).find('.')); }
};

constexpr Binary BINARIES[] = {
    {"ScanHost.exe", "ScanHost", true},
    {"scanexport.exe", "Exports scanned pages from the command line", true},
    {"BasicExport.dll", "Export to directory, ZIP and e-mail", false},
    {"DraftMail.dll", "Mail client that leaves each message as a draft", false},
    {"BXImage.dll", "Images for the host and its components", false},
    {"SorvaneBase.dll", "Texts, files, log and archives for the host and its components", false},
    {"SorvaneCommon.dll", "What the host and its components have in common", false},
    {"toolkit.dll", "Windows, dialogs and controls of the export", false},
};

struct FreeModule {
    using pointer = HMODULE;
    void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Module = std::unique_ptr<HMODULE, FreeModule>;

Module openForResources(const Binary& binary) {
    return Module(LoadLibraryExW(binary.path().c_str(), nullptr,
                                 LOAD_LIBRARY_AS_DATAFILE | LOAD_LIBRARY_AS_IMAGE_RESOURCE));
}

std::vector<char> versionOf(const Binary& binary) {
    DWORD ignored = 0;
    std::vector<char> data(GetFileVersionInfoSizeW(binary.path().c_str(), &ignored));
    if (data.empty() ||
        !GetFileVersionInfoW(binary.path().c_str(), 0, static_cast<DWORD>(data.size()), data.data()))
        return {};
    return data;
}

std::string textOf(const std::vector<char>& version, const std::wstring& name) {
    void* text = nullptr;
    UINT length = 0;
    const std::wstring path = L"\\StringFileInfo\\040904B0\\" + name;
    if (!VerQueryValueW(version.data(), path.c_str(), &text, &length) || length == 0)
        return {};
    return host::utf8({static_cast<const wchar_t*>(text), length - 1});
}

class VersionResourceTest : public testing::TestWithParam<Binary> {};

TEST_P(VersionResourceTest, SaysWhatTheFileIs) {
    const std::vector<char> version = versionOf(GetParam());
    ASSERT_FALSE(version.empty());

    EXPECT_EQ(textOf(version, L"FileDescription"), GetParam().description);
    EXPECT_EQ(textOf(version, L"OriginalFilename"), GetParam().file);
    EXPECT_EQ(textOf(version, L"InternalName"), GetParam().name());
    EXPECT_EQ(textOf(version, L"CompanyName"), "Sorvane");
    EXPECT_EQ(textOf(version, L"ProductName"), "BasicExport");
    EXPECT_EQ(textOf(version, L"FileVersion"), PRODUCT_VERSION);
    EXPECT_EQ(textOf(version, L"ProductVersion"), PRODUCT_VERSION);
}

TEST_P(VersionResourceTest, HasTheVersionInNumbersToo) {
    const std::vector<char> version = versionOf(GetParam());
    ASSERT_FALSE(version.empty());
    void* data = nullptr;
    UINT size = 0;
    ASSERT_TRUE(VerQueryValueW(version.data(), L"\\", &data, &size));
    const auto& numbers = *static_cast<const VS_FIXEDFILEINFO*>(data);

    std::ostringstream text;
    text << HIWORD(numbers.dwFileVersionMS) << '.' << LOWORD(numbers.dwFileVersionMS) << '.'
         << HIWORD(numbers.dwFileVersionLS);
    EXPECT_EQ(text.str(), PRODUCT_VERSION);
    EXPECT_EQ(numbers.dwProductVersionMS, numbers.dwFileVersionMS);
    EXPECT_EQ(numbers.dwProductVersionLS, numbers.dwFileVersionLS);
    EXPECT_EQ(numbers.dwFileType, static_cast<DWORD>(GetParam().isProgram ? VFT_APP : VFT_DLL));
}

/// A group of icons in a program's resources.
#pragma pack(push, 2)
struct IconGroup {
    WORD reserved;
    WORD type;
    WORD count;
    struct Entry {
        BYTE width; // 0 stands for 256
        BYTE height;
        BYTE colours;
        BYTE reserved;
        WORD planes;
        WORD bits;
        DWORD size;
        WORD id;
    } entries[1];
};
#pragma pack(pop)

TEST_P(VersionResourceTest, HasAnIconInAllSizesIfItIsAProgram) {
    const Module module = openForResources(GetParam());
    ASSERT_TRUE(module);
    HRSRC found = FindResourceW(module.get(), MAKEINTRESOURCEW(1), RT_GROUP_ICON);
    ASSERT_EQ(found != nullptr, GetParam().isProgram);
    if (!found)
        return;

    const auto& group = *static_cast<const IconGroup*>(LockResource(LoadResource(module.get(), found)));
    std::vector<int> sizes;
    for (WORD i = 0; i < group.count; ++i) {
        const IconGroup::Entry& entry = group.entries[i];
        sizes.push_back(entry.width ? entry.width : 256);
        EXPECT_EQ(entry.height, entry.width);
        EXPECT_EQ(entry.bits, 32);
        HRSRC image = FindResourceW(module.get(), MAKEINTRESOURCEW(entry.id), RT_ICON);
        ASSERT_TRUE(image);
        HICON icon = CreateIconFromResourceEx(
            static_cast<BYTE*>(LockResource(LoadResource(module.get(), image))),
            SizeofResource(module.get(), image), TRUE, 0x00030000, sizes.back(), sizes.back(), 0);
        EXPECT_TRUE(icon) << sizes.back();
        DestroyIcon(icon);
    }
    EXPECT_THAT(sizes, testing::UnorderedElementsAre(16, 20, 24, 32, 40, 48, 64, 256));
}

INSTANTIATE_TEST_SUITE_P(, VersionResourceTest, testing::ValuesIn(BINARIES),
                         [](const auto& info) { return info.param.name(); });

TEST(ShippedBinariesTest, AreAllLookedAt) {
    std::vector<std::string> shipped;
    std::istringstream names(SHIPPED_TARGETS);
    for (std::string name; std::getline(names, name, ',');)
        shipped.push_back(name);
    std::vector<std::string> lookedAt;
    for (const Binary& binary : BINARIES)
        lookedAt.push_back(binary.name());
    EXPECT_THAT(lookedAt, testing::UnorderedElementsAreArray(shipped));
}

} // namespace
