// Measures the start and the memory of the program with a window against those of Notepad.
//   DesktopBenchmark FOLDER [--pages 5000] [--rounds 3]
#include "bench/CopyTurns.h"

#include "host/CommandLinePath.h"
#include "host/HostError.h"
#include "host/ProgramFolder.h"
#include "host/Text.h"

#include <windows.h>

#include <commctrl.h>
#include <psapi.h>

#include <chrono>
#include <cstdio>
#include <cwchar>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace bench;

constexpr std::chrono::minutes limit{5};
constexpr double mebibyte = 1024 * 1024;

void waitUntil(const char* what, const std::function<bool()>& condition) {
    for (const auto end = Clock::now() + limit; !condition(); Sleep(1))
        if (Clock::now() > end)
            throw host::HostError(std::string("Waited too long for ") + what + ".");
}

/// Looks through the windows for the one that fits.
HWND findWindow(HWND parent, const std::function<bool(HWND)>& fits) {
    std::pair<const std::function<bool(HWND)>&, HWND> search{fits, nullptr};
    const auto look = [](HWND window, LPARAM data) -> BOOL {
        auto& [condition, found] = *reinterpret_cast<decltype(search)*>(data);
        if (condition(window))
            found = window;
        return found == nullptr;
    };
    EnumChildWindows(parent, look, reinterpret_cast<LPARAM>(&search));
    return search.second;
}

/// A program from its start to the end that its window is told of.
class Program {
public:
    explicit Program(std::wstring commandLine) : start(Clock::now()) {
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                            &startup, &process))
            fail("A program does not start");
        CloseHandle(process.hThread);
        waitUntil("a window", [this] { return findMainWindow(); });
        // Returns when the program has drawn it, and with that handles messages.
        RedrawWindow(window, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        SendMessageW(window, WM_NULL, 0, 0);
        secondsToStart = secondsSince(start);
    }
    ~Program() {
        PostMessageW(window, WM_CLOSE, 0, 0);
        WaitForSingleObject(process.hProcess, INFINITE);
        CloseHandle(process.hProcess);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    double startTime() const { return secondsToStart; }
    double age() const { return secondsSince(start); }

    HWND list() const {
        return findWindow(window, [](HWND child) {
            wchar_t name[32] = L"";
            GetClassNameW(child, name, 32);
            return !std::wcscmp(name, WC_LISTVIEWW);
        });
    }

    double workingSet() const {
        PROCESS_MEMORY_COUNTERS counters{};
        GetProcessMemoryInfo(process.hProcess, &counters, sizeof(counters));
        return static_cast<double>(counters.WorkingSetSize);
    }

private:
    bool findMainWindow() {
        window = findWindow(GetDesktopWindow(), [this](HWND candidate) {
            DWORD owner = 0;
            GetWindowThreadProcessId(candidate, &owner);
            return owner == process.dwProcessId && IsWindowVisible(candidate) &&
                   (GetWindowLongW(candidate, GWL_STYLE) & WS_CAPTION) == WS_CAPTION;
        });
        return window != nullptr;
    }

    Clock::time_point start;
    PROCESS_INFORMATION process{};
    HWND window = nullptr;
    double secondsToStart = 0;
};

struct Options {
    std::wstring folder;
    std::size_t pages = 5000;
    std::size_t rounds = 3;
};

Options parseOptions(int count, wchar_t** arguments) {
    Options options;
    if (count < 2 || count % 2 != 0)
        throw host::UsageError("usage: DesktopBenchmark FOLDER [--pages 5000] [--rounds 3]");
    options.folder = arguments[1];
    for (int index = 2; index < count; index += 2) {
        const std::wstring name = arguments[index];
        if (name == L"--pages")
            options.pages = std::stoul(arguments[index + 1]);
        else if (name == L"--rounds")
            options.rounds = std::stoul(arguments[index + 1]);
        else
            throw host::UsageError("There is no option " + host::utf8(name) + ".");
    }
    return options;
}

/// The same sample many times under names of its own.
void makePages(const std::wstring& folder, std::size_t count) {
    const std::wstring sample = host::fullPathOf(host::wide(BENCH_PAGES)) + L"\\Page 1.tif";
    const std::wstring prefix = folder + L'\\';
    for (const std::wstring& name : numberedNames(L"Page", 5, count))
        if (!CopyFileW(sample.c_str(), (prefix + name).c_str(), TRUE))
            fail("A page cannot be made");
}

/// Shows all pages one window after the other, with time for their pictures.
void scrollThrough(HWND list, std::size_t pages) {
    for (std::size_t page = 0; page < pages;) {
        SendMessageW(list, LVM_ENSUREVISIBLE, page, FALSE);
        Sleep(30);
        page += 8;
    }
}

void printLine(const char* what, const std::vector<double>& ours, const std::vector<double>& peers,
               double unit) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < ours.size(); ++i)
        ratios.push_back(ours[i] / peers[i]);
    std::printf("%-44s %9.1f %9.1f %7.2f\n", what, median(ours) / unit, median(peers) / unit, median(ratios));
}

void measure(const Options& options) {
    const std::size_t pages = options.pages;
    const std::wstring program = L'"' + host::programFolder() + L"\\ScanHost.exe\"";
    std::vector<double> start, startWithPages, adding, workingSet;
    std::vector<double> peerStart, peerWorkingSet;
    for (std::size_t round = 0; round < options.rounds; ++round) {
        {
            const Program peer(L"notepad.exe");
            peerStart.push_back(peer.startTime());
            peerWorkingSet.push_back(peer.workingSet());
        }
        start.push_back(Program(program).startTime());
        const Program full(program + L" \"" + options.folder + L'"');
        startWithPages.push_back(full.startTime());
        const HWND list = full.list();
        waitUntil("the pages", [&] {
            return static_cast<std::size_t>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0)) == pages;
        });
        adding.push_back(full.age());
        scrollThrough(list, pages);
        workingSet.push_back(full.workingSet());
    }
    std::printf("Medians of %zu rounds, %zu pages\n%-44s %9s %9s %7s\n", options.rounds, pages, "",
                "ScanHost", "Notepad", "ratio");
    printLine("start without pages, ms", start, peerStart, 0.001);
    printLine("start with a folder of pages, ms", startWithPages, peerStart, 0.001);
    printLine("start until all of them are there, ms", adding, peerStart, 0.001);
    printLine("working set after scrolling through, MiB", workingSet, peerWorkingSet, mebibyte);
}

} // namespace

int wmain(int count, wchar_t** arguments) {
    try {
        const Options options = parseOptions(count, arguments);
        makePages(options.folder, options.pages);
        measure(options);
        return 0;
    } catch (const host::HostError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
