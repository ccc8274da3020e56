// Measures the directory export against a bare loop of CopyFileW, its memory, and how fast the dialog and the
// component come up.
#include "host/ComponentModule.h"
#include "host/DialogPilot.h"
#include "host/DirectoryDialogControls.h"
#include "host/EnginesManager.h"
#include "host/FilePage.h"
#include "host/HostApplication.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"

#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportEngineFactory.h"
#include "bxbase/ReferencedImpl.h"

#include "afxwin.h"

#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cwchar>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using namespace host::directoryDialog;

constexpr wchar_t registryBase[] = L"Sorvane\\ExportBenchmark";
constexpr char directoryFactoryId[] = "com.brellix.sorvane.exportdata-factory.dir.file";

constexpr DWORD pageBytes = 100 * 1024;
constexpr std::size_t sourceFiles = 16;
constexpr int openings = 25;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

[[noreturn]] void fail(const std::string& what) {
    throw host::HostError(what + ": " + host::reasonFor(GetLastError()) + ".");
}

std::wstring programFolder() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::wstring(path, std::wcsrchr(path, L'\\'));
}

/// A folder that begins empty and is removed with the files that were put into it.
class Target {
public:
    /// @param indexed  marks the folder for the look-ups that indexed_lookup.c gives Wine
    Target(const std::wstring& folder, std::size_t pages, bool indexed)
        : folder(folder), mark(folder + L"\\.ciopfs") {
        if (!CreateDirectoryW(folder.c_str(), nullptr))
            fail("A target folder cannot be made");
        if (indexed)
            host::UniqueHandle(
                CreateFileW(mark.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        for (std::size_t number = 1; number <= pages; ++number) {
            wchar_t name[32];
            std::swprintf(name, std::size(name), L"\\Page%05u.tif", static_cast<unsigned>(number));
            expected.push_back(folder + name);
        }
    }
    ~Target() {
        for (const std::wstring& file : expected)
            DeleteFileW(file.c_str());
        DeleteFileW(mark.c_str());
        RemoveDirectoryW(folder.c_str());
    }
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    const std::wstring& path() const { return folder; }
    /// The full paths of the files that an export into the folder makes.
    const std::vector<std::wstring>& files() const { return expected; }

    void verify() const {
        for (const std::wstring& file : expected) {
            WIN32_FILE_ATTRIBUTE_DATA data{};
            if (!GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data))
                fail("An exported page is missing");
            if (data.nFileSizeLow != pageBytes)
                throw host::HostError("An exported page has not the size of its source.");
        }
    }

private:
    std::wstring folder;
    std::wstring mark;
    std::vector<std::wstring> expected;
};

/// The few files that all pages share, so that both sides read from the system's cache.
class Sources {
public:
    explicit Sources(const std::wstring& folder) {
        std::mt19937_64 random(1);
        std::vector<std::uint64_t> content(pageBytes / sizeof(std::uint64_t));
        for (std::size_t index = 0; index < sourceFiles; ++index) {
            std::generate(content.begin(), content.end(), std::ref(random));
            files.push_back(folder + L"\\source" + std::to_wstring(index) + L".tif");
            const host::UniqueHandle file(
                CreateFileW(files.back().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
            DWORD written = 0;
            if (!file || !WriteFile(file.get(), content.data(), pageBytes, &written, nullptr))
                fail("The pages to export cannot be written");
        }
    }
    ~Sources() {
        for (const std::wstring& file : files)
            DeleteFileW(file.c_str());
    }
    Sources(const Sources&) = delete;
    Sources& operator=(const Sources&) = delete;

    const std::wstring& operator[](std::size_t page) const { return files[page % files.size()]; }

private:
    std::vector<std::wstring> files;
};

/// A host without windows of its own, as far as the measurements need one.
class Host {
public:
    Host()
        : application(registryBase),
          owner(CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr)) {
        if (!bxutils::getResourceManager()->loadLanguageFile(programFolder() + L"\\lang\\en.ini"))
            fail("The language file cannot be read");
    }
    ~Host() {
        DestroyWindow(owner);
        RegDeleteTreeW(HKEY_CURRENT_USER, (std::wstring(L"SOFTWARE\\") + registryBase).c_str());
    }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// The component, loaded and registered for the time of the object's life.
    std::unique_ptr<host::ComponentModule> loadComponent() {
        return std::make_unique<host::ComponentModule>(programFolder() + L"\\BasicExport.dll", manager);
    }

    bxbase::Reference<SorvaneCommon::ExportEngine> createEngine() const {
        bxbase::Reference<SorvaneCommon::ExportEngine> engine;
        SorvaneCommon::ExportEngineFactory* factory = manager.findFactory(directoryFactoryId);
        if (!factory || !factory->createEngine(CWnd::FromHandle(owner), engine))
            throw host::HostError("The component offers no export to a directory.");
        return engine;
    }

private:
    host::HostApplication application;
    host::EnginesManager manager;
    HWND owner;
};

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

host::FilePages makePages(const Sources& sources, const std::wstring& folder, std::size_t count,
                          host::PageWatcher* watcher) {
    const auto parent = std::make_shared<host::FileFolder>(folder);
    host::FilePages pages;
    for (std::size_t page = 0; page < count; ++page)
        pages.emplace_back(new bxbase::ReferencedImpl<host::FilePage>(sources[page], parent, watcher));
    return pages;
}

/// Exports pages through the component, its dialog filled in and confirmed.
void exportPages(const Host& host, const host::FilePages& pages, const Target& target) {
    const auto engine = host.createEngine();
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

/// The seconds that a page took in each turn.
struct Times {
    std::vector<double> ours;
    std::vector<double> peer;
    std::vector<double> ratios;
};

/// Copies each block of pages with CopyFileW right before the engine exports it. Taking turns, both sides meet the
/// same disk: how fast that takes data changes within a run by more than the sides differ.
class TurnTaker : public host::PageWatcher {
public:
    TurnTaker(const Sources& sources, const Target& copies, Times& times)
        : sources(sources), copies(copies), times(times) {}

    void pageAsked(const host::FilePage& page) override {
        if (&page == current)
            return;
        current = &page;
        if (asked == copied) {
            endTurn();
            copyBlock();
            turn = Clock::now();
        }
        ++asked;
    }

    /// Ends the engine's turn, if it has exported anything in it.
    void endTurn() {
        if (blockPages > 0) {
            times.ours.push_back(secondsSince(turn) / static_cast<double>(blockPages));
            times.ratios.push_back(times.ours.back() / times.peer.back());
        }
    }

private:
    static constexpr std::size_t maxBlockPages = 100;

    void copyBlock() {
        blockPages = std::min(maxBlockPages, copies.files().size() - copied);
        const auto start = Clock::now();
        for (const std::size_t end = copied + blockPages; copied < end; ++copied)
            if (!CopyFileW(sources[copied].c_str(), copies.files()[copied].c_str(), FALSE))
                fail("CopyFileW failed");
        times.peer.push_back(secondsSince(start) / static_cast<double>(blockPages));
    }

    const Sources& sources;
    const Target& copies;
    Times& times;
    Clock::time_point turn;
    const host::FilePage* current = nullptr;
    std::size_t asked = 0;
    std::size_t copied = 0;
    std::size_t blockPages = 0; ///< of the turn
};

void measurePages(const Host& host, const Sources& sources, const Options& options, std::size_t count,
                  bool indexed, Times& times) {
    const Target target(options.folder + L"\\export", count, indexed);
    const Target copies(options.folder + L"\\copies", count, indexed);
    TurnTaker turns(sources, copies, times);
    exportPages(host, makePages(sources, options.folder, count, &turns), target);
    turns.endTurn();
    target.verify();
}

void printTimes(std::size_t count, const Times& times) {
    std::printf("%8zu  %6zu  %9.3f ms  %9.3f ms  %8.3f\n", count, times.ratios.size(),
                median(times.ours) * 1000, median(times.peer) * 1000, median(times.ratios));
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
        const Target target(options.folder + L"\\export", 1, true);
        exportPages(host, makePages(sources, options.folder, 1, nullptr), target);
    }
    const Target target(options.folder + L"\\export", options.memoryPages, true);
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
        const auto engine = host.createEngine();
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
        Host host;
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
