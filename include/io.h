/*
 * <io.h> - descriptors: small numbers for open files, pipes and devices, as POSIX has them.
 *
 * Unless stated otherwise a function returns -1 on failure and sets errno: EBADF for a number that
 * is no open descriptor, else what the operating system's error comes to. At most 8192 descriptors
 * are open at a time; opening takes the lowest free one. Any thread may use any descriptor: each
 * has a lock of its own.
 */
#ifndef _IO_H
#define _IO_H

#include <_timespec.h>
#include <_vexrt.h>
#ifdef _VEXRT_POSIX
#include <unistd.h> /* programs for Windows take read() and its like from here */
#endif

#ifndef SEEK_SET
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2
#endif

/* A file that _findfirst() found. A time that is not kept is -1; `size` is the low 32 bits. */
struct _finddata_t {
    unsigned attrib;
    time_t time_create;
    time_t time_access;
    time_t time_write;
    unsigned long size;
    char name[260];
};

struct _wfinddata_t {
    unsigned attrib;
    time_t time_create;
    time_t time_access;
    time_t time_write;
    unsigned long size;
    wchar_t name[260];
};

/* The bits of `attrib`. */
#define _A_NORMAL 0x00
#define _A_RDONLY 0x01
#define _A_HIDDEN 0x02
#define _A_SYSTEM 0x04
#define _A_SUBDIR 0x10
#define _A_ARCH 0x20

_VEXRT_BEGIN

/* ---- Opening and closing ---- */

/*
 * Opens the file `path`. `oflag` is a combination of the O_ values of <fcntl.h>; with O_CREAT a
 * third argument gives the permissions of a new file (S_IWRITE of <sys/stat.h>, else it is
 * read-only). A descriptor is binary unless a text mode is asked for. Returns the descriptor.
 * EINVAL: flags that do not go together or a null path; EMFILE: no descriptor is free; ENOENT,
 * EEXIST, EACCES and others: what the system says. A text file opened for reading and writing loses
 * a Ctrl-Z at its end.
 */
int _open(const char *path, int oflag, ...);
int _wopen(const wchar_t *path, int oflag, ...);

/* The same with a sharing mode of <share.h>; the permissions follow it. */
int _sopen(const char *path, int oflag, int shflag, ...);
int _wsopen(const wchar_t *path, int oflag, int shflag, ...);

/* _open(path, O_RDWR | O_CREAT | O_TRUNC, pmode): a new or emptied binary file. */
int _creat(const char *path, int pmode);
int _wcreat(const wchar_t *path, int pmode);

/* Closes a descriptor. Returns 0. Descriptors 1 and 2 may share a handle; it is closed with the
   second of them. */
int _close(int fd);

/* Duplicates a descriptor onto the lowest free one, which child processes inherit. Returns it.
   EMFILE: none is free. */
int _dup(int fd);

/* Duplicates `fd` onto `fd2`, which is closed first if it is open. Returns 0. EBADF: also for an
   `fd2` of 8192 and more; ENOMEM: no memory for so many descriptors. */
int _dup2(int fd, int fd2);

/*
 * Makes a pipe with room for `size` bytes: fds[0] reads what fds[1] writes. `textmode` is O_BINARY
 * or O_TEXT (also the default), with O_NOINHERIT if child processes shall not get it. Returns 0.
 */
int _pipe(int fds[2], unsigned int size, int textmode);

/* The system handle behind a descriptor. It stays the descriptor's. */
intptr_t _get_osfhandle(int fd);

/* Puts a descriptor on a system handle, which then belongs to it. `flags`: O_TEXT, O_APPEND,
   O_NOINHERIT. Returns the descriptor. */
int _open_osfhandle(intptr_t handle, int flags);

/* ---- Transfer ---- */

/*
 * Reads up to `count` bytes. Returns how many were stored, 0 at the end. In text mode CR LF becomes
 * LF and a Ctrl-Z ends the file; a CR that ends a read whose LF comes with the next one is dropped.
 * EINVAL: an odd count in a Unicode mode.
 */
int _read(int fd, void *buf, unsigned int count);

