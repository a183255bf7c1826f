/*
 * <mm_malloc.h> - _mm_malloc() and _mm_free() under the name by which the compilers' own headers of
 * intrinsics include them; found before the compilers' file, whose functions another runtime serves.
 */
#ifndef _MM_MALLOC_H
#define _MM_MALLOC_H

#include <malloc.h>

#endif
