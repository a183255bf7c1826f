/* <stdio.h> - C11 7.21, K.3.5: input and output. */
#ifndef _STDIO_H
#define _STDIO_H

#include <_file.h>
#include <_off_t.h>
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

/* A position in a stream: byte offset and conversion state. */
typedef struct {
    long long __position;
    unsigned int __state[2];
} fpos_t;

_VEXRT_BEGIN

_VEXRT_DATA FILE __stdin, __stdout, __stderr;
#define stdin (&__stdin)
#define stdout (&__stdout)
#define stderr (&__stderr)

/* ---- Formatted output ---- */

/*
 * Format: %[flags][width][.precision][length]conversion.
 *
 *   flags       blank + - # 0
 *   width       digits or *; negative means left-justified
 *   precision   . and digits, none (0) or *; negative means none
 *   length      hh h l ll I64 j z t L
 *   conversion  d i o u x X c s p n a A e E f F g G %; %P is %p with capital letters
 *
 * Where this differs from ISO C: %p writes eight hexadecimal digits without "0x"; %z is never
 * negative (%zd of -1 is 4294967295); %t is extended by its sign (%tx of -1 is sixteen f); a null %s
 * is "(null)"; an unknown conversion is a field of its own letter. A left-justified %ls of more than
 * 64 bytes is not padded. Floating conversions have at most 19 significant digits, every further place
 * is 0, and they round half up on those digits; the first digit of %a is 8 to f; a NaN has no sign.
 *
 * The functions return the number of characters, or -1: the output failed, a wide character has no
 * multibyte form (errno EILSEQ), there is no memory for a long %ls (ENOMEM), there would be more than
 * INT_MAX characters (ERANGE), `format` is null (EINVAL).
 *
 * The `_s` functions treat %n, a null %s, and null arguments as runtime-constraint violations with
 * EINVAL.
 */

/* Format to a stream; printf() to stdout. The stream is locked for the whole call. A null `stream` is
   EINVAL. */
int fprintf(FILE *_VEXRT_RESTRICT stream, const char *_VEXRT_RESTRICT format, ...);
int vfprintf(FILE *_VEXRT_RESTRICT stream, const char *_VEXRT_RESTRICT format, va_list arg);
int printf(const char *_VEXRT_RESTRICT format, ...);
int vprintf(const char *_VEXRT_RESTRICT format, va_list arg);
int fprintf_s(FILE *_VEXRT_RESTRICT stream, const char *_VEXRT_RESTRICT format, ...);
int vfprintf_s(FILE *_VEXRT_RESTRICT stream, const char *_VEXRT_RESTRICT format, va_list arg);
int printf_s(const char *_VEXRT_RESTRICT format, ...);
int vprintf_s(const char *_VEXRT_RESTRICT format, va_list arg);

/* Formats to `s`, which must be large enough for the text and its terminator. On failure no
   terminator is written. */
int sprintf(char *_VEXRT_RESTRICT s, const char *_VEXRT_RESTRICT format, ...);
int vsprintf(char *_VEXRT_RESTRICT s, const char *_VEXRT_RESTRICT format, va_list arg);

/* Formats to `s` of `n` bytes. Text that does not fit is dropped, but counted in the result. The
   buffer is always terminated; with `n` 0 it is left alone and may be null. */
int snprintf(char *_VEXRT_RESTRICT s, size_t n, const char *_VEXRT_RESTRICT format, ...);
int vsnprintf(char *_VEXRT_RESTRICT s, size_t n, const char *_VEXRT_RESTRICT format, va_list arg);

/* As snprintf(), too long a text included. Violations: also a null `s`, `n` 0 or above RSIZE_MAX.
   After a failure `s` is empty. */
int snprintf_s(char *_VEXRT_RESTRICT s, rsize_t n, const char *_VEXRT_RESTRICT format, ...);
int vsnprintf_s(char *_VEXRT_RESTRICT s, rsize_t n, const char *_VEXRT_RESTRICT format,
                va_list arg);

