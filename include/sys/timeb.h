/* <sys/timeb.h> - older editions of POSIX: the time with milliseconds. */
#ifndef _SYS_TIMEB_H
#define _SYS_TIMEB_H

#include <_timespec.h>
#include <_vexrt.h>

struct timeb {
    time_t time;
    unsigned short millitm; /* milliseconds of the second */
    short timezone;         /* minutes that standard time is behind UTC */
    short dstflag;          /* whether daylight saving is in force */
};

_VEXRT_BEGIN

/* Fills in *tp and returns 0; -1 with EINVAL for null. */
int _ftime(struct timeb *tp);

#ifdef _VEXRT_POSIX
/* The POSIX spelling. */
int ftime(struct timeb *tp);
#endif

_VEXRT_END

#endif
