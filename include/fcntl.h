/* <fcntl.h> - POSIX, with flags customary on Windows: flags of _open() and its family. */
#ifndef _FCNTL_H
#define _FCNTL_H

#include <_vexrt.h>
#include <sys/types.h>

#define O_RDONLY 0x0000
#define O_WRONLY 0x0001
#define O_RDWR 0x0002
#define O_APPEND 0x0008      /* every write goes to the end */
#define O_RANDOM 0x0010      /* accesses will be random */
#define O_SEQUENTIAL 0x0020  /* accesses will be sequential; wins over O_RANDOM */
#define O_TEMPORARY 0x0040   /* delete the file when its last handle is closed */
#define O_NOINHERIT 0x0080   /* child processes do not get the descriptor */
#define O_CREAT 0x0100       /* create the file if it does not exist */
#define O_TRUNC 0x0200       /* cut the file to length 0 */
#define O_EXCL 0x0400        /* with O_CREAT: fail if the file exists */
#define O_SHORT_LIVED 0x1000 /* keep the file in memory if possible */
#define O_TEXT 0x4000        /* translate line ends; Ctrl-Z ends the file */
#define O_BINARY 0x8000      /* no translation: the default */
#define O_WTEXT 0x10000      /* UTF-16LE text in a file made for writing, else plain text */
#define O_U16TEXT 0x20000    /* UTF-16LE text */
#define O_U8TEXT 0x40000     /* UTF-8 text */

/* As many programs for Windows spell them. */
#define _O_RDONLY O_RDONLY
#define _O_WRONLY O_WRONLY
#define _O_RDWR O_RDWR
#define _O_APPEND O_APPEND
#define _O_RANDOM O_RANDOM
#define _O_SEQUENTIAL O_SEQUENTIAL
#define _O_TEMPORARY O_TEMPORARY
#define _O_NOINHERIT O_NOINHERIT
#define _O_CREAT O_CREAT
#define _O_TRUNC O_TRUNC
#define _O_EXCL O_EXCL
#define _O_SHORT_LIVED O_SHORT_LIVED
#define _O_TEXT O_TEXT
#define _O_BINARY O_BINARY
#define _O_WTEXT O_WTEXT
#define _O_U16TEXT O_U16TEXT
#define _O_U8TEXT O_U8TEXT

_VEXRT_BEGIN

#ifdef _VEXRT_POSIX
/* The POSIX spellings of _open() and _creat() in <io.h>. */
int open(const char *path, int oflag, ...);
int creat(const char *path, mode_t mode);
#endif

_VEXRT_END

#endif
