/* <wchar.h> - C11 7.29, K.3.9: wide characters. A wchar_t is a UTF-16 unit. */
#ifndef _WCHAR_H
#define _WCHAR_H

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

/* ---- Strings ---- */

/* ---- Error texts ---- */

/* The message of an errno value, in wide characters; as strerror(). */
wchar_t *_wcserror(int errnum);

_VEXRT_END

#endif
