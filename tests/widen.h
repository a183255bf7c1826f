/* widen.h - texts as wide ones, so that a table of cases serves both forms of a function. */
#ifndef WIDEN_H
#define WIDEN_H

#include <wchar.h>

/* Byte by byte, into `to`. */
static wchar_t *widen_to(wchar_t *to, const char *text)
{
    size_t i = 0;
    do to[i] = (unsigned char)text[i];
    while (text[i++]);
    return to;
}

static wchar_t wide[2000];
static wchar_t *widen(const char *text) { return widen_to(wide, text); }

#endif
