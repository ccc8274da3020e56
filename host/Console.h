// Where a program without windows talks to its user.
#pragma once

#include <optional>
#include <string>

namespace host {

/// The two outputs and the input of a console program. All text is UTF-8.
class Console {
public:
    virtual ~Console() = default;

    /// Writes what the user asked for.
    virtual void print(const std::string& text) = 0;

    /// Writes what went wrong.
    virtual void printError(const std::string& text) = 0;

    /// Whether a person watches the output, who wants to see progress.
    virtual bool isWatched() const = 0;

    /// Whether there is a person to ask.
    virtual bool canAsk() const = 0;

    /// Shows the question and waits for a line. None when the input has ended. Only where canAsk().
    virtual std::optional<std::string> ask(const std::string& question) = 0;
};

} // namespace host
