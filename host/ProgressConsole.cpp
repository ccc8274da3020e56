// A console that can show how far the work has come.
#include "host/ProgressConsole.h"

#include <utility>

namespace host {

void ProgressConsole::showProgress(const std::string& text) {
    if (!console.isWatched())
        return;
    clearProgress();
    console.print(text);
    shown = text.size();
}

void ProgressConsole::print(const std::string& text) {
    clearProgress();
    console.print(text);
}

void ProgressConsole::printError(const std::string& text) {
    clearProgress();
    console.printError(text);
}

std::optional<std::string> ProgressConsole::ask(const std::string& question) {
    clearProgress();
    return console.ask(question);
}

void ProgressConsole::clearProgress() {
    if (!shown)
        return;
    std::string blanks(std::exchange(shown, 0) + 2, ' ');
    blanks.front() = blanks.back() = '\r';
    console.print(blanks);
}

} // namespace host
