#include "threads/wait.h"

#include <time.h>

namespace vexrt {

DWORD milliseconds_until(const timespec &time_point) {
    constexpr long long longest = INFINITE - 1;
    time_t now = time(nullptr);
    if (time_point.tv_sec < now) return 0;
    long long milliseconds =
        (time_point.tv_nsec + 999999LL) / 1000000 + 1000LL * (time_point.tv_sec - now);
    if (milliseconds < 0) return 0;
    return static_cast<DWORD>(milliseconds < longest ? milliseconds : longest);
}

} // namespace vexrt
