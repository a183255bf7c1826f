/* options: -fno-builtin */
/* malloc, calloc, realloc, free and _msize: sizes, tiers, placement and the errors. */
#include "check.h"

#include <malloc.h>
#include <stdint.h>
#include <stdlib.h>

/* Blocks of the small tier have a word of size in front and one behind. */
static unsigned tag_of(void *block) { return ((unsigned *)block)[-1]; }

static int is_small(void *block)
{
    unsigned tag = tag_of(block);
    return (tag >> 31) && ((unsigned *)block)[(tag & 0x7FFFFFFF) - 2] == tag;
}

static void sizes(void)
{
    static const struct {
        size_t request, usable;
    } cases[] = {{0, 8},  {1, 8},   {4, 8},   {5, 8},     {8, 8},       {9, 12},
                 {12, 12}, {13, 16}, {32, 32}, {1022, 1024}, {1023, 1024}};
    for (unsigned i = 0; i < sizeof cases / sizeof *cases; ++i) {
        char label[32];
        sprintf(label, "%u bytes", (unsigned)cases[i].request);
        check_label = label;
        /* At the top of the heap a block is cut to measure. */
        void *block = malloc(cases[i].request);
        CHECK(block && is_small(block));
        CHECK_INT(_msize(block), cases[i].usable);
        CHECK_INT((uintptr_t)block % 4, 0);
        CHECK_INT(__heap_validate(block), 1);
        free(block);
    }
    check_label = "";
    void *large = malloc(1024);
    CHECK(_msize(large) >= 1024);
    CHECK_INT((uintptr_t)large % 8, 0);
    CHECK((uintptr_t)((void **)large)[-1] < (uintptr_t)large); /* the underlying block */
    CHECK_INT(__heap_validate(large), 1);
    free(large);
}

static void too_much(void)
{
    volatile size_t most = SIZE_MAX; /* the compiler would warn */
    CHECK_ERRNO(malloc(most), 0, ENOMEM);
    CHECK_ERRNO(malloc(most - 7), 0, ENOMEM);
    CHECK_ERRNO(calloc(most / 2, 2), 0, ENOMEM);
    CHECK_ERRNO(calloc(most, 2), 0, 0); /* the product overflows: errno stays */
    CHECK_ERRNO(calloc(0x10000, 0x10000), 0, 0);
    void *block = malloc(100), *large = malloc(5000);
    memset(block, 'x', 100);
    memset(large, 'y', 5000);
    CHECK_ERRNO(realloc(block, most), 0, ENOMEM);
    CHECK_ERRNO(realloc(large, most), 0, ENOMEM);
    CHECK(((char *)block)[99] == 'x' && ((char *)large)[4999] == 'y');
    free(block);
    free(large);
}

static void zeroed(void)
{
    for (size_t size = 1; size < 200000; size = size * 3 + 1) {
        unsigned char *dirty = malloc(size);
        memset(dirty, 0xAA, size);
        free(dirty);
        unsigned char *block = calloc(size, 1);
        size_t i = 0;
        while (i < size && block[i] == 0) ++i;
        CHECK_INT(i, size);
        free(block);
    }
    void *none = calloc(5, 0);
    CHECK(none != NULL);
    free(none);
}

static void freed_twice(void)
{
    char *block = malloc(40), *barrier = malloc(40);
    memset(barrier, 0x7E, 40);
    CHECK_ERRNO((free(block), 0), 0, 0);
    CHECK_ERRNO((free(block), 0), 0, EINVAL);
    CHECK_ERRNO(realloc(block, 10), 0, EINVAL);
    CHECK_ERRNO(realloc(block, 5000), 0, EINVAL);
    CHECK_ERRNO(_msize(block), 0, 0);
    CHECK_INT(__heap_validate(block), 0);
    CHECK_ERRNO((free(barrier + 8), 0), 0, EINVAL); /* into the middle: no tags there */
    CHECK_ERRNO((free(barrier + 1), 0), 0, EINVAL);
    CHECK_INT(__heap_validate(NULL), 1);
    CHECK_ERRNO((free(barrier), 0), 0, 0);
    CHECK_ERRNO((free(NULL), 0), 0, 0);
    CHECK_ERRNO(_msize(NULL), 0, 0);
}

