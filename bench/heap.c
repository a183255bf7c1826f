/* The heap: pairs of allocation and release, and what realistic programs do. */
#include "bench.h"

#include <stdlib.h>
#include <string.h>

#ifdef _WIN32
__declspec(dllimport) void *__stdcall CreateThread(void *, size_t, unsigned long(__stdcall *)(void *),
                                                   void *, unsigned long, unsigned long *);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(void *, unsigned long);
__declspec(dllimport) int __stdcall CloseHandle(void *);
typedef void *thread;
#define THREAD_FUNCTION(name) static unsigned long __stdcall name(void *argument)
#define thread_start(to, function, argument)                                                       \
    (*(to) = CreateThread(NULL, 0, (function), (argument), 0, NULL))
static void thread_wait(thread it)
{
    WaitForSingleObject(it, 0xFFFFFFFF);
    CloseHandle(it);
}
#else
#include <pthread.h>
typedef pthread_t thread;
#define THREAD_FUNCTION(name) static void *name(void *argument)
#define thread_start(to, function, argument) pthread_create((to), NULL, (function), (argument))
static void thread_wait(thread it) { pthread_join(it, NULL); }
#endif

/* Programs for Windows of other makers have no aligned_alloc; these have this instead. */
#if defined(_WIN32) && !defined(__VEXRT__)
#include <malloc.h>
#define aligned_alloc(alignment, size) _aligned_malloc((size), (alignment))
#define aligned_free _aligned_free
#else
#define aligned_free free
#endif

#define LIVE 10000
#define PAIRS 200000

static void *live[LIVE];
static unsigned seed = 1;

static unsigned next_random(unsigned *state)
{
    *state = *state * 1664525u + 1013904223u;
    return *state >> 8;
}

static void pair(size_t size)
{
    void *block = malloc(size);
    bench_keep(block);
    free(block);
}

/* Sizes from 1 to 1000 bytes, 10000 blocks alive, one of them replaced by another. */
static void replace_one(void)
{
    unsigned random = next_random(&seed);
    void **slot = &live[random % LIVE];
    free(*slot);
    *slot = malloc(1 + next_random(&seed) % 1000);
}

THREAD_FUNCTION(many_pairs)
{
    (void)argument;
    for (int i = 0; i < PAIRS; ++i) pair(32);
    return 0;
}

static void two_threads(void)
{
    thread threads[2];
    for (int i = 0; i < 2; ++i) thread_start(&threads[i], many_pairs, NULL);
    for (int i = 0; i < 2; ++i) thread_wait(threads[i]);
}

static void grow_to(size_t most, size_t step)
{
    char *block = NULL;
    for (size_t size = step; size <= most; size += step) block = realloc(block, size);
    free(block);
}

static void calloc_pair(size_t size)
{
    void *block = calloc(1, size);
    bench_keep(block);
    free(block);
}

static void aligned_pair(size_t alignment, size_t size)
{
    void *block = aligned_alloc(alignment, size);
    bench_keep(block);
    aligned_free(block);
}

int main(void)
{
    BENCH("malloc+free 32", 1, pair(32));
    BENCH("malloc+free 800", 1, pair(800));
    BENCH("malloc+free 2000", 1, pair(2000));
    BENCH("malloc+free 1 MiB", 1, pair(1 << 20));
    BENCH("calloc+free 100", 1, calloc_pair(100));
    BENCH("calloc+free 64 KiB", 1, calloc_pair(1 << 16));
    BENCH("aligned 16, 100 bytes", 1, aligned_pair(16, 100));
    BENCH("realloc, 16 to 512 by 16", 32, grow_to(512, 16));
    BENCH("realloc, 4 to 64 KiB by 4 KiB", 16, grow_to(1 << 16, 1 << 12));
    for (int i = 0; i < LIVE; ++i) live[i] = malloc(1 + next_random(&seed) % 1000);
    for (int i = 0; i < 20 * LIVE; ++i) replace_one();
    BENCH("random 1-1000, 10000 live", 1, replace_one());
    for (int i = 0; i < LIVE; ++i) free(live[i]);
    BENCH("two threads, malloc+free 32", PAIRS, two_threads());
    return 0;
}
