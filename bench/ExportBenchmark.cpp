// Measures the directory export against a bare loop of CopyFileW, its memory, and how fast the dialog and the
// component come up.
#include "bench/BenchmarkHost.h"
#include "bench/CopyTurns.h"

#include "host/DialogPilot.h"
#include "host/DirectoryDialogControls.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"

#include "SorvaneBase/SorvaneException.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace bench;
using namespace host::directoryDialog;

constexpr wchar_t registryBase[] = L"Sorvane\\ExportBenchmark";
constexpr char directoryFactoryId[] = "com.brellix.sorvane.exportdata-factory.dir.file";

constexpr int openings = 25;

/// The names that exportPages() gives.
std::vector<std::wstring> pageNames(std::size_t count) {
    return numberedNames(L"Page", 5, count);
}

/// Watches for the dialog's first painting, cancels the dialog then, and knows how long it took to get there.
class FirstPaint {
public:
    FirstPaint() : start(Clock::now()) {
        current = this;
        sentHook = SetWindowsHookExW(WH_CALLWNDPROC, onSent, nullptr, GetCurrentThreadId());
        queuedHook = SetWindowsHookExW(WH_GETMESSAGE, onQueued, nullptr, GetCurrentThreadId());
    }
    ~FirstPaint() {
        UnhookWindowsHookEx(sentHook);
        UnhookWindowsHookEx(queuedHook);
        current = nullptr;
    }
    FirstPaint(const FirstPaint&) = delete;
    FirstPaint& operator=(const FirstPaint&) = delete;

