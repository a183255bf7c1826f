/* <wchar.h> - C11 7.29, K.3.9: wide characters. A wchar_t is a UTF-16 unit. */
#ifndef _WCHAR_H
#define _WCHAR_H

#include <_file.h>
#include <_mbstate.h>
#include <_va_list.h>
#include <_vexrt.h>

#ifndef WCHAR_MIN
#define WCHAR_MIN 0
#define WCHAR_MAX 65535
#endif
#ifndef WEOF
#define WEOF ((wint_t)0xFFFF)
#endif
#define RSIZE_MAX _VEXRT_RSIZE_MAX

struct tm;

_VEXRT_BEGIN

/* ---- Formatted output ---- */

/*
 * The format is that of printf() in <stdio.h>, in wide characters. %s and %c take multibyte text, %ls
 * and %lc wide text. The functions return the number of wide characters, or -1.
 */

/*
 * Formats to `s` with room for `n` characters. Returns -1, without a terminator, when the text has
 * more. Differs from ISO C in that `n` does not include the terminator: a text of exactly `n`
 * characters is terminated in the place behind them.
 */
int swprintf(wchar_t *_VEXRT_RESTRICT s, size_t n, const wchar_t *_VEXRT_RESTRICT format, ...);
int vswprintf(wchar_t *_VEXRT_RESTRICT s, size_t n, const wchar_t *_VEXRT_RESTRICT format,
              va_list arg);

/* As snprintf(): text that does not fit is dropped but counted; `n` includes the terminator. */
int snwprintf(wchar_t *_VEXRT_RESTRICT s, size_t n, const wchar_t *_VEXRT_RESTRICT format, ...);
int vsnwprintf(wchar_t *_VEXRT_RESTRICT s, size_t n, const wchar_t *_VEXRT_RESTRICT format,
               va_list arg);

/* As snprintf_s(). */
int snwprintf_s(wchar_t *_VEXRT_RESTRICT s, rsize_t n, const wchar_t *_VEXRT_RESTRICT format, ...);
int vsnwprintf_s(wchar_t *_VEXRT_RESTRICT s, rsize_t n, const wchar_t *_VEXRT_RESTRICT format,
                 va_list arg);

/* As sprintf_s(). */
int swprintf_s(wchar_t *_VEXRT_RESTRICT s, rsize_t n, const wchar_t *_VEXRT_RESTRICT format, ...);
int vswprintf_s(wchar_t *_VEXRT_RESTRICT s, rsize_t n, const wchar_t *_VEXRT_RESTRICT format,
                va_list arg);

/* As asprintf(). */
int aswprintf(wchar_t **_VEXRT_RESTRICT ptr, const wchar_t *_VEXRT_RESTRICT format, ...);
int vaswprintf(wchar_t **_VEXRT_RESTRICT ptr, const wchar_t *_VEXRT_RESTRICT format, va_list arg);

/* As fprintf() and its relatives of <stdio.h>. */
int fwprintf(FILE *_VEXRT_RESTRICT stream, const wchar_t *_VEXRT_RESTRICT format, ...);
int vfwprintf(FILE *_VEXRT_RESTRICT stream, const wchar_t *_VEXRT_RESTRICT format, va_list arg);
int wprintf(const wchar_t *_VEXRT_RESTRICT format, ...);
int vwprintf(const wchar_t *_VEXRT_RESTRICT format, va_list arg);
int fwprintf_s(FILE *_VEXRT_RESTRICT stream, const wchar_t *_VEXRT_RESTRICT format, ...);
int vfwprintf_s(FILE *_VEXRT_RESTRICT stream, const wchar_t *_VEXRT_RESTRICT format, va_list arg);
int wprintf_s(const wchar_t *_VEXRT_RESTRICT format, ...);
int vwprintf_s(const wchar_t *_VEXRT_RESTRICT format, va_list arg);

/* ---- Formatted input ---- */

/* As sscanf() and its relatives of <stdio.h>; %s, %c and %[ without l store multibyte characters, for
   which a width counts the wide ones that are read. */
