/* _tsearch, _tfind, _tdelete and _twalk: random operations against a table of what is in the tree. */
#include "check.h"
#include "script.h"

#include <search.h>
#include <setjmp.h>
#include <stdlib.h>

enum { KEYS = 1000 };
static int keys[KEYS];
static void *nodes[KEYS]; /* of the keys in the tree */
static void *root;

static unsigned random_state = 20260101;
static unsigned random_number(unsigned limit)
{
    random_state = random_state * 1664525u + 1013904223u;
    return (random_state >> 8) % limit;
}

static int comparisons;
static int compare(const void *a, const void *b)
{
    ++comparisons;
    return (*(const int *)a > *(const int *)b) - (*(const int *)a < *(const int *)b);
}

/* ---- Walking ---- */

/* What is open: the node at each depth and how many of its actions have come. */
static struct {
    const void *node;
    int actions;
} open[64];
static int open_count, seen, last_key, deepest, wrong;

static void see(const void *node, VISIT which, int depth)
{
    if (depth > deepest) deepest = depth;
    if (which == preorder || which == leaf) {
        wrong += depth != open_count; /* directly below the innermost open node */
        open[open_count].node = node;
        open[open_count++].actions = 0;
    }
    wrong += depth != open_count - 1 || open[depth].node != node;
    wrong += which != leaf && open[depth].actions++ != (int)which - (int)preorder;
    if (which == leaf || which == postorder) {
        int key = **(int *const *)node;
        wrong += key <= last_key || nodes[key] != node || *(int *const *)node != &keys[key];
        last_key = key;
        ++seen;
    }
    if (which == leaf || which == endorder) --open_count;
}

/* Order, nodes, number and depth: no more than the tree of Fibonacci has. */
static void check_tree(int count)
{
    int height = 0;
    for (int least = 0, previous = 0; least <= count; ++height) {
        int next = least + previous + 1;
        previous = least;
        least = next;
    }
    open_count = seen = wrong = 0;
    last_key = deepest = -1;
    _twalk(root, see);
    CHECK_INT(wrong, 0);
    CHECK_INT(seen, count);
    if (deepest >= height - 1) CHECK_INT(deepest, height - 2);
}

/* ---- Operations ---- */

static int add(int key)
{
    int copy = key, is_new = !nodes[key];
    void *node = _tsearch(is_new ? &keys[key] : &copy, &root, compare);
    CHECK(node && *(int **)node == &keys[key] && (is_new || node == nodes[key]));
    nodes[key] = node;
    return is_new;
}

static const void *parent_due;
static const void *looked_for, *walked[64];
static void find_parent(const void *node, VISIT which, int depth)
{
    walked[depth] = node;
    if (node == looked_for && depth > 0) parent_due = walked[depth - 1];
}

static int take(int key)
{
    int copy = key, was_there = nodes[key] != NULL;
    parent_due = NULL;
    looked_for = nodes[key];
    if (was_there) _twalk(root, find_parent);
    void *parent = _tdelete(&copy, &root, compare);
    CHECK(was_there == (parent != NULL));
    if (parent_due) CHECK(parent == parent_due);
    nodes[key] = NULL;
    return was_there;
}

static void random_operations(void)
{
    int count = 0;
    static const unsigned shares[] = {80, 50, 20, 60, 5};
    for (int phase = 0; phase < 5; ++phase)
        for (int i = 0; i < 3000; ++i) {
            int key = (int)random_number(KEYS), copy = key;
            if (random_number(100) < shares[phase]) count += add(key);
            else if (i % 8) {
                count -= nodes[key] != NULL;
                CHECK((_tdelete(&copy, &root, compare) != NULL) == (nodes[key] != NULL));
                nodes[key] = NULL;
            } else count -= take(key);
            key = copy = (int)random_number(KEYS);
            comparisons = 0;
            CHECK(_tfind(&copy, &root, compare) == nodes[key]);
            CHECK(comparisons <= 14);
            if (i % 50 == 0) check_tree(count);
        }
    for (int key = 0; key < KEYS; ++key) count -= take(key);
    CHECK(count == 0 && root == NULL);
}

/* Keys in order, the worst that can happen to a tree that is not balanced; taken out in three orders. */
static void ordered_operations(void)
{
    for (int order = 0; order < 3; ++order) {
        int count = 0;
        for (int i = 0; i < KEYS; ++i) {
            count += add(order == 0 ? i : order == 1 ? KEYS - 1 - i : i % 2 ? KEYS - i : i);
            if (i % 37 == 0) check_tree(count);
        }
        while (root) {
            count -= take(order == 0 ? **(int **)root : order == 1 ? count - 1 : KEYS - count);
            if (count % 37 == 0) check_tree(count);
        }
        CHECK_INT(count, 0);
    }
}

/* ---- The rest ---- */

static int freed;
static void overwrite(const void *node, VISIT which, int depth)
{
    if (which == leaf || which == endorder) memset((void *)node, 0xDD, 12), ++freed;
}

static jmp_buf out;
static int leave(const void *a, const void *b) { longjmp(out, 1); }

static void *__stdcall no_memory(void *heap, unsigned flags, size_t size) { return NULL; }

static void edges(void)
{
    int key = 5, other = 6;
    void *none = NULL;
    extern __declspec(dllimport) unsigned __bheap_threshold;
    CHECK_ERRNO((size_t)_tsearch(&key, NULL, compare), 0, EINVAL);
    CHECK_ERRNO((size_t)_tfind(&key, NULL, compare), 0, 0);
    CHECK_ERRNO((size_t)_tdelete(&key, NULL, compare), 0, 0);
    CHECK_ERRNO((size_t)_tfind(&key, &none, compare), 0, 0);
    CHECK_ERRNO((size_t)_tdelete(&key, &none, compare), 0, 0);
    open_count = seen = 0;
    _twalk(NULL, see);
    CHECK_INT(seen, 0);
    /* a part of a tree, and nodes that the last action does away with */
    for (int i = 0; i < 100; ++i) add(i);
    open_count = seen = wrong = 0, last_key = -1;
    _twalk(nodes[**(int **)root], see);
    CHECK(seen == 100 && wrong == 0);
    /* no memory, and a comparator that leaves: the tree stays as it was */
    unsigned threshold = __bheap_threshold;
    __bheap_threshold = 0;
    script_import("HeapAlloc", no_memory);
    CHECK_ERRNO((size_t)_tsearch(&keys[500], &root, compare), 0, ENOMEM);
    CHECK(_tsearch(&keys[50], &root, compare) == nodes[50]);
    script_restore();
    __bheap_threshold = threshold;
    if (!setjmp(out)) _tsearch(&keys[500], &root, leave);
    if (!setjmp(out)) _tdelete(&keys[50], &root, leave);
    check_tree(100);
    _twalk(root, overwrite); /* the nodes are lost, but none is read after that */
    CHECK_INT(freed, 100);
    /* the root's parent */
    root = NULL;
    _tsearch(&key, &root, compare);
    void *first = root;
    _tsearch(&other, &root, compare);
    CHECK(_tdelete(&other, &root, compare) == first);
    void *result = _tdelete(&key, &root, compare);
    CHECK(result && result != first && !root);
}

int main(void)
{
    for (int i = 0; i < KEYS; ++i) keys[i] = i;
    random_operations();
    ordered_operations();
    edges();
    return check_done();
}
