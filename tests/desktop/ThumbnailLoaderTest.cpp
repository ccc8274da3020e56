// Making thumbnails in the background.
#include "host/desktop/ThumbnailLoader.h"

#include "desktop/Pictures.h"
#include "support/ImportHook.h"
#include "support/MessageLoop.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

using host::PageVersion;
using host::Thumbnail;
using host::ThumbnailLoader;
using testing::ElementsAre;

// The files as the loader's thread opens them. At one called "gate" it waits until the test lets it through.
class Opened {
public:
    void tell(const std::wstring& path) {
        std::unique_lock lock(mutex);
        names.push_back(path.substr(path.find_last_of(L'\\') + 1));
        changed.notify_all();
        if (names.back().starts_with(L"gate"))
            changed.wait(lock, [this] { return gateOpen; });
    }

    void openGate() {
        const std::lock_guard lock(mutex);
        gateOpen = true;
        changed.notify_all();
    }

    bool waitFor(const std::wstring& name) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(30),
                                [&] { return std::ranges::find(names, name) != names.end(); });
    }

    std::vector<std::wstring> all() {
        const std::lock_guard lock(mutex);
        return names;
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::wstring> names;
    bool gateOpen = false;
};

Opened* opened = nullptr;
DWORD testThread = 0;

HANDLE WINAPI openAndTell(const wchar_t* path, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                          DWORD disposition, DWORD flags, HANDLE pattern) {
    if (GetCurrentThreadId() != testThread)
        opened->tell(path);
    const auto createFile = reinterpret_cast<decltype(&CreateFileW)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "CreateFileW")));
    return createFile(path, access, share, security, disposition, flags, pattern);
}

class ThumbnailLoaderTest : public testing::Test {
protected:
    ThumbnailLoaderTest() {
        opened = &files;
        testThread = GetCurrentThreadId();
        loader.emplace([this] {
            EXPECT_EQ(GetCurrentThreadId(), testThread);
            ++calls;
        });
        loader->setSize(50);
    }

    PageVersion page(const std::wstring& name) { return {folder.write(name, picture), 0}; }

    bool load(const PageVersion& page) {
        return test::handleMessagesUntil([&] { return loader->find(page) != nullptr; });
    }

    /// Keeps the loader's thread waiting.
    void closeGate() {
        loader->find(page(L"gate"));
        ASSERT_TRUE(files.waitFor(L"gate"));
    }

    const std::string picture = test::encodedPicture("png", 200, 100);
    test::TempFolder folder;
    Opened files;
    int calls = 0;
    test::ImportHook hook{"CreateFileW", reinterpret_cast<void*>(&openAndTell)};
    std::optional<ThumbnailLoader> loader;
};

TEST_F(ThumbnailLoaderTest, MakesWhatIsAskedForAndKeepsIt) {
    const PageVersion asked = page(L"a");
    EXPECT_EQ(loader->find(asked), nullptr);
    ASSERT_TRUE(load(asked));
    const auto thumbnail = loader->find(asked);
    EXPECT_EQ(thumbnail->kind, Thumbnail::Kind::Picture);
    EXPECT_EQ(thumbnail->size.cx, 50);
    EXPECT_EQ(loader->find(asked), thumbnail);
    EXPECT_THAT(files.all(), ElementsAre(L"a"));
    EXPECT_EQ(calls, 1);
}

TEST_F(ThumbnailLoaderTest, MakesTheOneAskedForLastFirst) {
    closeGate();
    loader->find(page(L"a"));
    loader->find(page(L"b"));
    loader->find(page(L"c"));
    files.openGate();
    ASSERT_TRUE(files.waitFor(L"a"));
    EXPECT_THAT(files.all(), ElementsAre(L"gate", L"c", L"b", L"a"));
}

TEST_F(ThumbnailLoaderTest, AskingAgainComesFirstAndMakesOnce) {
    closeGate();
    const PageVersion a = page(L"a");
    const PageVersion b = page(L"b");
    loader->find(a);
    loader->find(b);
    loader->find(a);
    loader->find({folder / L"gate", 0});
    files.openGate();
    ASSERT_TRUE(files.waitFor(L"b"));
    ASSERT_TRUE(load(a));
    EXPECT_THAT(files.all(), ElementsAre(L"gate", L"a", L"b"));
}

TEST_F(ThumbnailLoaderTest, ForgetsWhatWasAskedFor) {
    closeGate();
    loader->find(page(L"a"));
    loader->find(page(L"b"));
    loader->forgetRequests();
    const PageVersion c = page(L"c");
    loader->find(c);
    files.openGate();
    ASSERT_TRUE(load(c));
    EXPECT_TRUE(load({folder / L"gate", 0})) << "the one being made comes all the same";
    EXPECT_THAT(files.all(), ElementsAre(L"gate", L"c"));
}

TEST_F(ThumbnailLoaderTest, CallsOnceForAllThatHaveCome) {
    const PageVersion pages[] = {page(L"c"), page(L"b"), page(L"a")};
    closeGate();
    loader->find(page(L"gate 2"));
    for (const PageVersion& one : pages)
        loader->find(one);
    files.openGate();
    ASSERT_TRUE(files.waitFor(L"gate 2"));
    EXPECT_EQ(calls, 0);
    ASSERT_TRUE(test::handleMessagesUntil([] {
        MSG message;
        return !PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE);
    }));
    EXPECT_GE(calls, 1);
    EXPECT_LE(calls, 2) << "five have come, the last of them perhaps after the first call";
    for (const PageVersion& one : pages)
        EXPECT_TRUE(loader->find(one));
}

TEST_F(ThumbnailLoaderTest, MakesThemAnewInAnotherSize) {
    const PageVersion a = page(L"a");
    ASSERT_TRUE(load(a));
    loader->setSize(50);
    EXPECT_TRUE(loader->find(a)) << "the size is the same";
    closeGate();
    loader->setSize(80);
    EXPECT_FALSE(loader->find(a));
    files.openGate();
    ASSERT_TRUE(load(a));
    EXPECT_EQ(loader->find(a)->size.cx, 80);
    ASSERT_TRUE(load({folder / L"gate", 0}));
    EXPECT_EQ(loader->find({folder / L"gate", 0})->size.cx, 80) << "it was made in the size from before";
}

TEST_F(ThumbnailLoaderTest, MakesAChangedFileAnew) {
    const PageVersion before = page(L"a");
    ASSERT_TRUE(load(before));
    EXPECT_EQ(loader->find({before.path, 1}), nullptr);
}

TEST_F(ThumbnailLoaderTest, EndsWhileItIsBusyAndMakesNoMore) {
    closeGate();
    for (const wchar_t* name : {L"a", L"b", L"c"})
        loader->find(page(name));
    std::thread opening([this] {
        Sleep(100);
        files.openGate();
    });
    loader.reset();
    opening.join();
    EXPECT_THAT(files.all(), ElementsAre(L"gate"));
    EXPECT_EQ(calls, 0);
}

} // namespace
