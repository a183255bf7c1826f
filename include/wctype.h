/* <wctype.h> - C11 7.30: classes and case of wide characters. */
#ifndef _WCTYPE_H
#define _WCTYPE_H

#include <_vexrt.h>

#ifndef WEOF
#define WEOF ((wint_t)0xFFFF)
#endif

/* A case mapping as wctrans() returns it. */
#ifndef _WCTRANS_T_DEFINED
#define _WCTRANS_T_DEFINED
typedef unsigned short wctrans_t;
#endif

_VEXRT_BEGIN

/*
 * Nonzero when `wc` belongs to the class. The classes are the same in every locale and hold no
 * character above 0x7F. iswcntrl() leaves out L'\0' and 0x7F, unlike iscntrl().
 */
int iswalnum(wint_t wc);
int iswalpha(wint_t wc);
int iswblank(wint_t wc);
int iswcntrl(wint_t wc);
int iswdigit(wint_t wc);
int iswgraph(wint_t wc);
int iswlower(wint_t wc);
int iswprint(wint_t wc);
int iswpunct(wint_t wc);
int iswspace(wint_t wc);
int iswupper(wint_t wc);
int iswxdigit(wint_t wc);

/* 1 when `wc` is below 0x80. */
int iswascii(wint_t wc);

/* The class of that name, or 0: "alnum", "alpha", "cntrl", "digit", "graph", "lower", "print",
   "punct", "space", "upper", "xdigit", "blank", "_ascii". */
wctype_t wctype(const char *property);

/* Nonzero when `wc` belongs to the class `desc` of wctype(); 0 for a `desc` that is none. */
int iswctype(wint_t wc, wctype_t desc);

/* The mapping of that name, or 0: "tolower", "toupper". */
wctrans_t wctrans(const char *property);

/* `wc` mapped by the mapping `desc` of wctrans(); `wc` itself for a `desc` that is none. */
wint_t towctrans(wint_t wc, wctrans_t desc);

/* The other case of `wc`; `wc` itself when there is none. Only A-Z and a-z have one. */
wint_t towlower(wint_t wc);
wint_t towupper(wint_t wc);

_VEXRT_END

#endif
