/* <stdio.h> - C11 7.21, K.3.5: input and output. */
#ifndef _STDIO_H
#define _STDIO_H

#include <_va_list.h>
#include <_vexrt.h>

#define EOF (-1)
#define BUFSIZ 512
#define FOPEN_MAX 256
#define FILENAME_MAX 260
#define L_tmpnam 260
#define TMP_MAX 32767
#define L_tmpnam_s L_tmpnam
#define TMP_MAX_S TMP_MAX
#define RSIZE_MAX _VEXRT_RSIZE_MAX

#define _IOFBF 0
#define _IOLBF 1
#define _IONBF 2

#ifndef SEEK_SET
#define SEEK_SET 0
#define SEEK_CUR 1
#define SEEK_END 2
#endif

/* A stream. The members are the library's own. */
typedef struct _FILE {
    unsigned int __state[20];
} FILE;

/* A position in a stream: byte offset and conversion state. */
typedef struct {
    long long __position;
    unsigned int __state[2];
} fpos_t;

#ifndef _OFF_T_DEFINED
#define _OFF_T_DEFINED
#define _OFF_T_
typedef long _off_t;
typedef long off_t;
#endif

_VEXRT_BEGIN

_VEXRT_DATA FILE __stdin, __stdout, __stderr;
#define stdin (&__stdin)
#define stdout (&__stdout)
#define stderr (&__stderr)

/* ---- Formatted output ---- */

/* ---- Error reports ---- */

/* Writes `s`, a colon and a blank (unless `s` is null or empty), the message of errno and a newline
   to standard error. */
void perror(const char *s);

_VEXRT_END

#endif
