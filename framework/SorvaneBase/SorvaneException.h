// The host's exception class, which also serves as the record of reported failures.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

#include <exception>
#include <vector>

/// A failure, or several, with the place in the source that noticed each.
///
/// Engines never throw it. They are handed one by reference and record in it what went wrong; what the user
/// sees of it is the host's business. A host that wants to act at once derives from it and overrides
/// reportError(). A default-constructed object holds nothing and is the usual error out-parameter.
///
/// Thread: the one that owns the object.
class SORVANEBASE_API SorvaneException : public std::exception {
public:
    struct Report {
        Sorvane::u8string sourceFile; ///< without extension, "/" between folders
        int line;                     ///< the line of sourceFile that raised the report
        Sorvane::u8string message;    ///< English, for the log and for developers
    };

    SorvaneException();
    SorvaneException(const SorvaneException&);
    SorvaneException& operator=(const SorvaneException&);
    ~SorvaneException() override; // slot 0

    /// Slot 1. The first report's message, or a general sentence when nothing has been reported. Valid until
    /// the object changes.
    const char* what() const noexcept override;

    /// Slot 2. Whether nothing has been reported.
    virtual bool isEmpty() const noexcept;

    /// Slot 3. Records one failure behind those already recorded.
    /// @param sourceFile, line  where it was noticed
    /// @param message           what happened, in English
    virtual void reportError(const Sorvane::u8string& sourceFile, int line, const Sorvane::u8string& message);

    /// Everything reported so far, in order.
    const std::vector<Report>& getReports() const noexcept { return reports; }

private:
    std::vector<Report> reports;
};
