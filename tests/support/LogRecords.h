// What is written to the host's log during a test.
#pragma once

#include "support/TempFolder.h"

#include <string>
#include <vector>

namespace test {

/// Has the host's log written to a file of its own, for the time of its life.
class LogRecords {
public:
    LogRecords();
    ~LogRecords();
    LogRecords(const LogRecords&) = delete;
    LogRecords& operator=(const LogRecords&) = delete;

    /// Each record so far, without its time: "2 Components/BasicExport/SorvaneMail:188 Initializing SorvaneMail".
    std::vector<std::string> all() const;

private:
    TempFolder folder;
};

} // namespace test
