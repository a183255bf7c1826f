/* options: -fno-builtin */
/*
 * What happens when the operating system has no memory: each of the calls that the heap makes fails
 * in turn, the arena is used up, its growth is not contiguous. Each case is a process of its own,
 * because the small tier does not come back.
 */
#include "check.h"
#include "child.h"
#include "script.h"

#include <malloc.h>
#include <stdint.h>

#define OUT_OF_STEP 0x40000

static void *(__stdcall *real_commit)(void *, size_t, unsigned long, unsigned long);
static void *(__stdcall *real_allocate)(void *, unsigned long, size_t);
static void *(__stdcall *real_reallocate)(void *, unsigned long, void *, size_t);
static size_t(__stdcall *real_query)(const void *, unsigned *, size_t);

static void *__stdcall commit(void *at, size_t size, unsigned long type, unsigned long protect)
{
    return script_fail_now() ? NULL : real_commit(at, size, type, protect);
}

static void *__stdcall allocate(void *heap, unsigned long flags, size_t size)
{
    return script_fail_now() ? NULL : real_allocate(heap, flags, size);
}

static void *__stdcall reallocate(void *heap, unsigned long flags, void *block, size_t size)
{
    return script_fail_now() ? NULL : real_reallocate(heap, flags, block, size);
}

static int is_small(void *block) { return ((unsigned *)block)[-1] >> 31; }

/* Takes memory until a commit fails: from then on the system's heap serves. */
static int commit_fails(void)
{
    real_commit = script_import("VirtualAlloc", commit);
    script_fail_from(3, 1);
    void *last = NULL, *block;
    for (int i = 0; i < 1000 && __bheap_threshold; ++i) last = malloc(1000);
    CHECK_INT(__bheap_threshold, 0);
    CHECK_INT(script_calls, 3); /* it is not tried again */
    CHECK_INT((uintptr_t)last % 8, 0);
    CHECK((block = malloc(10)) && (uintptr_t)block % 8 == 0);
    CHECK_INT(script_calls, 3);
    free(block);
    free(last);
    CHECK_INT(__heap_validate(NULL), 1);
    return check_done();
}

/* A small block that can no longer grow in its tier moves to the other one. */
static int moves_when_exhausted(void)
{
    char *block = malloc(500), *barrier = malloc(100);
    memset(block, 'm', 500);
    real_commit = script_import("VirtualAlloc", commit);
    script_fail_from(1, 1);
    while (__bheap_threshold) malloc(1000);
    CHECK(is_small(block));
    block = realloc(block, 600);
    CHECK(block && (uintptr_t)block % 8 == 0);
    CHECK_INT(strspn(block, "m"), 500);
    CHECK_ERRNO((free(barrier), 0), 0, 0);
    CHECK_INT(__heap_validate(NULL), 1);
    return check_done();
}

static int both_fail(void)
{
    char *small = malloc(100), *large = malloc(3000), *barrier = malloc(8);
    memset(small, 's', 100);
    memset(large, 'l', 3000);
    char *aligned = aligned_alloc(1024, 2000); /* one that cannot be resized where it is */
    while ((uintptr_t)aligned - (uintptr_t)((void **)aligned)[-1] == 8) aligned = aligned_alloc(1024, 2000);
    memset(aligned, 'a', 2000);
    real_commit = script_import("VirtualAlloc", commit);
    real_allocate = script_import("HeapAlloc", allocate);
    real_reallocate = script_import("HeapReAlloc", reallocate);
    script_fail_from(1, 1);
    CHECK_ERRNO(malloc(1024), 0, ENOMEM);
    CHECK_ERRNO(calloc(1, 1024), 0, ENOMEM);
    CHECK_ERRNO(aligned_alloc(8, 1024), 0, ENOMEM);
    CHECK_ERRNO(_mm_malloc(1024, 8), 0, ENOMEM);
    CHECK_ERRNO(realloc(large, 6000), 0, ENOMEM);
    CHECK_ERRNO(realloc(aligned, 6000), 0, ENOMEM);
    CHECK_ERRNO(realloc(small, 6000), 0, ENOMEM);
    while (__bheap_threshold && malloc(900)) {}
    CHECK_ERRNO(malloc(900), 0, ENOMEM);
    CHECK_ERRNO(malloc(1), 0, ENOMEM);
    CHECK_ERRNO(calloc(1, 1), 0, ENOMEM);
    CHECK_ERRNO(aligned_alloc(4, 1), 0, ENOMEM);
    CHECK_ERRNO(realloc(NULL, 1), 0, ENOMEM);
    CHECK_ERRNO(realloc(small, 200), 0, ENOMEM);
    CHECK_INT(strspn(small, "s") >= 100, 1);
    CHECK_INT(large[2999], 'l');
    CHECK_INT(aligned[1999], 'a');
    CHECK_INT(__heap_validate(NULL), 1);
    script_restore();
    CHECK_ERRNO((free(small), free(large), free(aligned), free(barrier), 0), 0, 0);
    CHECK_INT(__heap_validate(NULL), 1);
    return check_done();
}