int swscanf(const wchar_t *_VEXRT_RESTRICT s, const wchar_t *_VEXRT_RESTRICT format, ...);
int vswscanf(const wchar_t *_VEXRT_RESTRICT s, const wchar_t *_VEXRT_RESTRICT format, va_list arg);
int swscanf_s(const wchar_t *_VEXRT_RESTRICT s, const wchar_t *_VEXRT_RESTRICT format, ...);
int vswscanf_s(const wchar_t *_VEXRT_RESTRICT s, const wchar_t *_VEXRT_RESTRICT format, va_list arg);
int fwscanf(FILE *_VEXRT_RESTRICT stream, const wchar_t *_VEXRT_RESTRICT format, ...);
int vfwscanf(FILE *_VEXRT_RESTRICT stream, const wchar_t *_VEXRT_RESTRICT format, va_list arg);
int wscanf(const wchar_t *_VEXRT_RESTRICT format, ...);
int vwscanf(const wchar_t *_VEXRT_RESTRICT format, va_list arg);
int fwscanf_s(FILE *_VEXRT_RESTRICT stream, const wchar_t *_VEXRT_RESTRICT format, ...);
int vfwscanf_s(FILE *_VEXRT_RESTRICT stream, const wchar_t *_VEXRT_RESTRICT format, va_list arg);
int wscanf_s(const wchar_t *_VEXRT_RESTRICT format, ...);
int vwscanf_s(const wchar_t *_VEXRT_RESTRICT format, va_list arg);

/* ---- Wide streams ---- */

/*
 * A stream is oriented by its first transfer: to bytes by the functions of <stdio.h>, to wide characters
 * by these. A function of the other orientation fails and sets the error indicator. A wide stream holds
 * multibyte characters of the thread's locale; one that was opened with an encoding ("r,ccs=UTF-8") or
 * whose descriptor is in a Unicode text mode when a transfer begins holds that encoding, and transfers
 * every UTF-16 unit, a surrogate included.
 */

/* The next character. WEOF at the end of the file, and with the error indicator and EILSEQ where the
   bytes are no character, which they are left in front of. */
wint_t fgetwc(FILE *stream);
wint_t getwc(FILE *stream);
wint_t getwchar(void);

/* Write a character; getwchar() and putwchar() use stdin and stdout. Return it, or WEOF with the error
   indicator; EILSEQ when the encoding has no such character. */
wint_t fputwc(wchar_t c, FILE *stream);
wint_t putwc(wchar_t c, FILE *stream);
wint_t putwchar(wchar_t c);

/* Pushes a character back, to be read next; two fit. WEOF for a third, for WEOF, and on a stream that is
   not readable or is being written. */
wint_t ungetwc(wint_t c, FILE *stream);

/* As fgets() and fputs() of <stdio.h>; `n` counts wide characters. */
wchar_t *fgetws(wchar_t *_VEXRT_RESTRICT s, int n, FILE *_VEXRT_RESTRICT stream);
int fputws(const wchar_t *_VEXRT_RESTRICT s, FILE *_VEXRT_RESTRICT stream);

/* As getline() and getdelim() of <stdio.h>; *n and the result count wide characters. */
ssize_t getwline(wchar_t **_VEXRT_RESTRICT lineptr, size_t *_VEXRT_RESTRICT n,
                 FILE *_VEXRT_RESTRICT stream);
ssize_t getwdelim(wchar_t **_VEXRT_RESTRICT lineptr, size_t *_VEXRT_RESTRICT n, wint_t delimiter,
                  FILE *_VEXRT_RESTRICT stream);

/* As open_memstream() of <stdio.h> with wide characters, in which *sizep counts; positions are bytes. */
FILE *open_wmemstream(wchar_t **bufp, size_t *sizep);

/* Orients a stream that has no orientation yet: to wide characters for a `mode` above 0, to bytes below.
   Returns 1 for a wide stream, -1 for one of bytes, 0 for one that has none. */
int fwide(FILE *stream, int mode);

/* ---- Strings ---- */

/* As the functions of <string.h> with str or mem in their names; all sizes and counts are numbers of
   wide characters. */
wchar_t *wmemcpy(wchar_t *_VEXRT_RESTRICT s1, const wchar_t *_VEXRT_RESTRICT s2, size_t n);
wchar_t *wmemmove(wchar_t *s1, const wchar_t *s2, size_t n);
wchar_t *wmemset(wchar_t *s, wchar_t c, size_t n);
wchar_t *wmemchr(const wchar_t *s, wchar_t c, size_t n);
int wmemcmp(const wchar_t *s1, const wchar_t *s2, size_t n);
errno_t wmemcpy_s(wchar_t *_VEXRT_RESTRICT s1, rsize_t s1max, const wchar_t *_VEXRT_RESTRICT s2,
                  rsize_t n);
errno_t wmemmove_s(wchar_t *s1, rsize_t s1max, const wchar_t *s2, rsize_t n);

