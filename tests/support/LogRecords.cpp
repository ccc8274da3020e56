// What is written to the host's log during a test.
#include "support/LogRecords.h"

#include "SorvaneBase/bxutils/SystemLog.h"

#include <gtest/gtest.h>

#include <sstream>

namespace test {

LogRecords::LogRecords() {
    EXPECT_TRUE(bxutils::setSystemLogFile(folder.write(L"log.txt", "")));
}

LogRecords::~LogRecords() {
    bxutils::setSystemLogFile(L"");
}

std::vector<std::string> LogRecords::all() const {
    std::vector<std::string> records;
    std::istringstream text(readFile(folder / L"log.txt"));
    for (std::string line; std::getline(text, line);)
        records.push_back(line.substr(line.find(' ') + 1));
    return records;
}

} // namespace test
