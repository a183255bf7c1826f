/* bsearch and bsearch_s. */
#include "check.h"

#include <stdlib.h>

/* The key comes first: it is a long long here, the elements are shorts. */
static int calls;
static int compare(const void *key, const void *element)
{
    long long k = *(const long long *)key;
    short e = *(const short *)element;
    ++calls;
    return (k > e) - (k < e);
}

static int compare_with_context(const void *key, const void *element, void *context)
{
    return *(int *)context * compare(key, element);
}

static void every_key(void)
{
    static short numbers[130];
    for (size_t count = 0; count < 130; ++count) {
        for (size_t i = 0; i < count; ++i) numbers[i] = (short)(i * 2);
        for (long long key = -1; key <= (long long)count * 2; ++key) {
            short *due = key >= 0 && key % 2 == 0 && (size_t)key < count * 2 ? numbers + key / 2 : NULL;
            calls = 0;
            CHECK(bsearch(&key, numbers, count, sizeof(short), compare) == due);
            CHECK(calls <= 8 && (count || calls == 0));
        }
    }
}

static int handled;
static void handler(const char *message, void *instance, errno_t error) { handled = error; }

static void checked_form(void)
{
    static const short falling[] = {9, 7, 5, 3, 1};
    static const struct {
        const char *name;
        int key, base, comparator;
        rsize_t count, size;
        int violation;
    } cases[] = {
        {"nothing to search", 0, 0, 0, 0, 2, 0},   {"null key", 0, 1, 1, 5, 2, EINVAL},
        {"null base", 1, 0, 1, 5, 2, EINVAL},      {"null comparator", 1, 1, 0, 5, 2, EINVAL},
        {"too many", 1, 1, 1, 0x80000000u, 2, EINVAL}, {"too large", 1, 1, 1, 5, 0x80000000u, EINVAL},
        {"too large, none", 0, 0, 0, 0, 0x80000000u, EINVAL},
    };
    int context = -1;
    long long key = 3;
    CHECK(bsearch_s(&key, falling, 5, sizeof(short), compare_with_context, &context) == falling + 3);
    key = 4;
    CHECK(bsearch_s(&key, falling, 5, sizeof(short), compare_with_context, &context) == NULL);
    set_constraint_handler_s(handler);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        check_label = cases[i].name;
        handled = 0;
        CHECK(!bsearch_s(cases[i].key ? &key : NULL, cases[i].base ? falling : NULL, cases[i].count,
                         cases[i].size, cases[i].comparator ? compare_with_context : NULL, &context));
        CHECK_INT(handled, cases[i].violation);
    }
    check_label = "";
    set_constraint_handler_s(NULL);
}

int main(void)
{
    every_key();
    checked_form();
    return check_done();
}
