/* <time.h> - C11 7.27, K.3.8: dates, times, clocks. */
#ifndef _TIME_H
#define _TIME_H

#include <_timespec.h>
#include <_vexrt.h>

#define CLOCKS_PER_SEC 1000L
#define TIME_UTC 1

#ifndef _CLOCK_T_DEFINED
#define _CLOCK_T_DEFINED
typedef long clock_t;
#endif

#ifndef _TM_DEFINED
#define _TM_DEFINED
struct tm {
    int tm_sec;   /* 0 to 59 */
    int tm_min;   /* 0 to 59 */
    int tm_hour;  /* 0 to 23 */
    int tm_mday;  /* 1 to 31 */
    int tm_mon;   /* months since January, 0 to 11 */
    int tm_year;  /* years since 1900 */
    int tm_wday;  /* days since Sunday, 0 to 6 */
    int tm_yday;  /* days since 1 January, 0 to 365 */
    int tm_isdst; /* daylight saving: above 0 in force, 0 not in force, below 0 not known */
};
#endif

_VEXRT_BEGIN

/* ---- Clocks ---- */

/* Returns the calendar time and stores it in *timer if that is not null. */
time_t time(time_t *timer);

/* Returns the time since the program was started in milliseconds, or -1 when there is no counter and
   from the 25th day on. Differs from ISO C in that it is the time on the wall. */
clock_t clock(void);

/* Returns time1 - time0 in seconds. */
double difftime(time_t time1, time_t time0);

/* Stores the calendar time, exact to 100 nanoseconds. Returns `base`, which must be TIME_UTC, else 0. */
int timespec_get(struct timespec *ts, int base);

/*
 * Waits for the given time, which must be below a second, and sets *rem (if not null) to 0. Returns 0; -1
 * with EINVAL for a second or more, or with errno from the system.
 */
int _nanosleep(const struct timespec *req, struct timespec *rem);

/* ---- The calendar ---- */

/*
 * Break a calendar time down into a date in UTC or in the local zone. Return one structure that the
 * thread's calls share; null with EINVAL for null. Differ from ISO C in that 2100 is a leap year. Local
 * time is taken as in docs/time.md; where the zone's rules cannot be parsed, `tm_isdst` is -1.
 *
 * The _s forms fill in *result and return it; null for null arguments (a constraint violation).
 */
struct tm *gmtime(const time_t *timer);
struct tm *gmtime_s(const time_t *_VEXRT_RESTRICT timer, struct tm *_VEXRT_RESTRICT result);
struct tm *localtime(const time_t *timer);
struct tm *localtime_s(const time_t *_VEXRT_RESTRICT timer, struct tm *_VEXRT_RESTRICT result);

/*
 * Returns the calendar time of a local date and normalises *timeptr; its fields may have any value, and
 * `tm_wday` and `tm_yday` are not looked at. Returns (time_t)-1, *timeptr unchanged, for a date before
 * 1900 and for a year that is no int; with EINVAL for null. Dates between 1900 and 1970 wrap. Differs
 * from ISO C in that `tm_isdst` is taken as it stands and kept: above 0 an hour is subtracted, below 0
 * counts as 0.
 */
time_t mktime(struct tm *timeptr);

/* ---- Text ---- */

/*
 * Formats a date for the thread's locale into `maxsize` characters with the terminator. Returns the
 * length, or 0 when it does not fit (the text is then cut, and terminated if `maxsize` is not 0); with
 * EINVAL for null arguments. Differs from ISO C in the week numbers of some years and in what a zone's
 * offset shows in daylight time: see docs/time.md. An unknown conversion stands for itself.
 */
size_t strftime(char *_VEXRT_RESTRICT s, size_t maxsize, const char *_VEXRT_RESTRICT format,
                const struct tm *_VEXRT_RESTRICT timeptr);

/*
 * The text "Thu Jan  1 00:00:00 1970\n" of a date or of a calendar time in the local zone, in one
 * buffer of the thread; null with EINVAL for null. Differ from ISO C in that only the last four digits
 * of the year are shown, and that a name that does not exist is empty.
 *
 * The _s forms write to `s` of `maxsize` characters. They return 0; EINVAL (a constraint violation) for
 * null arguments and sizes of 0 or above RSIZE_MAX, ERANGE (likewise) for less than 26 characters and
 * for fields out of range; `s` is then empty.
 */
char *asctime(const struct tm *timeptr);
char *ctime(const time_t *timer);
errno_t asctime_s(char *s, rsize_t maxsize, const struct tm *timeptr);
errno_t ctime_s(char *s, rsize_t maxsize, const time_t *timer);
wchar_t *_wasctime(const struct tm *timeptr);
wchar_t *_wctime(const time_t *timer);
errno_t _wasctime_s(wchar_t *s, rsize_t maxsize, const struct tm *timeptr);
errno_t _wctime_s(wchar_t *s, rsize_t maxsize, const time_t *timer);

/*
 * Write the current local date as "12/31/99" or the current local time as "23:59:59" to a buffer of 9
 * characters and return it; null with EINVAL for null. The _s forms return 0; EINVAL and ERANGE as
 * above, for less than 9 characters.
 */
char *_strdate(char *buf);
char *_strtime(char *buf);
errno_t _strdate_s(char *buf, rsize_t size);
errno_t _strtime_s(char *buf, rsize_t size);
wchar_t *_wcsdate(wchar_t *buf);
wchar_t *_wcstime(wchar_t *buf);
errno_t _wcsdate_s(wchar_t *buf, rsize_t size);
errno_t _wcstime_s(wchar_t *buf, rsize_t size);

_VEXRT_END

#endif
