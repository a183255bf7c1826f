/* <sys/time.h> - the time with microseconds. */
#ifndef _SYS_TIME_H
#define _SYS_TIME_H

#include <_timespec.h>
#include <_vexrt.h>

#ifndef _TIMEVAL_DEFINED
#define _TIMEVAL_DEFINED
struct timeval {
    long tv_sec;
    long tv_usec;
};
#endif

#ifndef _TIMEZONE_DEFINED
#define _TIMEZONE_DEFINED
struct timezone {
    int tz_minuteswest; /* minutes that standard time is behind UTC */
    int tz_dsttime;     /* whether daylight saving is in force */
};
#endif

_VEXRT_BEGIN

/* Fills in *tp and the struct timezone at `tzp`; either may be null. Returns 0. */
int _gettimeofday(struct timeval *_VEXRT_RESTRICT tp, void *_VEXRT_RESTRICT tzp);

#ifdef _VEXRT_POSIX
/* The POSIX spelling. */
int gettimeofday(struct timeval *_VEXRT_RESTRICT tp, void *_VEXRT_RESTRICT tzp);
#endif

_VEXRT_END

#endif
