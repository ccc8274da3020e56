// The windows that accompany an export.
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "desktop/ExportRunFixture.h"
#include "host/Text.h"
#include "host/desktop/ProgressWindow.h"
#include "host/desktop/ResultWindow.h"
#include "host/desktop/Texts.h"
#include "support/ClippedTexts.h"

#include <gmock/gmock.h>

#include <commctrl.h>

#include <algorithm>
#include <atomic>

namespace {

using host::localText;
using testing::IsEmpty;

constexpr char section[] = "ScanHost.Export";

class ExportWindowsTest : public testing::TestWithParam<std::wstring> {
protected:
    ExportWindowsTest() { test::loadLanguage(GetParam()); }

    /// The texts of a section whose keys begin so, with numbers filled in.
    static std::vector<std::wstring> texts(const std::string& name, const std::string& begin) {
        std::vector<std::wstring> found;
        for (const auto& [key, text] : bxutils::getResourceManager()->getTexts())
            if (key.first == name && key.second.starts_with(begin))
                found.push_back(
                    localText(name.c_str(), key.second.c_str(), {{L"page", L"4999"}, {L"code", L"12345"}}));
        return found;
    }

    /// What is clipped of the window with the result, whatever it has to say.
    std::vector<std::string> clippedInResult(host::ExportReport report,
                                             const std::vector<std::wstring>& said) {
        report.text = L"1\n2\n3\n4\n5\n6"; // the window is not made smaller then
        std::vector<std::string> clipped;
        inResult(report, [&](HWND dialog) {
            for (const std::wstring& text : said) {
                SetDlgItemTextW(dialog, IDC_RESULT_TEXT, text.c_str());
                const auto found = test::clippedTexts(dialog);
                clipped.insert(clipped.end(), found.begin(), found.end());
            }
        });
        return clipped;
    }

    /// Looks at the window with the result.
    void inResult(const host::ExportReport& report, const std::function<void(HWND)>& look) {
        host::DialogPilot pilot(std::chrono::seconds(20));
        pilot.then("the result", host::dialogWith(IDC_RESULT_TEXT), [&](HWND dialog) {
            look(dialog);
            return host::click(IDOK)(dialog);
        });
        host::ResultWindow(owner, report, [](const std::wstring&) {}).DoModal();
        EXPECT_EQ(pilot.failure(), "");
    }

    test::OwnerWindow owner;
};

INSTANTIATE_TEST_SUITE_P(Languages, ExportWindowsTest, testing::ValuesIn(test::languageFiles()),
                         [](const auto& info) {
                             return host::utf8(info.param.substr(0, info.param.find(L'.')));
                         });

TEST_P(ExportWindowsTest, TellFailuresWithoutClippingThem) {
    auto reasons = texts(section, "Reason.");
    auto sentences = texts("ScanHost.Reports", "");
    for (const std::wstring& text : texts(section, "Failure."))
        sentences.push_back(text);
    ASSERT_GT(reasons.size(), 20u);
    ASSERT_GT(sentences.size(), 10u);
    const std::wstring longestReason = L'\n' + *std::ranges::max_element(reasons, {}, &std::wstring::size);
    const std::wstring longestSentence =
        *std::ranges::max_element(sentences, {}, &std::wstring::size) + L'\n';
    std::vector<std::wstring> said;
    for (const std::wstring& sentence : sentences)
        said.push_back(sentence + longestReason);
    for (const std::wstring& reason : reasons)
        said.push_back(longestSentence + reason);

    EXPECT_THAT(clippedInResult({host::ExportReport::Kind::Failed,
                                 test::hostText("Common", "ExportToZipDlg.ExportToZipFile"),
                                 {},
                                 localText(section, "Result.File"),
                                 L"C:\\page.tif",
                                 false,
                                 L"detail"},
                                said),
                IsEmpty());
}

TEST_P(ExportWindowsTest, TellResultsWithoutClippingThem) {
    std::vector<std::wstring> said{localText(section, "Result.Stopped") + L'\n' +
                                   localText(section, "Result.Nothing")};
    for (std::size_t count : {1u, 2u, 5000u}) {
        said.push_back(host::localCount(section, "Result.Done", count));
        said.push_back(localText(section, "Result.Stopped") + L'\n' +
                       host::localCount(section, "Result.StoppedAfter", count, {{L"total", L"5000"}}));
    }

    EXPECT_THAT(clippedInResult({host::ExportReport::Kind::Stopped,
                                 test::hostText("Common", "ExportToZipDlg.ExportToZipFile"),
                                 {},
                                 localText(section, "Result.Place"),
                                 L"C:\\Scans",
                                 true,
                                 {}},
                                said),
                IsEmpty());
}

TEST_P(ExportWindowsTest, AreNoLargerThanWhatTheyTell) {
    host::ExportReport report{host::ExportReport::Kind::Done, L"Export", L"", L"To:", L"C:\\Scans", true, {}};
    const auto room = [&](const std::wstring& text) {
        report.text = text;
        RECT below{};
        RECT window{};
        RECT said{};
        inResult(report, [&](HWND dialog) {
            GetWindowRect(GetDlgItem(dialog, IDC_RESULT_TEXT), &said);
            GetWindowRect(GetDlgItem(dialog, IDC_RESULT_PATH_LABEL), &below);
            GetWindowRect(dialog, &window);
            EXPECT_THAT(test::clippedTexts(dialog), IsEmpty());
        });
        EXPECT_LT(said.bottom, below.top);
        EXPECT_LT(below.top - said.bottom, 20);
        return window.bottom - window.top;
    };

    EXPECT_LT(room(L"one line"), room(L"1\n2\n3\n4"));
}

TEST_P(ExportWindowsTest, ShowTheProgressWithoutClippingIt) {
    host::ProgressWindow progress(owner,
                                  {test::hostText("Scan", "BasicExport.ExportToDirectory"),
                                   localText(section, "Progress.Stop"),
                                   localText(section, "Progress.Stopping")},
                                  [] {});
    progress.show(
        {localText(section, "Progress.Page", {{L"page", L"4999"}, {L"total", L"5000"}}), L"page 4999.tif",
         localText(section, "Progress.Bytes", {{L"done", L"998.9 GB"}, {L"total", L"999.9 GB"}}), 0.99});
    ASSERT_TRUE(test::waitUntil(test::progressWindow));
    HWND window = test::progressWindow();
    HWND button = GetDlgItem(window, IDCANCEL);
    ASSERT_TRUE(test::waitUntil(
        [&] { return SendDlgItemMessageW(window, IDC_PROGRESS_BAR, PBM_GETPOS, 0, 0) == 990; }));

    EXPECT_THAT(test::clippedTexts(window), IsEmpty());
    PostMessageW(button, BM_CLICK, 0, 0);
    ASSERT_TRUE(test::waitUntil([&] { return !IsWindowEnabled(button); }));
    EXPECT_EQ(host::windowText(button), localText(section, "Progress.Stopping"));
    EXPECT_THAT(test::clippedTexts(window), IsEmpty());
}

class ProgressWindowTest : public testing::Test {
protected:
    ProgressWindowTest() {
        EXPECT_TRUE(test::waitUntil(test::progressWindow));
        window = test::progressWindow();
    }

