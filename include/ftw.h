/* <ftw.h> - POSIX: visiting a directory tree. */
#ifndef _FTW_H
#define _FTW_H

#include <_vexrt.h>
#include <sys/stat.h>

#define FTW_F 0   /* a file */
#define FTW_D 1   /* a directory, before what is in it */
#define FTW_DNR 2 /* a directory that cannot be read */
#define FTW_NS 3  /* something whose status cannot be had */
#define FTW_SL 4  /* a link to a directory, which is not followed */

_VEXRT_BEGIN

/*
 * Calls fn(path, status, type) for a file or directory and for all below it. Returns what `fn` returned
 * when that was not 0, which ends the visit; 0 after all; -1 with errno of the status of `path`, with
 * ENAMETOOLONG for paths of 260 characters, and with EINVAL for null pointers and an `ndirs` below 1
 * (which matters no further).
 */
int _ftw(const char *path, int (*fn)(const char *path, const struct stat *buf, int flag), int ndirs);
int _wftw(const wchar_t *path, int (*fn)(const wchar_t *path, const struct stat *buf, int flag),
          int ndirs);

#ifdef _VEXRT_POSIX
/* The POSIX spelling. */
int ftw(const char *path, int (*fn)(const char *path, const struct stat *buf, int flag), int ndirs);
#endif

_VEXRT_END

#endif
