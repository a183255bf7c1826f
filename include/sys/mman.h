/* <sys/mman.h> - files mapped into memory. */
#ifndef _SYS_MMAN_H
#define _SYS_MMAN_H

#include <_off_t.h>
#include <_vexrt.h>

#define PROT_NONE 0
#define PROT_READ 1
#define PROT_WRITE 2
#define PROT_EXEC 4

#define MAP_SHARED 0x01    /* what is written goes to the file */
#define MAP_PRIVATE 0x02   /* what is written stays with the mapping */
#define MAP_FIXED 0x10     /* at the address given, or not at all */
#define MAP_ANONYMOUS 0x20 /* memory without a file: zeros */
#define MAP_ANON MAP_ANONYMOUS
#define MAP_FAILED ((void *)-1)

#define MS_ASYNC 1
#define MS_SYNC 2
#define MS_INVALIDATE 4

_VEXRT_BEGIN

/*
 * Maps `len` bytes of a file from `off` on, a multiple of 4096. The mapping stays when the descriptor is
 * closed. What lies beyond the end of the file cannot be touched. Returns the address; MAP_FAILED with
 * EINVAL (no length, one above INT_MAX, neither or both of MAP_SHARED and MAP_PRIVATE, an offset that is
 * negative, no multiple or beyond the end; with MAP_FIXED an address that is null, in use, or lies in its 64
 * KiB elsewhere than the offset in its own), EBADF, ENODEV (a pipe or device), EACCES (the descriptor does not
 * allow it), ENOMEM.
 */
void *_mmap(void *addr, size_t len, int prot, int flags, int fd, off_t off);

/* Takes away the mapping that begins at `addr`, always as a whole. 0; -1 with EINVAL for any other address
   and a length of 0. */
int _munmap(void *addr, size_t len);

/* Sends what has been changed in a shared mapping to the file. 0; -1 with EINVAL for other flags, both
   MS_ASYNC and MS_SYNC, and an address that is no multiple of 4096; ENOMEM where something is not mapped. */
int _msync(void *addr, size_t len, int flags);

#ifdef _VEXRT_POSIX
/* The POSIX spellings. */
void *mmap(void *addr, size_t len, int prot, int flags, int fd, off_t off);
int munmap(void *addr, size_t len);
int msync(void *addr, size_t len, int flags);
#endif

_VEXRT_END

#endif
