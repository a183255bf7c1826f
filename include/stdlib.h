/* <stdlib.h> - C11 7.22, K.3.6: general utilities. */
#ifndef _STDLIB_H
#define _STDLIB_H

#include <_vexrt.h>

#define EXIT_SUCCESS 0
#define EXIT_FAILURE 1
#define RAND_MAX 0x3FFFFFFF
#define RSIZE_MAX _VEXRT_RSIZE_MAX
#define MB_CUR_MAX __mbcurmax

typedef struct {
    int quot, rem;
} div_t;
typedef struct {
    long quot, rem;
} ldiv_t;
typedef struct {
    long long quot, rem;
} lldiv_t;

/* A runtime-constraint handler: a message, null, and the errno value of the violation. */
typedef void (*constraint_handler_t)(const char *_VEXRT_RESTRICT msg, void *_VEXRT_RESTRICT ptr,
                                     errno_t error);

_VEXRT_BEGIN

/* ---- The program's arguments ---- */

/* The arguments of the program: their number and two null-terminated arrays of which the one that
   the program's kind of main() takes is set. */
_VEXRT_DATA int __argc;
_VEXRT_DATA char **__argv;
_VEXRT_DATA wchar_t **__wargv;

/* ---- Multibyte characters ---- */

/* The most bytes that one multibyte character takes, in every locale: 3. */
_VEXRT_DATA size_t __mbcurmax;

/*
 * Convert one character; see mbrtowc() and wcrtomb() in <wchar.h>. mblen() and mbtowc() return the
 * bytes of the character, 0 for the terminator, -1 with EILSEQ for an invalid or incomplete one;
 * mbtowc() reads no more than MB_CUR_MAX bytes. wctomb() returns the bytes written, or -1. With a null
 * `s` they reset their state and return whether the encoding has states: 0.
 */
int mblen(const char *s, size_t n);
int mbtowc(wchar_t *_VEXRT_RESTRICT pwc, const char *_VEXRT_RESTRICT s, size_t n);
int wctomb(char *s, wchar_t wc);

/* As wctomb() with the result in *status. Returns 0; EILSEQ; EINVAL (a constraint violation) for a
   null `status`, a null `s` with `smax` not 0 and an `smax` above RSIZE_MAX, ERANGE (likewise) when
   the character does not fit. *status is not changed by a violation. */
errno_t wctomb_s(int *_VEXRT_RESTRICT status, char *_VEXRT_RESTRICT s, rsize_t smax, wchar_t wc);

/*
 * Converts a string to at most `n` wide characters, the terminator among them if there is room for
 * it. Returns their number without the terminator, or -1 with EILSEQ. A null `pwcs` counts; differs
 * from ISO C in that this, too, stops at `n`. In a double-byte code page see mbsrtowcs().
 */
size_t mbstowcs(wchar_t *_VEXRT_RESTRICT pwcs, const char *_VEXRT_RESTRICT s, size_t n);

/* Converts a wide string to at most `n` bytes, likewise. Differs from ISO C in that the last character
   is cut in the middle when only some of its bytes fit. */
size_t wcstombs(char *_VEXRT_RESTRICT s, const wchar_t *_VEXRT_RESTRICT pwcs, size_t n);

/*
 * The bounds-checked forms: at most `len` characters (bytes) and the terminator go to `dst` of
 * `dstmax` elements, and their number without the terminator to *retval, (size_t)-1 after any failure.
 * A null `dst` with `dstmax` 0 counts. Return 0, EILSEQ; EINVAL (a constraint violation) for null
 * arguments and sizes of 0 or above RSIZE_MAX, ERANGE (likewise) for a text that `dst` is too small
 * for. `dst` is then empty. No character is cut.
 */
errno_t mbstowcs_s(size_t *_VEXRT_RESTRICT retval, wchar_t *_VEXRT_RESTRICT dst, rsize_t dstmax,
                   const char *_VEXRT_RESTRICT src, rsize_t len);
errno_t wcstombs_s(size_t *_VEXRT_RESTRICT retval, char *_VEXRT_RESTRICT dst, rsize_t dstmax,
                   const wchar_t *_VEXRT_RESTRICT src, rsize_t len);

/* ---- The environment ---- */