/* The 32 MiB are used up but for less than a last step. */
static int exhausted(void)
{
    static char *blocks[40000];
    unsigned count = 0;
    while (__bheap_threshold && count < 40000) blocks[count++] = malloc(1000);
    CHECK_INT(__bheap_threshold, 0);
    CHECK(count > 0x2000000 / 1008 - 200 && count < 0x2000000 / 1008);
    CHECK_INT((uintptr_t)blocks[count - 1] % 8, 0);
    CHECK_INT(__heap_validate(NULL), 1);
    while (count > 0) free(blocks[--count]);
    CHECK_INT(__heap_validate(NULL), 1);
    char *block = malloc(10); /* off for good, though all is free again */
    CHECK_INT((uintptr_t)block % 8, 0);
    CHECK_INT(__bheap_threshold, 0);
    return check_done();
}

/* Makes the committed part look longer, so that the next step leaves a hole. */
static size_t __stdcall query(const void *at, unsigned *region, size_t size)
{
    size_t result = real_query(at, region, size);
    region[3] += OUT_OF_STEP; /* RegionSize */
    return result;
}

/* ... or shorter, as when a program has changed the protection of a page. */
static size_t __stdcall short_query(const void *at, unsigned *region, size_t size)
{
    size_t result = real_query(at, region, size);
    region[3] = 0x1000;
    return result;
}

static int second_segment(void)
{
    char *blocks[400], *first = malloc(1000);
    real_query = script_import("VirtualQuery", query);
    unsigned count = 0;
    do {
        blocks[count] = malloc(1000);
        memset(blocks[count], (int)count, 1000);
    } while (blocks[count++] - first < OUT_OF_STEP && count < 400);
    CHECK(count < 400);
    CHECK_INT(__bheap_threshold, 1024);
    CHECK_INT(__heap_validate(NULL), 1);
    script_restore();
    for (unsigned i = 0; i < count; ++i) {
        CHECK_INT(blocks[i][0] == (char)i && blocks[i][999] == (char)i, 1);
        CHECK_ERRNO((free(blocks[i]), 0), 0, 0);
    }
    CHECK_INT(__heap_validate(NULL), 1);
    real_query = script_import("VirtualQuery", short_query);
    while (__bheap_threshold) CHECK(malloc(1000)); /* nothing is handed out twice */
    CHECK_INT(__heap_validate(NULL), 1);
    free(first);
    CHECK_INT(__heap_validate(NULL), 1);
    return check_done();
}

static const struct {
    const char *name;
    int (*run)(void);
} cases[] = {{"commit_fails", commit_fails},
             {"moves_when_exhausted", moves_when_exhausted},
             {"both_fail", both_fail},
             {"exhausted", exhausted},
             {"second_segment", second_segment}};

int main(int argc, char **argv)
{
    for (unsigned i = 0; i < sizeof cases / sizeof *cases; ++i) {
        if (argc > 1) {
            if (strcmp(argv[1], cases[i].name) == 0) return cases[i].run();
            continue;
        }
        struct child child = child_run(cases[i].name, NULL);
        check_label = cases[i].name;
        CHECK_INT(child.status, 0);
        if (child.status != 0) printf("%s%s", child.output, child.error);
    }
    return argc > 1 ? 2 : check_done();
}
