// The process's own standard output, error output and input.
#include "host/SystemConsole.h"

#include "host/Text.h"

#include <iterator>

namespace host {
namespace {

bool isTerminal(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != FALSE;
}

void write(HANDLE handle, const std::string& text) {
    DWORD written = 0;
    if (isTerminal(handle)) {
        const std::wstring characters = wide(text);
        WriteConsoleW(handle, characters.data(), static_cast<DWORD>(characters.size()), &written, nullptr);
        return;
    }
    // A pipe takes what fits.
    for (std::size_t done = 0; done < text.size(); done += written) {
        if (!WriteFile(handle, text.data() + done, static_cast<DWORD>(text.size() - done), &written,
                       nullptr) ||
            !written)
            return;
    }
}

} // namespace

SystemConsole::SystemConsole()
    : input(GetStdHandle(STD_INPUT_HANDLE)), output(GetStdHandle(STD_OUTPUT_HANDLE)),
      errorOutput(GetStdHandle(STD_ERROR_HANDLE)) {}

void SystemConsole::print(const std::string& text) {
    write(output, text);
}

void SystemConsole::printError(const std::string& text) {
    write(errorOutput, text);
}

bool SystemConsole::isWatched() const {
    return isTerminal(output);
}

bool SystemConsole::canAsk() const {
    return isTerminal(input) && isTerminal(errorOutput);
}

std::optional<std::string> SystemConsole::ask(const std::string& question) {
    printError(question);
    wchar_t line[256];
    DWORD count = 0;
    if (ReadConsoleW(input, line, static_cast<DWORD>(std::size(line)), &count, nullptr) && count) {
        const std::wstring answer(line, count);
        return utf8(answer.substr(0, answer.find_first_of(L"\r\n")));
    }
    return std::nullopt;
}

} // namespace host
