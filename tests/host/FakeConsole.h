// A console that a test writes into and reads from.
#pragma once

#include "host/Console.h"

#include <deque>
#include <functional>
#include <string>

namespace test {

class FakeConsole : public host::Console {
public:
    void print(const std::string& text) override {
        output += text;
        if (onPrint)
            onPrint(text);
    }
    void printError(const std::string& text) override { errors += text; }
    bool isWatched() const override { return watched; }
    bool canAsk() const override { return !answers.empty(); }
    std::optional<std::string> ask(const std::string& question) override {
        questions += question + "\n";
        if (onAsk)
            onAsk();
        const std::string answer = answers.front();
        answers.pop_front();
        return answer;
    }

    bool watched = false;
    std::deque<std::string> answers; ///< while there are any, there is a person to ask
    std::function<void(const std::string&)> onPrint;
    std::function<void()> onAsk;

    std::string output;
    std::string errors;
    std::string questions;
};

} // namespace test
