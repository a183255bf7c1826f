/* <direct.h> - customary on Windows: directories and drives. Unless stated otherwise the functions return 0,
   or -1 with errno: ENOENT (also for an empty path), EACCES, EEXIST, ENOTEMPTY, and EINVAL for a null path, a
   name that the system does not allow, and a file in place of a directory. */
#ifndef _DIRECT_H
#define _DIRECT_H

#include <_vexrt.h>

_VEXRT_BEGIN

int _mkdir(const char *path);
int _wmkdir(const wchar_t *path);
int _rmdir(const char *path);
int _wrmdir(const wchar_t *path);

/* Change the current directory of the process, and its drive if the path has one. */
int _chdir(const char *path);
int _wchdir(const wchar_t *path);

/*
 * Store the current directory in `buf` of `size` characters, or for a null `buf` in a block of at least
 * `size` that the caller frees. Return it; null with ERANGE (it does not fit), EINVAL (no size), ENOMEM.
 */
char *_getcwd(char *buf, int size);
wchar_t *_wgetcwd(wchar_t *buf, int size);

/* The same for a drive, 1 for A, 0 for the current one. EACCES: there is none. */
char *_getdcwd(int drive, char *buf, int size);
wchar_t *_wgetdcwd(int drive, wchar_t *buf, int size);

/* The current drive, 1 for A; 0 when the current directory is on none. */
int _getdrive(void);

/* Changes to a drive, to its own current directory. EACCES: there is none. */
int _chdrive(int drive);

_VEXRT_END

#endif
