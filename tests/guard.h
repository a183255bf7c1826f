/*
 * guard.h - memory that ends where the program must not go on: a run of pages between two that
 * cannot be touched. What reads or writes beyond it ends the program.
 */
#ifndef GUARD_H
#define GUARD_H

#include <stddef.h>

__declspec(dllimport) void *__stdcall VirtualAlloc(void *address, size_t size, unsigned long type,
                                                   unsigned long protection);
__declspec(dllimport) int __stdcall VirtualFree(void *address, size_t size, unsigned long type);

enum { GUARD_PAGE = 4096 };

/* `pages` zeroed pages; null when there is no memory. */
static char *guard_pages(size_t pages)
{
    enum { MEM_COMMIT = 0x1000, MEM_RESERVE = 0x2000, PAGE_READWRITE = 4, PAGE_NOACCESS = 1 };
    char *all = VirtualAlloc(NULL, (pages + 2) * GUARD_PAGE, MEM_RESERVE, PAGE_NOACCESS);
    if (!all) return NULL;
    return VirtualAlloc(all + GUARD_PAGE, pages * GUARD_PAGE, MEM_COMMIT, PAGE_READWRITE);
}

#endif
