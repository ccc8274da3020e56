// Pages to export, and a loop of CopyFileW that takes turns with the export of them.
#pragma once

#include "host/FilePage.h"

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace bench {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start);
double median(std::vector<double> values);
/// Throws what the system's last error says about it.
[[noreturn]] void fail(const std::string& what);

/// Marks the folder for the look-ups that indexed_lookup.c gives Wine.
void markIndexed(const std::wstring& folder);
/// Throws when one of the files is missing or has not the size of a page.
void verifyPages(const std::vector<std::wstring>& files);

/// The names of that many files, from PREFIX00001.tif on.
std::vector<std::wstring> numberedNames(const std::wstring& prefix, int digits, std::size_t count);

/// A folder that begins empty and is removed with the files that were put into it.
class Target {
public:
    /// @param names    of the files that will be in it
    /// @param indexed  marks the folder for the look-ups that indexed_lookup.c gives Wine
    Target(const std::wstring& folder, const std::vector<std::wstring>& names, bool indexed);
    ~Target();
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    const std::wstring& path() const { return folder; }
    /// The full paths of the files that an export into the folder makes.
    const std::vector<std::wstring>& files() const { return expected; }

private:
    std::wstring folder;
    std::vector<std::wstring> expected;
};

/// The few files of 100 KiB that all pages share, so that both sides read from the system's cache.
class Sources {
public:
    explicit Sources(const std::wstring& folder);
    ~Sources();
    Sources(const Sources&) = delete;
    Sources& operator=(const Sources&) = delete;

    const std::wstring& operator[](std::size_t page) const { return files[page % files.size()]; }

private:
    std::vector<std::wstring> files;
};

host::FilePages makePages(const Sources& sources, const std::wstring& folder, std::size_t count,
                          host::PageWatcher* watcher);

/// The seconds that a page took in each turn.
struct Times {
    std::vector<double> ours;
    std::vector<double> peer;
    std::vector<double> ratios;
};

/// A line with the medians of the turns.
void printTimes(std::size_t pages, const Times& times);

/// Copies each block of pages with CopyFileW right before the engine exports it. Taking turns, both sides meet the
/// same disk: how fast that takes data changes within a run by more than the sides differ.
class TurnTaker : public host::PageWatcher {
public:
    TurnTaker(const Sources& sources, const Target& copies, Times& times)
        : sources(sources), copies(copies), times(times) {}

    void pageAsked(const host::FilePage& page) override;

    /// Ends the engine's turn, if it has exported anything in it.
    void endTurn();

    /// How long all turns of CopyFileW took.
    double copyingSeconds() const { return copying; }

private:
    void copyBlock();

    const Sources& sources;
    const Target& copies;
    Times& times;
    Clock::time_point turn;
    const host::FilePage* current = nullptr;
    std::size_t asked = 0;
    std::size_t copied = 0;
    std::size_t blockPages = 0; ///< of the turn
    double copying = 0;
};

} // namespace bench
