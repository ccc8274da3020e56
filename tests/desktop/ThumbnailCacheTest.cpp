// Keeping the thumbnails that were used last.
#include "host/desktop/ThumbnailCache.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

namespace {

using host::PageVersion;
using host::Thumbnail;
using host::ThumbnailCache;

std::shared_ptr<const Thumbnail> thumbnailOf(std::size_t bytes) {
    auto thumbnail = std::make_shared<Thumbnail>();
    thumbnail->pixels.resize(bytes - sizeof(Thumbnail));
    return thumbnail;
}

PageVersion page(const std::wstring& path) {
    return {path, 0};
}

TEST(ThumbnailCacheTest, GivesWhatWasPut) {
    ThumbnailCache cache(1000);
    const auto thumbnail = thumbnailOf(400);
    cache.put(page(L"a"), thumbnail);
    EXPECT_EQ(cache.find(page(L"a")), thumbnail);
    EXPECT_EQ(cache.find(page(L"b")), nullptr);
    EXPECT_EQ(cache.find({L"a", 1}), nullptr) << "the file has changed";
}

TEST(ThumbnailCacheTest, TheOneUnusedForTheLongestTimeMakesRoom) {
    ThumbnailCache cache(1000);
    cache.put(page(L"a"), thumbnailOf(400));
    cache.put(page(L"b"), thumbnailOf(400));
    cache.find(page(L"a"));
    cache.put(page(L"c"), thumbnailOf(400));
    EXPECT_TRUE(cache.find(page(L"a")));
    EXPECT_FALSE(cache.find(page(L"b")));
    EXPECT_TRUE(cache.find(page(L"c")));
    EXPECT_EQ(cache.bytes(), 800U);
}

TEST(ThumbnailCacheTest, NeverHoldsMoreThanItsLimit) {
    ThumbnailCache cache(10'000);
    for (int i = 0; i < 1000; ++i) {
        cache.put(page(std::to_wstring(i)), thumbnailOf(200 + static_cast<std::size_t>(i) * 7 % 3000));
        ASSERT_LE(cache.bytes(), 10'000U);
    }
    EXPECT_GT(cache.bytes(), 7000U);
    cache.put(page(L"large"), thumbnailOf(10'001));
    EXPECT_EQ(cache.find(page(L"large")), nullptr);
    EXPECT_EQ(cache.bytes(), 0U);
}

TEST(ThumbnailCacheTest, HoldsAsMuchAsItsLimit) {
    ThumbnailCache cache(800);
    cache.put(page(L"a"), thumbnailOf(400));
    cache.put(page(L"b"), thumbnailOf(400));
    EXPECT_TRUE(cache.find(page(L"a")));
    EXPECT_TRUE(cache.find(page(L"b")));
}

TEST(ThumbnailCacheTest, ReplacesOneOfTheSamePage) {
    ThumbnailCache cache(1000);
    cache.put(page(L"a"), thumbnailOf(400));
    const auto newer = thumbnailOf(300);
    cache.put(page(L"a"), newer);
    EXPECT_EQ(cache.find(page(L"a")), newer);
    EXPECT_EQ(cache.bytes(), 300U);
}

TEST(ThumbnailCacheTest, IsEmptyAfterClearing) {
    ThumbnailCache cache(1000);
    cache.put(page(L"a"), thumbnailOf(400));
    cache.clear();
    EXPECT_EQ(cache.find(page(L"a")), nullptr);
    EXPECT_EQ(cache.bytes(), 0U);
}

} // namespace
