/* <ctype.h> - C11 7.4: classes and case of single-byte characters. */
#ifndef _CTYPE_H
#define _CTYPE_H

#include <_vexrt.h>

_VEXRT_BEGIN

/*
 * Nonzero when `c`, an unsigned char or EOF, belongs to the class in the calling thread's locale. In
 * the "C" locale no character above 0x7F belongs to any class. Any other value of `c` is undefined.
 */
int isalnum(int c);
int isalpha(int c);
int isblank(int c);
int iscntrl(int c);
int isdigit(int c);
int isgraph(int c);
int islower(int c);
int isprint(int c);
int ispunct(int c);
int isspace(int c);
int isupper(int c);
int isxdigit(int c);

/* 1 when `c` is below 0x80, negative values included. Takes any int. */
int _isascii(int c);

/* The other case of `c`, an unsigned char or EOF, in the calling thread's locale; `c` itself when
   there is none. */
int tolower(int c);
int toupper(int c);

#ifdef _VEXRT_POSIX
/* The POSIX spelling. */
int isascii(int c);
#endif

_VEXRT_END

#endif