/* A block that has merged with both neighbours keeps no trace of having been in use. */
static void freed_twice_after_merging(void)
{
    char *blocks[5];
    static const unsigned char orders[][3] = {{0, 2, 1}, {2, 0, 1}, {1, 2, 0}, {0, 1, 2}};
    for (unsigned i = 0; i < 4; ++i) {
        for (unsigned k = 0; k < 5; ++k) blocks[k] = malloc(60);
        for (unsigned k = 0; k < 3; ++k) free(blocks[1 + orders[i][k]]);
        for (unsigned k = 1; k < 4; ++k) {
            CHECK_ERRNO((free(blocks[k]), 0), 0, EINVAL);
            CHECK_INT(__heap_validate(NULL), 1);
        }
        free(blocks[0]);
        free(blocks[4]);
    }
}

/* First fit: newest free block first, cut from its lower end; neighbours merge. */
static void placement(void)
{
    char *a = malloc(40), *b = malloc(40), *c = malloc(40), *d = malloc(40), *e = malloc(40);
    CHECK_INT(b - a, 48);
    free(b);
    free(d);
    CHECK(malloc(40) == d); /* freed last */
    CHECK(malloc(40) == b);
    free(b);
    CHECK(malloc(17) == b); /* 7 words of 12; the rest is a block of 5 */
    char *rest = malloc(12);
    CHECK(rest == b + 28);
    free(rest);
    free(b);
    CHECK_INT(tag_of(b), 12); /* merged again, and free */
    free(a);
    free(c);
    CHECK_INT(tag_of(a), 36); /* with both neighbours */
    char *all = malloc(136);
    CHECK(all == a);
    CHECK_INT(_msize(all), 136);
    free(all);
    free(d);
    free(e);
}

/*
 * The same with a list that is long enough for the heap to keep an index of it: 300 blocks of 33 to 64
 * words, released and taken again at random, and each time the newest that is large enough comes.
 */
static void long_list(void)
{
    enum { COUNT = 300 };
    static char *blocks[COUNT], *barriers[COUNT];
    static unsigned words[COUNT], order[COUNT]; /* order: those that are free, the newest last */
    unsigned seed = 5, free_count = 0, wrong = 0;
    for (unsigned i = 0; i < COUNT; ++i) {
        words[i] = 33 + (seed = seed * 1664525u + 1013904223u) / 7919 % 32;
        blocks[i] = malloc((words[i] - 2) * 4);
        barriers[i] = malloc(4);
    }
    for (unsigned step = 0; step < 20000; ++step) {
        seed = seed * 1664525u + 1013904223u;
        unsigned pick = (seed >> 8) % COUNT, at = 0;
        while (at < free_count && order[at] != pick) ++at;
        if (at == free_count) {
            free(blocks[pick]);
            order[free_count++] = pick;
            continue;
        }
        at = free_count;
        do --at;
        while (words[order[at]] < words[pick]);
        if (malloc((words[pick] - 2) * 4) != blocks[order[at]]) ++wrong;
        memmove(order + at, order + at + 1, (--free_count - at) * sizeof *order);
    }
    CHECK_INT(wrong, 0);
    CHECK_INT(__heap_validate(NULL), 1);
    for (unsigned i = 0; i < COUNT; ++i) {
        free(blocks[i]); /* EINVAL for those that are free already */
        free(barriers[i]);
    }
    CHECK_INT(__heap_validate(NULL), 1);
}

/* What would be left over as fewer than four words goes with the block. */
static void whole_block(void)
{
    char *a = malloc(40), *barrier = malloc(4);
    free(a);
    char *b = malloc(28); /* 9 of 12 words */
    CHECK(b == a);
    CHECK_INT(_msize(b), 40);
    free(b);
    free(barrier);
}

