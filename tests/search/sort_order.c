/*
 * The order in which qsort leaves elements that compare equal, and the number of comparisons,
 * against the sort written down plainly, one step at a time.
 */
#include "check.h"

#include <stdlib.h>

typedef struct {
    short key, tag;
} element;

static element plain[20000], sorted[20000];
static long calls;

static int compare(const void *a, const void *b)
{
    ++calls;
    return ((const element *)a)->key - ((const element *)b)->key;
}

static void swap(int a, int b)
{
    element e = plain[a];
    plain[a] = plain[b];
    plain[b] = e;
}

static int order(int a, int b) { return compare(&plain[a], &plain[b]); }

static void median(int a, int b, int c)
{
    if (order(b, a) < 0) swap(b, a);
    if (order(c, b) >= 0) return;
    swap(c, b);
    if (order(b, a) < 0) swap(b, a);
}

static int pivot_of(int first, int count)
{
    int mid = first + count / 2, last = first + count - 1, s = (count - 1) / 8 + 1;
    if (count < 42) {
        median(first, mid, last);
        return mid;
    }
    median(first, first + s, first + 2 * s);
    median(mid - s, mid, mid + s);
    median(last - 2 * s, last - s, last);
    median(first + s, mid, last - s);
    return mid;
}

/* The run of equal elements is [*run, *run_end). */
static void partition(int first, int end, int *run, int *run_end)
{
    int low = pivot_of(first, end - first), high = low + 1, up, down;
    while (low > first && order(low - 1, low) == 0) --low;
    while (high < end && order(high, low) == 0) ++high;
    for (up = high, down = low;;) {
        for (int o; up < end && (o = order(up, low)) >= 0; ++up)
            if (o == 0) swap(high++, up);
        for (int o; down > first && (o = order(down - 1, low)) <= 0; --down)
            if (o == 0) swap(--low, down - 1);
        if (down == first && up == end) break;
        if (down == first) {
            if (high != up) swap(low, high);
            ++high;
            swap(low++, up++);
        } else if (up == end) {
            if (--down != --low) swap(down, low);
            swap(low, --high);
        } else {
            swap(up++, --down);
        }
    }
    *run = low;
    *run_end = high;
}

static void sift(int first, int top, int count)
{
    int hole = top;
    for (int child; (child = 2 * hole + 1) < count; hole = child) {
        if (child + 1 < count && order(first + child, first + child + 1) <= 0) ++child;
        swap(first + hole, first + child);
    }
    for (; hole > top && order(first + hole, first + (hole - 1) / 2) > 0; hole = (hole - 1) / 2)
        swap(first + hole, first + (hole - 1) / 2);
}

static int heap_sorts;
static void heap_sort(int first, int count)
{
    ++heap_sorts;
    for (int i = count / 2 - 1; i >= 0; --i) sift(first, i, count);
    for (; count > 1; --count) {
        swap(first, first + count - 1);
        sift(first, 0, count - 1);
    }
}

static void insertion_sort(int first, int count)
{
    for (int i = first + 1; i < first + count; ++i) {
        int place = i;
        element e = plain[i];
        if (order(i, first) < 0) place = first;
        else
            while (order(i, place - 1) < 0) --place;
        for (int k = i; k > place; --k) plain[k] = plain[k - 1];
        plain[place] = e;
    }
}

static void plain_sort(int first, int count, int budget)
{
    while (count > 32 && budget > 0) {
        int run, run_end, end = first + count;
        partition(first, end, &run, &run_end);
        budget = budget / 2 + budget / 2 / 2;
        if (run - first < end - run_end) {
            plain_sort(first, run - first, budget);
            first = run_end;
            count = end - run_end;
        } else {
            plain_sort(run_end, end - run_end, budget);
            count = run - first;
        }
    }
    if (count > 32) heap_sort(first, count);
    else insertion_sort(first, count);
}

static unsigned random_state = 7;
static unsigned random_below(unsigned limit)
{
    random_state = random_state * 1664525u + 1013904223u;
    return (unsigned)(((unsigned long long)random_state * limit) >> 32);
}

/* Keys settled by an adversary of the sort, so that the budget runs out and heap sort steps in. */
static short settled[20000], next_key, candidate, open_key;
static int compare_hostile(const void *a, const void *b)
{
    short x = ((const element *)a)->tag, y = ((const element *)b)->tag;
    if (settled[x] == open_key && settled[y] == open_key)
        settled[x == candidate ? x : y] = next_key++;
    if (settled[x] == open_key) candidate = x;
    else if (settled[y] == open_key) candidate = y;
    return settled[x] - settled[y];
}

static void make_hostile(int count)
{
    next_key = candidate = 0;
    open_key = (short)count;
    for (int i = 0; i < count; ++i) {
        settled[i] = open_key;
        sorted[i].tag = (short)i;
    }
    qsort(sorted, (size_t)count, sizeof(element), compare_hostile);
    for (int i = 0; i < count; ++i) plain[i].key = settled[i];
}

int main(void)
{
    static const int counts[] = {20, 33, 40, 41, 42, 43, 64, 100, 130, 257, 1000, 3000, 20000};
    static const unsigned keys[] = {1, 2, 3, 5, 20, 300, 30000};
    char label[64];
    check_label = label;
    for (int c = 0; c < 13; ++c)
        for (int k = 0; k < 9; ++k)
            for (int round = 0; round < (counts[c] < 2000 ? 20 : 2); ++round) {
                int count = counts[c];
                long due;
                for (int i = 0; i < count; ++i)
                    plain[i].key = (short)(k < 7 ? random_below(keys[k]) : k == 7 ? i : -i);
                if (k == 8 && round % 2) make_hostile(count);
                for (int i = 0; i < count; ++i) plain[i].tag = (short)i;
                memcpy(sorted, plain, sizeof plain);
                sprintf(label, "%d elements, input %d, round %d", count, k, round);
                calls = 0;
                plain_sort(0, count, count);
                due = calls;
                calls = 0;
                qsort(sorted, (size_t)count, sizeof(element), compare);
                CHECK_INT(calls, due);
                CHECK(memcmp(sorted, plain, (size_t)count * sizeof(element)) == 0);
            }
    check_label = "";
    CHECK(heap_sorts > 0);
    return check_done();
}
