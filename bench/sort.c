/* qsort and bsearch: nanoseconds an element (a search) for a million integers, records of other
   sizes, and an input made against the quicksort that is being measured. */
#include "bench.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#define MANY 1000000
#define HOSTILE 16384

static int numbers[MANY], work[MANY];

static unsigned random_state = 1;
static unsigned random_number(void)
{
    random_state = random_state * 1664525u + 1013904223u;
    return random_state >> 8;
}

static int compare_ints(const void *a, const void *b)
{
    int x = *(const int *)a, y = *(const int *)b;
    return (x > y) - (x < y);
}

static void sort_ints(int count)
{
    memcpy(work, numbers, (size_t)count * sizeof(int));
    qsort(work, (size_t)count, sizeof(int), compare_ints);
}

typedef struct {
    int key;
    char rest[20];
} record;
static record records[MANY / 10], work_records[MANY / 10];

static int compare_records(const void *a, const void *b)
{
    return compare_ints(&((const record *)a)->key, &((const record *)b)->key);
}

static void sort_records(void)
{
    memcpy(work_records, records, sizeof records);
    qsort(work_records, MANY / 10, sizeof(record), compare_records);
}

/* McIlroy's adversary: values are settled only when a comparison forces them, the candidate for
   the pivot last, so that each partition takes off as little as possible. */
static int hostile[HOSTILE], settled, candidate;
static int compare_hostile(const void *a, const void *b)
{
    int x = *(const int *)a, y = *(const int *)b;
    if (hostile[x] == HOSTILE && hostile[y] == HOSTILE)
        hostile[x == candidate ? x : y] = settled++;
    if (hostile[x] == HOSTILE) candidate = x;
    else if (hostile[y] == HOSTILE) candidate = y;
    return (hostile[x] > hostile[y]) - (hostile[x] < hostile[y]);
}

static void make_hostile(void)
{
    int i;
    settled = candidate = 0;
    for (i = 0; i < HOSTILE; ++i) {
        hostile[i] = HOSTILE;
        work[i] = i;
    }
    qsort(work, HOSTILE, sizeof(int), compare_hostile);
    memcpy(numbers, hostile, sizeof hostile);
}

static void search_all(void)
{
    int i;
    for (i = 0; i < 1000; ++i) {
        int key = (int)(random_number() % MANY);
        bench_keep(bsearch(&key, numbers, MANY, sizeof(int), compare_ints));
    }
}

int main(void)
{
    int i;
    for (i = 0; i < MANY; ++i) numbers[i] = (int)(random_number() << 8 ^ random_number());
    BENCH("qsort random", MANY, sort_ints(MANY));
    for (i = 0; i < MANY; ++i) numbers[i] = i;
    BENCH("qsort sorted", MANY, sort_ints(MANY));
    BENCH("bsearch", 1000, search_all());
    for (i = 0; i < MANY; ++i) numbers[i] = MANY - i;
    BENCH("qsort reverse", MANY, sort_ints(MANY));
    for (i = 0; i < MANY; ++i) numbers[i] = (int)(random_number() % 16);
    BENCH("qsort few unique", MANY, sort_ints(MANY));
    for (i = 0; i < MANY / 10; ++i) records[i].key = (int)random_number();
    BENCH("qsort records", MANY / 10, sort_records());
    make_hostile();
    BENCH("qsort hostile", HOSTILE, sort_ints(HOSTILE));
    return 0;
}
