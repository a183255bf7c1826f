/* <signal.h> - C11 7.14: signal handling. */
#ifndef _SIGNAL_H
#define _SIGNAL_H

#include <_vexrt.h>

typedef int sig_atomic_t;

#define SIG_DFL ((void (*)(int))0)
#define SIG_IGN ((void (*)(int))1)
#define SIG_ERR ((void (*)(int))-1)

#define SIGINT 2
#define SIGILL 4
#define SIGABRT 6
#define SIGFPE 8
#define SIGSEGV 11
#define SIGTERM 15

_VEXRT_BEGIN

/*
 * Sets the handler of a signal (1 to 43). SIGILL, SIGFPE and SIGSEGV belong to the calling thread,
 * all others to the process. Returns the previous handler, or SIG_ERR for a number out of range, for
 * the handler SIG_ERR, and when no memory or no console handler can be had. Sets no errno.
 */
void (*signal(int sig, void (*func)(int)))(int);

/*
 * Sends a signal to the calling thread. A handler is reset to SIG_DFL before it is called. The
 * default action writes the signal's name to standard error and calls exit(1), so that exit handlers
 * run and streams are flushed. Returns 0, or -1 for an invalid number.
 */
int raise(int sig);

_VEXRT_END

#endif
