// Decoded images.
#include "BXImage/Image.h"

#include "SorvaneBase/SorvaneException.h"
#include "bxbase/Reference.h"
#include "bxbase/ReferencedImpl.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <memory>

namespace {

using BXImage::Bitmap;
using BXImage::FORMAT_PNG;
using BXImage::FreeImage_LoadFromResource;
using BXImage::Image;
using testing::ElementsAre;

using Pixels = std::vector<std::uint8_t>;

struct ImageCase {
    WORD id;
    int width;
    int height;
    Pixels pixels; ///< blue, green, red, alpha
};

TEST(LoadFromResourceTest, DecodesEveryKindOfPngExactly) {
    const ImageCase cases[] = {
        {1, 3, 2, {0,  0,   255, 255, 0,  255, 0,  255, 255, 0, 0, 255,
                   50, 100, 200, 128, 30, 20,  10, 1,   3,   2, 1, 0}},
        {2, 2, 1, {3, 2, 1, 255, 252, 251, 250, 255}},
        {3, 4, 1, {0, 0, 0, 255, 0, 0, 255, 255, 0, 255, 0, 77, 255, 0, 0, 255}},
        {4, 2, 1, {0, 0, 0, 255, 128, 128, 128, 255}},
    };
    for (const ImageCase& c : cases) {
        SorvaneException error;
        const std::unique_ptr<Bitmap> bitmap(
            FreeImage_LoadFromResource(FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(c.id), error));
        ASSERT_NE(bitmap, nullptr) << c.id << ": " << error.what();
        EXPECT_EQ(bitmap->width, c.width) << c.id;
        EXPECT_EQ(bitmap->height, c.height) << c.id;
        EXPECT_EQ(bitmap->pixels, c.pixels) << c.id;
        EXPECT_TRUE(error.isEmpty()) << c.id;
    }
}

TEST(LoadFromResourceTest, FindsAResourceByNameAndModule) {
    SorvaneException error;
    const std::unique_ptr<Bitmap> bitmap(
        FreeImage_LoadFromResource(FORMAT_PNG, GetModuleHandleW(nullptr), L"PNG", L"NAMED", error));
    ASSERT_NE(bitmap, nullptr) << error.what();
    EXPECT_EQ(bitmap->width, 2);
}

struct BadCase {
    const char* what;
    int format;
    HMODULE module;
    const wchar_t* type;
    const wchar_t* name;
};

TEST(LoadFromResourceTest, ReportsWhyThereIsNoImage) {
    const HMODULE elsewhere = GetModuleHandleW(L"kernel32.dll");
    const BadCase cases[] = {
        {"another format", 2, nullptr, L"PNG", MAKEINTRESOURCEW(1)},
        {"no format", -1, nullptr, L"PNG", MAKEINTRESOURCEW(1)},
        {"a missing identifier", FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(99)},
        {"a missing name", FORMAT_PNG, nullptr, L"PNG", L"MISSING"},
        {"another type", FORMAT_PNG, nullptr, L"PICTURE", MAKEINTRESOURCEW(2)},
        {"another module", FORMAT_PNG, elsewhere, L"PNG", MAKEINTRESOURCEW(1)},
        {"a cut-off file", FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(11)},
        {"a header alone", FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(12)},
        {"a damaged header", FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(13)},
        {"damaged pixels", FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(14)},
        {"a monstrous size", FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(15)},
        {"a text", FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(16)},
        {"an image of another kind", FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(17)},
    };
    for (const BadCase& c : cases) {
        SorvaneException error;
        const std::unique_ptr<Bitmap> bitmap(
            FreeImage_LoadFromResource(c.format, c.module, c.type, c.name, error));
        EXPECT_EQ(bitmap, nullptr) << c.what;
        ASSERT_EQ(error.getReports().size(), 1u) << c.what;
        EXPECT_EQ(error.getReports()[0].sourceFile, "framework/BXImage/FreeImageLoadFromResource");
        EXPECT_FALSE(error.getReports()[0].message.empty());
    }
}

TEST(ImageTest, HasNoPixelsAtFirst) {
    const bxbase::Reference<Image> image(new bxbase::ReferencedImpl<Image>);
    EXPECT_EQ(image->getWidth(), 0);
    EXPECT_EQ(image->getHeight(), 0);
    EXPECT_EQ(image->getBitmap(), nullptr);
}

TEST(ImageTest, OwnsTheBitmapAttachedLast) {
    const bxbase::Reference<Image> image(new bxbase::ReferencedImpl<Image>);
    SorvaneException error;
    image->Attach(FreeImage_LoadFromResource(FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(1), error));
    EXPECT_EQ(image->getWidth(), 3);
    EXPECT_EQ(image->getHeight(), 2);

    image->Attach(FreeImage_LoadFromResource(FORMAT_PNG, nullptr, L"PNG", MAKEINTRESOURCEW(2), error));
    EXPECT_EQ(image->getWidth(), 2);
    EXPECT_EQ(image->getHeight(), 1);
    EXPECT_THAT(image->getBitmap()->pixels, ElementsAre(3, 2, 1, 255, 252, 251, 250, 255));

    image->Attach(nullptr);
    EXPECT_EQ(image->getWidth(), 0);
    EXPECT_EQ(image->getBitmap(), nullptr);
}

} // namespace