wchar_t *wcscpy(wchar_t *_VEXRT_RESTRICT s1, const wchar_t *_VEXRT_RESTRICT s2);
wchar_t *wcsncpy(wchar_t *_VEXRT_RESTRICT s1, const wchar_t *_VEXRT_RESTRICT s2, size_t n);
wchar_t *wcscat(wchar_t *_VEXRT_RESTRICT s1, const wchar_t *_VEXRT_RESTRICT s2);
wchar_t *wcsncat(wchar_t *_VEXRT_RESTRICT s1, const wchar_t *_VEXRT_RESTRICT s2, size_t n);
errno_t wcscpy_s(wchar_t *_VEXRT_RESTRICT s1, rsize_t s1max, const wchar_t *_VEXRT_RESTRICT s2);
errno_t wcsncpy_s(wchar_t *_VEXRT_RESTRICT s1, rsize_t s1max, const wchar_t *_VEXRT_RESTRICT s2,
                  rsize_t n);
errno_t wcscat_s(wchar_t *_VEXRT_RESTRICT s1, rsize_t s1max, const wchar_t *_VEXRT_RESTRICT s2);
errno_t wcsncat_s(wchar_t *_VEXRT_RESTRICT s1, rsize_t s1max, const wchar_t *_VEXRT_RESTRICT s2,
                  rsize_t n);
wchar_t *_wcsdup(const wchar_t *s);

size_t wcslen(const wchar_t *s);
size_t wcsnlen_s(const wchar_t *s, size_t maxsize);
int wcscmp(const wchar_t *s1, const wchar_t *s2);
int wcsncmp(const wchar_t *s1, const wchar_t *s2, size_t n);
int _wcsicmp(const wchar_t *s1, const wchar_t *s2);
int _wcsnicmp(const wchar_t *s1, const wchar_t *s2, size_t n);

/* As strcoll() and strxfrm(), but a loaded locale compares by the system's collation of its language. */
int wcscoll(const wchar_t *s1, const wchar_t *s2);
size_t wcsxfrm(wchar_t *_VEXRT_RESTRICT s1, const wchar_t *_VEXRT_RESTRICT s2, size_t n);

wchar_t *wcschr(const wchar_t *s, wchar_t c);
wchar_t *wcsrchr(const wchar_t *s, wchar_t c);
size_t wcsspn(const wchar_t *s1, const wchar_t *s2);
size_t wcscspn(const wchar_t *s1, const wchar_t *s2);
wchar_t *wcspbrk(const wchar_t *s1, const wchar_t *s2);
wchar_t *wcsstr(const wchar_t *s1, const wchar_t *s2);

wchar_t *_wcslwr(wchar_t *s);
wchar_t *_wcsupr(wchar_t *s);
wchar_t *_wcsset(wchar_t *s, wchar_t c);
wchar_t *_wcsnset(wchar_t *s, wchar_t c, size_t n);
wchar_t *_wcsrev(wchar_t *s);

/* As strtok(), the position kept in `*ptr`; null there is the end. As strtok_s(). As strtok(), the
   position kept for the thread, apart from that of strtok(). */
wchar_t *wcstok(wchar_t *_VEXRT_RESTRICT s1, const wchar_t *_VEXRT_RESTRICT s2,
                wchar_t **_VEXRT_RESTRICT ptr);
wchar_t *wcstok_s(wchar_t *_VEXRT_RESTRICT s1, rsize_t *_VEXRT_RESTRICT s1max,
                  const wchar_t *_VEXRT_RESTRICT s2, wchar_t **_VEXRT_RESTRICT ptr);
wchar_t *_wcstok_ms(wchar_t *_VEXRT_RESTRICT s1, const wchar_t *_VEXRT_RESTRICT s2);

/* ---- Multibyte characters ---- */

/*
 * In the "C" locale every byte is the wide character of the same value, and a wide character is
 * written as its low byte; nothing is invalid. A null state argument stands for a state that the
 * function keeps for the thread.
 */

/* Nonzero when `ps` is null or not inside a character. */
int mbsinit(const mbstate_t *ps);

/*
 * Decodes the character at `s` of at most `n` bytes into *pwc. Returns the bytes taken (1 in a
 * double-byte code page, even of two), 0 for the terminator, (size_t)-2 when the bytes end inside the
 * character, (size_t)-1 with EILSEQ when they are invalid. `pwc` may be null; a null `s` stands for "",
 * and for mbrlen() resets the state.
 */
size_t mbrtowc(wchar_t *_VEXRT_RESTRICT pwc, const char *_VEXRT_RESTRICT s, size_t n,
               mbstate_t *_VEXRT_RESTRICT ps);
