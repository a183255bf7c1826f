/* options: -fno-builtin -Wno-non-power-of-two-alignment */
/* aligned_alloc and _mm_malloc: every alignment with many sizes, and the arguments that are refused. */
#include "check.h"

#include <malloc.h>
#include <stdint.h>
#include <stdlib.h>

static const size_t sizes[] = {1, 2, 4, 5, 7, 8, 9, 15, 16, 33, 100, 500, 1000, 1023, 1024, 5000};
#define SIZES (sizeof sizes / sizeof *sizes)

static void check_block(void *block, size_t alignment, size_t size)
{
    char label[64];
    sprintf(label, "%u bytes at %u", (unsigned)size, (unsigned)alignment);
    check_label = label;
    CHECK(block != NULL);
    CHECK_INT((uintptr_t)block % alignment, 0);
    if (block) memset(block, 0x5A, size);
    CHECK_INT(__heap_validate(NULL), 1);
    check_label = "";
}

static void all_alignments(void)
{
    for (size_t alignment = 4; alignment <= 65536; alignment *= 2) {
        void *blocks[SIZES], *shifts[SIZES];
        for (unsigned i = 0; i < SIZES; ++i) {
            shifts[i] = malloc(4 + 4 * (i % 5)); /* so that the gaps in front differ */
            blocks[i] = aligned_alloc(alignment, sizes[i]);
            check_block(blocks[i], alignment, sizes[i]);
            CHECK(_msize(blocks[i]) >= sizes[i]);
        }
        for (unsigned i = 0; i < SIZES; ++i) {
            if (i % 3 == 0) blocks[i] = realloc(blocks[i], sizes[i] + 3000);
            if (i % 3 == 1) blocks[i] = realloc(blocks[i], sizes[i] / 2 + 1);
            if (i % 3 != 2) CHECK(*(char *)blocks[i] == 0x5A);
            CHECK_ERRNO((free(blocks[i]), 0), 0, 0);
            free(shifts[i]);
        }
        CHECK_INT(__heap_validate(NULL), 1);
    }
}

/* A gap in front of fewer than four words stays in use for ever; a larger one is free at once. */
static void gaps(void)
{
    unsigned kinds = 0;
    for (int i = 0; i < 16; ++i) {
        char *place = malloc(900); /* where the newest memory is */
        free(place);
        char *block = aligned_alloc(64, 200);
        long gap = (long)(block - place);
        unsigned tag = ((unsigned *)place)[-1];
        CHECK(gap >= 0 && gap < 64 && gap % 4 == 0);
        if (gap >= 16) CHECK_INT(tag, gap / 4);
        else if (gap > 0) CHECK_INT(tag, 0x80000000u | (unsigned)gap / 4);
        if (gap > 0) kinds |= gap >= 16 ? 1 : 2;
        free(block);
        CHECK_INT(((unsigned *)block)[-1] >> 31, 0);
        CHECK(malloc(512 + 4 * i)); /* moves the place on */
    }
    CHECK_INT(kinds, 3);
    CHECK_INT(__heap_validate(NULL), 1);
}

static void refused(void)
{
    volatile size_t most = SIZE_MAX;
    CHECK_ERRNO(aligned_alloc(0, 8), 0, EINVAL);
    CHECK_ERRNO(aligned_alloc(1, 8), 0, EINVAL);
    CHECK_ERRNO(aligned_alloc(2, 8), 0, EINVAL);
    CHECK_ERRNO(aligned_alloc(12, 8), 0, EINVAL);
    CHECK_ERRNO(aligned_alloc(16, 0), 0, EINVAL);
    CHECK_ERRNO(aligned_alloc(16, most), 0, ENOMEM);
    CHECK_ERRNO(aligned_alloc(0x80000000u, 8), 0, ENOMEM);
    CHECK_ERRNO(aligned_alloc(0x80000000u, 0x7FFFFFFF), 0, ENOMEM);
    CHECK_ERRNO(_mm_malloc(8, 3), 0, EINVAL);
    CHECK_ERRNO(_mm_malloc(most - 16, 16), 0, EINVAL);
    CHECK_ERRNO(_mm_malloc(most - 20, 16), 0, ENOMEM);
    CHECK_ERRNO(_mm_malloc(most - 4, 0), 0, ENOMEM); /* with the alignment raised it overflows */
    CHECK_INT(__heap_validate(NULL), 1);
}

static void with_own_free(void)
{
    for (size_t alignment = 1; alignment <= 4096; alignment *= 2)
        for (unsigned i = 0; i < SIZES; ++i) {
            char *block = _mm_malloc(sizes[i], alignment);
            check_block(block, alignment < 4 ? 4 : alignment, sizes[i]);
            CHECK_ERRNO((_mm_free(block), 0), 0, 0);
        }
    char *block = _mm_malloc(0, 0);
    CHECK(block && (uintptr_t)block % 4 == 0);
    _mm_free(block + 3); /* the two low bits do not matter */
    _mm_free(NULL);
    CHECK_INT(__heap_validate(NULL), 1);
}

int main(void)
{
    gaps();
    all_alignments();
    refused();
    with_own_free();
    return check_done();
}
