// What start-up and shutdown offer to the rest of the library.
#pragma once

#include "platform/kernel32.h"

namespace vexrt {

using ExitHandler = void (*)();

// Adds to the handlers that run at the end of `exit` and at detach, newest first. They share the
// slots of `atexit`; when those are full, the process is aborted.
void register_internal_exit_handler(ExitHandler handler);
void run_internal_exit_handlers();

// The copy of the process environment, one a width: its variables, "name=value", in the system's
// order. Lock 7 guards it once there are threads.
template <typename Char>
struct EnvironmentCopy {
    struct Variable {
        Char *text;
        unsigned name_length;
    };
    Char *strings; // the texts one after the other, an empty one at the end
    Variable *variables;
    unsigned count;
};
template <typename Char>
EnvironmentCopy<Char> &environment_copy();

// Up to the '=', or the whole text where there is none.
template <typename Char>
unsigned name_length_of(const Char *variable) {
    unsigned length = 0;
    while (variable[length] && variable[length] != '=') ++length;
    return length;
}

template <typename Char>
void recapture_environment();
void capture_environment(); // at attach

// What `clock` counts from; all ones when there is no counter.
struct PerformanceBaseline {
    LARGE_INTEGER frequency, counter;
};
extern PerformanceBaseline performance_baseline;

} // namespace vexrt