/*
 * The value of a variable, the case of whose name does not matter; null when there is none. The text is
 * the library's copy, which the next successful _putenv() (_wputenv()) makes invalid; what one width sets
 * the other does not see until it sets something itself.
 */
char *getenv(const char *name);
wchar_t *_wgetenv(const wchar_t *name);

/* Copy the value to `value` of `maxsize` characters, and its length to *len (if not null; 0 when there is
   none). Return 0, ENOENT, ERANGE (the value does not fit; `value` is empty); EINVAL (a constraint
   violation) for a null `name`, a null `value` with a size, a size above RSIZE_MAX. */
errno_t getenv_s(size_t *_VEXRT_RESTRICT len, char *_VEXRT_RESTRICT value, rsize_t maxsize,
                 const char *_VEXRT_RESTRICT name);
errno_t _wgetenv_s(size_t *_VEXRT_RESTRICT len, wchar_t *_VEXRT_RESTRICT value, rsize_t maxsize,
                   const wchar_t *_VEXRT_RESTRICT name);

/* Set a variable, "name=value", or delete it, "name=". Return 0, or -1 without a '=' and when the system
   refuses. */
int _putenv(const char *string);
int _wputenv(const wchar_t *string);

/* Run a command by the command interpreter (COMSPEC, else cmd.exe) and return its exit code, or -1 with
   errno; with a null `string` return whether COMSPEC names a file. */
int system(const char *string);
int _wsystem(const wchar_t *string);

/* ---- Path names ---- */

/*
 * Makes a path absolute, in `buf` of `size` characters or for a null `buf` in a block of at least `size`
 * that the caller frees. The file need not exist; a null or empty path is the current directory. Null with
 * ERANGE (it does not fit), ENOMEM, EINVAL.
 */
char *_fullpath(char *buf, const char *path, size_t size);
wchar_t *_wfullpath(wchar_t *buf, const wchar_t *path, size_t size);

/* Takes a path apart: drive with its colon, directory with the separator at its end, name, and extension
   with its dot. Each part (which may be null) has room for 260 characters. EINVAL, and empty parts: a null
   path. */
void _splitpath(const char *path, char *drive, char *dir, char *fname, char *ext);
void _wsplitpath(const wchar_t *path, wchar_t *drive, wchar_t *dir, wchar_t *fname, wchar_t *ext);

/* Puts a path together from parts, which may be null or empty, with the colon, the separator and the dot
   that they lack. `path` has room for 260 characters; what is beyond 258 is cut. EINVAL: it is null. */
void _makepath(char *path, const char *drive, const char *dir, const char *fname, const char *ext);
void _wmakepath(wchar_t *path, const wchar_t *drive, const wchar_t *dir, const wchar_t *fname,
                const wchar_t *ext);

/* Stores in `buf` of 260 characters the absolute path of a file that is in the current directory or in one
   of those that an environment variable lists; an empty string, and ENOENT, when there is none. */
void _searchenv(const char *file, const char *varname, char *buf);
void _wsearchenv(const wchar_t *file, const wchar_t *varname, wchar_t *buf);

/* ---- Ending the process ---- */

/*
 * Runs the handlers of atexit(), newest first, then flushes and closes all streams, and ends the
 * process with `status`. A handler may register others; they run next. Streams on which
 * other threads wait for input are left to the system.
 */
_VEXRT_NORETURN void exit(int status);

/* Runs the handlers of at_quick_exit(), newest first, and ends the process. Flushes nothing. */
_VEXRT_NORETURN void quick_exit(int status);

/* Ends the process at once: no handlers, nothing flushed. */
_VEXRT_NORETURN void _Exit(int status);

/* Raises SIGABRT; when that comes back, exit(1). With the default action, too, exit handlers run
   and streams are flushed. */
_VEXRT_NORETURN void abort(void);

/*
 * Register a handler for exit() and quick_exit(). Return 0, or -1 when there is no room: 80 handlers
 * at quick exit; 80 at exit, less the one or two that the library needs for itself.
 */
int atexit(void (*func)(void));
int at_quick_exit(void (*func)(void));

/*
 * Ends the process with status 255 after writing "CRT: ", the message of `code` and
 * " -- terminating" to standard error: for errors that no caller could handle. -2 to -17 have
 * messages of their own (-4 "out of memory"). A debugger, if there is one, gets a breakpoint first, and
 * the text as well.
 */
