// Files on a Windows disk.
#include "SorvaneBase/bxzip/WindowsStorage.h"

#include "SorvaneBase/bxdisk/LongPath.h"

#include <windows.h>

#include <algorithm>
#include <vector>

namespace bxzip {
namespace {

// How long a file that somebody else holds is waited for.
constexpr ULONGLONG patienceInMs = 2000;
constexpr DWORD pauseInMs = 20;

// One call takes no more; more than this would not be faster.
constexpr std::size_t maxTransfer = std::size_t{16} << 20;

Status failure(const char* what) {
    return Status(what, GetLastError());
}

class File {
public:
    File() = default;
    ~File() {
        if (isOpen())
            CloseHandle(handle);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    /// Only when it is not open.
    bool open(const std::wstring& path, DWORD access, DWORD share, DWORD disposition, DWORD flags) {
        handle = CreateFileW(path.c_str(), access, share, nullptr, disposition, flags, nullptr);
        return isOpen();
    }

    bool isOpen() const { return handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return handle; }

    /// A device would swallow an archive, or never end as a page.
    bool isOnDisk() const { return GetFileType(handle) == FILE_TYPE_DISK; }

private:
    HANDLE handle = INVALID_HANDLE_VALUE;
};

OVERLAPPED at(std::uint64_t offset) {
    OVERLAPPED position{};
    position.Offset = static_cast<DWORD>(offset);
    position.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return position;
}

LocalTime localTime(const FILETIME& time) {
    SYSTEMTIME utc;
    SYSTEMTIME local;
    if (!FileTimeToSystemTime(&time, &utc) || !SystemTimeToTzSpecificLocalTime(nullptr, &utc, &local))
        return {};
    return {local.wYear, local.wMonth, local.wDay, local.wHour, local.wMinute, local.wSecond};
}

class WindowsSource : public Source {
public:
    File file;
    bool isLocked = true;

    Status getState(SourceState& state) override {
        // GetFileInformationByHandle also asks for the volume, which takes Wine longer than to pack a small page.
        LARGE_INTEGER size;
        FILETIME written;
        if (!GetFileSizeEx(file.get(), &size) || !GetFileTime(file.get(), nullptr, nullptr, &written))
            return failure("the page's file cannot be looked at");
        state.size = static_cast<std::uint64_t>(size.QuadPart);
        state.changeMark = static_cast<std::uint64_t>(written.dwHighDateTime) << 32 | written.dwLowDateTime;
        state.modified = localTime(written);
        return {};
    }

    bool excludesWriters() const override { return isLocked; }

    Status read(std::uint64_t offset, void* buffer, std::size_t size, std::size_t& count) override {
        count = 0;
        if (offset > static_cast<std::uint64_t>(INT64_MAX))
            return {};
        while (count < size) {
            OVERLAPPED position = at(offset + count);
            DWORD got = 0;
            if (!ReadFile(file.get(), static_cast<char*>(buffer) + count,
                          static_cast<DWORD>(std::min(size - count, maxTransfer)), &got, &position) &&
                GetLastError() != ERROR_HANDLE_EOF)
                return failure("the page's file cannot be read");
            if (got == 0)
                break;
            count += got;
        }
        return {};
    }
};

class WindowsOutput : public Output {
public:
    File file;

    Status write(std::uint64_t offset, const void* bytes, std::size_t size) override {
        for (std::size_t done = 0; done < size;) {
            OVERLAPPED position = at(offset + done);
            DWORD written = 0;
            if (!WriteFile(file.get(), static_cast<const char*>(bytes) + done,
                           static_cast<DWORD>(std::min(size - done, maxTransfer)), &written, &position))
                return failure("the archive cannot be written");
            if (written == 0)
                return Status("the archive cannot be written", ERROR_DISK_FULL);
            done += written;
        }
        return {};
    }

    Status setSize(std::uint64_t size) override {
        FILE_END_OF_FILE_INFO end{};
        end.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
        return SetFileInformationByHandle(file.get(), FileEndOfFileInfo, &end, sizeof end)
                   ? Status()
                   : failure("the archive cannot be cut to its size");
    }

    Status flush() override {
        return FlushFileBuffers(file.get()) ? Status() : failure("the archive cannot be put onto the disk");
    }

