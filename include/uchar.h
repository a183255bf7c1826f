/* <uchar.h> - C11 7.28: UTF-16 and UTF-32 characters. */
#ifndef _UCHAR_H
#define _UCHAR_H

#include <_mbstate.h>
#include <_vexrt.h>

#ifndef __cplusplus
typedef __CHAR16_TYPE__ char16_t;
typedef __CHAR32_TYPE__ char32_t;
#endif

_VEXRT_BEGIN

/* As mbrtowc() and wcrtomb() of <wchar.h>: a char16_t is a wchar_t. */
size_t mbrtoc16(char16_t *_VEXRT_RESTRICT pc16, const char *_VEXRT_RESTRICT s, size_t n,
                mbstate_t *_VEXRT_RESTRICT ps);
size_t c16rtomb(char *_VEXRT_RESTRICT s, char16_t c16, mbstate_t *_VEXRT_RESTRICT ps);

/* As mbrtowc(), for a whole character: both halves of a surrogate pair are taken in one call, and half
   a pair alone is EILSEQ. */
size_t mbrtoc32(char32_t *_VEXRT_RESTRICT pc32, const char *_VEXRT_RESTRICT s, size_t n,
                mbstate_t *_VEXRT_RESTRICT ps);

/* As wcrtomb(), for a whole character. Above 0xFFFF it is EILSEQ: no multibyte character is long
   enough. */
size_t c32rtomb(char *_VEXRT_RESTRICT s, char32_t c32, mbstate_t *_VEXRT_RESTRICT ps);

_VEXRT_END

#endif
