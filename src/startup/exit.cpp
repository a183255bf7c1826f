// Exit handlers and the ways to end the process.

#include "core/lock.h"
#include "platform/kernel32.h"
#include "startup/startup.h"

#include <signal.h>
#include <stdlib.h>

namespace vexrt {

namespace {

constexpr unsigned slot_count = 80;

// Filled from both ends: internal handlers from slot 0 up, the program's from the last one down.
// Both compete for the same slots.
struct ExitHandlers {
    ExitHandler slots[slot_count];
    unsigned internal_count;
    unsigned top = slot_count; // the lowest slot that a program's handler uses

    bool full() const { return top <= internal_count; }

    int add(ExitHandler handler) {
        Locked guard(static_locks[lock_exit]);
        if (full()) return -1;
        slots[--top] = handler;
        return 0;
    }

    // Newest first. A handler that is registered meanwhile runs next.
    void run_program_handlers() {
        while (top < slot_count) slots[top++]();
    }

    void run_internal_handlers() {
        while (internal_count) slots[--internal_count]();
    }
};

ExitHandlers at_exit;
ExitHandlers at_quick_exit_handlers;

} // namespace

void register_internal_exit_handler(ExitHandler handler) {
    if (at_exit.full()) abort();
    // Each of the two is registered under a lock of its own, inside which the exit lock, which
    // comes before them, cannot be taken.
    at_exit.slots[__atomic_fetch_add(&at_exit.internal_count, 1, __ATOMIC_SEQ_CST)] = handler;
}

void run_internal_exit_handlers() { at_exit.run_internal_handlers(); }

} // namespace vexrt

using namespace vexrt;

extern "C" int atexit(void (*handler)(void)) { return at_exit.add(handler); }
extern "C" int at_quick_exit(void (*handler)(void)) { return at_quick_exit_handlers.add(handler); }

extern "C" void exit(int status) {
    {
        Locked guard(static_locks[lock_exit]);
        at_exit.run_program_handlers();
        at_exit.run_internal_handlers();
    }
    _Exit(status);
}

extern "C" void quick_exit(int status) {
    {
        Locked guard(static_locks[lock_exit]);
        at_quick_exit_handlers.run_program_handlers();
    }
    _Exit(status);
}

// ExitProcess brings the detach notification, which would run the internal handlers and flush.
extern "C" void _Exit(int status) {
    at_exit.internal_count = 0;
    ExitProcess(static_cast<UINT>(status));
}

extern "C" void abort() {
    raise(SIGABRT);
    exit(1);
}