/* As snprintf_s(), but too long a text is a violation with ERANGE, and the result after any failure
   is 0 (Annex K: a negative value for most). */
int sprintf_s(char *_VEXRT_RESTRICT s, rsize_t n, const char *_VEXRT_RESTRICT format, ...);
int vsprintf_s(char *_VEXRT_RESTRICT s, rsize_t n, const char *_VEXRT_RESTRICT format, va_list arg);

/* Formats to a block of memory that fits, and stores its address in `*ptr`; the caller frees it.
   After a failure `*ptr` is as it was. */
int asprintf(char **_VEXRT_RESTRICT ptr, const char *_VEXRT_RESTRICT format, ...);
int vasprintf(char **_VEXRT_RESTRICT ptr, const char *_VEXRT_RESTRICT format, va_list arg);

/* ---- Formatted input ---- */

/*
 * Read fields by `format`: % with an optional * (read and do not store), width, length (hh h l ll L j t
 * z I64) and one of d i o u x X p, a e f g (in either case), s c [set] n %. White space in the format
 * skips white space; any other character must be the next one. Return the number of fields stored, or
 * -1 when the input ends before the first, and for a null `stream`, `s` or `format` (EINVAL). Integers
 * are read as 64-bit values (ERANGE and the nearest limit beyond them) and stored with the low bits that
 * the object has room for. The stream is locked for the whole call.
 *
 * With l, %s, %c and %[ store wide characters, and a width counts these; a sequence that is no
 * character ends the field (EILSEQ). Differ from ISO C: %[ returns -1, not 0, when the first character
 * is not in the set; %c that finds fewer characters than its width stores them and counts; of a
 * floating-point number 36 significant digits are used. A range in a set (a-z) goes by
 * character code.
 *
 * The bounds-checked forms take, after the pointer of each %s, %c and %[, the size of the object as
 * rsize_t, in elements, terminator included. Violations end the call with -1: EINVAL for null arguments
 * and a size of 0 or above RSIZE_MAX, ERANGE for a text that does not fit; the object of %s and %[ is
 * then an empty string.
 */
int fscanf(FILE *_VEXRT_RESTRICT stream, const char *_VEXRT_RESTRICT format, ...);
int vfscanf(FILE *_VEXRT_RESTRICT stream, const char *_VEXRT_RESTRICT format, va_list arg);
int scanf(const char *_VEXRT_RESTRICT format, ...);
int vscanf(const char *_VEXRT_RESTRICT format, va_list arg);
int sscanf(const char *_VEXRT_RESTRICT s, const char *_VEXRT_RESTRICT format, ...);
int vsscanf(const char *_VEXRT_RESTRICT s, const char *_VEXRT_RESTRICT format, va_list arg);
int fscanf_s(FILE *_VEXRT_RESTRICT stream, const char *_VEXRT_RESTRICT format, ...);
int vfscanf_s(FILE *_VEXRT_RESTRICT stream, const char *_VEXRT_RESTRICT format, va_list arg);
int scanf_s(const char *_VEXRT_RESTRICT format, ...);
int vscanf_s(const char *_VEXRT_RESTRICT format, va_list arg);
int sscanf_s(const char *_VEXRT_RESTRICT s, const char *_VEXRT_RESTRICT format, ...);
int vsscanf_s(const char *_VEXRT_RESTRICT s, const char *_VEXRT_RESTRICT format, va_list arg);
/* ---- Opening and closing ---- */

/*
 * Opens the file `path` as a stream. `mode`: r (read), w (new or emptied, write) or a (write at the
 * end); then b (binary, no translation of line ends) and + (read and write) in any order; then x
 * (the file must not exist). A text stream may end in ",ccs=" and UTF-8, UTF-16LE or UNICODE. There
 * is no t. Returns null with errno set by _open(), EINVAL for null arguments, EMFILE when there
 * are 256 streams, ENOMEM; an invalid mode sets no errno.
 */
