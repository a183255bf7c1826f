// What the rest of the library needs of the signals.
#pragma once

#include "platform/kernel32.h"

namespace vexrt {

constexpr int signal_count = 44; // valid numbers are 1 to 43

// The handlers of every signal but the synchronous ones; a thread that sets one of those gets a
// copy of its own.
extern void (*default_signal_handlers[signal_count])(int);

} // namespace vexrt

// Makes signals of the processor's exceptions; a filter for __except.
extern "C" int __xcptfilter(vexrt::DWORD exception, vexrt::EXCEPTION_POINTERS *pointers);
