/* <stddef.h> - C11 7.19, K.3.3: common definitions. */
#ifndef _STDDEF_H
#define _STDDEF_H

#include <_vexrt.h>

#define offsetof(type, member) __builtin_offsetof(type, member)

/* A type as strictly aligned as any scalar. */
#if !defined(__cplusplus) || __cplusplus >= 201103L
#ifndef __CLANG_MAX_ALIGN_T_DEFINED
#define __CLANG_MAX_ALIGN_T_DEFINED
typedef struct {
    long long __a __attribute__((__aligned__(__alignof__(long long))));
    double __b __attribute__((__aligned__(__alignof__(double))));
} max_align_t;
#endif
#endif

#ifdef __cplusplus
typedef decltype(nullptr) nullptr_t;
#endif

#endif
