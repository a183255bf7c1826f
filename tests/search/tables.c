/* Hash tables, linear search and linked lists. */
#include "check.h"
#include "script.h"

#include <search.h>
#include <stdint.h>
#include <stdlib.h>
#include <threads.h>

static unsigned random_state = 7;
static unsigned random_number(unsigned limit)
{
    random_state = random_state * 1664525u + 1013904223u;
    return (random_state >> 8) % limit;
}

/* ---- Hash tables ---- */

enum { KEYS = 20000 };
static char names[KEYS][12];
static ENTRY *entries[KEYS]; /* what the table should have */

static void make_names(void)
{
    for (int i = 0; i < KEYS; ++i)
        if (i % 3 == 0) sprintf(names[i], "%d", i);
        else if (i % 3 == 1) sprintf(names[i], "key%07d", i);
        else sprintf(names[i], "%*c%d", i % 5 + 1, (char)(0x80 + i % 100), i / 5);
}

static ENTRY *search(const char *key, void *data, ACTION action)
{
    ENTRY item = {(char *)key, data};
    return _hsearch(item, action);
}

static void random_operations(size_t hint)
{
    int count = 0;
    memset(entries, 0, sizeof entries);
    CHECK(_hcreate(hint) != 0);
    for (int i = 0; i < 4 * KEYS; ++i) {
        char copy[12];
        int n = (int)random_number(KEYS);
        strcpy(copy, names[n]);
        if (random_number(2)) {
            ENTRY *entry = search(entries[n] ? copy : names[n], names[n] + 1, ENTER);
            CHECK(entry && (!entries[n] || entry == entries[n]));
            count += !entries[n];
            entries[n] = entry;
        } else if (entries[n]) {
            CHECK(search(copy, NULL, FIND) == entries[n]);
        } else {
            CHECK_ERRNO((size_t)search(copy, NULL, FIND), 0, ESRCH);
        }
    }
    for (int i = 0; i < KEYS; ++i) {
        if (!entries[i]) entries[i] = search(names[i], names[i] + 1, ENTER);
        CHECK(entries[i] && entries[i]->key == names[i] && entries[i]->data == names[i] + 1);
    }
    for (int i = 0; i < KEYS; ++i) CHECK(search(names[i], NULL, FIND) == entries[i]);
    CHECK(count > KEYS / 2);
    _hdestroy();
}

static void edges_of_tables(void)
{
    CHECK_ERRNO((size_t)search("a", NULL, ENTER), 0, EINVAL);
    CHECK_ERRNO((size_t)search("a", NULL, FIND), 0, EINVAL);
    _hdestroy(); /* nothing */
    CHECK_ERRNO(_hcreate(SIZE_MAX), 0, ENOMEM);
    CHECK_ERRNO(_hcreate(SIZE_MAX / 8), 0, ENOMEM);
    CHECK(_hcreate(0) != 0);
    CHECK_ERRNO(_hcreate(10), 0, EINVAL);
    CHECK_ERRNO((size_t)search(NULL, NULL, FIND), 0, EINVAL);
    CHECK_ERRNO((size_t)search("a", NULL, (ACTION)2), 0, EINVAL);
    ENTRY *empty = search("", "nothing", ENTER);
    CHECK(empty && search("", "other", ENTER) == empty);
    CHECK_STR(empty->data, "nothing");
    empty->data = "changed";
    CHECK_STR(search("", NULL, FIND)->data, "changed");
    /* keys that share a beginning and differ in length only */
    char long_key[20] = "";
    for (int i = 0; i < 19; ++i) {
        strcat(long_key, "a");
        CHECK_ERRNO((size_t)search(long_key, NULL, FIND), 0, ESRCH);
        search(strdup(long_key), (void *)(size_t)i, ENTER);
    }
    for (int i = 18; i >= 0; --i) {
        CHECK_INT((size_t)search(long_key, NULL, FIND)->data, i);
        long_key[i] = 0;
    }
    _hdestroy();
    CHECK_ERRNO((size_t)search("", NULL, FIND), 0, EINVAL);
}

