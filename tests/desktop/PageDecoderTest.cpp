// Thumbnails out of page files.
#include "host/desktop/PageDecoder.h"

#include "desktop/Pictures.h"
#include "host/desktop/PictureShrinker.h"
#include "support/ImportHook.h"
#include "support/OpenFile.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <wincodec.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <new>
#include <optional>
#include <string>
#include <vector>

extern "C" HRESULT WINAPI WICCreateImagingFactory_Proxy(UINT version, IWICImagingFactory** factory);

namespace {

using host::Thumbnail;
using test::Colour;
using test::encodedPicture;
using test::tiffPicture;
using Kind = host::Thumbnail::Kind;

constexpr int side = 100;
const std::atomic<bool> goOn = false;

Colour at(const Thumbnail& thumbnail, int x, int y) {
    const std::uint8_t* const pixel =
        &thumbnail.pixels[static_cast<std::size_t>(y * thumbnail.size.cx + x) * 4];
    return {pixel[2], pixel[1], pixel[0]};
}

MATCHER_P(IsNearly, colour, "") {
    return std::abs(arg.red - colour.red) < 8 && std::abs(arg.green - colour.green) < 8 &&
           std::abs(arg.blue - colour.blue) < 8;
}

class PageDecoderTest : public testing::Test {
protected:
    Thumbnail decoded(const std::wstring& name, const std::string& bytes) {
        return host::decodePage(folder.write(name, bytes), side, goOn);
    }

    static void expectSize(const Thumbnail& thumbnail, LONG width, LONG height) {
        EXPECT_EQ(thumbnail.size.cx, width);
        EXPECT_EQ(thumbnail.size.cy, height);
        EXPECT_EQ(thumbnail.pixels.size(), static_cast<std::size_t>(width * height * 4));
    }

