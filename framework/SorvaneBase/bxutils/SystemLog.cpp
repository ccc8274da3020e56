// The host's system log.
#include "SorvaneBase/bxutils/SystemLog.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxdisk/LongPath.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <mutex>
#include <new>

namespace bxutils {

namespace {

/// The time of now as ISO 8601 in UTC, so that records of two time zones or of a clock change stay in order.
std::array<char, 40> timeStamp() {
    SYSTEMTIME now;
    GetSystemTime(&now);
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04u-%02u-%02uT%02u:%02u:%02u.%03uZ", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
    return text;
}

/// Keeps other processes from writing to the file meanwhile: Wine finds the end of a file and writes there in
/// two steps, and without the lock records overwrite each other. The locked byte lies far behind the end, where
/// it hinders nobody who reads.
class ProcessLock {
public:
    explicit ProcessLock(HANDLE file) : file(file) {
        position.OffsetHigh = 0x7FFFFFFF;
        locked = LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &position) != FALSE;
    }
    ProcessLock(const ProcessLock&) = delete;
    ProcessLock& operator=(const ProcessLock&) = delete;
    ~ProcessLock() {
        if (locked)
            UnlockFileEx(file, 0, 1, 0, &position);
    }

private:
    HANDLE file;
    OVERLAPPED position{};
    bool locked;
};

class SystemLog final : public LogFormaterInterface {
public:
    SystemLog() = default;
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;
    ~SystemLog() override { close(); }

    bool open(const Sorvane::pstring& path) {
        const std::lock_guard lock(mutex);
        close();
        if (path.empty())
            return true;
        const Sorvane::pstring full = bxdisk::absolutePath(path);
        if (const std::size_t separator = full.rfind(L'\\'); separator != Sorvane::pstring::npos)
            bxdisk::createDirectories(full.substr(0, separator));
        // Read access is what locking asks for.
        file = CreateFileW(bxdisk::longPath(full).c_str(), FILE_APPEND_DATA | FILE_READ_DATA | SYNCHRONIZE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                           FILE_ATTRIBUTE_NORMAL, nullptr);
        return file != INVALID_HANDLE_VALUE;
    }

    void setListener(LogListener* newListener) {
        const std::lock_guard lock(mutex);
        listener = newListener;
    }

    bool isEnabled(std::int32_t) const override {
        const std::lock_guard lock(mutex);
        return file != INVALID_HANDLE_VALUE || listener;
    }

    void flush() override {
        const std::lock_guard lock(mutex);
        if (file != INVALID_HANDLE_VALUE)
            FlushFileBuffers(file);
    }

    void log(std::int32_t level, const char* message, const char* sourceFile, std::int32_t line) override {
        const std::lock_guard lock(mutex);
        if (listener)
            listener->logged(level, message ? message : "", sourceFile ? sourceFile : "", line);
        if (file == INVALID_HANDLE_VALUE)
            return;
        try {
            write(compose(level, message, sourceFile, line));
        } catch (const std::bad_alloc&) {
            // Who logs may be the one that deals with the lack of memory.
            return;
        }
    }

    // Takes neither of the locks: who crashed may hold them.
    void logCrash(const char* message, const char* sourceFile, std::int32_t line) const noexcept {
        std::array<char, 1000> record;
        const int length = std::snprintf(record.data(), record.size(), "%s 0 %.100s:%ld %.800s\n",
                                         timeStamp().data(), sourceFile, static_cast<long>(line), message);
        DWORD written = 0;
        WriteFile(file, record.data(), static_cast<DWORD>(length), &written, nullptr);
    }

private:
    static std::string compose(std::int32_t level, const char* message, const char* sourceFile,
                               std::int32_t line) {
        std::string record = std::string(timeStamp().data()) + ' ' + std::to_string(level) + ' ' +
                             (sourceFile ? sourceFile : "") + ':' + std::to_string(line) + ' ' +
                             (message ? message : "");
        std::replace_if(
            record.begin(), record.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
        record += '\n';
        return record;
    }

    void write(const std::string& record) {
        const ProcessLock processLock(file);
        DWORD written = 0;
        WriteFile(file, record.data(), static_cast<DWORD>(record.size()), &written, nullptr);
    }

    void close() {
        if (file != INVALID_HANDLE_VALUE)
            CloseHandle(file);
        file = INVALID_HANDLE_VALUE;
    }

    mutable std::mutex mutex;
    HANDLE file = INVALID_HANDLE_VALUE;
    LogListener* listener = nullptr;
};

SystemLog& systemLog() {
    static SystemLog log;
    return log;
}

} // namespace

LogFormaterInterface* getSystemLogFormater() {
    return &systemLog();
}

bool setSystemLogFile(const Sorvane::pstring& path) {
    return systemLog().open(path);
}

void logCrash(const char* message, const char* sourceFile, std::int32_t line) noexcept {
    systemLog().logCrash(message, sourceFile, line);
}

void setSystemLogListener(LogListener* listener) {
    systemLog().setListener(listener);
}

} // namespace bxutils
