// What the program shows outside of its own dialogs has room in every language, and no dialog goes unmeasured.
#include "Components/BasicExport/resource.h"
#include "host/ComponentModule.h"
#include "host/DialogPilot.h"
#include "host/HostApplication.h"
#include "host/ProgramFolder.h"
#include "host/Text.h"
#include "host/desktop/Commands.h"
#include "host/desktop/ExportControls.h"
#include "host/desktop/LeftOutText.h"
#include "host/desktop/MainWindow.h"
#include "host/desktop/MessageFont.h"
#include "host/desktop/SettingsControls.h"
#include "host/desktop/StatusBar.h"
#include "host/desktop/Texts.h"
#include "support/ClippedTexts.h"
#include "support/HostTexts.h"
#include "support/ScopedRegistryKey.h"

#include <gmock/gmock.h>

#include <afxwin.h>
#include <commctrl.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using host::utf8;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// A small window at 96 dpi.
constexpr int width = 640;
constexpr int height = 480;

CSize sizeOf(HWND window, HFONT font, const std::wstring& text, int room) {
    const HDC dc = GetDC(window);
    const HGDIOBJ previous = SelectObject(dc, font);
    CRect needed(0, 0, room, 0);
    DrawTextW(dc, text.c_str(), -1, needed, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    SelectObject(dc, previous);
    ReleaseDC(window, dc);
    return needed.Size();
}

/// Keeps what is clipped in the message boxes that come up, and closes them.
class MessageBoxes {
public:
    MessageBoxes() : pilot(std::chrono::seconds(20)) {
        pilot.always(host::anyMessageBox(), [this](HWND box) {
            ++count;
            std::ranges::move(test::clippedTexts(box), std::back_inserter(clipped));
            return host::click(GetDlgItem(box, IDNO) ? IDNO : IDOK)(box);
        });
    }

    int count = 0;
    std::vector<std::string> clipped;

private:
    host::DialogPilot pilot;
};

HFONT fontOf(HWND window) {
    return reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
}

class LabelsTest : public testing::TestWithParam<std::wstring> {
protected:
    LabelsTest() {
        test::loadLanguage(GetParam());
        component.emplace(host::programFolder() + L"\\BasicExport.dll", manager);
    }

    ~LabelsTest() override {
        window.DestroyWindow();
        // Or the next test's message boxes would close at once.
        MSG quit;
        while (PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE)) {
        }
    }

    void open() {
        ASSERT_TRUE(window.create());
        window.setTexts();
        window.MoveWindow(CRect(0, 0, width, height));
        window.showFirst(SW_SHOWNORMAL);
    }

    const std::wstring basePath = L"BasicExportTests\\labels-" + std::to_wstring(GetCurrentProcessId());
    const test::ScopedRegistryKey registryKey{L"SOFTWARE\\" + basePath};
    host::HostApplication application{basePath};
    host::EnginesManager manager;
    std::optional<host::ComponentModule> component;
    host::MainWindow window{manager, host::DesktopSettings(*application.getSettingsStore())};
};

INSTANTIATE_TEST_SUITE_P(Languages, LabelsTest, testing::ValuesIn(test::languageFiles()),
                         [](const testing::TestParamInfo<std::wstring>& info) {
                             return utf8(info.param.substr(0, info.param.find(L'.')));
                         });

TEST_P(LabelsTest, TheMenuBarHasOneLine) {
    open();
    const HMENU bar = GetMenu(window);
    CRect first;
    ASSERT_TRUE(GetMenuItemRect(window, bar, 0, first));
    ASSERT_GT(first.Width(), 0);
    CRect whole;
    window.GetWindowRect(whole);
    for (int i = 1; i < GetMenuItemCount(bar); ++i) {
        CRect item;
        GetMenuItemRect(window, bar, static_cast<UINT>(i), item);
        EXPECT_EQ(item.top, first.top) << i;
        EXPECT_LE(item.right, whole.right) << i;
    }
}

TEST_P(LabelsTest, EachTargetsButtonShowsItsName) {
    open();
    const HWND bar = FindWindowExW(window, nullptr, TOOLBARCLASSNAMEW, nullptr);
    CRect area;
    GetClientRect(bar, area);
    const auto& targets = manager.getFactories();
    ASSERT_EQ(targets.size(), 3);
    for (std::size_t i = 0; i < targets.size(); ++i) {
        CRect button;
        SendMessageW(bar, TB_GETITEMRECT, i, reinterpret_cast<LPARAM>(&button));
        constexpr int icon = 32;
        const std::wstring name = host::wide(targets[i]->getName());
        EXPECT_GE(button.Width(), icon + sizeOf(bar, fontOf(bar), name, width).cx) << targets[i]->getName();
        EXPECT_LE(button.right, area.right) << targets[i]->getName();
        EXPECT_LE(button.bottom, area.bottom) << targets[i]->getName();
    }
}

