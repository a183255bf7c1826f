// What start-up and shutdown offer to the rest of the library.
#pragma once

#include "platform/kernel32.h"

namespace vexrt {

using ExitHandler = void (*)();

// Adds to the handlers that run at the end of `exit` and at detach, newest first. They share the
// slots of `atexit`; when those are full, the process is aborted.
void register_internal_exit_handler(ExitHandler handler);
void run_internal_exit_handlers();

// The process environment as it was at attach: zero-terminated strings, an empty one at the end.
extern char *environment_block;
extern wchar_t *wide_environment_block;
void capture_environment();

// What `clock` counts from; all ones when there is no counter.
struct PerformanceBaseline {
    LARGE_INTEGER frequency, counter;
};
extern PerformanceBaseline performance_baseline;

} // namespace vexrt
