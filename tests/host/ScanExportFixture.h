// The console program run inside the test, with pages, targets and settings of the test's own.
#pragma once

#include "host/DialogPilot.h"
#include "host/FakeConsole.h"
#include "host/ProgramFolder.h"
#include "host/ScanExport.h"
#include "support/OpenFile.h"
#include "support/ScopedRegistryKey.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace test {

/// Acts from another thread on the dialog that the program leaves to a person. A dialog that does not come up
/// filled in, or stays after the act, fails the test and is cancelled.
class Person {
public:
    /// @param prefixEdit  the control that shows "Scan" once the dialog is filled in
    Person(int prefixEdit, std::function<void(HWND)> act)
        : prefixEdit(prefixEdit),
          worker([this, thread = GetCurrentThreadId(), act = std::move(act)](const std::stop_token& over) {
              const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
              for (; !over.stop_requested(); Sleep(5)) {
                  const HWND dialog = dialogOf(thread);
                  if (!dialog)
                      continue;
                  if (std::chrono::steady_clock::now() > deadline) {
                      isLate = true;
                      PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
                  } else if (!hasActed && isFilledIn(dialog)) {
                      hasActed = true;
                      act(dialog);
                  }
              }
          }) {}
    ~Person() {
        worker.request_stop();
        worker.join();
        EXPECT_TRUE(hasActed) << "the dialog did not come up filled in";
        EXPECT_FALSE(isLate) << "a dialog was cancelled because it did not end";
    }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

private:
    bool isFilledIn(HWND dialog) const { return host::windowText(GetDlgItem(dialog, prefixEdit)) == L"Scan"; }

    static HWND dialogOf(DWORD thread) {
        HWND found = nullptr;
        EnumThreadWindows(thread, visit, reinterpret_cast<LPARAM>(&found));
        return found;
    }

    static BOOL CALLBACK visit(HWND window, LPARAM found) {
        if (!IsWindowVisible(window) || host::windowClass(window) != L"#32770")
            return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
    }

    int prefixEdit;
    bool hasActed = false;
    bool isLate = false;
    std::jthread worker; ///< last, so that it starts after and ends before what it uses
};

} // namespace test

class ScanExportFixture : public testing::Test {
protected:
    ScanExportFixture() {
        surroundings.programFolder = host::programFolder();
        surroundings.baseRegistryPath = basePath;
        surroundings.temporaryFolder = folder / L"temp";
        surroundings.isDesktopVisible = [] { return true; }; // to Person, wherever the test runs
        CreateDirectoryW(pages.c_str(), nullptr);
    }

    std::wstring addPage(const std::wstring& name, const std::string& data = "data") {
        return folder.write(L"Faktury\\" + name, data);
    }

    int run(std::vector<std::wstring> arguments) {
        arguments.insert(arguments.begin(), {L"--lang", L"en"});
        return host::runScanExport(arguments, console, surroundings);
    }

    std::string outFile(const std::wstring& name) const { return test::readFile(out + L"\\" + name); }

    std::vector<std::wstring> outNames() const { return namesIn(out); }

    static std::vector<std::wstring> namesIn(const std::wstring& directory) {
        std::vector<std::wstring> names;
        WIN32_FIND_DATAW entry;
        HANDLE search = FindFirstFileW((directory + L"\\*").c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE)
            return names;
        do {
            if (!(entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
                names.emplace_back(entry.cFileName);
        } while (FindNextFileW(search, &entry));
        FindClose(search);
        std::sort(names.begin(), names.end());
        return names;
    }

    bool outExists() const { return GetFileAttributesW(out.c_str()) != INVALID_FILE_ATTRIBUTES; }

    std::optional<std::wstring> rememberedText(const wchar_t* name) const {
        wchar_t text[1024] = {};
        DWORD size = sizeof text;
        if (RegGetValueW(HKEY_CURRENT_USER, key().c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size))
            return std::nullopt;
        return text;
    }

    std::optional<DWORD> rememberedNumber(const wchar_t* name) const {
        DWORD number = 0;
        DWORD size = sizeof number;
        if (RegGetValueW(HKEY_CURRENT_USER, key().c_str(), name, RRF_RT_REG_DWORD, nullptr, &number, &size))
            return std::nullopt;
        return number;
    }

    std::wstring key() const { return L"SOFTWARE\\" + basePath + L"\\1.0\\Components\\BasicExport"; }

    /// What is printed before the page with this number (from 1) is exported.
    static std::string beforePage(int number) { return "Exporting page " + std::to_string(number) + " of "; }

    /// Does something while the export is at a page, before its file is asked for.
    void whenAtPage(int number, std::function<void()> action) {
        console.watched = true;
        console.onPrint = [number, action = std::move(action)](const std::string& text) {
            if (text.starts_with(beforePage(number)))
                action();
        };
    }

    const test::TempFolder folder;
    const std::wstring pages = folder / L"Faktury";
    const std::wstring out = folder / L"out";
    const std::wstring basePath = L"BasicExportTests\\host-" + std::to_wstring(GetCurrentProcessId());
    const test::ScopedRegistryKey registryKey{L"SOFTWARE\\" + basePath};
    host::Surroundings surroundings;
    test::FakeConsole console;
};
