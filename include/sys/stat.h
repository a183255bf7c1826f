/* <sys/stat.h> - POSIX: file status. */
#ifndef _SYS_STAT_H
#define _SYS_STAT_H

#include <_timespec.h>
#include <_vexrt.h>
#include <sys/types.h>

#define S_IFMT 0xF000
#define S_IFIFO 0x1000
#define S_IFCHR 0x2000
#define S_IFDIR 0x4000
#define S_IFREG 0x8000

#define S_IREAD 0x0100
#define S_IWRITE 0x0080 /* without it a new file is read-only */
#define S_IEXEC 0x0040

#define S_IRUSR S_IREAD
#define S_IWUSR S_IWRITE
#define S_IXUSR S_IEXEC
#define S_IRWXU (S_IRUSR | S_IWUSR | S_IXUSR)
#define S_IRGRP (S_IRUSR >> 3)
#define S_IWGRP (S_IWUSR >> 3)
#define S_IXGRP (S_IXUSR >> 3)
#define S_IRWXG (S_IRWXU >> 3)
#define S_IROTH (S_IRUSR >> 6)
#define S_IWOTH (S_IWUSR >> 6)
#define S_IXOTH (S_IXUSR >> 6)
#define S_IRWXO (S_IRWXU >> 6)

/* As many programs for Windows spell them. */
#define _S_IFMT S_IFMT
#define _S_IFIFO S_IFIFO
#define _S_IFCHR S_IFCHR
#define _S_IFDIR S_IFDIR
#define _S_IFREG S_IFREG
#define _S_IREAD S_IREAD
#define _S_IWRITE S_IWRITE
#define _S_IEXEC S_IEXEC

#define S_ISDIR(mode) (((mode) & S_IFMT) == S_IFDIR)
#define S_ISREG(mode) (((mode) & S_IFMT) == S_IFREG)
#define S_ISCHR(mode) (((mode) & S_IFMT) == S_IFCHR)
#define S_ISFIFO(mode) (((mode) & S_IFMT) == S_IFIFO)

/*
 * The status of a file. The mode of a file is made up: it may be written unless it is read-only, and be
 * executed if its name ends in .exe, .com, .bat or .cmd; group and others as the owner. A time that the
 * file system does not keep is -1.
 */
struct stat {
    unsigned int st_dev; /* the drive, 0 for A */
    unsigned short st_ino;
    unsigned short st_mode;
    short st_nlink;
    short st_uid;
    short st_gid;
    unsigned int st_rdev;
    int st_size; /* the low 32 bits */
    time_t st_atime;
    time_t st_mtime;
    time_t st_ctime; /* creation */
};

/* The same with the whole size. */
struct stat64 {
    unsigned int st_dev;
    unsigned short st_ino;
    unsigned short st_mode;
    short st_nlink;
    short st_uid;
    short st_gid;
    unsigned int st_rdev;
    long long st_size;
    time_t st_atime;
    time_t st_mtime;
    time_t st_ctime;
};

_VEXRT_BEGIN

/*
 * Store the status of a file by its name. Return 0; -1 with ENOENT (also for names with '?' or '*', and for
 * a drive without a path), EINVAL for null pointers. The roots of drives and of network shares are
 * directories without times.
 */
int _stat(const char *path, struct stat *buf);
int _wstat(const wchar_t *path, struct stat *buf);
int _stat64(const char *path, struct stat64 *buf);
int _wstat64(const wchar_t *path, struct stat64 *buf);

/* The same by descriptor. Without a name, st_dev is 0 and no file is executable; of a pipe or a device
   st_dev is the descriptor, there are no times, and a pipe's size is what can be read at once. EBADF. */
int _fstat(int fd, struct stat *buf);
int _fstat64(int fd, struct stat64 *buf);

#ifdef _VEXRT_POSIX
/* The POSIX spellings. The mode of a new directory does not matter. */
int stat(const char *_VEXRT_RESTRICT path, struct stat *_VEXRT_RESTRICT buf);
int fstat(int fd, struct stat *buf);
int chmod(const char *path, mode_t mode);
int mkdir(const char *path, mode_t mode);

/* Programs for Windows have one name each for a structure and its function, as POSIX has `stat`. */
int stat64(const char *path, struct stat64 *buf);
#ifndef _VEXRT_BUILD
#define _stat stat
#define _stat64 stat64
#define _stati64 stat64
#define _wstati64 _wstat64
#define _fstati64 _fstat64
#endif
#endif

_VEXRT_END

#endif
