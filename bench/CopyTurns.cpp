// Pages to export, and a loop of CopyFileW that takes turns with the export of them.
#include "bench/CopyTurns.h"

#include "host/HostError.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"

#include "bxbase/ReferencedImpl.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <functional>
#include <iterator>
#include <memory>
#include <random>

namespace bench {
namespace {

constexpr DWORD pageBytes = 100 * 1024;
constexpr std::size_t sourceFiles = 16;
constexpr std::size_t maxBlockPages = 100;
constexpr wchar_t indexedMark[] = L"\\.ciopfs";

} // namespace

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

void fail(const std::string& what) {
    throw host::HostError(what + ": " + host::reasonFor(GetLastError()) + ".");
}

void markIndexed(const std::wstring& folder) {
    host::UniqueHandle(
        CreateFileW((folder + indexedMark).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
}

void verifyPages(const std::vector<std::wstring>& files) {
    for (const std::wstring& file : files) {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (!GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data))
            fail("An exported page is missing");
        if (data.nFileSizeLow != pageBytes)
            throw host::HostError("An exported page has not the size of its source.");
    }
}

std::vector<std::wstring> numberedNames(const std::wstring& prefix, int digits, std::size_t count) {
    std::vector<std::wstring> names;
    names.reserve(count);
    for (std::size_t number = 1; number <= count; ++number) {
        wchar_t text[16];
        std::swprintf(text, std::size(text), L"%0*u", digits, static_cast<unsigned>(number));
        names.emplace_back(prefix).append(text).append(L".tif");
    }
    return names;
}

Target::Target(const std::wstring& folder, const std::vector<std::wstring>& names, bool indexed)
    : folder(folder) {
    if (!CreateDirectoryW(folder.c_str(), nullptr))
        fail("A target folder cannot be made");
    if (indexed)
        markIndexed(folder);
    for (const std::wstring& name : names)
        expected.emplace_back(folder).append(L"\\").append(name);
}

Target::~Target() {
    for (const std::wstring& file : expected)
        DeleteFileW(file.c_str());
    DeleteFileW((folder + indexedMark).c_str());
    RemoveDirectoryW(folder.c_str());
}

Sources::Sources(const std::wstring& folder) {
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

Sources::~Sources() {
    for (const std::wstring& file : files)
        DeleteFileW(file.c_str());
}

host::FilePages makePages(const Sources& sources, const std::wstring& folder, std::size_t count,
                          host::PageWatcher* watcher) {
    const auto parent = std::make_shared<host::FileFolder>(folder);
    host::FilePages pages;
    for (std::size_t page = 0; page < count; ++page)
        pages.emplace_back(new bxbase::ReferencedImpl<host::FilePage>(sources[page], parent, watcher));
    return pages;
}

void printTimes(std::size_t pages, const Times& times) {
    std::printf("%8zu  %6zu  %9.3f ms  %9.3f ms  %8.3f\n", pages, times.ratios.size(),
                median(times.ours) * 1000, median(times.peer) * 1000, median(times.ratios));
}

void TurnTaker::pageAsked(const host::FilePage& page) {
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

void TurnTaker::endTurn() {
    if (blockPages == 0)
        return;
    times.ours.push_back(secondsSince(turn) / static_cast<double>(blockPages));
    times.ratios.push_back(times.ours.back() / times.peer.back());
}

void TurnTaker::copyBlock() {
    blockPages = std::min(maxBlockPages, copies.files().size() - copied);
    const auto start = Clock::now();
    for (const std::size_t end = copied + blockPages; copied < end; ++copied)
        if (!CopyFileW(sources[copied].c_str(), copies.files()[copied].c_str(), FALSE))
            fail("CopyFileW failed");
    const double seconds = secondsSince(start);
    times.peer.push_back(seconds / static_cast<double>(blockPages));
    copying += seconds;
}

} // namespace bench
