// The host's system log.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

#include <cstdint>

namespace bxutils {

/// Takes one record after the other and writes each as a line, with the time (UTC, ISO 8601, milliseconds):
/// `2024-05-01T08:30:00.125Z 2 Components/BasicExport/SorvaneMail:188 Initializing SorvaneMail`. Thread: any.
class LogFormaterInterface {
public:
    virtual ~LogFormaterInterface() = default; // slot 0

    /// Slot 1. Whether records of the level are kept at all.
    virtual bool isEnabled(std::int32_t level) const = 0;

    /// Slot 2. Puts everything logged so far onto the disk.
    virtual void flush() = 0;

    /// Slot 3. Writes one record.
    /// @param level       0 for a failure, 2 for a progress line
    /// @param message     NUL-terminated UTF-8; line breaks become spaces, one record is one line
    /// @param sourceFile  the source that logs, without extension, "/" between folders
    /// @param line        the line in that source
    /// Never fails towards the caller: a log that cannot be written must not stop an export.
    virtual void log(std::int32_t level, const char* message, const char* sourceFile, std::int32_t line) = 0;
};

/// The process's log; never null. The caller does not own it. Until the host has given it a file it drops
/// every record.
SORVANEBASE_API LogFormaterInterface* getSystemLogFormater();

/// Sends the log to a file, appending to what it holds; several processes may write to the same file. Missing
/// parent directories are made. An empty path ends logging. False when the file cannot be opened, and records
/// are dropped then.
SORVANEBASE_API bool setSystemLogFile(const Sorvane::pstring& path);

/// Writes the record of a failure for a process that has crashed: without memory and without waiting, for the heap may be
/// what is broken, and the log what has crashed. No listener is told. Thread: any.
/// @param message  one line; a long one is cut
SORVANEBASE_API void logCrash(const char* message, const char* sourceFile, std::int32_t line) noexcept;

/// Is told what is logged, for a host that says more to its user than the results of a component do.
class LogListener {
public:
    /// One record, as it was given to the log. Comes on the thread that logs, which may be any, and never twice
    /// at a time. Must not log itself.
    virtual void logged(std::int32_t level, const char* message, const char* sourceFile,
                        std::int32_t line) noexcept = 0;

protected:
    ~LogListener() = default;
};

/// From now on the listener is told each record, whether or not the log has a file; null ends that, and no call
/// of the listener is still running afterwards. Not owned. There is one at a time.
SORVANEBASE_API void setSystemLogListener(LogListener* listener);

} // namespace bxutils
