// A point in time as a person at this computer would write it down.
#include "draftmail/Moment.h"

namespace draftmail {
namespace {

LONGLONG ticks(const SYSTEMTIME& time) {
    FILETIME file{};
    SystemTimeToFileTime(&time, &file);
    return static_cast<LONGLONG>(ULARGE_INTEGER{{file.dwLowDateTime, file.dwHighDateTime}}.QuadPart);
}

constexpr LONGLONG ticksPerMinute = 60LL * 10'000'000;

} // namespace

Moment Moment::now() {
    SYSTEMTIME utc;
    GetSystemTime(&utc);
    Moment moment;
    if (!SystemTimeToTzSpecificLocalTime(nullptr, &utc, &moment.local))
        moment.local = utc;
    moment.minutesAheadOfUtc = static_cast<int>((ticks(moment.local) - ticks(utc)) / ticksPerMinute);
    return moment;
}

} // namespace draftmail
