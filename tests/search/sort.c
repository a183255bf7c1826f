/* qsort and qsort_s: order, moves of elements of every size, the comparisons made. */
#include "check.h"
#include "guard.h"

#include <stdlib.h>

static unsigned random_state = 1;
static unsigned random_below(unsigned limit)
{
    random_state = random_state * 1664525u + 1013904223u;
    return (unsigned)(((unsigned long long)random_state * limit) >> 32);
}

static long calls;
static int compare_ints(const void *a, const void *b)
{
    int x = *(const int *)a, y = *(const int *)b;
    ++calls;
    return (x > y) - (x < y);
}

/* ---- Inputs of every kind ---- */

typedef int (*generator)(int i, int count);
static int equal(int i, int count) { return 5; }
static int ascending(int i, int count) { return i; }
static int descending(int i, int count) { return count - i; }
static int organ_pipe(int i, int count) { return i < count / 2 ? i : count - i; }
static int saw(int i, int count) { return i % 17; }
static int shuffled(int i, int count) { return (int)random_below(1000000) - 500000; }
static int few(int i, int count) { return (int)random_below(3); }
static int nearly(int i, int count) { return random_below(20) ? i : (int)random_below(1000); }

static const struct {
    const char *name;
    generator make;
} kinds[] = {
    {"equal", equal}, {"ascending", ascending}, {"descending", descending},
    {"organ pipe", organ_pipe}, {"saw", saw}, {"shuffled", shuffled},
    {"few values", few}, {"nearly sorted", nearly},
};

/* Sorted, and still the same numbers: sums of three kinds tell. */
static void check_sorted(int *numbers, int count)
{
    unsigned sum = 0, squares = 0, mix = 0;
    int i, unsorted = 0;
    for (i = 0; i < count; ++i) {
        unsigned v = (unsigned)numbers[i];
        sum += v, squares += v * v, mix += (v ^ v >> 7) * 2654435761u;
    }
    qsort(numbers, (size_t)count, sizeof(int), compare_ints);
    for (i = 0; i < count; ++i) {
        unsigned v = (unsigned)numbers[i];
        sum -= v, squares -= v * v, mix -= (v ^ v >> 7) * 2654435761u;
        if (i && numbers[i - 1] > numbers[i]) ++unsorted;
    }
    CHECK_INT(unsorted, 0);
    CHECK(sum == 0 && squares == 0 && mix == 0);
}

static void every_kind(void)
{
    static const int counts[] = {0,  1,  2,  3,  5,   31,  32,   33,   34,    41,
                                 42, 43, 44, 50, 100, 257, 1000, 5000, 100000};
    static int numbers[100000];
    for (size_t k = 0; k < sizeof kinds / sizeof *kinds; ++k)
        for (size_t c = 0; c < sizeof counts / sizeof *counts; ++c) {
            int count = counts[c];
            double bound;
            char label[64];
            sprintf(label, "%s, %d", kinds[k].name, count);
            check_label = label;
            for (int i = 0; i < count; ++i) numbers[i] = kinds[k].make(i, count);
            calls = 0;
            check_sorted(numbers, count);
            bound = 40.0 + count * 8.0;
            for (int n = count; n > 32; n /= 2) bound += count * 1.7;
            CHECK(calls <= bound);
        }
    check_label = "";
}

/* ---- Element sizes ---- */

/* The key is the first byte, the rest of an element follows from it and the element's number. */
static int compare_bytes(const void *a, const void *b)
{
    return *(const unsigned char *)a - *(const unsigned char *)b;
}

static unsigned char byte_of(unsigned char key, unsigned char number, size_t at)
{
    return at == 0 ? key : at == 1 ? number : (unsigned char)(key * 7 + number * 31 + at * 13);
}

static void one_size(size_t size, int count, char *end)
{
    unsigned char *base = (unsigned char *)end - size * (size_t)count;
    int seen[256] = {0}, wrong = 0;
    for (int i = 0; i < count; ++i) {
        unsigned char key = (unsigned char)random_below(200);
        for (size_t at = 0; at < size; ++at)
            base[(size_t)i * size + at] = byte_of(key, (unsigned char)i, at);
    }
    qsort(base, (size_t)count, size, compare_bytes);
    for (int i = 0; i < count; ++i) {
        unsigned char *element = base + (size_t)i * size;
        if (i && element[0] < element[-(ptrdiff_t)size]) ++wrong;
        if (size > 1) ++seen[element[1]];
        for (size_t at = 2; at < size; ++at)
            if (element[at] != byte_of(element[0], element[1], at)) ++wrong;
    }
    if (size > 1)
        for (int i = 0; i < count; ++i) wrong += seen[i] != 1;
    CHECK_INT(wrong, 0);
}

/* Up against a guard page, with room for the largest. */
static void every_size(void)
{
    enum { PAGES = 64 };
    char *pages = guard_pages(PAGES), label[32];
    CHECK(pages != NULL);
    if (!pages) return;
    check_label = label;
    for (size_t size = 1; size <= 300; ++size) {
        sprintf(label, "size %u", (unsigned)size);
        one_size(size, 20, pages + PAGES * GUARD_PAGE);
        one_size(size, 200, pages + PAGES * GUARD_PAGE);
    }
    one_size(4000, 60, pages + PAGES * GUARD_PAGE);
    check_label = "";
}

/* ---- The comparisons ---- */