/*
 * Writes `count` bytes. Returns how many of them were accounted for. In text mode LF becomes CR LF;
 * the text goes out in chunks of 2047 bytes, and one byte behind every full chunk is left out: pass
 * at most 1024 bytes at a time, as the streams do. EPIPE: nobody reads the pipe; ENOSPC: the disk is
 * full; EINVAL: an odd count in a Unicode mode.
 */
int _write(int fd, const void *buf, unsigned int count);

/* ---- Position and size ---- */

/* Moves the position to `offset` from the start, the position or the end (SEEK_SET, SEEK_CUR,
   SEEK_END). Returns the new one. The 32-bit form fails for positions that do not fit. */
long _lseek(int fd, long offset, int origin);
long long _lseek64(int fd, long long offset, int origin);

/* The current position. */
long _tell(int fd);
long long _tell64(int fd);

/* Whether the position is the end of the file: 1 or 0. */
int _eof(int fd);

/* The length of the file in bytes. */
long _filelength(int fd);
long long _filelength64(int fd);

/* As many programs for Windows spell them. */
#define _lseeki64 _lseek64
#define _telli64 _tell64
#define _filelengthi64 _filelength64

/* Sets the length of the file, cutting it or adding zeros. Returns 0; the position stays. EACCES:
   the file cannot be cut. */
int _chsize(int fd, long size);
int _chsize64(int fd, long long size);

/* ---- Files by name ---- */

/* Whether a file exists (`mode` 0 or 4) and is not read-only (2 and 6; a directory never is). Return 0, or
   -1 with ENOENT, EACCES, and EINVAL for another mode or a null path. */
int _access(const char *path, int mode);
int _waccess(const wchar_t *path, int mode);

/* Make a file read-only, or with S_IWRITE in `pmode` writable. 0, or -1 with ENOENT, EACCES, EINVAL. */
int _chmod(const char *path, int pmode);
int _wchmod(const wchar_t *path, int pmode);

/* Remove a file; remove() of <stdio.h> is the same. 0, or -1 with ENOENT, EACCES (it is a directory,
   read-only or open), EINVAL. */
int _unlink(const char *path);
int _wunlink(const wchar_t *path);

/* Make a symbolic link; a relative `target` counts from the directory of the link. 0, or -1 with EPERM where
   the system wants a privilege for it, ENOSYS where it has no links, EEXIST, ENOENT, ENAMETOOLONG, EINVAL. */
int _symlink(const char *target, const char *linkpath);
int _wsymlink(const wchar_t *target, const wchar_t *linkpath);

/*
 * Find the files that match a pattern with '*' and '?' in its last component. _findfirst() stores the first
 * and returns a handle for the rest, or -1 with ENOENT or EINVAL; _findnext() stores the next and returns
 * 0, or -1 with ENOENT when there are no more; _findclose() ends the search, 0 or -1 with EINVAL.
 */
intptr_t _findfirst(const char *pattern, struct _finddata_t *fileinfo);
intptr_t _wfindfirst(const wchar_t *pattern, struct _wfinddata_t *fileinfo);
int _findnext(intptr_t handle, struct _finddata_t *fileinfo);
int _wfindnext(intptr_t handle, struct _wfinddata_t *fileinfo);
int _findclose(intptr_t handle);

/* ---- The rest ---- */

/* 0x40 (not 1) for a character device, 0 for anything else and for invalid numbers. Sets no
   errno. */
int _isatty(int fd);

/*
 * Sets the translation mode: O_BINARY, O_TEXT, O_U8TEXT, O_U16TEXT or O_WTEXT; 0 only asks.
 * Returns the mode it had. EINVAL: any other mode.
 */
int _setmode(int fd, int mode);
#ifdef _VEXRT_POSIX
int setmode(int fd, int mode); /* as it is customary on Windows */
#endif

/* Has the system write the file's data to the disk. Returns 0. */
int _commit(int fd);

/*
 * Locks or unlocks `nbytes` bytes from the position on; modes stand in <sys/locking.h>. Returns 0.
 * EDEADLK: LK_LOCK did not get the range in nine attempts; EACCES: it is locked by another.
 */
int _locking(int fd, int mode, long nbytes);
int _locking64(int fd, int mode, long long nbytes);

_VEXRT_END

#endif
