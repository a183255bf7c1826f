/* <process.h> - threads by their handles. */
#ifndef _PROCESS_H
#define _PROCESS_H

#include <_vexrt.h>

_VEXRT_BEGIN

/*
 * Starts a thread that calls start(arg), with a stack of `stack_size` bytes (0: the program's default).
 * Returns its handle, which is closed when the thread ends, or all bits set with errno from the system;
 * EINVAL for null.
 */
uintptr_t _beginthread(void(__cdecl *start)(void *), unsigned int stack_size, void *arg);

/*
 * The same with all that the system's CreateThread takes. The handle is the caller's to close. Returns 0
 * with errno from the system; EINVAL for a null `start`.
 */
uintptr_t _beginthreadex(void *security, unsigned int stack_size,
                         unsigned int(__stdcall *start)(void *), void *arg, unsigned int flags,
                         unsigned int *thread_id_out);

/* End the calling thread, with status 0 or `code`. Storage destructors run. Returning from the start
   routine does the same. */
_VEXRT_NORETURN void _endthread(void);
_VEXRT_NORETURN void _endthreadex(unsigned int code);

_VEXRT_END

#endif
