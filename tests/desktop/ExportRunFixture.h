// Exports through the real component, with windows that a test answers.
#pragma once

#include "afxwin.h"
#include "bxbase/ReferencedImpl.h"
#include "host/ComponentModule.h"
#include "host/DialogPilot.h"
#include "host/DirectoryDialogControls.h"
#include "host/EnginesManager.h"
#include "host/HostApplication.h"
#include "host/MailDialogControls.h"
#include "host/ProgramFolder.h"
#include "host/TemporaryRoot.h"
#include "host/ZipDialogControls.h"
#include "host/desktop/ExportControls.h"
#include "host/desktop/ExportRun.h"
#include "host/desktop/ExportWatch.h"
#include "support/HostTexts.h"
#include "support/ScopedRegistryKey.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// The window of the program, as far as an export sees it.
class OwnerWindow : public CWnd {
public:
    OwnerWindow() {
        CreateEx(0, AfxRegisterWndClass(0), L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 100, 600, 400,
                 nullptr, nullptr, nullptr);
    }
    ~OwnerWindow() override { DestroyWindow(); }

    std::function<void()> whenKeyDown;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_KEYDOWN && whenKeyDown)
            whenKeyDown();
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

/// Waits until something is so, or for long enough. Handles meanwhile what other threads send to this one.
template <class Condition> bool waitUntil(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        Sleep(5);
    }
    return true;
}

/// The window of this process that shows the progress, if it can be seen, or null.
inline HWND progressWindow() {
    return host::windowOf(GetCurrentProcessId(), host::dialogWith(IDC_PROGRESS_BAR));
}

/// Does what a test wants when the engine comes to a page.
class ActingWatch : public host::ExportWatch {
public:
    void pageAsked(const host::FilePage& page) override {
        const auto before = current();
        ExportWatch::pageAsked(page);
        if (isRunning() && current() != before && whenAtPage)
            whenAtPage(*current());
    }

    std::function<void(std::size_t index)> whenAtPage;
};

/// What the window with the result showed.
struct ShownResult {
    std::wstring title;
    std::wstring text;
    std::wstring pathLabel;
    std::wstring path;
    std::wstring details;
    bool canOpen = false;
    bool canCopy = false;
};

class ExportRunFixture : public testing::Test {
protected:
    ExportRunFixture() {
        loadLanguage(L"en.ini");
        component.emplace(host::programFolder() + L"\\BasicExport.dll", manager);
    }

    /// Adds pages with those bytes.
    void addPages(std::size_t count, const std::string& data = "data") {
        const auto inFolder = std::make_shared<host::FileFolder>(folder.path());
        for (std::size_t index = 0; index < count; ++index) {
            const std::wstring name = L"page " + std::to_wstring(pages.size() + 1) + L".tif";
            const std::wstring path = folder.write(name, data);
            pages.emplace_back(new bxbase::ReferencedImpl<host::FilePage>(path, inFolder, &watch));
        }
    }

    host::ExportResult exportToDirectory(const std::wstring& path) {
        using namespace host::directoryDialog;
        return run("dir.file", pathEdit,
                   {host::enterText(pathEdit, path), host::enterText(prefixEdit, L"Scan")});
    }

    host::ExportResult exportToZip(const std::wstring& path) {
        return run("zip.file", host::zipDialog::pathEdit, {host::enterText(host::zipDialog::pathEdit, path)});
    }

    host::ExportResult exportToMail() { return run("mail.file", host::mailDialog::subjectEdit, {}); }

    /// Confirms the engine's dialog, answers what is asked as the test has told the pilot, and closes the result.
    host::ExportResult run(const std::string& kind, int control,
                           std::vector<host::DialogPilot::Action> entries) {
        entries.push_back(host::click(dialogButton));
        pilot.then("the engine's dialog", host::dialogWith(control), host::inOrder(std::move(entries)));
        if (question)
            pilot.then("a question", host::anyMessageBox(), [this](HWND box) {
                return (!isReadyToAnswer || isReadyToAnswer()) && host::click(*question)(box);
            });
        if (dialogButton == IDOK)
            pilot.then("the result", host::dialogWith(IDC_RESULT_TEXT), [this](HWND dialog) {
                shown = read(dialog);
                return host::click(resultButton)(dialog);
            });
        const auto result =
            host::runExport(owner, *manager.findFactory("com.brellix.sorvane.exportdata-factory." + kind),
                            pages, watch, [this](const std::wstring& path) { opened.push_back(path); });
        EXPECT_EQ(pilot.failure(), "");
        EXPECT_TRUE(owner.IsWindowEnabled());
        EXPECT_FALSE(watch.isRunning());
        return result;
    }

    /// Stops the export in the window with the progress, as a person does.
    static void pressStop() {
        ASSERT_TRUE(waitUntil(progressWindow));
        HWND button = GetDlgItem(progressWindow(), IDCANCEL);
        PostMessageW(button, BM_CLICK, 0, 0);
        EXPECT_TRUE(waitUntil([button] { return !IsWindowEnabled(button); }));
    }

    static std::wstring clipboardText() {
        std::wstring text;
        if (OpenClipboard(nullptr)) {
            if (HANDLE memory = GetClipboardData(CF_UNICODETEXT))
                text = static_cast<const wchar_t*>(GlobalLock(memory));
            CloseClipboard();
        }
        return text;
    }

    static ShownResult read(HWND dialog) {
        const auto text = [dialog](int control) {
            HWND window = GetDlgItem(dialog, control);
            return IsWindowVisible(window) ? host::windowText(window) : L"";
        };
        return {host::windowText(dialog),
                text(IDC_RESULT_TEXT),
                text(IDC_RESULT_PATH_LABEL),
                text(IDC_RESULT_PATH),
                text(IDC_RESULT_DETAILS),
                IsWindowVisible(GetDlgItem(dialog, IDC_RESULT_OPEN)) != FALSE,
                IsWindowVisible(GetDlgItem(dialog, IDC_RESULT_COPY)) != FALSE};
    }

    const TempFolder folder;
    const std::wstring out = folder / L"out";
    const std::wstring basePath = L"BasicExportTests\\desktop-" + std::to_wstring(GetCurrentProcessId());
    const ScopedRegistryKey registryKey{L"SOFTWARE\\" + basePath};
    CWinApp program{L"ScanHost"};
    host::TemporaryRoot temporaryRoot{folder / L"temp"};
    host::HostApplication application{basePath};
    host::EnginesManager manager;
    std::optional<host::ComponentModule> component;
    OwnerWindow owner;
    ActingWatch watch;
    host::FilePages pages;
    host::DialogPilot pilot{std::chrono::seconds(20)};
    int dialogButton = IDOK;
    std::optional<int> question; ///< the answer to the question that comes meanwhile
    std::function<bool()> isReadyToAnswer;
    int resultButton = IDOK;
    ShownResult shown;
    std::vector<std::wstring> opened;
};

} // namespace test