static int allocated;
static void *(__stdcall *real_alloc)(void *, unsigned, size_t);
static void *__stdcall alloc(void *heap, unsigned flags, size_t size)
{
    return script_fail_now() ? NULL : (++allocated, real_alloc(heap, flags, size));
}
static int (__stdcall *real_free)(void *, unsigned, void *);
static int __stdcall count_free(void *heap, unsigned flags, void *block)
{
    if (block) --allocated;
    return real_free(heap, flags, block);
}

/* The call that fails goes from the first to one that is not made. What is in the table stays. */
static void failing_memory(void)
{
    extern __declspec(dllimport) unsigned __bheap_threshold;
    unsigned threshold = __bheap_threshold;
    int entered = 0;
    __bheap_threshold = 0;
    real_alloc = script_import("HeapAlloc", alloc);
    real_free = script_import("HeapFree", count_free);
    for (int call = 1; call <= 3; ++call) {
        allocated = 0;
        script_fail_from(call, 0);
        CHECK_ERRNO(_hcreate(50), 0, ENOMEM);
        CHECK_INT(allocated, 0);
    }
    script_fail_from(0, 0);
    CHECK(_hcreate(50) != 0);
    script_fail_from(1, 1); /* none at all from here on */
    for (; entered < KEYS && search(names[entered], NULL, ENTER); ++entered) {}
    CHECK(entered >= 50 && entered < 200);
    CHECK_ERRNO((size_t)search(names[entered], NULL, ENTER), 0, ENOMEM);
    CHECK_ERRNO((size_t)search(names[entered], NULL, FIND), 0, ESRCH);
    for (int i = 0; i < entered; ++i) CHECK(search(names[i], NULL, FIND)->key == names[i]);
    for (int i = entered, call = 1; i < 500; ++i, call = call % 3 + 1) { /* now and then */
        script_fail_from(call, 0);
        while (!search(names[i], NULL, ENTER)) CHECK_INT(errno, ENOMEM);
    }
    for (int i = 0; i < 500; ++i) CHECK(search(names[i], NULL, FIND)->key == names[i]);
    _hdestroy();
    CHECK_INT(allocated, 0);
    script_restore();
    __bheap_threshold = threshold;
}

/* The 16 slots cannot become 32: they fill up but for one, which ends every search. */
static void *__stdcall no_slots(void *heap, unsigned flags, size_t size)
{
    return size >= 256 ? NULL : real_alloc(heap, flags, size);
}
static void full_slots(void)
{
    extern __declspec(dllimport) unsigned __bheap_threshold;
    unsigned threshold = __bheap_threshold;
    int entered = 0;
    __bheap_threshold = 0;
    CHECK(_hcreate(0) != 0);
    real_alloc = script_import("HeapAlloc", no_slots);
    for (; entered < KEYS && search(names[entered], NULL, ENTER); ++entered) {}
    CHECK_INT(entered, 15);
    CHECK_ERRNO((size_t)search(names[15], NULL, FIND), 0, ESRCH);
    CHECK_ERRNO((size_t)search(names[15], NULL, ENTER), 0, ENOMEM);
    script_restore();
    CHECK(search(names[15], NULL, ENTER) != NULL);
    for (int i = 0; i <= 15; ++i) CHECK(search(names[i], NULL, FIND)->key == names[i]);
    _hdestroy();
    __bheap_threshold = threshold;
}

static int use_table(void *own)
{
    int result = search("shared", NULL, FIND) == NULL && errno == EINVAL && _hcreate(0);
    for (int i = 0; i < 1000; ++i) result &= search(names[i], own, ENTER) != NULL;
    return result & (search(names[5], NULL, FIND)->data == own);
}