size_t mbrlen(const char *_VEXRT_RESTRICT s, size_t n, mbstate_t *_VEXRT_RESTRICT ps);

/* Encodes `wc` into up to MB_CUR_MAX bytes at `s`. Returns their number, or (size_t)-1 with EILSEQ. A
   null `s` encodes L'\0' into nothing. */
size_t wcrtomb(char *_VEXRT_RESTRICT s, wchar_t wc, mbstate_t *_VEXRT_RESTRICT ps);

/* The same into `s` of `smax` bytes, with the number in *retval. Returns 0, EILSEQ; EINVAL (a
   constraint violation) for null arguments and sizes of 0 or above RSIZE_MAX, ERANGE (likewise) when
   the character does not fit. A null `s` with `smax` 0 encodes L'\0' into nothing. */
errno_t wcrtomb_s(size_t *_VEXRT_RESTRICT retval, char *_VEXRT_RESTRICT s, rsize_t smax, wchar_t wc,
                  mbstate_t *_VEXRT_RESTRICT ps);

/* The wide character of one byte, or WEOF; the byte of a wide character, or EOF when it has not
   exactly one. */
wint_t btowc(int c);
int wctob(wint_t c);

/*
 * Convert the string at *src: at most `len` characters (bytes; no character is cut). Return the number
 * without the terminator, or (size_t)-1 with EILSEQ. *src is then null when the terminator was
 * converted, else behind the last character that was. A null `dst` counts the whole string, and *src
 * stays. In a double-byte code page mbsrtowcs() goes on at the second byte of a character, as the result
 * of mbrtowc() says; formatted and stream input read whole characters there.
 */
size_t mbsrtowcs(wchar_t *_VEXRT_RESTRICT dst, const char **_VEXRT_RESTRICT src, size_t len,
                 mbstate_t *_VEXRT_RESTRICT ps);
size_t wcsrtombs(char *_VEXRT_RESTRICT dst, const wchar_t **_VEXRT_RESTRICT src, size_t len,
                 mbstate_t *_VEXRT_RESTRICT ps);

/* The bounds-checked forms; see mbstowcs_s() in <stdlib.h>. The state is not optional. */
errno_t mbsrtowcs_s(size_t *_VEXRT_RESTRICT retval, wchar_t *_VEXRT_RESTRICT dst, rsize_t dstmax,
                    const char **_VEXRT_RESTRICT src, rsize_t len, mbstate_t *_VEXRT_RESTRICT ps);
errno_t wcsrtombs_s(size_t *_VEXRT_RESTRICT retval, char *_VEXRT_RESTRICT dst, rsize_t dstmax,
                    const wchar_t **_VEXRT_RESTRICT src, rsize_t len, mbstate_t *_VEXRT_RESTRICT ps);

/* ---- Text to integers ---- */

/* As strtol() and its relatives of <stdlib.h>. */
long wcstol(const wchar_t *_VEXRT_RESTRICT nptr, wchar_t **_VEXRT_RESTRICT endptr, int base);
long long wcstoll(const wchar_t *_VEXRT_RESTRICT nptr, wchar_t **_VEXRT_RESTRICT endptr, int base);
unsigned long wcstoul(const wchar_t *_VEXRT_RESTRICT nptr, wchar_t **_VEXRT_RESTRICT endptr,
                      int base);
unsigned long long wcstoull(const wchar_t *_VEXRT_RESTRICT nptr,
                            wchar_t **_VEXRT_RESTRICT endptr, int base);

/* ---- Text to floating point ---- */

/* As strtod() and its relatives of <stdlib.h>. */
double wcstod(const wchar_t *_VEXRT_RESTRICT nptr, wchar_t **_VEXRT_RESTRICT endptr);
float wcstof(const wchar_t *_VEXRT_RESTRICT nptr, wchar_t **_VEXRT_RESTRICT endptr);
long double wcstold(const wchar_t *_VEXRT_RESTRICT nptr, wchar_t **_VEXRT_RESTRICT endptr);

/* ---- Dates and times ---- */

/* As strftime() of <time.h>. */
size_t wcsftime(wchar_t *_VEXRT_RESTRICT s, size_t maxsize, const wchar_t *_VEXRT_RESTRICT format,
                const struct tm *_VEXRT_RESTRICT timeptr);

/* ---- Error texts ---- */

/* The message of an errno value, in wide characters; as strerror(). */
wchar_t *_wcserror(int errnum);

_VEXRT_END

#endif
