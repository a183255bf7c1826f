/* <dirent.h> - POSIX: directory streams. */
#ifndef _DIRENT_H
#define _DIRENT_H

#include <_vexrt.h>

/* Types of entries: files, directories, and links of any kind. */
#define DT_REG 1
#define DT_DIR 2
#define DT_LNK 3

typedef struct _DIR DIR;
typedef struct _WDIR _WDIR;

struct dirent {
    unsigned short d_ino; /* always 0 */
    unsigned short d_type;
    char d_name[260];
};

struct _wdirent {
    unsigned short d_ino;
    unsigned short d_type;
    wchar_t d_name[260];
};

_VEXRT_BEGIN

/* Open a directory. Null with ENOENT for a null or empty path, one of more than 255 characters and what
   is no directory; EACCES, ENOMEM. */
DIR *_opendir(const char *path);
_WDIR *_wopendir(const wchar_t *path);

/*
 * The next entry, "." and ".." among them, valid until the next call on the stream. Null with EBADF at the
 * end and for a null stream; differs from POSIX in that the end, too, sets errno.
 */
struct dirent *_readdir(DIR *dir);
struct _wdirent *_wreaddir(_WDIR *dir);

/* Begin again. */
void _rewinddir(DIR *dir);
void _wrewinddir(_WDIR *dir);

/* Close the stream. 0; -1 with EBADF for a null one. */
int _closedir(DIR *dir);
int _wclosedir(_WDIR *dir);

#ifdef _VEXRT_POSIX
/* The POSIX spellings. */
DIR *opendir(const char *path);
struct dirent *readdir(DIR *dir);
void rewinddir(DIR *dir);
int closedir(DIR *dir);
#endif

_VEXRT_END

#endif
