/* <errno.h> - C11 7.5, K.3.2: errors. `errno` is an int of the calling thread's own. */
#ifndef _ERRNO_H
#define _ERRNO_H

#include <_vexrt.h>

_VEXRT_BEGIN

/* The address of the calling thread's errno. Never null. */
int *__errno(void);

_VEXRT_END

#ifndef errno
#define errno (*__errno())
#endif

#define EPERM 1         /* Operation not permitted */
#define ENOENT 2        /* No such file or directory */
#define ESRCH 3         /* No such process */
#define EINTR 4         /* Interrupted function */
#define EIO 5           /* I/O error */
#define ENXIO 6         /* No such device or address */
#define E2BIG 7         /* Argument list too long */
#define ENOEXEC 8       /* Executable file format error */
#define EBADF 9         /* Bad file descriptor */
#define ECHILD 10       /* No child processes */
#define EAGAIN 11       /* Resource temporarily unavailable */
#define ENOMEM 12       /* Not enough space */
#define EACCES 13       /* Permission denied */
#define EFAULT 14       /* Bad address */
#define EBUSY 16        /* Device or resource busy */
#define EEXIST 17       /* File exists */
#define EXDEV 18        /* Cross-device link */
#define ENODEV 19       /* No such device */
#define ENOTDIR 20      /* Not a directory */
#define EISDIR 21       /* Is a directory */
#define EINVAL 22       /* Invalid argument */
#define ENFILE 23       /* Too many files open in system */
#define EMFILE 24       /* Too many open files */
#define ENOTTY 25       /* Inappropriate I/O control operation */
#define EFBIG 27        /* File too large */
#define ENOSPC 28       /* No space left on device */
#define ESPIPE 29       /* Invalid seek */
#define EROFS 30        /* Read-only file system */
#define EMLINK 31       /* Too many links */
#define EPIPE 32        /* Broken pipe */
#define EDOM 33         /* Mathematics argument out of domain of function */
#define ERANGE 34       /* Range error */
#define EFPOS 35        /* File positioning error (this library's own) */
#define EDEADLK 36      /* Resource deadlock would occur */
#define ENAMETOOLONG 38 /* Filename too long */
#define ENOLCK 39       /* No locks available */
#define ENOSYS 40       /* Function not supported */
#define ENOTEMPTY 41    /* Directory not empty */
#define EILSEQ 42       /* Multibyte encoding error */

#endif
