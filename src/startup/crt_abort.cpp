#include "core/diagnostic.h"
#include "core/fatal.h"
#include "platform/kernel32.h"

#include <stdlib.h>

namespace vexrt {

namespace {

// By the negated code; 0 stands for every code without a text.
constexpr const char *messages[] = {
    "unexpected error",
    "unexpected error",
    "unable to init HEAP",
    "unable to init threads",
    "out of memory",
    "corrupt per-thread data",
    "invalid stream lock number",
    "unable to init mutex",
    "unable to lock mutex",
    "unable to unlock mutex",
    "unable to init semaphore",
    "unable to post semaphore",
    "unable to wait on semaphore",
    "unable to destroy semaphore",
    "unable to create thread",
    "unhandled exception in thread",
    "unhandled exception (main)",
    "out of stack space",
};
constexpr int message_count = sizeof messages / sizeof messages[0];
constexpr int fatal_status = 255;

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" void __crt_abort(int code) {
    const char *message = messages[code < 0 && code > -message_count ? -code : 0];
    write_diagnostic("CRT: ", message, " -- terminating\n");
    if (IsDebuggerPresent()) {
        __builtin_debugtrap();
        const char *const pieces[] = {"CRT: ", message, " -- terminating\r\n"};
        for (const char *piece : pieces) OutputDebugStringA(piece);
    }
    _Exit(fatal_status);
}

[[noreturn]] void vexrt::fatal(FatalCode code) { __crt_abort(static_cast<int>(code)); }
