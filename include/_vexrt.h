/*
 * _vexrt.h - what every public header starts from: the language dialect, linkage and the types
 * that several headers define. Programs do not include it themselves.
 */
#ifndef _VEXRT_H
#define _VEXRT_H

#ifndef __VEXRT__
#define __VEXRT__ 1
#endif

/* `restrict` and `_Noreturn` as C11 has them, in C++ and in older C as the compilers spell them. */
#if defined(__cplusplus) || !defined(__STDC_VERSION__) || __STDC_VERSION__ < 199901L
#define _VEXRT_RESTRICT __restrict
#else
#define _VEXRT_RESTRICT restrict
#endif
#define _VEXRT_NORETURN __attribute__((__noreturn__))

#ifdef __cplusplus
#define _VEXRT_BEGIN extern "C" {
#define _VEXRT_END }
#else
#define _VEXRT_BEGIN
#define _VEXRT_END
#endif

/*
 * Exported data is reached through the import table and must be declared so. Functions are not:
 * their addresses then stay constants, good for static initialisers.
 */
#ifdef _VEXRT_BUILD
#define _VEXRT_DATA extern
#else
#define _VEXRT_DATA extern __declspec(dllimport)
#endif

/* The POSIX spellings (`open` for `_open`) are declared for programs that ask for POSIX and for those that
   do not ask for strict ISO C. */
#if defined(_POSIX_C_SOURCE) || defined(_POSIX_SOURCE) || defined(_XOPEN_SOURCE) ||                \
    defined(_GNU_SOURCE) || defined(_DEFAULT_SOURCE) || !defined(__STRICT_ANSI__)
#define _VEXRT_POSIX 1
#endif

/* Annex K is declared unless a program asks for it not to be. */
#ifndef __STDC_WANT_LIB_EXT1__
#define __STDC_WANT_LIB_EXT1__ 1
#endif

/* With clang and gcc for windows-gnu, long double must be told to be binary64: -mlong-double-64. */
#if defined(__SIZEOF_LONG_DOUBLE__) && __SIZEOF_LONG_DOUBLE__ != 8
#error "this library's long double is binary64: compile with -mlong-double-64"
#endif

/*
 * The types. The guard macros are those that the Windows platform headers know, so that both sets
 * of headers can stand in one program in either order.
 */
#ifndef _SIZE_T_DEFINED
#define _SIZE_T_DEFINED
typedef __SIZE_TYPE__ size_t;
#endif

#ifndef _SSIZE_T_DEFINED
#define _SSIZE_T_DEFINED
typedef int ssize_t;
#endif

#ifndef _RSIZE_T_DEFINED
#define _RSIZE_T_DEFINED
typedef size_t rsize_t;
#endif

#ifndef _PTRDIFF_T_DEFINED
#define _PTRDIFF_T_DEFINED
#define _PTRDIFF_T_
typedef __PTRDIFF_TYPE__ ptrdiff_t;
#endif

#ifndef _INTPTR_T_DEFINED
#define _INTPTR_T_DEFINED
typedef __INTPTR_TYPE__ intptr_t;
#endif

#ifndef _UINTPTR_T_DEFINED
#define _UINTPTR_T_DEFINED
typedef __UINTPTR_TYPE__ uintptr_t;
#endif

#ifndef _WCHAR_T_DEFINED
#define _WCHAR_T_DEFINED
#ifndef __cplusplus
typedef __WCHAR_TYPE__ wchar_t;
#endif
#endif

/* wint_t holds any wchar_t and WEOF; wctype_t is what wctype() returns. */
#ifndef _WCTYPE_T_DEFINED
#define _WCTYPE_T_DEFINED
#ifndef _WINT_T
#define _WINT_T
typedef unsigned short wint_t;
#endif
typedef unsigned short wctype_t;
#endif

/* An errno value as the bounds-checked functions return it. */
#ifndef _ERRCODE_DEFINED
#define _ERRCODE_DEFINED
typedef int errno_t;
#endif

#ifndef NULL
#ifdef __cplusplus
#define NULL __null
#else
#define NULL ((void *)0)
#endif
#endif

#define _VEXRT_RSIZE_MAX 0x7FFFFFFFu

#endif
