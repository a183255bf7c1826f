/* The search families of <search.h>: nanoseconds an operation on 10,000 integers or strings; the linear ones
   an element. */
#include "bench.h"

#include <search.h>
#include <stdlib.h>
#include <string.h>

/* Of Wine's runtimes only the linear search is their own; the rest is not in them. */
#if defined(__VEXRT__)
#define lfind _lfind
#define lsearch _lsearch
#define tsearch _tsearch
#define tfind _tfind
#define tdelete _tdelete
#define twalk _twalk
#define hcreate _hcreate
#define hsearch _hsearch
#define hdestroy _hdestroy
#define ALL 1
#elif defined(_WIN32)
#define lfind _lfind
#define ALL 0
typedef unsigned int count_type;
#else
#define ALL 1
#endif
#ifndef _WIN32
typedef size_t count_type;
#elif ALL
typedef size_t count_type;
#endif

#define MANY 10000

static int numbers[MANY];
static int compare(const void *a, const void *b)
{
    int x = *(const int *)a, y = *(const int *)b;
    return (x > y) - (x < y);
}

#if ALL
static char names[MANY][16];
static void *root;

static void enter_nodes(void)
{
    for (int i = 0; i < MANY; ++i) bench_keep(tsearch(&numbers[i], &root, compare));
}
static void find_nodes(void)
{
    for (int i = 0; i < MANY; ++i) bench_keep(tfind(&numbers[i], &root, compare));
}
static void delete_nodes(void)
{
    for (int i = 0; i < MANY; ++i) tdelete(&numbers[i], &root, compare);
}

static int seen;
static void see(const void *node, VISIT which, int depth) { seen += which == leaf || which == postorder; }

static void enter_names(void)
{
    for (int i = 0; i < MANY; ++i) {
        ENTRY item = {names[i], names[i]};
        bench_keep(hsearch(item, ENTER));
    }
}
static void find_names(void)
{
    for (int i = 0; i < MANY; ++i) {
        ENTRY item = {names[i], NULL};
        bench_keep(hsearch(item, FIND));
    }
}
#endif

int main(void)
{
    unsigned state = 1;
    for (int i = 0; i < MANY; ++i) {
        state = state * 1664525u + 1013904223u;
        numbers[i] = (int)(state >> 1);
    }
    int absent = -1;
    count_type count = MANY;
    BENCH("lfind, an element", MANY, bench_keep(lfind(&absent, numbers, &count, sizeof(int), compare)));
#if ALL
    BENCH("tsearch and tdelete", MANY, enter_nodes(); delete_nodes());
    enter_nodes();
    BENCH("tfind", MANY, find_nodes());
    BENCH("twalk, a node", MANY, twalk(root, see));
    for (int i = 0; i < MANY; ++i) sprintf(names[i], "name %u", (unsigned)numbers[i] % 1000000);
    BENCH("hcreate, hsearch ENTER, hdestroy", MANY, hcreate(MANY); enter_names(); hdestroy());
    hcreate(MANY);
    enter_names();
    BENCH("hsearch FIND", MANY, find_names());
#else
    BENCH_SKIP("tsearch");
#endif
    return 0;
}
