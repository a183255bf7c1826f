#include "core/errno.h"
#include "threads/wait.h"

#include <stdlib.h>
#include <time.h>

namespace vexrt {

namespace {

constexpr long nanoseconds_per_second = 1000000000;

// The timer counts in units of 100 nanoseconds; negative ones are from now.
int wait_on_timer(HANDLE timer, long nanoseconds) {
    LARGE_INTEGER due = -((nanoseconds + 50) / 100);
    if (!SetWaitableTimer(timer, &due, 0, nullptr, nullptr, false)) return fail_with_last_error();
    return wait_for(timer, INFINITE) == thrd_success ? 0 : fail_with_last_error();
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

int _nanosleep(const timespec *req, timespec *rem) {
    if (!req || req->tv_sec != 0 || req->tv_nsec < 0 || req->tv_nsec >= nanoseconds_per_second)
        return fail_with(EINVAL);
    HANDLE timer = CreateWaitableTimerA(nullptr, true, nullptr);
    if (!timer) return fail_with_last_error();
    int result = wait_on_timer(timer, req->tv_nsec);
    CloseHandle(timer);
    if (result == 0 && rem) *rem = {};
    return result;
}

int thrd_sleep(const timespec *duration, timespec *remaining) {
    return _nanosleep(duration, remaining);
}

unsigned int _sleep(unsigned int seconds) {
    constexpr unsigned most_seconds = 65535;
    Sleep((seconds < most_seconds ? seconds : most_seconds) * 1000);
    return 0;
}

} // extern "C"
