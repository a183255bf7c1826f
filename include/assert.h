/* <assert.h> - C11 7.2: diagnostics. May be included again with another setting of NDEBUG. */
#include <_vexrt.h>

#ifndef _ASSERT_H
#define _ASSERT_H

#if !defined(__cplusplus)
#define static_assert _Static_assert
#endif

_VEXRT_BEGIN

/*
 * Reports a failed assertion, raises SIGABRT and ends the process with status 1. The report goes to
 * standard error; when that has been replaced since the program started, or under a debugger, to a
 * message box (and under a debugger the call then returns). With the environment variable
 * __VEXC_CONFORMANCE_TEST__ set it always goes to standard error.
 */
void __assert(const char *expr, const char *file, int line, const char *func);

_VEXRT_END

#endif

#undef assert
#ifdef NDEBUG
#define assert(expression) ((void)0)
#else
#define assert(expression)                                                                         \
    ((expression) ? (void)0 : __assert(#expression, __FILE__, __LINE__, __func__))
#endif
