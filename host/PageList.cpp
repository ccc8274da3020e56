// Turns the page arguments of a command line into pages.
#include "host/PageList.h"

#include "SorvaneBase/bxdisk/File.h"
#include "host/CommandLinePath.h"
#include "host/FolderFiles.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

class PageCollector {
public:
    explicit PageCollector(PageWatcher* watcher) : maker(watcher) {}

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
    void addFile(const std::wstring& path) { list.pages.push_back(maker.make(path)); }

    void addFolder(const std::wstring& folder) {
        const FolderFiles files = filesOfFolder(folder);
        if (files.pages.empty())
            throw HostError("The folder " + utf8(folder) + " holds no pages (images or PDF files).");
        remarkOn(folder, files.others);
        for (const std::wstring& file : files.pages)
            addFile(file);
    }

    void remarkOn(const std::wstring& folder, const std::vector<std::wstring>& leftOut) {
        if (leftOut.empty())
            return;
        const std::wstring first = leftOut[0].substr(leftOut[0].find_last_of(L'\\') + 1);
        std::string remark = "Left out of " + utf8(folder) + ", neither image nor PDF: " + utf8(first);
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
            throw FileError("The list " + utf8(path) + " cannot be read", GetLastError());
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        if (text.starts_with(byteOrderMark))
            text.erase(0, byteOrderMark.size());
        return text;
    }

    PageMaker maker;
};

} // namespace

PageList collectPages(const std::vector<std::wstring>& arguments, PageWatcher* watcher) {
    PageCollector collector(watcher);
    for (const std::wstring& argument : arguments)
        collector.addArgument(argument);
    return std::move(collector.list);
}

} // namespace host