static void a_table_a_thread(void)
{
    extern __declspec(dllimport) unsigned __bheap_threshold;
    unsigned threshold = __bheap_threshold;
    int result = 0;
    thrd_t thread;
    CHECK(_hcreate(10) && search("shared", NULL, ENTER));
    for (int i = 0; i < 3; ++i) { /* the first leaves what stays for later threads */
        __bheap_threshold = 0;
        script_fail_from(0, 0);
        allocated = 0;
        real_alloc = script_import("HeapAlloc", alloc);
        real_free = script_import("HeapFree", count_free);
        thrd_create(&thread, use_table, &thread);
        thrd_join(thread, &result);
        script_restore();
        __bheap_threshold = threshold;
        CHECK_INT(result, 1);
        if (i) CHECK_INT(allocated, 0); /* freed with the thread */
    }
    CHECK(search("shared", NULL, FIND) != NULL);
    _hdestroy();
}

/* ---- Linear search ---- */

static int compare(const void *key, const void *element)
{
    return memcmp(key, element, 3) != 0; /* no order, only equality */
}

static void linear_search(void)
{
    char array[5 * 3 + 1] = "onetwosix", unchanged[16];
    size_t count = 3;
    memcpy(unchanged, array, 16);
    CHECK(_lfind("two", array, &count, 3, compare) == array + 3);
    CHECK(_lfind("one", array, &count, 3, compare) == array);
    CHECK(_lfind("six", array, &count, 3, compare) == array + 6);
    CHECK(_lfind("ten", array, &count, 3, compare) == NULL);
    CHECK(_lsearch("six", array, &count, 3, compare) == array + 6);
    CHECK(count == 3 && memcmp(array, unchanged, 16) == 0);
    CHECK(_lsearch("ten", array, &count, 3, compare) == array + 9);
    CHECK_INT(count, 4);
    CHECK_STR(array, "onetwosixten");
    CHECK(_lfind("ten", array, &count, 3, compare) == array + 9);
    count = 0;
    CHECK(_lfind("one", array, &count, 3, compare) == NULL);
    CHECK(_lsearch("new", array, &count, 3, compare) == array && count == 1);
    CHECK_STR(array, "newtwosixten");
}

/* ---- Lists ---- */

struct element {
    struct element *next, *previous;
    int number;
};

static void check_list(const struct element *first, int count, const int *numbers)
{
    const struct element *previous = NULL;
    for (int i = 0; i < count; ++i, previous = first, first = first->next)
        if (!first || first->number != numbers[i] || first->previous != previous) {
            CHECK_INT(i, count);
            return;
        }
    CHECK(first == NULL);
}

static void lists(void)
{
    struct element e[4] = {{0, 0, 0}, {0, 0, 1}, {0, 0, 2}, {0, 0, 3}};
    e[0].next = e[0].previous = &e[3];
    _insque(&e[0], NULL);
    check_list(e, 1, (int[]){0});
    _insque(&e[1], &e[0]);
    _insque(&e[2], &e[0]);
    _insque(&e[3], &e[1]);
    check_list(e, 4, (int[]){0, 2, 1, 3});
    _remque(&e[2]);
    check_list(e, 3, (int[]){0, 1, 3});
    _remque(&e[3]);
    _remque(&e[0]);
    check_list(e + 1, 1, (int[]){1});
    _remque(&e[1]);
    /* a circle */
    e[0].next = e[0].previous = &e[0];
    _insque(&e[1], &e[0]);
    _insque(&e[2], &e[1]);
    CHECK(e[0].next == &e[1] && e[1].next == &e[2] && e[2].next == &e[0]);
    CHECK(e[0].previous == &e[2] && e[2].previous == &e[1] && e[1].previous == &e[0]);
    _remque(&e[1]);
    CHECK(e[0].next == &e[2] && e[0].previous == &e[2] && e[2].next == &e[0] && e[2].previous == &e[0]);
}

int main(void)
{
    make_names();
    random_operations(0);
    random_operations(KEYS);
    edges_of_tables();
    failing_memory();
    full_slots();
    a_table_a_thread();
    linear_search();
    lists();
    return check_done();
}