FILE *fopen(const char *_VEXRT_RESTRICT filename, const char *_VEXRT_RESTRICT mode);
FILE *_wfopen(const wchar_t *_VEXRT_RESTRICT filename, const wchar_t *_VEXRT_RESTRICT mode);

/*
 * The same with the stream stored in *streamptr (null on failure). Return 0; 2 when the stream could
 * not be opened, whatever the cause; EINVAL (a constraint violation) for null arguments. A leading u
 * before w or a is passed over. fopen_s() shares the file with nobody who writes, and with nobody at
 * all when it may write itself.
 */
errno_t fopen_s(FILE *_VEXRT_RESTRICT *_VEXRT_RESTRICT streamptr,
                const char *_VEXRT_RESTRICT filename, const char *_VEXRT_RESTRICT mode);
errno_t _wfopen_s(FILE *_VEXRT_RESTRICT *_VEXRT_RESTRICT streamptr,
                  const wchar_t *_VEXRT_RESTRICT filename, const wchar_t *_VEXRT_RESTRICT mode);

/*
 * Closes a stream and opens it again on `filename`. Returns it, or null: the stream is then closed
 * for good. A null `filename` is not supported (EINVAL, and the stream is closed).
 */
FILE *freopen(const char *_VEXRT_RESTRICT filename, const char *_VEXRT_RESTRICT mode,
              FILE *_VEXRT_RESTRICT stream);
FILE *_wfreopen(const wchar_t *_VEXRT_RESTRICT filename, const wchar_t *_VEXRT_RESTRICT mode,
                FILE *_VEXRT_RESTRICT stream);

/* The same with the stream stored in *newstreamptr. Return 0 or the errno of the failure (EINVAL where it
   is 0); EINVAL (a constraint violation) for a null newstreamptr, mode or stream. */
errno_t freopen_s(FILE *_VEXRT_RESTRICT *_VEXRT_RESTRICT newstreamptr,
                  const char *_VEXRT_RESTRICT filename, const char *_VEXRT_RESTRICT mode,
                  FILE *_VEXRT_RESTRICT stream);
errno_t _wfreopen_s(FILE *_VEXRT_RESTRICT *_VEXRT_RESTRICT newstreamptr,
                    const wchar_t *_VEXRT_RESTRICT filename, const wchar_t *_VEXRT_RESTRICT mode,
                    FILE *_VEXRT_RESTRICT stream);

/* A stream on an open descriptor, whose own mode stays as it is. Closing the stream closes it. */
FILE *_fdopen(int fd, const char *mode);
FILE *_wfdopen(int fd, const wchar_t *mode);

/* The descriptor behind a stream; -1 when there is none. */
int _fileno(FILE *stream);

/* Flushes and closes a stream. Returns 0; EOF when that failed or the stream is null. It is closed
   in either case. */
int fclose(FILE *stream);

/* Closes all streams but the standard ones. Returns how many; -1 when one failed, and those behind
   it stay open. */
int _fcloseall(void);

/* Writes out what is buffered: of one stream, or of all when it is null. Returns 0, or EOF when a
   write failed; what could not be written is gone. Enough between writing and reading. */
int fflush(FILE *stream);

/* fflush(NULL), but returns the number of open streams. */
int _flushall(void);

/*
 * Sets the buffering: _IOFBF, _IOLBF or _IONBF; before the first transfer. With a null `buf` the
 * library allocates `size` bytes; a size of 0 means unbuffered. Returns 0, -1 when that is not
 * possible; sets no errno. Streams start fully buffered with 512 bytes; standard output and standard
 * error start unbuffered, but one call's output to a terminal goes out in one piece.
 */
int setvbuf(FILE *_VEXRT_RESTRICT stream, char *_VEXRT_RESTRICT buf, int mode, size_t size);
void setbuf(FILE *_VEXRT_RESTRICT stream, char *_VEXRT_RESTRICT buf);

