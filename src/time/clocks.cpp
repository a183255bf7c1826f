// Readers of the system's clocks.

#include "core/errno.h"
#include "startup/startup.h"
#include "time/calendar.h"
#include "time/zone.h"

#include <limits.h>
#include <sys/time.h>
#include <sys/timeb.h>
#include <time.h>

namespace vexrt {

namespace {

// The system counts units of 100 nanoseconds from 1601.
constexpr unsigned units_per_second = 10000000;
constexpr unsigned long long units_to_1970 = 11644473600ULL * units_per_second;

struct Now {
    time_t seconds; // since 1970; wraps in 2106
    unsigned units; // of the second
};

Now now() {
    unsigned long long units;
    GetSystemTimeAsFileTime(&units);
    units -= units_to_1970;
    return {static_cast<time_t>(units / units_per_second),
            static_cast<unsigned>(units % units_per_second)};
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

time_t time(time_t *timer) {
    time_t seconds = now().seconds;
    if (timer) *timer = seconds;
    return seconds;
}

clock_t clock() {
    const PerformanceBaseline &base = performance_baseline;
    LARGE_INTEGER counter;
    if (base.frequency < 0 || !QueryPerformanceCounter(&counter)) return -1;
    long long elapsed = counter - base.counter;
    long long ticks = elapsed / base.frequency * CLOCKS_PER_SEC +
                      elapsed % base.frequency * CLOCKS_PER_SEC / base.frequency;
    return ticks > LONG_MAX ? -1 : static_cast<clock_t>(ticks);
}

double difftime(time_t time1, time_t time0) {
    return static_cast<double>(time1) - static_cast<double>(time0);
}

int timespec_get(timespec *ts, int base) {
    if (base != TIME_UTC || !ts) return 0;
    Now current = now();
    ts->tv_sec = current.seconds;
    ts->tv_nsec = static_cast<long>(current.units) * 100;
    return base;
}

int _ftime(timeb *tp) {
    if (!tp) return fail_with(EINVAL);
    Now current = now();
    tm local;
    break_down_local(current.seconds, local);
    tp->time = current.seconds;
    tp->millitm = static_cast<unsigned short>(current.units / 10000);
    tp->timezone = static_cast<short>(-current_zone().offset_minutes);
    tp->dstflag = local.tm_isdst > 0;
    return 0;
}

int _gettimeofday(timeval *tp, void *tzp) {
    Now current = now();
    if (tp) {
        tp->tv_sec = static_cast<long>(current.seconds);
        tp->tv_usec = static_cast<long>(current.units / 10);
    }
    if (auto *zone = static_cast<struct timezone *>(tzp)) {
        tm local;
        break_down_local(current.seconds, local);
        zone->tz_minuteswest = -current_zone().offset_minutes;
        zone->tz_dsttime = local.tm_isdst > 0;
    }
    return 0;
}

} // extern "C"
