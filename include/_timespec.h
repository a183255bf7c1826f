/* _timespec.h - calendar times as <time.h>, <threads.h> and the system headers share them. */
#ifndef _VEXRT_TIMESPEC_H
#define _VEXRT_TIMESPEC_H

/* Seconds since 1970-01-01 00:00:00 UTC, up to the year 2106. */
#ifndef _TIME_T_DEFINED
#define _TIME_T_DEFINED
typedef unsigned long time_t;
#endif

#ifndef _TIMESPEC_DEFINED
#define _TIMESPEC_DEFINED
struct timespec {
    time_t tv_sec;
    long tv_nsec;
};
#endif

#endif
