/* <malloc.h> - the heap beyond ISO C: sizes of blocks, aligned blocks, checking. */
#ifndef _MALLOC_H
#define _MALLOC_H

#include <stdlib.h>

_VEXRT_BEGIN

/*
 * Requests of fewer bytes than this go to the library's small-block heap, all others to the system's.
 * 1024 at the start; a program may change it. Becomes 0 for good when the small-block heap has used
 * up its 32 MiB.
 */
_VEXRT_DATA unsigned int __bheap_threshold;

/*
 * The bytes that the program may use of a block of malloc(), calloc(), realloc() or aligned_alloc():
 * at least as many as it asked for. 0 for a block that is not in use, and for null.
 */
size_t _msize(void *ptr);

/*
 * Allocates `size` bytes at a multiple of `alignment`, a power of two; 0 and values below 4 count as
 * 4. The block is given back with _mm_free(), not with free(). Returns null with errno EINVAL for any
 * other alignment or for sizes beyond the address space, with ENOMEM when there is no memory.
 */
void *_mm_malloc(size_t size, size_t alignment);

/* Frees a block of _mm_malloc(). Null is allowed. */
void _mm_free(void *ptr);

/*
 * Checks one block or, with null, the whole heap: its lists, and the sizes in front of and behind
 * every block. Returns 1 when all is sound, 0 when something has been overwritten. Checking the whole
 * heap takes time in proportion to its blocks and holds up other threads' allocations meanwhile.
 */
int __heap_validate(const void *ptr);

_VEXRT_END

#endif
