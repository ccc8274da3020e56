// The process's own standard output, error output and input.
#pragma once

#include "host/Console.h"

#include <windows.h>

namespace host {

/// Writes wide characters to a console and UTF-8 to files and pipes, so that no code page comes between.
class SystemConsole : public Console {
public:
    SystemConsole();

    void print(const std::string& text) override;
    void printError(const std::string& text) override;
    bool isWatched() const override;
    bool canAsk() const override;
    std::optional<std::string> ask(const std::string& question) override;

private:
    HANDLE input;
    HANDLE output;
    HANDLE errorOutput;
};

} // namespace host