static void resized_in_place(void)
{
    char *a = malloc(40), *b = malloc(40), *barrier = malloc(4);
    memset(a, 'a', 40);
    free(b);
    CHECK(realloc(a, 60) == a); /* 17 words: 7 of the 12 behind are left */
    CHECK_INT(_msize(a), 60);
    CHECK_INT(tag_of(a + 68), 7);
    CHECK(realloc(a, 76) == a); /* 21 words: 3 would be left, and are taken in */
    CHECK_INT(_msize(a), 88);
    CHECK(realloc(a, 76) == a); /* fewer than 4 words less: nothing changes */
    CHECK_INT(_msize(a), 88);
    CHECK(realloc(a, 72) == a); /* exactly 4 */
    CHECK_INT(_msize(a), 72);
    CHECK_INT(tag_of(a + 80), 4);
    CHECK(realloc(a, 10) == a);
    CHECK_INT(_msize(a), 12);
    CHECK_INT(tag_of(a + 20), 19); /* the tails merged */
    CHECK_MEM(a, "aaaaaaaaaaaa", 12);
    char *moved = realloc(a, 100);
    CHECK(moved != a);
    CHECK_MEM(moved, "aaaaaaaaaaaa", 12);
    free(moved);
    free(barrier);
    CHECK_INT(__heap_validate(NULL), 1);
}

static void between_tiers(void)
{
    char *block = realloc(NULL, 16);
    memcpy(block, "0123456789abcdef", 16);
    char *large = realloc(block, 4000);
    CHECK(!((uintptr_t)large % 8) && large != block);
    CHECK_MEM(large, "0123456789abcdef", 16);
    memset(large + 16, 'z', 3984);
    large = realloc(large, 100000);
    CHECK_MEM(large, "0123456789abcdefzz", 18);
    CHECK(large[3999] == 'z');
    CHECK(_msize(large) >= 100000);
    large = realloc(large, 2000);
    CHECK_MEM(large, "0123456789abcdefzz", 18);
    block = realloc(large, 12);
    CHECK(is_small(block));
    CHECK_MEM(block, "0123456789ab", 12);
    CHECK(realloc(block, 0) == NULL);
    CHECK_INT(__heap_validate(block), 0);
    CHECK_INT(__heap_validate(NULL), 1);
}

/* The threshold is the program's to set: tiers follow it at once. */
static void threshold(void)
{
    CHECK_INT(__bheap_threshold, 1024);
    __bheap_threshold = 100;
    void *small = malloc(99), *large = malloc(100);
    CHECK(is_small(small));
    CHECK_INT((uintptr_t)large % 8, 0);
    CHECK((uintptr_t)large - (uintptr_t)((void **)large)[-1] == 8);
    CHECK_ERRNO(realloc(small, 0), 0, 0);
    free(large);
    __bheap_threshold = 5000;
    large = malloc(4000);
    CHECK(is_small(large));
    free(large);
    __bheap_threshold = 1024;
}

/* When all is free again, everything up to the sentinel at the heap's end is one block. */
static void merged(void)
{
    static void *blocks[3000];
    unsigned *first = malloc(0);
    free(first);
    for (unsigned i = 0; i < 3000; ++i) blocks[i] = malloc(i % 1000);
    for (unsigned i = 0; i < 3000; ++i) free(blocks[i * 7 % 3000]);
    unsigned *sentinel = first - 1 + tag_of(first);
    CHECK(!(tag_of(first) >> 31) && *sentinel >> 31);
    CHECK_INT(*(sentinel - (*sentinel & 0x7FFFFFFF) + 1), *sentinel);
    CHECK_INT(__heap_validate(NULL), 1);
}

int main(void)
{
    sizes();
    too_much();
    zeroed();
    freed_twice();
    freed_twice_after_merging();
    placement();
    long_list();
    whole_block();
    resized_in_place();
    between_tiers();
    threshold();
    merged();
    return check_done();
}
