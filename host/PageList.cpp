// Turns the page arguments of a command line into pages.
#include "host/PageList.h"

#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneCommon/ExportUtils/Extension.h"
#include "bxbase/ReferencedImpl.h"
#include "host/CommandLinePath.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"

#include <shlwapi.h>

#include <algorithm>
#include <map>
#include <utility>

namespace host {
namespace {

constexpr std::wstring_view pageExtensions[] = {L"bmp", L"gif", L"jp2", L"jpe", L"jpeg",
                                                L"jpg", L"pdf", L"png", L"tif", L"tiff"};

bool looksLikePage(const std::wstring& name) {
    const std::wstring extension = wide(ExportUtils::getExtension(utf8(name)));
    return std::any_of(std::begin(pageExtensions), std::end(pageExtensions), [&](std::wstring_view known) {
        return CompareStringOrdinal(extension.data(), static_cast<int>(extension.size()), known.data(),
                                    static_cast<int>(known.size()), TRUE) == CSTR_EQUAL;
    });
}

bool comesBefore(const std::wstring& a, const std::wstring& b) {
    const int order = StrCmpLogicalW(a.c_str(), b.c_str());
    return order ? order < 0 : a < b;
}

class PageCollector {
public:
    explicit PageCollector(PageWatcher* watcher) : watcher(watcher) {}

    void addArgument(const std::wstring& argument) {
        if (argument.starts_with(L"@"))
            addList(fullPathOf(argument.substr(1)));
        else if (const std::wstring path = fullPathOf(argument); bxdisk::File(path).isDirectory())
            addFolder(path);
        else
            addFile(path);
    }

    PageList list;

private:
    void addFile(const std::wstring& path) {
        const std::wstring folder = path.substr(0, std::min(path.size(), path.find_last_of(L'\\')));
        auto& shared = folders[folder];
        if (!shared)
            shared = std::make_shared<FileFolder>(folder);
        list.pages.emplace_back(new bxbase::ReferencedImpl<FilePage>(path, shared, watcher));
    }

    void addFolder(std::wstring folder) {
        if (folder.ends_with(L'\\'))
            folder.pop_back();
        std::vector<std::wstring> names;
        std::vector<std::wstring> others;
        WIN32_FIND_DATAW entry;
        HANDLE search = FindFirstFileW((bxdisk::File(folder).getPath() + L"\\*").c_str(), &entry);
        if (search == INVALID_HANDLE_VALUE)
            throw HostError("The folder " + utf8(folder) + " cannot be read: " + reasonFor(GetLastError()) +
                            ".");
        do {
            constexpr DWORD leftAlone =
                FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
            if (!(entry.dwFileAttributes & leftAlone))
                (looksLikePage(entry.cFileName) ? names : others).emplace_back(entry.cFileName);
        } while (FindNextFileW(search, &entry));
        FindClose(search);

        if (names.empty())
            throw HostError("The folder " + utf8(folder) + " holds no pages (images or PDF files).");
        // A comparison that is the system's may contradict itself; a stable sort bears it.
        std::stable_sort(names.begin(), names.end(), comesBefore);
        remarkOn(folder, others);
        folder += L'\\';
        for (const std::wstring& name : names)
            addFile(folder + name);
    }

    void remarkOn(const std::wstring& folder, std::vector<std::wstring>& leftOut) {
        if (leftOut.empty())
            return;
        std::stable_sort(leftOut.begin(), leftOut.end(), comesBefore);
        std::string remark = "Left out of " + utf8(folder) + ", neither image nor PDF: " + utf8(leftOut[0]);
        if (leftOut.size() > 1)
            remark += " and " + std::to_string(leftOut.size() - 1) + " more";
        list.remarks.push_back(remark + ".");
    }

    void addList(const std::wstring& path) {
        const std::string text = readText(path);
        std::size_t lineNumber = 0;
        for (std::size_t begin = 0; begin < text.size();) {
            ++lineNumber;
            const std::size_t end = std::min(text.size(), text.find('\n', begin));
            std::string line = text.substr(begin, end - begin);
            begin = end + 1;
            if (line.ends_with('\r'))
                line.pop_back();
            if (line.empty())
                continue;
            std::wstring typed;
            if (!Sorvane::c_u8u16(typed, line) || typed.find(L'\0') != std::wstring::npos)
                throw HostError("Line " + std::to_string(lineNumber) + " of the list " + utf8(path) +
                                " is not UTF-8 text.");
            addFile(fullPathOf(typed));
        }
    }

    static std::string readText(const std::wstring& path) {
        const UniqueHandle file(CreateFileW(bxdisk::File(path).getPath().c_str(), GENERIC_READ,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                                            nullptr));
        std::string text;
        char buffer[65536];
        DWORD count = 0;
        bool ok = static_cast<bool>(file);
        while (ok && (ok = ReadFile(file.get(), buffer, sizeof buffer, &count, nullptr)) && count)
            text.append(buffer, count);
        if (!ok)
            throw HostError("The list " + utf8(path) + " cannot be read: " + reasonFor(GetLastError()) + ".");
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        if (text.starts_with(byteOrderMark))
            text.erase(0, byteOrderMark.size());
        return text;
    }

    PageWatcher* watcher;
    std::map<std::wstring, std::shared_ptr<FileFolder>> folders;
};

} // namespace

PageList collectPages(const std::vector<std::wstring>& arguments, PageWatcher* watcher) {
    PageCollector collector(watcher);
    for (const std::wstring& argument : arguments)
        collector.addArgument(argument);
    return std::move(collector.list);
}

} // namespace host