TEST_P(LabelsTest, TheStatusBarHasRoomForThousandsOfPages) {
    constexpr char section[] = "ScanHost.Window";
    open();
    host::StatusBar status;
    ASSERT_TRUE(status.create(window, 100));
    const host::Font font = host::messageFont(USER_DEFAULT_SCREEN_DPI);
    status.SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font.get()));
    const std::wstring pages = host::localCount(section, "Pages", 5000) + L", ";
    const std::pair<std::wstring, std::wstring> shown[] = {
        {pages + host::localCount(section, "Selected", 1), host::localCount(section, "ExportsAll", 5000)},
        {pages + host::localCount(section, "Selected", 4999),
         host::localCount(section, "ExportsSelected", 4999)},
        {host::localCount(section, "Adding", 4999), host::localCount(section, "ExportsAll", 4999)},
    };
    for (const auto& [left, right] : shown) {
        status.show(left, right);
        for (const auto& [part, text] : {std::pair<WPARAM, std::wstring>(0, left), {1, right}}) {
            CRect room;
            status.SendMessage(SB_GETRECT, part, reinterpret_cast<LPARAM>(&room));
            constexpr int edges = 6;
            EXPECT_GE(room.Width() - edges, sizeOf(status, font.get(), text, width).cx) << utf8(text);
        }
    }
}

TEST_P(LabelsTest, TheHintFitsIntoAWindowWithoutPages) {
    open();
    HWND view = GetWindow(window, GW_CHILD);
    while (view && !FindWindowExW(view, nullptr, WC_LISTVIEWW, nullptr))
        view = GetWindow(view, GW_HWNDNEXT);
    CRect area;
    GetClientRect(view, area);
    ASSERT_GT(area.Height(), 100);
    constexpr int margin = 24;
    const int room = area.Width() - 2 * margin;
    const CSize needed = sizeOf(view, host::messageFont(USER_DEFAULT_SCREEN_DPI).get(),
                                host::localText("ScanHost.Pages", "PagesEmpty"), room);
    EXPECT_LE(needed.cx, room);
    EXPECT_LE(needed.cy, area.Height());
}

TEST_P(LabelsTest, MessagesAreSeenWhole) {
    constexpr char section[] = "ScanHost.Window";
    open();
    MessageBoxes boxes;
    window.SendMessage(WM_COMMAND, host::commandAbout);
    ASSERT_EQ(boxes.count, 1);

    using host::LeftOut;
    using SorvaneCommon::MessageDlgType;
    const std::wstring path = LR"(C:\Scans\2024\invoices of the last quarter\page 0001.txt)";
    CString overwrite;
    overwrite.Format(test::hostText("Common", "Question.OverwriteFile").c_str(), path.c_str());
    struct Message {
        MessageDlgType type;
        std::wstring text;
        std::wstring title;
    };
    const std::vector<Message> messages = {
        {MessageDlgType::Question, host::localText(section, "CloseStops"), {}},
        {MessageDlgType::Question, overwrite.GetString(), {}},
        {MessageDlgType::Question, test::hostText("Common", "ExportToMail.FileSizeLimit"),
         test::hostText("Common", "ExportToMail.FileSizeLimitTitle")},
        {MessageDlgType::Error, test::hostText("Scan", "ScanExport.Error.PathNotExists"),
         test::hostText("Common", "Error")},
        {MessageDlgType::Error, host::localText(section, "Failed", {{L"reason", path}}), {}},
        {MessageDlgType::Warning, host::localText(section, "ComponentsFailed", {{L"reasons", path}}), {}},
        {MessageDlgType::Warning,
         host::leftOutText(std::vector<LeftOut>(10, {LeftOut::Why::NoPage, path, 0})),
         {}},
    };
    for (const Message& message : messages)
        application.showMessage(window, message.type, utf8(message.text), utf8(message.title));
    EXPECT_EQ(boxes.count, 1 + static_cast<int>(messages.size()));
    EXPECT_THAT(boxes.clipped, IsEmpty());
}

/// The identifiers of a module's dialog templates.
std::vector<int> templatesOf(const std::wstring& fileName) {
    std::vector<int> ids;
    const HMODULE module =
        LoadLibraryExW((host::programFolder() + L'\\' + fileName).c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    EXPECT_TRUE(module);
    EnumResourceNamesW(
        module, RT_DIALOG,
        [](HMODULE, LPCWSTR, LPWSTR name, LONG_PTR list) -> BOOL {
            reinterpret_cast<std::vector<int>*>(list)->push_back(
                static_cast<int>(reinterpret_cast<UINT_PTR>(name)));
            return TRUE;
        },
        reinterpret_cast<LONG_PTR>(&ids));
    FreeLibrary(module);
    return ids;
}

// Whoever adds a dialog adds a test that measures its texts in all languages, and the dialog here.
TEST(DialogTemplatesTest, AreThoseWhoseTextsAreMeasured) {
    EXPECT_THAT(templatesOf(L"ScanHost.exe"),
                UnorderedElementsAre(IDD_EXPORT_PROGRESS, // ExportWindowsTest
                                     IDD_EXPORT_RESULT,   // ExportWindowsTest
                                     IDD_SETTINGS));      // SettingsDialogLanguageTest
    EXPECT_THAT(templatesOf(L"BasicExport.dll"),
                UnorderedElementsAre(IDD_EXPORT_DIRECTORY, // DirectoryDialogLanguageTest
                                     IDD_EXPORT_ZIP,       // ZipDialogLanguageTest
                                     IDD_SEND_MAIL));      // MailDialogLanguageTest
}

} // namespace