    std::optional<double> seconds;

private:
    static LRESULT CALLBACK onSent(int code, WPARAM wParam, LPARAM lParam) {
        const auto* message = reinterpret_cast<const CWPSTRUCT*>(lParam);
        if (message->message == WM_PAINT)
            current->onPaint(message->hwnd);
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static LRESULT CALLBACK onQueued(int code, WPARAM wParam, LPARAM lParam) {
        const auto* message = reinterpret_cast<const MSG*>(lParam);
        if (wParam == PM_REMOVE && message->message == WM_PAINT)
            current->onPaint(message->hwnd);
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    /// Paints what is left of the dialog at once and counts it in.
    void onPaint(HWND window) {
        const HWND dialog = GetAncestor(window, GA_ROOT);
        if (painting || !GetDlgItem(dialog, pathEdit) || !IsWindowVisible(dialog))
            return;
        painting = true;
        RedrawWindow(dialog, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        GdiFlush();
        seconds = secondsSince(start);
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }

    static inline FirstPaint* current = nullptr;
    Clock::time_point start;
    HHOOK sentHook;
    HHOOK queuedHook;
    bool painting = false;
};

/// Exports pages through the component, its dialog filled in and confirmed.
void exportPages(const Host& host, const host::FilePages& pages, const Target& target) {
    const auto engine = host.createEngine(directoryFactoryId);
    for (const auto& page : pages)
        engine->addData(page.get());
    {
        host::DialogPilot pilot(std::chrono::seconds(30));
        pilot.then(
            "settings", host::dialogWith(pathEdit),
            host::inOrder({host::enterText(pathEdit, target.path()), host::enterText(prefixEdit, L"Page"),
                           host::enterText(firstNumberEdit, L"1"), host::enterText(digitsEdit, L"5"),
                           host::click(IDOK)}));
        if (!engine->showDialog())
            throw host::HostError("The dialog was not confirmed: " + pilot.failure());
    }
    SorvaneException errors;
    if (engine->exportData(nullptr, errors) != 0)
        throw host::HostError(std::string("The export failed: ") + errors.what());
}

struct Options {
    std::wstring folder;
    std::vector<std::size_t> counts{1000, 10000, 50000};
    std::size_t rounds = 2;
    std::size_t memoryPages = 0;
};

void measurePages(const Host& host, const Sources& sources, const Options& options, std::size_t count,
                  bool indexed, Times& times) {
    const Target target(options.folder + L"\\export", pageNames(count), indexed);
    const Target copies(options.folder + L"\\copies", pageNames(count), indexed);
    TurnTaker turns(sources, copies, times);
    exportPages(host, makePages(sources, options.folder, count, &turns), target);
    turns.endTurn();
    verifyPages(target.files());
}

/// How much more a page costs in the size where it costs most than in the size where it costs least.
double costSpread(const std::map<std::size_t, Times>& sizes, std::vector<double> Times::*side) {
    std::vector<double> costs;
    costs.reserve(sizes.size());
    for (const auto& [count, times] : sizes)
        costs.push_back(median(times.*side));
    const auto [cheapest, dearest] = std::minmax_element(costs.begin(), costs.end());
    return *dearest / *cheapest;
}

void measureExport(const Host& host, const Options& options) {
    const Sources sources(options.folder);
    const std::size_t smallest = *std::min_element(options.counts.begin(), options.counts.end());

    Times firstSteps;
    measurePages(host, sources, options, std::min<std::size_t>(smallest, 100), true, firstSteps);
    std::map<std::size_t, Times> indexed;
    Times scanned;
    for (std::size_t round = 0; round < options.rounds; ++round) {
        std::fprintf(stderr, "round %zu of %zu\n", round + 1, options.rounds);
        for (const std::size_t count : options.counts) {
            // The small sizes pass quickly and give few turns.
            for (std::size_t times = std::clamp<std::size_t>(20000 / count, 1, 6); times > 0; --times)
                measurePages(host, sources, options, count, true, indexed[count]);
        }
        measurePages(host, sources, options, smallest, false, scanned);
    }

    std::puts(
        "Directory export of pages of 100 KiB against CopyFileW with the same names, in turns of 100 pages;");
    std::puts("milliseconds a page and their ratio, medians of the turns");
    std::puts("   pages   turns        export     CopyFileW     ratio");
    for (const auto& [count, times] : indexed)
        printTimes(count, times);
    std::printf("cost of a page, dearest size against cheapest: export %.3f, CopyFileW %.3f\n",
                costSpread(indexed, &Times::ours), costSpread(indexed, &Times::peer));
    std::puts("the same where Wine reads the whole folder for every name that is not there");
    printTimes(smallest, scanned);
}

struct Memory {
    double privateBytes;
    double peakWorkingSet;
};

Memory memoryNow() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    // The page-file usage is the same as PrivateUsage, which Wine leaves at 0.
    return {static_cast<double>(counters.PagefileUsage), static_cast<double>(counters.PeakWorkingSetSize)};
}

/// Samples the memory in use while an engine works through the pages.
class MemoryWatcher : public host::PageWatcher {
public:
    void pageAsked(const host::FilePage&) override {
        if (++asked % 64 == 0)
            peak = std::max(peak, memoryNow().privateBytes);
    }

    double peak = 0;

private:
    std::size_t asked = 0;
};

/// Prints how much memory a page takes at the worst moment of an export: the host's page, the engine's reference
/// and whatever piles up. Runs in a process of its own, whose memory nothing else has grown before.
void measureMemory(const Host& host, const Options& options) {
    const Sources sources(options.folder);
    {
        // What is loaded and allocated once is there before the count begins.
        const Target target(options.folder + L"\\export", pageNames(1), true);
        exportPages(host, makePages(sources, options.folder, 1, nullptr), target);
    }
    const Target target(options.folder + L"\\export", pageNames(options.memoryPages), true);
    MemoryWatcher watcher;
    const Memory before = memoryNow();
    const host::FilePages pages = makePages(sources, options.folder, options.memoryPages, &watcher);
    exportPages(host, pages, target);
    const Memory after = memoryNow();
    const double perPage = 1.0 / static_cast<double>(options.memoryPages);
    std::printf("%8zu  %14.0f B  %14.0f B\n", options.memoryPages,
                (std::max(watcher.peak, after.privateBytes) - before.privateBytes) * perPage,
                (after.peakWorkingSet - before.peakWorkingSet) * perPage);
}

/// Runs measureMemory() for each size in a process of its own.
void measureMemoryApart(const Options& options) {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::puts("Peak growth of memory a page: private bytes, working set");
    std::fflush(stdout);
    for (const std::size_t count : options.counts) {
        std::wstring commandLine = L"\"" + std::wstring(program) + L"\" \"" + options.folder +
                                   L"\" --memory " + std::to_wstring(count);
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION process{};
        if (!CreateProcessW(program, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                            &startup, &process))
            fail("The process that measures memory cannot be started");
        const host::UniqueHandle processHandle(process.hProcess);
        const host::UniqueHandle threadHandle(process.hThread);
        WaitForSingleObject(process.hProcess, INFINITE);
        DWORD exitCode = 0;
        GetExitCodeProcess(process.hProcess, &exitCode);
        if (exitCode != 0)
            throw host::HostError("The process that measures memory failed.");
    }
}

void printMilliseconds(const char* what, const std::vector<double>& seconds) {
    std::printf("%-38s first %7.2f ms  median of %zu %7.2f ms\n", what, seconds.front() * 1000,
                seconds.size(), median(seconds) * 1000);
}

void measureLoading(Host& host) {
    std::vector<double> seconds;
    for (int count = 0; count < openings; ++count) {
        const auto start = Clock::now();
        const auto component = host.loadComponent();
        seconds.push_back(secondsSince(start));
    }
    printMilliseconds("Component, load to registered:", seconds);
}

void measureDialog(const Host& host) {
    std::vector<double> seconds;
    for (int count = 0; count < openings; ++count) {
        const auto engine = host.createEngine(directoryFactoryId);
        FirstPaint paint;
        engine->showDialog();
        if (!paint.seconds)
            throw host::HostError("The dialog closed before it was painted.");
        seconds.push_back(*paint.seconds);
    }
    printMilliseconds("Dialog, open to first paint:", seconds);
}

std::vector<std::size_t> parseCounts(const std::wstring& text) {
    std::vector<std::size_t> counts;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t length = 0;
        counts.push_back(std::stoul(text.substr(begin), &length));
        begin += length + 1;
    }
    return counts;
}

Options parseOptions(int count, wchar_t** arguments) {
    Options options;
    if (count < 2 || count % 2 != 0)
        throw host::UsageError(
            "usage: ExportBenchmark FOLDER [--pages 1000,10000,50000] [--rounds 2] [--memory PAGES]");
    options.folder = arguments[1];
    for (int index = 2; index < count; index += 2) {
        const std::wstring name = arguments[index];
        const std::wstring value = arguments[index + 1];
        if (name == L"--pages")
            options.counts = parseCounts(value);
        else if (name == L"--rounds")
            options.rounds = std::stoul(value);
        else if (name == L"--memory")
            options.memoryPages = std::stoul(value);
        else
            throw host::UsageError("There is no option " + host::utf8(name) + ".");
    }
    return options;
}

} // namespace

int wmain(int argumentCount, wchar_t** arguments) {
    try {
        const Options options = parseOptions(argumentCount, arguments);
        Host host(registryBase);
        if (options.memoryPages == 0)
            measureLoading(host);
        const auto component = host.loadComponent();
        if (options.memoryPages != 0) {
            measureMemory(host, options);
            return 0;
        }
        measureDialog(host);
        measureMemoryApart(options);
        measureExport(host, options);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
