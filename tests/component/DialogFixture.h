// A dialog of the component on the screen, operated as a user would, and its controls as they must be.
#pragma once

#include "host/DialogPilot.h"
#include "support/DialogInspection.h"
#include "support/HostTexts.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// A control as it must be, with its geometry in dialog units.
struct Control {
    int id;
    const wchar_t* type;
    LONG_PTR style; ///< the type's own part of it
    bool tabStop;
    RECT rect; ///< x, y, width, height
};

inline void expectPlace(HWND window, const Control& control) {
    EXPECT_EQ(test::edges(test::rectIn(window, control.id)), test::edges(test::pixels(window, control.rect)))
        << control.id;
}

inline void expectTypeAndStyle(HWND window, const Control& control) {
    HWND child = GetDlgItem(window, control.id);
    const LONG_PTR style = GetWindowLongPtrW(child, GWL_STYLE);
    EXPECT_EQ(host::windowClass(child), control.type) << control.id;
    EXPECT_EQ(style & 0xFFFF, control.style) << control.id;
    EXPECT_EQ((style & WS_TABSTOP) != 0, control.tabStop) << control.id;
    EXPECT_TRUE(style & WS_VISIBLE) << control.id;
}

/// Names a test after the language file that is its parameter.
inline std::string languageName(const testing::TestParamInfo<std::wstring>& info) {
    const std::wstring& file = info.param;
    return std::string(file.begin(), file.begin() + file.find(L'.'));
}

/// Shows dialogs of one class, one after the other.
template <class Dialog> class DialogFixture : public testing::Test {
protected:
    using Action = host::DialogPilot::Action;

    /// @param controlId  a control by which the dialog is known
    explicit DialogFixture(int controlId) : controlId(controlId) {}

    void SetUp() override { test::loadLanguage(L"en.ini"); }

    /// Opens a new dialog, made with the arguments, does the actions one by one on it, and gives what DoModal()
    /// returned. The actions must close the dialog.
    template <class... Arguments> INT_PTR show(std::vector<Action> actions, const Arguments&... arguments) {
        for (Action& action : actions)
            pilot.then("in the dialog", host::dialogWith(controlId), std::move(action));
        dialog = std::make_unique<Dialog>(arguments...);
        const INT_PTR result = dialog->DoModal();
        EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
        return result;
    }

    /// Opens a new dialog, does something in it, and cancels it.
    template <class... Arguments> void inspect(std::vector<Action> actions, const Arguments&... arguments) {
        actions.push_back(host::click(IDCANCEL));
        EXPECT_EQ(show(std::move(actions), arguments...), IDCANCEL);
    }

    host::DialogPilot pilot{std::chrono::seconds(30)};
    std::unique_ptr<Dialog> dialog; ///< of the last show()

private:
    int controlId;
};
