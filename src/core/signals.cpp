#include "core/signals.h"

#include "core/diagnostic.h"
#include "core/thread_record.h"
#include "heap/heap.h"
#include "platform/kernel32.h"

#include <signal.h>
#include <string.h>

namespace vexrt {

SignalHandler default_signal_handlers[signal_count];

namespace {

bool console_handler_installed;

// Runs a handler of the program's own. The signal is reset first.
void deliver(int number, SignalHandler handler) {
    signal(number, SIG_DFL);
    handler(number);
}

// Every control event becomes SIGINT. Nonzero keeps the system from ending the process.
BOOL __stdcall on_console_event(DWORD) {
    SignalHandler old = signal(SIGINT, SIG_IGN);
    if (old == SIG_DFL || old == SIG_ERR) return false;
    if (old != SIG_IGN) deliver(SIGINT, old);
    return true;
}

struct ExceptionRange {
    DWORD first, last;
    int signal;
};

// The processor's exceptions that are signals. Division of integers by zero is not among them.
constexpr ExceptionRange exception_signals[] = {
    {0xC0000005, 0xC0000005, SIGSEGV}, // access violation
    {0xC000001D, 0xC000001D, SIGILL},  // illegal instruction
    {0xC000008D, 0xC0000093, SIGFPE},  // the floating-point unit's
    {0xC0000096, 0xC0000096, SIGILL},  // privileged instruction
    {0xC00002B4, 0xC00002B5, SIGFPE},  // several faults or traps of the vector unit
};

int signal_of(DWORD exception) {
    for (const ExceptionRange &range : exception_signals)
        if (exception >= range.first && exception <= range.last) return range.signal;
    return 0;
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

// The filter of the frames around `main` and around the start routines of threads.
extern "C" int __xcptfilter(DWORD exception, EXCEPTION_POINTERS *pointers) {
    constexpr int continue_execution = -1;
    int number = signal_of(exception);
    SignalHandler old = number ? signal(number, SIG_IGN) : SIG_DFL;
    if (old == SIG_DFL || old == SIG_ERR) return UnhandledExceptionFilter(pointers);
    if (old != SIG_IGN) deliver(number, old);
    return continue_execution;
}
