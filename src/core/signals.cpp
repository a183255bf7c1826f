#include "core/signals.h"

#include "core/diagnostic.h"
#include "core/thread_record.h"
#include "heap/heap.h"

#include <signal.h>
#include <string.h>

namespace vexrt {

SignalHandler default_signal_handlers[signal_count];

namespace {

bool console_handler_installed;

// Runs `signal`'s handler if it has one of the program's own. The handler is reset first.
bool deliver(int number, SignalHandler handler) {
    signal(number, SIG_DFL);
    handler(number);
    return true;
}

// Every control event becomes SIGINT. Nonzero keeps the system from ending the process.
BOOL __stdcall on_console_event(DWORD) {
    SignalHandler old = signal(SIGINT, SIG_IGN);
    if (old == SIG_DFL || old == SIG_ERR) return false;
    return old == SIG_IGN || deliver(SIGINT, old);
}

bool is_synchronous(int number) {
    return number == SIGILL || number == SIGFPE || number == SIGSEGV;
}

// The calling thread's own table, null when there is no memory for it.
SignalHandler *own_handlers() {
    SignalHandler *&handlers = thread_record().signal_handlers;
    if (handlers == default_signal_handlers) {
        void *copy = heap_allocate(sizeof(default_signal_handlers));
        if (!copy) return nullptr;
        memcpy(copy, default_signal_handlers, sizeof(default_signal_handlers));
        handlers = static_cast<SignalHandler *>(copy);
    }
    return handlers;
}

[[noreturn]] void terminate_for(int number) {
    const char *name = "signal #";
    char digits[3] = "";
    switch (number) {
    case SIGINT: name = "interruption"; break;
    case SIGILL: name = "invalid executable code"; break;
    case SIGABRT: name = "abort"; break;
    case SIGFPE: name = "arithmetic error"; break;
    case SIGSEGV: name = "invalid storage access"; break;
    case SIGTERM: name = "termination request"; break;
    default:
        char *digit = digits;
        if (number >= 10) *digit++ = static_cast<char>('0' + number / 10);
        *digit++ = static_cast<char>('0' + number % 10);
        *digit = '\0';
    }
    write_diagnostic(name, digits, " -- terminating\n");
    exit(1); // not _Exit: handlers run and streams are flushed even for a signal's default action
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" void (*signal(int number, void (*handler)(int)))(int) {
    if (number < 1 || number >= signal_count || handler == SIG_ERR) return SIG_ERR;
    SignalHandler *handlers = default_signal_handlers;
    if (is_synchronous(number)) {
        handlers = own_handlers();
        if (!handlers) return SIG_ERR;
    } else if (number == SIGINT && !console_handler_installed) {
        if (!SetConsoleCtrlHandler(on_console_event, true)) return SIG_ERR;
        console_handler_installed = true;
    }
    SignalHandler previous = handlers[number];
    handlers[number] = handler;
    return previous;
}

extern "C" int raise(int number) {
    SignalHandler old = signal(number, SIG_IGN);
    if (old == SIG_ERR) return -1;
    if (old == SIG_IGN) return 0;
    if (old == SIG_DFL) terminate_for(number);
    deliver(number, old);
    return 0;
}