/* ---- Bytes and lines ---- */

/* The next byte, or EOF at the end or on an error. A null stream: EOF with errno EINVAL, here and
   below. */
int fgetc(FILE *stream);
int getc(FILE *stream);
int getchar(void);

/* Writes a byte; returns it, or EOF. */
int fputc(int c, FILE *stream);
int putc(int c, FILE *stream);
int putchar(int c);

/* Pushes a byte back, up to eight of them. Returns its argument as it is, or EOF when there is no
   room, or the stream cannot read or is writing. */
int ungetc(int c, FILE *stream);

/* Reads at most n - 1 bytes, up to and including a newline, and terminates them. Returns `s`, or
   null when nothing was read before the end or an error came. */
char *fgets(char *_VEXRT_RESTRICT s, int n, FILE *_VEXRT_RESTRICT stream);

/* Writes a string (puts: and a newline) to a stream (puts: standard output). Return 0, or EOF. */
int fputs(const char *_VEXRT_RESTRICT s, FILE *_VEXRT_RESTRICT stream);
int puts(const char *s);

/* Reads a line from standard input without its newline. No bound: use gets_s(). */
char *gets(char *s);

/* The same into `n` bytes. A line that does not fit is a constraint violation: s[0] becomes 0, the
   rest of the line is read and dropped, and the result is null. */
char *gets_s(char *s, rsize_t n);

/*
 * Reads up to and including a newline (or `delimiter`) into a block from malloc() that grows as
 * needed: *lineptr (null: none yet) of *n bytes. Returns the length, or -1: at the end, EINVAL for a
 * null pointer, ENOMEM.
 */
ssize_t getline(char **_VEXRT_RESTRICT lineptr, size_t *_VEXRT_RESTRICT n,
                FILE *_VEXRT_RESTRICT stream);
ssize_t getdelim(char **_VEXRT_RESTRICT lineptr, size_t *_VEXRT_RESTRICT n, int delimiter,
                 FILE *_VEXRT_RESTRICT stream);

/* ---- Blocks ---- */

/* Transfer up to `nmemb` elements of `size` bytes. Return how many whole ones went; 0 also when the
   product does not fit 32 bits. */
size_t fread(void *_VEXRT_RESTRICT ptr, size_t size, size_t nmemb, FILE *_VEXRT_RESTRICT stream);
size_t fwrite(const void *_VEXRT_RESTRICT ptr, size_t size, size_t nmemb,
              FILE *_VEXRT_RESTRICT stream);

/* ---- Position ---- */

/*
 * Move the position; SEEK_SET, SEEK_CUR or SEEK_END. Return 0, or -1 with errno EFPOS. Discard
 * pushed-back bytes and clear the end-of-file indicator, not the error indicator.
 */
int fseek(FILE *stream, long offset, int whence);
int _fseeko(FILE *stream, off_t offset, int whence);
int _fseek64(FILE *stream, long long offset, int whence);

/* The position in the file; on a text stream a newline in the buffer counts as two bytes, but not on one
   in memory. -1 with errno EFPOS on failure, or when it does not fit. */
long ftell(FILE *stream);
off_t _ftello(FILE *stream);
long long _ftell64(FILE *stream);

/* As many programs for Windows spell them. */
#define _fseeki64 _fseek64
#define _ftelli64 _ftell64

/* Save and restore the position and the conversion state. Return 0, or -1 with errno EFPOS. */
int fgetpos(FILE *_VEXRT_RESTRICT stream, fpos_t *_VEXRT_RESTRICT pos);
int fsetpos(FILE *stream, const fpos_t *pos);

/* fseek() to the start that also clears the error indicator. */
void rewind(FILE *stream);

/* ---- Indicators ---- */

int feof(FILE *stream);
int ferror(FILE *stream);
void clearerr(FILE *stream);

/* ---- Error reports ---- */

