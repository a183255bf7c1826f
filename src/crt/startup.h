// What the start-up objects share. They are linked into programs, so they use nothing but what
// vexrt.dll exports and kernel32.
#pragma once

#include <stdlib.h>

extern "C" {

struct _EXCEPTION_POINTERS;

int __concmdln(int *count, char ***vector);
int __wconcmdln(int *count, wchar_t ***vector);
char *__wincmdln(void);
wchar_t *__wwincmdln(void);
int __xcptfilter(unsigned long exception, _EXCEPTION_POINTERS *pointers);

// Runs the program's constructors, once; its destructors are left with atexit.
void __vexcrt_construct(void);
// Runs its destructors; for a program, at exit.
void __vexcrt_destruct(void);
void __vexcrt_destruct_at_exit(void);

} // extern "C"

// Constructors before main(), destructors after the handlers that main() registers.
inline void run_constructors_and_destructors() {
    __vexcrt_destruct_at_exit();
    __vexcrt_construct();
}

// Calls the program's main function, in whatever form `run` does, and exits with its result. The
// processor's exceptions become signals; one that nobody handles ends the process.
template <typename Run>
[[noreturn]] void run_program(Run run) {
    constexpr int unhandled_exception = -16;
    __try {
        run_constructors_and_destructors();
        exit(run());
    } __except (
        __xcptfilter(_exception_code(), static_cast<_EXCEPTION_POINTERS *>(_exception_info()))) {
        __crt_abort(unhandled_exception);
    }
}
