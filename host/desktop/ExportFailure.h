// Finds out why an export failed.
#pragma once

#include "SorvaneBase/bxutils/SystemLog.h"
#include "SorvaneCommon/ExportErrorSink.h"
#include "host/FilePage.h"

#include <windows.h>

#include <cstddef>
#include <optional>
#include <string>

namespace host {

class EngineDialogs;
class ExportWatch;

/// Why an export failed, as far as the host can tell.
struct Explanation {
    std::wstring sentence;
    std::wstring reason;             ///< a sentence; empty when there is none
    std::optional<std::size_t> page; ///< the index of the page concerned
    std::wstring path;               ///< of the file or folder concerned; may be empty
};

/// Takes what an engine reports, and whatever its thread logs as a failure meanwhile. The reports go into the log too.
/// What the person is told is looked up by the engine's own words in the section ScanHost.Reports; a sentence there
/// that has room for a page's number is about the page that the engine is at.
class ExportFailure : public ExportErrorSink, public bxutils::LogListener {
public:
    /// None of these is owned; all must outlive this object.
    ExportFailure(const FilePages& pages, const ExportWatch& watch, const EngineDialogs& dialogs);
    ~ExportFailure() override;
    ExportFailure(const ExportFailure&) = delete;
    ExportFailure& operator=(const ExportFailure&) = delete;

    /// Explains the failure at once, while the state of the disk that made the export fail is fresh.
    void reportError(const Sorvane::u8string& sourceFile, int line,
                     const Sorvane::u8string& message) override;
    void logged(std::int32_t level, const char* message, const char* sourceFile,
                std::int32_t line) noexcept override;

    /// For a failure that the engine did not report.
    Explanation general() const;
    /// What the engine reported; the general one when that is nothing known.
    Explanation explanation() const { return explained.value_or(general()); }

    /// Whether a mail client has refused the message.
    bool isMailRefused() const { return mailCode.has_value(); }
    /// Everything that was logged as a failure, in lines.
    std::wstring details() const;

private:
    Explanation explain(const std::string& message) const;
    void findReason(Explanation& explanation) const;

    const FilePages& pages;
    const ExportWatch& watch;
    const EngineDialogs& dialogs;
    std::optional<Explanation> explained;

    const DWORD thread = GetCurrentThreadId();
    std::string lines;
    std::optional<int> mailCode;
    std::optional<DWORD> loggedError;
};

} // namespace host
