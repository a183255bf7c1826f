/* <setjmp.h> - C11 7.13: non-local jumps. */
#ifndef _SETJMP_H
#define _SETJMP_H

#include <_vexrt.h>

/* What a jump needs: ebp, ebx, edi, esi, esp, eip, the innermost exception frame and the __try that
   is active in it; the rest belongs to compilers that call _setjmp3 themselves. */
typedef int jmp_buf[16];

_VEXRT_BEGIN

/*
 * Saves the place of its call in `env` and returns 0; it returns again, with longjmp()'s value, when
 * longjmp() is called. In a function with a __try the compiler turns `count` into the number of further
 * arguments: a __stdcall function that longjmp() calls with `env` to run the __finally blocks of that
 * function, the number of the active __try, and up to six values of its own.
 */
__attribute__((__returns_twice__)) int _setjmp3(jmp_buf env, int count, ...);

#define setjmp(env) _setjmp3((env), 0)

/*
 * Makes the setjmp() that filled `env` return `val` (1 for 0). The __finally blocks of all functions
 * and of all __try statements that the jump leaves are run, innermost first. The function that called
 * setjmp() must still be active.
 */
_VEXRT_NORETURN void longjmp(jmp_buf env, int val);

_VEXRT_END

#endif