    bool isStopped() {
        return test::waitUntil([this] { return stops > 0; });
    }

    std::atomic<int> stops = 0;
    test::OwnerWindow owner;
    host::ProgressWindow progress{owner, {L"Export", L"Stop", L"Stopping"}, [this] { ++stops; }};
    HWND window = nullptr;
};

TEST_F(ProgressWindowTest, StopsByEsc) {
    PostMessageW(GetDlgItem(window, IDCANCEL), WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_TRUE(isStopped());
}

TEST_F(ProgressWindowTest, StopsByEnter) {
    PostMessageW(GetDlgItem(window, IDCANCEL), WM_KEYDOWN, VK_RETURN, 0);
    EXPECT_TRUE(isStopped());
}

TEST_F(ProgressWindowTest, StopsByItsCloseBoxAndStaysUntilTheExportEnds) {
    PostMessageW(window, WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_TRUE(isStopped());
    EXPECT_TRUE(IsWindowVisible(window));
}

TEST_F(ProgressWindowTest, HasTheKeyboardWhenTheOwnerHadIt) {
    EXPECT_TRUE(test::waitUntil([this] { return GetForegroundWindow() == window; }));
}

TEST_F(ProgressWindowTest, ComesBackInFrontOfItsOwner) {
    const auto isInFront = [this] { return GetForegroundWindow() == window; };
    ASSERT_TRUE(test::waitUntil(isInFront));
    // Answered once the window has got done with appearing.
    SendMessageW(window, WM_NULL, 0, 0);
    ASSERT_TRUE(SetForegroundWindow(owner));
    EXPECT_TRUE(test::waitUntil(isInFront));
}

TEST_F(ProgressWindowTest, IsNotOwnedAcrossThreads) {
    EXPECT_EQ(GetWindow(window, GW_OWNER), nullptr);
    EXPECT_NE(GetWindowThreadProcessId(window, nullptr), GetCurrentThreadId());
}

TEST(ProgressWindowOfAMomentTest, IsNotSeen) {
    const test::OwnerWindow owner;
    const auto begin = std::chrono::steady_clock::now();
    const host::ProgressWindow progress(owner, {L"Export", L"Stop", L"Stopping"}, [] {});
    Sleep(150);
    const bool isSeen = test::progressWindow() != nullptr;
    // A machine that is too busy for the question gives no answer.
    if (std::chrono::steady_clock::now() - begin < std::chrono::milliseconds(300)) {
        EXPECT_FALSE(isSeen);
    }
}

TEST(ProgressWindowInTheBackgroundTest, LeavesTheKeyboardWhereItIs) {
    const test::OwnerWindow owner;
    const test::OwnerWindow other;
    SetForegroundWindow(other);
    const host::ProgressWindow progress(owner, {L"Export", L"Stop", L"Stopping"}, [] {});
    ASSERT_TRUE(test::waitUntil(test::progressWindow));
    // Answered once the window has got done with appearing.
    SendMessageW(test::progressWindow(), WM_NULL, 0, 0);
    EXPECT_EQ(GetForegroundWindow(), other.GetSafeHwnd());
}

class StandingAsideTest : public test::ExportRunFixture {};

TEST_F(StandingAsideTest, LastsAsLongAsTheEngineAsks) {
    addPages(3);
    ASSERT_EQ(exportToDirectory(out), host::ExportResult::Done);
    DeleteFileW((out + L"\\Scan0003.tif").c_str());
    DeleteFileW((out + L"\\Scan0001.tif").c_str());
    bool wasThere = false;
    bool isBack = false;
    watch.whenAtPage = [&](std::size_t index) {
        if (index == 0)
            wasThere = test::waitUntil(test::progressWindow);
        if (index == 2)
            isBack = test::waitUntil(test::progressWindow);
    };
    question = IDYES;
    isReadyToAnswer = [] { return !test::progressWindow(); };

    EXPECT_EQ(exportToDirectory(out), host::ExportResult::Done);

    EXPECT_TRUE(wasThere);
    EXPECT_TRUE(isBack);
    EXPECT_FALSE(test::progressWindow());
}

} // namespace
