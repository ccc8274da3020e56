// A point in time as a person at this computer would write it down.
#pragma once

#include <windows.h>

namespace draftmail {

struct Moment {
    SYSTEMTIME local{};
    int minutesAheadOfUtc = 0;

    static Moment now();
};

} // namespace draftmail
