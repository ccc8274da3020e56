// A window's place, remembered and found again.
#include "host/desktop/WindowPlace.h"

#include "support/DialogInspection.h"

#include <gmock/gmock.h>

using test::edges;
using testing::ElementsAre;

namespace {

class Window {
public:
    Window()
        : handle(CreateWindowExW(0, L"#32770", L"", WS_OVERLAPPEDWINDOW, 10, 10, 200, 100, nullptr, nullptr,
                                 nullptr, nullptr)) {}
    ~Window() { DestroyWindow(handle); }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    RECT rect() const {
        RECT rect;
        GetWindowRect(handle, &rect);
        return rect;
    }

    const HWND handle;
};

RECT workArea() {
    RECT area;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
    return area;
}

TEST(WindowPlaceTest, IsFoundAgain) {
    const Window window;
    host::showAt(window.handle, {{120, 80, 520, 380}, false});
    EXPECT_TRUE(IsWindowVisible(window.handle));
    EXPECT_THAT(edges(window.rect()), ElementsAre(120, 80, 520, 380));
    const host::WindowPlace place = host::placeOf(window.handle);
    EXPECT_THAT(edges(place.rect), ElementsAre(120, 80, 520, 380));
    EXPECT_FALSE(place.isMaximized);
}

TEST(WindowPlaceTest, OfAMaximizedWindowIsWhereItWillBeRestoredTo) {
    const Window window;
    host::showAt(window.handle, {{120, 80, 520, 380}, true});
    EXPECT_TRUE(IsZoomed(window.handle));
    const host::WindowPlace place = host::placeOf(window.handle);
    EXPECT_THAT(edges(place.rect), ElementsAre(120, 80, 520, 380));
    EXPECT_TRUE(place.isMaximized);
}

TEST(WindowPlaceTest, OfAMinimizedWindowIsWhatItWas) {
    for (const bool isMaximized : {false, true}) {
        const Window window;
        host::showAt(window.handle, {{120, 80, 520, 380}, isMaximized});
        ShowWindow(window.handle, SW_MINIMIZE);
        const host::WindowPlace place = host::placeOf(window.handle);
        EXPECT_THAT(edges(place.rect), ElementsAre(120, 80, 520, 380));
        EXPECT_EQ(place.isMaximized, isMaximized);
    }
}

TEST(WindowPlaceTest, OnAScreenThatIsGoneMovesToTheNearest) {
    const Window window;
    host::showAt(window.handle, {{20000, 80, 20400, 380}, false});
    EXPECT_THAT(edges(window.rect()), ElementsAre(workArea().right - 400, 80, workArea().right, 380));
}

TEST(WindowPlaceTest, LargerThanTheScreenShrinksToIt) {
    const Window window;
    host::showAt(window.handle, {{-10000, -10000, 10000, 10000}, false});
    EXPECT_EQ(edges(window.rect()), edges(workArea()));
}

TEST(WindowPlaceTest, WithinTheAreaStays) {
    EXPECT_THAT(edges(host::movedInto({-90, 10, -10, 90}, {-100, 0, 0, 100})), ElementsAre(-90, 10, -10, 90));
}

TEST(WindowPlaceTest, PastAnEdgeMovesToIt) {
    const RECT area = {-100, 0, 0, 100};
    EXPECT_THAT(edges(host::movedInto({-120, -1, -60, 50}, area)), ElementsAre(-100, 0, -40, 51));
    EXPECT_THAT(edges(host::movedInto({-20, 80, 40, 130}, area)), ElementsAre(-60, 50, 0, 100));
}

TEST(WindowPlaceTest, IsTheSameAfterBeingText) {
    for (const bool isMaximized : {false, true}) {
        const auto place = host::windowPlaceFrom(host::textOf({{-1280, 0, -10, 900}, isMaximized}));
        ASSERT_TRUE(place);
        EXPECT_THAT(edges(place->rect), ElementsAre(-1280, 0, -10, 900));
        EXPECT_EQ(place->isMaximized, isMaximized);
    }
}

TEST(WindowPlaceTest, IsNotReadOutOfABrokenText) {
    for (const char* text :
         {"", "1 2 30", "1 2 30 x", "1,2,30,40", "1 2 30 40 minimized", "1 2 30 40 maximized x", "30 2 1 40",
          "1 2 1 40", "1 2 30 2", "1 2 30 99999999999", "-40000 2 30 40"})
        EXPECT_FALSE(host::windowPlaceFrom(text)) << text;
}

} // namespace