/* Writes `s`, a colon and a blank (unless `s` is null or empty), the message of errno and a newline
   to standard error. */
void perror(const char *s);

/* The same with a wide prefix, written as multibyte characters. */
void _wperror(const wchar_t *s);

/* ---- Files by name ---- */

/* Removes a file. 0, or -1 with errno as _unlink() of <io.h>. */
int remove(const char *filename);
int _wremove(const wchar_t *filename);

/* Gives a file or directory another name, on the same drive also in another directory; files move between
   drives, too. 0, or -1 with ENOENT, EEXIST (the new name is in use), EACCES, EINVAL. */
int rename(const char *oldname, const char *newname);
int _wrename(const wchar_t *oldname, const wchar_t *newname);

/*
 * Makes a name in the directory of the variable TEMP, else in the root of the current drive: another one
 * with each of a thread's calls, the same again after 32768. Whether there is such a file is not looked at.
 * For a null `s` (L_tmpnam characters) the thread's own buffer is used. Null only without memory.
 */
char *tmpnam(char *s);
wchar_t *_wtmpnam(wchar_t *s);

/* The same into `maxsize` characters. 0; EINVAL (a constraint violation) for a null `s` or a size of 0 or
   above RSIZE_MAX, ERANGE (likewise) when the name does not fit; `s` is then empty. */
errno_t tmpnam_s(char *s, rsize_t maxsize);
errno_t _wtmpnam_s(wchar_t *s, rsize_t maxsize);

/* Opens a file of such a name for update, binary, which is deleted when it is closed. tmpfile_s() returns
   0, 2 when it cannot be opened, ENOMEM; EINVAL (a constraint violation) for a null pointer. */
FILE *tmpfile(void);
errno_t tmpfile_s(FILE *_VEXRT_RESTRICT *_VEXRT_RESTRICT streamptr);

/* ---- Streams in memory ---- */

/*
 * Opens a stream on `size` bytes at `buf`, or for a null `buf` on memory of its own. What is there up to
 * the first NUL is the contents; "w" makes them empty, "a" begins behind them. A text stream keeps its
 * contents terminated as they grow; a write that does not fit is cut short with ENOSPC. Null with EINVAL
 * for a size of 0 or above INT_MAX and for a null mode, with EMFILE, with ENOMEM; an invalid mode sets no
 * errno. Differs from POSIX in that an offset from the end (SEEK_END) counts backwards, and reads go on to
 * `size`.
 */
FILE *fmemopen(void *_VEXRT_RESTRICT buf, size_t size, const char *_VEXRT_RESTRICT mode);

/*
 * Opens a stream for reading and writing on memory that grows. *bufp is the memory, always terminated,
 * and *sizep the number of bytes without the terminator; they are valid after fflush() or fclose() until
 * more is written, and the memory is the caller's to free. Null with EINVAL for null pointers.
 */
FILE *open_memstream(char **bufp, size_t *sizep);

/* ---- Commands ---- */

/*
 * Starts a command of the interpreter (see system() in <stdlib.h>) with a stream on its standard output
 * (`mode` "r") or standard input ("w"); a b behind that makes it binary. Null for another mode, null
 * pointers, and when the command or the stream cannot be had.
 */
FILE *_popen(const char *command, const char *mode);
FILE *_wpopen(const wchar_t *command, const wchar_t *mode);

/* Closes such a stream and waits for the command. Returns its exit code; -1 for any other stream and when
   the wait fails. */
int _pclose(FILE *stream);

#ifdef _VEXRT_POSIX
/* The POSIX spellings. */
int fileno(FILE *stream);
FILE *fdopen(int fd, const char *mode);
int fseeko(FILE *stream, off_t offset, int whence);
off_t ftello(FILE *stream);
int fseeko64(FILE *stream, long long offset, int whence);
long long ftello64(FILE *stream);
FILE *popen(const char *command, const char *mode);
int pclose(FILE *stream);
#endif

_VEXRT_END

#endif