_VEXRT_NORETURN void __crt_abort(int code);

/* Waits for `seconds`, 65535 at most. Returns 0. */
unsigned int _sleep(unsigned int seconds);

/* ---- Runtime constraints (K.3.6.1) ---- */

/*
 * Sets the calling thread's runtime-constraint handler; null sets the default one, which does
 * nothing. Returns the previous handler. Differs from Annex K in that the handler belongs to the
 * thread.
 */
constraint_handler_t set_constraint_handler_s(constraint_handler_t handler);

/* A handler that writes the message to standard error and aborts. */
void abort_handler_s(const char *_VEXRT_RESTRICT msg, void *_VEXRT_RESTRICT ptr, errno_t error);

/* A handler that does nothing. */
void ignore_handler_s(const char *_VEXRT_RESTRICT msg, void *_VEXRT_RESTRICT ptr, errno_t error);

/* ---- Memory ---- */

/*
 * Allocates `size` bytes; 0 is allowed and gives a block of its own. Blocks are aligned to 4 bytes
 * when they are smaller than __bheap_threshold (1024, <malloc.h>), to 8 bytes otherwise: what needs
 * more is for aligned_alloc(). Returns null with errno ENOMEM when there is no memory.
 */
void *malloc(size_t size);

/*
 * Allocates an array of `nmemb` elements of `size` bytes each, all zero. Returns null as malloc()
 * does; when the product overflows, errno stays as it was.
 */
void *calloc(size_t nmemb, size_t size);

/*
 * Makes a block `size` bytes long, in its place or elsewhere; what both sizes have in common is kept.
 * With a null `ptr` it is malloc(), with size 0 it is free() and returns null. Returns null, the old
 * block untouched, with errno ENOMEM when there is no memory and EINVAL for a block that is not in
 * use.
 */
void *realloc(void *ptr, size_t size);

/*
 * Allocates `size` bytes, at least 1, at a multiple of `alignment`, a power of two of at least 4;
 * `size` need not be a multiple of it. The block is given back with free(). Returns null with errno
 * EINVAL for other arguments, with ENOMEM when there is no memory.
 */
void *aligned_alloc(size_t alignment, size_t size);

/*
 * Frees a block. Null is allowed. A small block that is not in use, as on a second free(), sets errno
 * to EINVAL, and nothing else happens.
 */
void free(void *ptr);

/* ---- Integers ---- */

/* The absolute value; the most negative number stays as it is. */
int abs(int j);
long labs(long j);
long long llabs(long long j);

/* Quotient, truncated toward zero, and remainder. Division by zero traps. */
div_t div(int numer, int denom);
ldiv_t ldiv(long numer, long denom);
lldiv_t lldiv(long long numer, long long denom);

/* ---- Text to integers ---- */

/*
 * Convert the start of a text: white space, a sign, and digits of `base` (2 to 36; 0: by the prefix
 * 0x or 0, else 10). *endptr (if not null) receives the place behind the last digit; the start of
 * the text when there is none and for an invalid base, the result then being 0. ERANGE: the value
 * does not fit; the result is the nearest limit (unsigned: the largest value), and unlike ISO C
 * *endptr is the start of the text. "0x" without a digit behind it converts nothing.
 */
long strtol(const char *_VEXRT_RESTRICT nptr, char **_VEXRT_RESTRICT endptr, int base);
long long strtoll(const char *_VEXRT_RESTRICT nptr, char **_VEXRT_RESTRICT endptr, int base);
unsigned long strtoul(const char *_VEXRT_RESTRICT nptr, char **_VEXRT_RESTRICT endptr, int base);
unsigned long long strtoull(const char *_VEXRT_RESTRICT nptr, char **_VEXRT_RESTRICT endptr,
                            int base);

/* Convert decimal digits. A value that fits only the unsigned type gives its bit pattern; one that
   does not fit that either gives -1 and ERANGE. */
int atoi(const char *nptr);
long atol(const char *nptr);
long long atoll(const char *nptr);
int _wtoi(const wchar_t *nptr);
long _wtol(const wchar_t *nptr);
long long _wtoll(const wchar_t *nptr);

/* ---- Text to floating point ---- */

