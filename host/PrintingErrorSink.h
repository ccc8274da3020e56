// Tells the person at the console why an export failed.
#pragma once

#include "SorvaneCommon/ExportErrorSink.h"

#include <functional>
#include <string>

namespace host {

class Console;

/// Prints a sentence for each failure that an engine reports, and puts the report itself, which is written for
/// developers, into the log. What a page and its engine both report is said once.
class PrintingErrorSink : public ExportErrorSink {
public:
    /// @param console  not owned
    /// @param explain  makes the sentence for the engine's message. It is asked at once, while the state of the
    ///                 disk that made the export fail is fresh.
    PrintingErrorSink(Console& console, std::function<std::string(const std::string& message)> explain);

    void reportError(const Sorvane::u8string& sourceFile, int line,
                     const Sorvane::u8string& message) override;

private:
    Console& console;
    std::function<std::string(const std::string&)> explain;
    std::string said;
};

} // namespace host