    Status moveTo(const std::wstring& path, bool replace) override {
        const std::size_t nameSize = path.size() * sizeof(wchar_t);
        std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + nameSize);
        auto* info = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
        info->ReplaceIfExists = replace;
        info->FileNameLength = static_cast<DWORD>(nameSize);
        std::copy(path.begin(), path.end(), info->FileName);
        while (!SetFileInformationByHandle(file.get(), FileRenameInfo, info,
                                           static_cast<DWORD>(buffer.size()))) {
            const DWORD error = GetLastError();
            if (!replace || !mayWaitAfter(error))
                return Status("a file cannot be renamed", error);
            Sleep(pauseInMs);
        }
        return {};
    }

    Status remove() override {
        FILE_DISPOSITION_INFO disposition{};
        disposition.DeleteFile = TRUE;
        return SetFileInformationByHandle(file.get(), FileDispositionInfo, &disposition, sizeof disposition)
                   ? Status()
                   : failure("a file cannot be removed");
    }

private:
    /// Programs that look at every file, such as virus scanners, hold the one to be replaced for a moment. The
    /// patience with them is for all attempts together.
    bool mayWaitAfter(DWORD error) {
        if (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION)
            return false;
        const ULONGLONG now = GetTickCount64();
        if (!waitsUntil)
            waitsUntil = now + patienceInMs;
        return now < waitsUntil;
    }

    ULONGLONG waitsUntil = 0;
};

// Memory is taken before a file is opened: a file that was just made must not outlive a failure.
Status openOutput(const std::wstring& path, DWORD disposition, const char* what,
                  std::unique_ptr<Output>& file) {
    auto opened = std::make_unique<WindowsOutput>();
    // Holding the right to delete is what makes renaming through the handle possible.
    if (!opened->file.open(path, GENERIC_READ | GENERIC_WRITE | DELETE, FILE_SHARE_READ, disposition,
                           FILE_ATTRIBUTE_NORMAL))
        return failure(what);
    if (!opened->file.isOnDisk())
        return Status("the archive's path is a device");
    file = std::move(opened);
    return {};
}

} // namespace

Status WindowsStorage::openSource(const std::wstring& path, std::unique_ptr<Source>& source) {
    std::wstring fullPath;
    if (Status status = getFullPath(path, fullPath); !status.isOk())
        return status;
    auto opened = std::make_unique<WindowsSource>();
    const auto open = [&](DWORD share) {
        return opened->file.open(fullPath, GENERIC_READ, share, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN);
    };
    // Best is a file that nobody can write to meanwhile; one that somebody has open for writing already is
    // taken as it is.
    opened->isLocked = open(FILE_SHARE_READ);
    if (!opened->isLocked && (GetLastError() != ERROR_SHARING_VIOLATION ||
                              !open(FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE)))
        return failure("the page's file cannot be opened");
    if (!opened->file.isOnDisk())
        return Status("the page's path is a device");
    source = std::move(opened);
    return {};
}

Status WindowsStorage::create(const std::wstring& path, std::unique_ptr<Output>& file) {
    return openOutput(path, CREATE_NEW, "the archive's file cannot be created", file);
}

Status WindowsStorage::openExisting(const std::wstring& path, std::unique_ptr<Output>& file) {
    // An administrator may be let past the mark, but it is there for a reason.
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_READONLY)
        return Status("the existing file is read-only");
    return openOutput(path, OPEN_EXISTING, "the existing file cannot be replaced", file);
}

bool WindowsStorage::exists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

Status WindowsStorage::link(const std::wstring& path, const std::wstring& secondPath) {
    return CreateHardLinkW(secondPath.c_str(), path.c_str(), nullptr)
               ? Status()
               : failure("a file cannot be given a second name");
}

void WindowsStorage::removeAbandoned(const std::wstring& folder, const std::wstring& nameStart,
                                     const std::wstring& nameEnd) {
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW((folder + nameStart + L"*" + nameEnd).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    // The pattern is looser: it takes any text for the number, and looks at short names too.
    do
        if (isNumberedName(found.cFileName, nameStart, nameEnd))
            DeleteFileW((folder + found.cFileName).c_str());
    while (FindNextFileW(search, &found));
    FindClose(search);
}

Status WindowsStorage::getFullPath(const std::wstring& path, std::wstring& fullPath) {
    if (path.empty())
        return Status("the path is empty");
    const std::wstring absolute = bxdisk::absolutePath(path);
    if (absolute.starts_with(LR"(\\.\)"))
        return Status("the path is one of a device");
    // Always the long form: names beside the path may be too long for the plain one when the path is not.
    if (absolute.starts_with(LR"(\\?\)"))
        fullPath = absolute;
    else if (absolute.starts_with(LR"(\\)"))
        fullPath = LR"(\\?\UNC\)" + absolute.substr(2);
    else
        fullPath = LR"(\\?\)" + absolute;
    return {};
}

} // namespace bxzip