/*
 * Convert the start of a text: white space, a sign, and a decimal number with an exponent (`e`), a
 * hexadecimal one (0x, exponent `p` of two), "inf", "infinity", "nan" or "nan(...)" in any case. The
 * decimal point is the locale's. *endptr (if not null) receives the place behind the number, or the
 * start of the text when there is none, the result then being 0 (-0 after a minus sign). ERANGE: a
 * decimal number is too large (the result is infinite) or so small that it becomes 0; a subnormal
 * result is no error.
 *
 * Decimal numbers are rounded to nearest whatever the rounding mode, correctly for all of the digits
 * that are kept: 27 (strtof: 9). Differ from ISO C: further integer digits round the kept ones half up,
 * further fraction digits are dropped; an exponent letter without digits behind it ("1e") gives the
 * value but leaves *endptr at the start; "infi" must go on as "infinity"; "0x" without a digit converts
 * nothing; a NaN has no sign. A hexadecimal number never sets ERANGE, and what a subnormal result has
 * no room for is cut off.
 */
double strtod(const char *_VEXRT_RESTRICT nptr, char **_VEXRT_RESTRICT endptr);
float strtof(const char *_VEXRT_RESTRICT nptr, char **_VEXRT_RESTRICT endptr);
long double strtold(const char *_VEXRT_RESTRICT nptr, char **_VEXRT_RESTRICT endptr);
double atof(const char *nptr);
double _wtof(const wchar_t *nptr);

/* ---- Integers to text ---- */

/*
 * Write a value in base `radix` (2 to 36), digits in lower case, terminated; `buffer` holds up to
 * 33 characters (long long: 65). Base 10 alone has a sign; in any other a negative value is written
 * as its unsigned pattern. Return `buffer`. EINVAL: an invalid radix, and the text is empty.
 */
char *_itoa(int value, char *buffer, int radix);
char *_ltoa(long value, char *buffer, int radix);
char *_ultoa(unsigned long value, char *buffer, int radix);
char *_lltoa(long long value, char *buffer, int radix);
char *_ulltoa(unsigned long long value, char *buffer, int radix);
wchar_t *_itow(int value, wchar_t *buffer, int radix);
wchar_t *_ltow(long value, wchar_t *buffer, int radix);
wchar_t *_ultow(unsigned long value, wchar_t *buffer, int radix);
wchar_t *_lltow(long long value, wchar_t *buffer, int radix);
wchar_t *_ulltow(unsigned long long value, wchar_t *buffer, int radix);

/* ---- Random numbers ---- */

/*
 * The next number of the calling thread's pseudo-random sequence, from 0 to RAND_MAX. srand() starts
 * the sequence anew; a thread begins as after srand(1). Differs from ISO C in that threads have
 * sequences of their own. The process ends with "out of memory" when the first call of a thread has
 * none.
 */
int rand(void);
void srand(unsigned int seed);

/*
 * Stores 32 bits of the system's cryptographic generator. Returns 0, or with *out set to 0: ENOENT
 * (the generator is not there), ENOMEM, EINVAL (any other failure; a constraint violation for null).
 */
errno_t _rand_s(unsigned int *out);

/* ---- Searching and sorting ---- */

/*
 * Sort `nmemb` elements of `size` bytes by the sign of what `compar` returns; not stable. The time
 * grows with nmemb * log(nmemb) whatever the order. Nothing is allocated.
 *
 * qsort_s passes `context` on to the comparator and returns 0. EINVAL (a constraint violation) for a
 * number or a size above RSIZE_MAX, or for null pointers unless `nmemb` is 0; nothing is sorted then.
 */
void qsort(void *base, size_t nmemb, size_t size, int (*compar)(const void *, const void *));
errno_t qsort_s(void *base, rsize_t nmemb, rsize_t size,
                int (*compar)(const void *x, const void *y, void *context), void *context);

/*
 * An element equal to the key in an array sorted by `compar`, or null. The comparator gets the key
 * first. bsearch_s passes `context` on; the same constraints as qsort_s, also for a null key.
 */
void *bsearch(const void *key, const void *base, size_t nmemb, size_t size,
              int (*compar)(const void *, const void *));
void *bsearch_s(const void *key, const void *base, rsize_t nmemb, rsize_t size,
                int (*compar)(const void *k, const void *y, void *context), void *context);

#ifdef _VEXRT_POSIX
/* The POSIX spelling; the text is copied. */
int putenv(char *string);
#endif

_VEXRT_END

#endif
