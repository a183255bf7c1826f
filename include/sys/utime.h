/* <sys/utime.h> - customary on Windows: setting the times of a file. */
#ifndef _SYS_UTIME_H
#define _SYS_UTIME_H

#include <_timespec.h>
#include <_vexrt.h>

struct utimbuf {
    time_t actime;  /* last access */
    time_t modtime; /* last change */
};

_VEXRT_BEGIN

/* Set the times of a file; a null `times` means now. 0; -1 with ENOENT, EACCES, EINVAL. */
int _utime(const char *path, const struct utimbuf *times);
int _wutime(const wchar_t *path, const struct utimbuf *times);

#ifdef _VEXRT_POSIX
/* The POSIX spelling. */
int utime(const char *path, const struct utimbuf *times);
#endif

_VEXRT_END

#endif
