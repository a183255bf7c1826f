/* <search.h> - POSIX searching: arrays, trees, hash tables, and linked lists. None of it takes locks: two
   threads must not use one array, tree or list at the same time. */
#ifndef _SEARCH_H
#define _SEARCH_H

#include <_vexrt.h>

/* What _hsearch() stores: a string and what belongs to it. */
typedef struct entry {
    char *key;
    void *data;
} ENTRY;

typedef enum { FIND, ENTER } ACTION;

/* When _twalk() comes to a node: before, between and after its children, or once as it has none. */
typedef enum { preorder, postorder, endorder, leaf } VISIT;

_VEXRT_BEGIN

/* ---- Unsorted arrays ---- */

/*
 * Search *nelp elements of `width` bytes from `base` on, one after the other; compar(key, element) is 0 for
 * the one. Return its address. When there is none, _lfind() returns null and _lsearch() copies `width`
 * bytes from `key` behind the last element, for which there must be room, and adds 1 to *nelp.
 */
void *_lfind(const void *key, const void *base, size_t *nelp, size_t width,
             int (*compar)(const void *, const void *));
void *_lsearch(const void *key, void *base, size_t *nelp, size_t width,
               int (*compar)(const void *, const void *));

/* ---- Trees ---- */

/*
 * A tree is a variable of the caller's, null at first, whose address is `rootp`. It stays balanced: a search
 * takes at most 1.44 log2(n) + 1 comparisons. A node begins with the pointer that was the `key` of the
 * _tsearch() which made it: *(void **)node. Nodes stay where they are until they are deleted.
 *
 * _tsearch() returns the node whose key compares equal to `key`, a new one if there is none; null with ENOMEM,
 * EINVAL (null rootp). _tfind() returns null instead of making one and sets no errno. The comparator
 * may leave by longjmp().
 */
void *_tsearch(const void *key, void **rootp, int (*compar)(const void *, const void *));
void *_tfind(const void *key, void *const *rootp, int (*compar)(const void *, const void *));

/* Deletes a node. Returns its parent, or some pointer that is not null and not a node if it was the root;
   null when there is no such node. What the key points to is the caller's. */
void *_tdelete(const void *_VEXRT_RESTRICT key, void **_VEXRT_RESTRICT rootp,
               int (*compar)(const void *, const void *));

/* Calls action(node, which, depth) for the nodes of a tree or, from any node on, a part of it, the smaller
   keys first. The depth of `root` is 0. The action must not change the tree. */
void _twalk(const void *root, void (*action)(const void *node, VISIT which, int depth));

/* ---- Hash tables ---- */

/*
 * Every thread can have one table; it is freed with the thread. `nel` entries find room without further
 * memory; the table grows when there are more. Returns nonzero, or 0 with ENOMEM, or EINVAL when the
 * thread has a table already.
 */
int _hcreate(size_t nel);

/*
 * Returns the entry whose key equals item.key. If there is none: for ENTER a new one, a copy of `item` (the
 * string itself is not copied), null with ENOMEM without memory; for FIND null with ESRCH. EINVAL: no
 * table, a null key, no such action. Entries stay where they are; their data may be changed.
 */
ENTRY *_hsearch(ENTRY item, ACTION action);

/* Frees the table, but not the keys and data. Another can be made then. */
void _hdestroy(void);

/* ---- Linked lists ---- */

/*
 * The elements of a list are structures that begin with a pointer to the next one and a pointer to the one
 * before. _insque() puts an element behind `pred`; with a null `pred` it becomes a list of its own, both
 * pointers null. _remque() takes an element out; its own pointers stay. A list may be a circle.
 */
void _insque(void *element, void *pred);
void _remque(void *element);

#ifdef _VEXRT_POSIX
/* The POSIX spellings. */
void *lfind(const void *key, const void *base, size_t *nelp, size_t width,
            int (*compar)(const void *, const void *));
void *lsearch(const void *key, void *base, size_t *nelp, size_t width,
              int (*compar)(const void *, const void *));
void *tsearch(const void *key, void **rootp, int (*compar)(const void *, const void *));
void *tfind(const void *key, void *const *rootp, int (*compar)(const void *, const void *));
void *tdelete(const void *_VEXRT_RESTRICT key, void **_VEXRT_RESTRICT rootp,
              int (*compar)(const void *, const void *));
void twalk(const void *root, void (*action)(const void *node, VISIT which, int depth));
int hcreate(size_t nel);
ENTRY *hsearch(ENTRY item, ACTION action);
void hdestroy(void);
void insque(void *element, void *pred);
void remque(void *element);
#endif

_VEXRT_END

#endif