    test::TempFolder folder;
};

TEST_F(PageDecoderTest, DecodesEachFormat) {
    for (const std::string format : {"bmp", "gif", "jpg", "png", "tif"}) {
        SCOPED_TRACE(format);
        const std::string bytes =
            format == "tif" ? tiffPicture(1, 400, 200) : encodedPicture(format, 400, 200);
        const Thumbnail thumbnail = decoded(L"page", bytes);
        EXPECT_EQ(thumbnail.kind, Kind::Picture);
        EXPECT_EQ(thumbnail.frames, 1U);
        expectSize(thumbnail, 100, 50);
        EXPECT_THAT(at(thumbnail, 2, 48), IsNearly(test::red));
        EXPECT_THAT(at(thumbnail, 97, 2), IsNearly(test::blue));
    }
}

TEST_F(PageDecoderTest, ASmallPictureKeepsItsSize) {
    expectSize(decoded(L"a.png", encodedPicture("png", 30, 40)), 30, 40);
    expectSize(decoded(L"b.png", encodedPicture("png", 30, 1000)), 3, 100);
    expectSize(decoded(L"c.png", encodedPicture("png", 2, 1000)), 1, 100);
}

TEST_F(PageDecoderTest, CountsThePagesOfATiffAndShowsTheFirst) {
    const Thumbnail thumbnail = decoded(L"a.tif", tiffPicture(3, 40, 20));
    EXPECT_EQ(thumbnail.kind, Kind::Picture);
    EXPECT_EQ(thumbnail.frames, 3U);
    expectSize(thumbnail, 40, 20);
}

TEST_F(PageDecoderTest, TurnsAPictureAsItsFileSays) {
    const Thumbnail thumbnail = decoded(L"a.tif", tiffPicture(1, 40, 20, 6));
    expectSize(thumbnail, 20, 40);
    EXPECT_THAT(at(thumbnail, 10, 2), IsNearly(test::red));
    EXPECT_THAT(at(thumbnail, 10, 37), IsNearly(test::blue));
}

/// EXIF data with the orientation as its second entry, as a JPEG file holds them.
std::string exifSegment(char byteOrder, char orientation) {
    const auto number = [byteOrder](std::string little) {
        return byteOrder == 'M' ? std::string(little.rbegin(), little.rend()) : little;
    };
    const auto entry = [&](const std::string& tag, char value) {
        return number(tag) + number({3, 0}) + number({1, 0, 0, 0}) + number({value, 0}) +
               std::string(2, '\0');
    };
    const std::string data = std::string("Exif\0\0", 6) + byteOrder + byteOrder + number({42, 0}) +
                             number({8, 0, 0, 0}) + number({2, 0}) + entry({3, 1}, 1) +
                             entry({0x12, 1}, orientation) + std::string(4, '\0');
    return "\xFF\xE1" + std::string{0, static_cast<char>(data.size() + 2)} + data;
}

TEST_F(PageDecoderTest, TurnsAPhotographAsItsFileSays) {
    const std::string picture = encodedPicture("jpg", 40, 20);
    const std::string start = picture.substr(0, 2);
    const std::string comment("\xFF\xFE\0\6text", 8);
    for (const char byteOrder : {'I', 'M'}) {
        const Thumbnail thumbnail =
            decoded(L"a.jpg", start + comment + exifSegment(byteOrder, 6) + picture.substr(2));
        expectSize(thumbnail, 20, 40);
        EXPECT_THAT(at(thumbnail, 10, 2), IsNearly(test::red)) << byteOrder;
        EXPECT_THAT(at(thumbnail, 10, 37), IsNearly(test::blue)) << byteOrder;
    }
    expectSize(decoded(L"b.jpg", start + exifSegment('I', 1) + picture.substr(2)), 40, 20);
}

TEST_F(PageDecoderTest, WhatTheSystemCannotDecodeIsADocument) {
    for (const wchar_t* name : {L"a.pdf", L"a.jp2", L"a.xyz", L"a"}) {
        const Thumbnail thumbnail = decoded(name, "%PDF-1.7\n");
        EXPECT_EQ(thumbnail.kind, Kind::Document);
        expectSize(thumbnail, 75, 100);
    }
}

TEST_F(PageDecoderTest, WhatIsCalledAPictureAndIsNoneIsBroken) {
    for (const wchar_t* name : {L"a.tif", L"A.JPG", L"a.png"}) {
        EXPECT_EQ(decoded(name, "no picture").kind, Kind::Broken);
        EXPECT_EQ(decoded(name, "").kind, Kind::Broken);
    }
    expectSize(decoded(L"a.tif", "no picture"), 75, 100);
}

TEST_F(PageDecoderTest, APictureCutOffInItsHeaderIsBroken) {
    for (const std::string format : {"bmp", "gif", "jpg", "png", "tif"}) {
        const std::string bytes = format == "tif" ? tiffPicture(1, 40, 20) : encodedPicture(format, 40, 20);
        EXPECT_EQ(decoded(L"a.tif", bytes.substr(0, 20)).kind, Kind::Broken) << format;
    }
}

// Wine's decoder crashes on a TIFF file that ends within its second directory.
TEST_F(PageDecoderTest, ComesBackFromEveryLengthOfACutOffPicture) {
    for (const std::string format : {"gif", "jpg", "png", "tif"}) {
        const std::string bytes = format == "tif" ? tiffPicture(2, 40, 20) : encodedPicture(format, 40, 20);
        for (std::size_t length = 0; length < bytes.size(); length += bytes.size() / 40 + 1) {
            // One name for each: what crashed has left its file open.
            const std::wstring name =
                std::to_wstring(length) + L"." + std::wstring(format.begin(), format.end());
            const Thumbnail thumbnail = decoded(name, bytes.substr(0, length));
            EXPECT_NE(thumbnail.kind, Kind::Document) << format << " of " << length << " bytes";
            EXPECT_EQ(thumbnail.pixels.size(),
                      static_cast<std::size_t>(thumbnail.size.cx * thumbnail.size.cy * 4));
        }
    }
}

TEST_F(PageDecoderTest, AFileThatIsGoneOrLockedIsBroken) {
    EXPECT_EQ(host::decodePage(folder / L"a.pdf", side, goOn).kind, Kind::Broken);
    const std::wstring locked = folder.write(L"a.png", encodedPicture("png", 40, 20));
    const test::OpenFile lock(locked);
    EXPECT_EQ(host::decodePage(locked, side, goOn).kind, Kind::Broken);
}

TEST_F(PageDecoderTest, AMonstrousPictureIsADocument) {
    EXPECT_EQ(decoded(L"a.tif", test::emptyTiff(30'000, 30'000)).kind, Kind::Document);
    EXPECT_EQ(decoded(L"a.tif", test::emptyTiff(2'000'000, 1)).kind, Kind::Document);
    EXPECT_EQ(decoded(L"a.tif", test::emptyTiff(3000, 3000)).kind, Kind::Broken) << "it has no data";
}

TEST_F(PageDecoderTest, AStoppedPictureIsNotMade) {
    const std::atomic<bool> stopped = true;
    const std::wstring file = folder.write(L"a.png", encodedPicture("png", 40, 20));
    EXPECT_NE(host::decodePage(file, side, stopped).kind, Kind::Picture);
}

TEST_F(PageDecoderTest, PathsLongerThan260CharactersAreDecoded) {
    std::wstring name;
    for (int i = 0; i < 3; ++i) {
        name += std::wstring(100, L'd');
        ASSERT_TRUE(CreateDirectoryW((L"\\\\?\\" + (folder / name)).c_str(), nullptr));
        name += L'\\';
    }
    EXPECT_EQ(decoded(name + L"a.png", encodedPicture("png", 40, 20)).kind, Kind::Picture);
}

[[gnu::noinline, gnu::no_sanitize_undefined]] HRESULT WINAPI crash(UINT, IWICImagingFactory**) {
    *static_cast<volatile int*>(nullptr);
    return S_OK;
}

TEST_F(PageDecoderTest, APictureThatTheDecoderCrashesOnIsBroken) {
    const std::string bytes = encodedPicture("png", 40, 20);
    {
        const test::ImportHook hook("WICCreateImagingFactory_Proxy", reinterpret_cast<void*>(&crash));
        EXPECT_EQ(decoded(L"a.png", bytes).kind, Kind::Broken);
    }
    EXPECT_EQ(decoded(L"a.png", bytes).kind, Kind::Picture) << "the next one";
}

HRESULT WINAPI runOutOfMemory(REFWICPixelFormatGUID, IWICBitmapSource*, IWICBitmapSource**) {
    throw std::bad_alloc();
}

TEST_F(PageDecoderTest, APictureThatThereIsNoMemoryForIsADocument) {
    const test::ImportHook hook("WICConvertBitmapSource", reinterpret_cast<void*>(&runOutOfMemory));
    EXPECT_EQ(decoded(L"a.png", encodedPicture("png", 40, 20)).kind, Kind::Document);
}

std::function<void()> whileOpen;

HRESULT WINAPI callFirst(UINT version, IWICImagingFactory** factory) {
    whileOpen();
    return WICCreateImagingFactory_Proxy(version, factory);
}

// The hook of the program's import sends the replacement's own call to itself too.
TEST_F(PageDecoderTest, TheFileCanBeRenamedWhileItIsDecoded) {
    const std::wstring file = folder.write(L"a.png", encodedPicture("png", 40, 20));
    bool renamed = false;
    {
        std::optional<test::ImportHook> hook;
        whileOpen = [&] {
            renamed = MoveFileW(file.c_str(), (folder / L"b.png").c_str());
            hook.reset();
        };
        hook.emplace("WICCreateImagingFactory_Proxy", reinterpret_cast<void*>(&callFirst));
        EXPECT_EQ(host::decodePage(file, side, goOn).kind, Kind::Picture);
    }
    EXPECT_TRUE(renamed);
}

using Pixels = std::vector<std::uint8_t>;

TEST(PictureShrinkerTest, TakesTheMean) {
    host::PictureShrinker shrinker(4, 4, 2);
    const Pixels light(16, 255);
    const Pixels mixed = {0, 0, 0, 255, 255, 255, 255, 255, 0, 0, 0, 255, 0, 0, 0, 255};
    shrinker.addRow(light.data());
    shrinker.addRow(mixed.data());
    shrinker.addRow(mixed.data());
    shrinker.addRow(mixed.data());
    EXPECT_THAT(shrinker.picture().pixels, testing::ElementsAre(191, 191, 191, 255, 128, 128, 128, 255, //
                                                                128, 128, 128, 255, 0, 0, 0, 255));
}

TEST(PictureShrinkerTest, SharesPixelsOutWhereSizesDoNotDivide) {
    host::PictureShrinker shrinker(5, 3, 2);
    const Pixels row = {10, 0, 0, 255, 30, 0, 0, 255, 60, 0, 0, 255, 70, 0, 0, 255, 80, 0, 0, 255};
    for (int y = 0; y < 3; ++y)
        shrinker.addRow(row.data());
    const Thumbnail picture = shrinker.picture();
    EXPECT_EQ(picture.size.cx, 2);
    EXPECT_EQ(picture.size.cy, 1);
    EXPECT_THAT(picture.pixels, testing::ElementsAre(20, 0, 0, 255, 70, 0, 0, 255));
}

TEST(PictureShrinkerTest, PutsWhatIsTransparentOnWhite) {
    host::PictureShrinker shrinker(2, 1, 2);
    const Pixels row = {0, 0, 0, 0, 100, 0, 0, 128};
    shrinker.addRow(row.data());
    EXPECT_THAT(shrinker.picture().pixels, testing::ElementsAre(255, 255, 255, 255, 227, 127, 127, 255));
}

TEST(PictureShrinkerTest, TurnsAndMirrors) {
    struct Case {
        unsigned orientation;
        LONG width;
        const char* pixels;
    } const cases[] = {{0, 3, "abcdef"}, {1, 3, "abcdef"}, {2, 3, "cbafed"}, {3, 3, "fedcba"},
                       {4, 3, "defabc"}, {5, 2, "adbecf"}, {6, 2, "daebfc"}, {7, 2, "fcebda"},
                       {8, 2, "cfbead"}, {9, 3, "abcdef"}};
    Thumbnail picture;
    picture.size = {3, 2};
    for (const char letter : std::string("abcdef"))
        picture.pixels.insert(picture.pixels.end(), 4, static_cast<std::uint8_t>(letter));
    for (const Case& c : cases) {
        const Thumbnail result = host::turned(picture, c.orientation);
        std::string letters;
        for (std::size_t i = 0; i < result.pixels.size(); i += 4)
            letters += static_cast<char>(result.pixels[i]);
        EXPECT_EQ(letters, c.pixels) << c.orientation;
        EXPECT_EQ(result.size.cx, c.width) << c.orientation;
        EXPECT_EQ(result.size.cy, 6 / c.width) << c.orientation;
    }
}

} // namespace