static void comparison_counts(void)
{
    int numbers[33];
    int lone = 1;
    for (int i = 0; i < 33; ++i) numbers[i] = 7;
    calls = 0;
    qsort(numbers, 33, sizeof(int), compare_ints);
    CHECK_INT(calls, 34); /* two for the pivot, one for every other element */

    calls = 0;
    qsort(&lone, 1, sizeof(int), compare_ints);
    qsort(NULL, 0, sizeof(int), compare_ints);
    CHECK_INT(calls, 0);
    qsort(numbers, 33, 0, compare_ints);
    CHECK_INT(calls, 0);

    for (int i = 0; i < 32; ++i) numbers[i] = i;
    calls = 0;
    qsort(numbers, 32, sizeof(int), compare_ints);
    CHECK_INT(calls, 62); /* by insertion: each but the first with the first and its neighbour */
    for (int i = 0; i < 32; ++i) numbers[i] = -i;
    calls = 0;
    qsort(numbers, 32, sizeof(int), compare_ints);
    CHECK_INT(calls, 31); /* each goes to the front at once */
}

/*
 * An adversary settles the order only when a comparison forces it to, and always so that the
 * candidate for the pivot is small. The budget of work must run out and heap sort step in.
 */
enum { HOSTILE = 16384 };
static int value[HOSTILE], settled, candidate;
static int compare_hostile(const void *a, const void *b)
{
    int x = *(const int *)a, y = *(const int *)b;
    ++calls;
    if (value[x] == HOSTILE && value[y] == HOSTILE) value[x == candidate ? x : y] = settled++;
    if (value[x] == HOSTILE) candidate = x;
    else if (value[y] == HOSTILE) candidate = y;
    return (value[x] > value[y]) - (value[x] < value[y]);
}

static void hostile_input(void)
{
    static int order[HOSTILE];
    const long due = 5L * 14 * HOSTILE; /* a few times n log n */
    for (int i = 0; i < HOSTILE; ++i) order[i] = i, value[i] = HOSTILE;
    calls = 0;
    qsort(order, HOSTILE, sizeof(int), compare_hostile);
    CHECK(calls < due);
    calls = 0;
    check_sorted(value, HOSTILE);
    CHECK(calls < due);
}

/* A comparator without an order: whatever comes out, it is the same elements. */
static int compare_at_random(const void *a, const void *b) { return (int)random_below(3) - 1; }
static int compare_always_less(const void *a, const void *b) { return ++calls % 40 == 1 ? 1 : -1; }

static void no_order(void)
{
    enum { PAGES = 2, MOST = PAGES * GUARD_PAGE / sizeof(short) };
    short *numbers = (short *)guard_pages(PAGES);
    static int (*const comparators[])(const void *, const void *) = {compare_at_random,
                                                                     compare_always_less};
    for (int c = 0; c < 2; ++c)
        for (int round = 0; round < 50; ++round) {
            static char seen[MOST];
            int wrong = 0;
            memset(seen, 0, sizeof seen);
            for (int i = 0; i < MOST; ++i) numbers[i] = (short)i;
            qsort(numbers, round % 2 ? MOST : 32, sizeof(short), comparators[c]);
            for (int i = 0; i < MOST; ++i) wrong += seen[numbers[i] & (MOST - 1)]++;
            CHECK_INT(wrong, 0);
        }
}

/* ---- qsort_s ---- */

static int flip = -1;
static int compare_with_context(const void *a, const void *b, void *context)
{
    return *(int *)context * ((*(const int *)a > *(const int *)b) - (*(const int *)a < *(const int *)b));
}

static int handled;
static void handler(const char *message, void *instance, errno_t error)
{
    handled = strcmp(message, "Invalid argument") == 0 && !instance ? error : -1;
}

static void checked_form(void)
{
    int numbers[100];
    static const struct {
        const char *name;
        int with_base, with_comparator;
        rsize_t count, size;
        errno_t due;
    } cases[] = {
        {"no elements, null base", 0, 1, 0, 4, 0},
        {"no elements, no comparator", 1, 0, 0, 4, 0},
        {"null base", 0, 1, 1, 4, EINVAL},
        {"null comparator", 1, 0, 1, 4, EINVAL},
        {"too many", 1, 1, 0x80000000u, 4, EINVAL},
        {"too large", 1, 1, 2, 0x80000000u, EINVAL},
        {"too large, none", 0, 0, 0, 0x80000000u, EINVAL},
    };
    for (int i = 0; i < 100; ++i) numbers[i] = i * 37 % 100;
    CHECK_INT(qsort_s(numbers, 100, sizeof(int), compare_with_context, &flip), 0);
    for (int i = 0; i < 100; ++i) CHECK_INT(numbers[i], 99 - i);
    set_constraint_handler_s(handler);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        check_label = cases[i].name;
        handled = 0;
        CHECK_INT(qsort_s(cases[i].with_base ? numbers : NULL, cases[i].count, cases[i].size,
                          cases[i].with_comparator ? compare_with_context : NULL, &flip),
                  cases[i].due);
        CHECK_INT(handled, cases[i].due);
        CHECK_INT(numbers[0], 99);
    }
    check_label = "";
    set_constraint_handler_s(NULL);
}

int main(void)
{
    every_kind();
    every_size();
    comparison_counts();
    hostile_input();
    no_order();
    checked_form();
    return check_done();
}
