/* options: -fno-builtin */
/*
 * Random calls of the whole family against a model: every block keeps its pattern, no two overlap,
 * the heap stays valid, and once all is freed the arena is one block again. Sizes are drawn so that
 * lists grow long.
 */
#include "check.h"

#include <malloc.h>
#include <stdint.h>
#include <stdlib.h>

#define LIVE 4000
#define CALLS 300000

static struct {
    unsigned char *block;
    size_t size;
    unsigned char pattern;
} live[LIVE];

static unsigned seed = 20;
static unsigned next_random(void) { return (seed = seed * 1664525u + 1013904223u) >> 8; }

static size_t next_size(void)
{
    switch (next_random() % 8) {
    case 0: return next_random() % 24;
    case 1: return 1000 + next_random() % 3000;
    default: return next_random() % 1023;
    }
}

static size_t kept(const unsigned char *block, size_t size, unsigned char pattern)
{
    size_t i = 0;
    while (i < size && block[i] == pattern) ++i;
    return i;
}

static unsigned char *allocate(unsigned i, size_t size)
{
    unsigned char *block;
    if (next_random() % 5 == 0) {
        size_t alignment = (size_t)4 << next_random() % 8;
        block = aligned_alloc(alignment, size + !size);
        CHECK_INT((uintptr_t)block % alignment, 0);
    } else if (next_random() % 4 == 0) {
        block = calloc(1, size);
        if (kept(block, size, 0) != size) CHECK(!"calloc gives zeros");
    } else {
        block = malloc(size);
    }
    return block;
}

static void change(unsigned i)
{
    size_t size = next_size(), common = live[i].size < size ? live[i].size : size;
    if (live[i].block && kept(live[i].block, live[i].size, live[i].pattern) != live[i].size)
        CHECK(!"a block keeps its bytes");
    if (live[i].block && size > 0 && next_random() % 3 == 0) {
        live[i].block = realloc(live[i].block, size);
        if (kept(live[i].block, common, live[i].pattern) != common) CHECK(!"realloc keeps bytes");
    } else {
        free(live[i].block);
        live[i].block = next_random() % 8 ? allocate(i, size) : NULL;
    }
    live[i].size = live[i].block ? size : 0;
    live[i].pattern = (unsigned char)next_random();
    if (!live[i].block) return;
    if (_msize(live[i].block) < size) CHECK(!"_msize is at least what was asked for");
    memset(live[i].block, live[i].pattern, size);
}

static int by_address(const void *a, const void *b)
{
    const unsigned char *left = live[*(const unsigned *)a].block, *right = live[*(const unsigned *)b].block;
    return left < right ? -1 : left > right;
}

static void check_overlap(void)
{
    static unsigned order[LIVE];
    const unsigned char *end = NULL;
    for (unsigned i = 0; i < LIVE; ++i) order[i] = i;
    qsort(order, LIVE, sizeof *order, by_address);
    for (unsigned i = 0; i < LIVE; ++i) {
        const unsigned char *block = live[order[i]].block;
        if (!block) continue;
        if (end && block < end) CHECK(!"blocks do not overlap");
        end = block + live[order[i]].size;
    }
}

int main(void)
{
    for (unsigned call = 0; call < CALLS; ++call) {
        change(next_random() % LIVE);
        if (call % 20000 == 0) {
            CHECK_INT(__heap_validate(NULL), 1);
            check_overlap();
        }
    }
    for (unsigned i = 0; i < LIVE; ++i) {
        CHECK_INT(kept(live[i].block, live[i].size, live[i].pattern), live[i].size);
        free(live[i].block);
    }
    CHECK_INT(__heap_validate(NULL), 1);
    return check_done();
}
