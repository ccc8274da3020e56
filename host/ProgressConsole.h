// A console that can show how far the work has come.
#pragma once

#include "host/Console.h"

#include <cstddef>
#include <optional>
#include <string>

namespace host {

/// Says on a watched console what is being done, and takes that line away before anything else is said.
class ProgressConsole : public Console {
public:
    /// @param console  not owned; must outlive this one
    explicit ProgressConsole(Console& console) : console(console) {}

    /// Shows the line in place of the one before. Says nothing on a console that nobody watches.
    void showProgress(const std::string& text);

    void print(const std::string& text) override;
    void printError(const std::string& text) override;
    bool isWatched() const override { return console.isWatched(); }
    bool canAsk() const override { return console.canAsk(); }
    std::optional<std::string> ask(const std::string& question) override;

private:
    void clearProgress();

    Console& console;
    std::size_t shown = 0;
};

} // namespace host
