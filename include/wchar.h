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

/* ---- Strings ---- */

/* ---- Error texts ---- */

/* The message of an errno value, in wide characters; as strerror(). */
wchar_t *_wcserror(int errnum);

_VEXRT_END

#endif
