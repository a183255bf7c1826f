// Binary trees that stay balanced in height (Adelson-Velsky and Landis).
//
// The two subtrees of a node differ in height by 1 at most; the node keeps the difference.
// Inserting and deleting walk down and record the way in a `Path`, change the tree below, then walk
// back up and put right the differences, turning around a node where one has become 2. Nothing is
// recursive: a tree that fills the address space has less than `Path::limit` levels.
//
// A node is moved by changing links, never by copying its key, so that callers may keep pointers to
// nodes. Comparators are called before anything changes, and may leave by a jump.

#include "core/errno.h"
#include "heap/heap.h"
#include "search/comparator.h"

#include <search.h>

namespace vexrt {

namespace {

enum Side : unsigned char { left, right };
Side opposite(Side side) { return side == left ? right : left; }

struct Node {
    const void *key; // the caller sees this one
    Node *child[2];
    signed char balance; // height of the right subtree less that of the left: -1 to 1

    bool is_leaf() const { return !child[left] && !child[right]; }
};

// What a side counts in a balance.
signed char weight(Side side) { return side == right ? 1 : -1; }

// The links from the root down to a place, and the side that was taken at each node.
struct Path {
    static constexpr unsigned limit = 48;
    Node **links[limit];
    Side sides[limit];
    unsigned depth = 0;

    Node *&descend(Node *&link, Side side) {
        links[depth] = &link;
        sides[depth++] = side;
        return link->child[side];
    }
};

// Goes down to the node with the key. Returns the link to it, or the null link where it belongs.
Node *&find(Node *&root, const void *key, PlainComparator comparator, Path &path) {
    Node **link = &root;
    while (*link) {
        int order = comparator(key, (*link)->key);
        if (order == 0) break;
        link = &path.descend(*link, order < 0 ? left : right);
    }
    return *link;
}

// The heavy side's child becomes the top.
void turn_once(Node *&top, Side heavy) {
    Node *old = top, *child = old->child[heavy];
    old->child[heavy] = child->child[opposite(heavy)];
    child->child[opposite(heavy)] = old;
    top = child;
}

// Repairs a node whose balance is 2 or -2. Returns whether the tree at this place got lower.
bool rebalance(Node *&top) {
    Side heavy = top->balance > 0 ? right : left;
    signed char lean = weight(heavy);
    Node *old = top, *child = old->child[heavy];
    if (child->balance == -lean) {
        Node *middle = child->child[opposite(heavy)];
        turn_once(old->child[heavy], opposite(heavy));
        turn_once(top, heavy);
        old->balance = static_cast<signed char>(middle->balance == lean ? -lean : 0);
        child->balance = middle->balance == -lean ? lean : 0;
        middle->balance = 0;
        return true;
    }
    turn_once(top, heavy);
    bool lower = child->balance != 0;
    old->balance = lower ? 0 : lean;
    child->balance = static_cast<signed char>(lower ? 0 : -lean);
    return lower;
}

// The place at the end of the path has become higher.
void note_growth(Path &path) {
    while (path.depth) {
        Node *&link = *path.links[--path.depth];
        link->balance = static_cast<signed char>(link->balance + weight(path.sides[path.depth]));
        if (link->balance == 0) return;
        if (link->balance == 2 || link->balance == -2) {
            rebalance(link);
            return;
        }
    }
}

// It has become lower.
void note_loss(Path &path) {
    while (path.depth) {
        Node *&link = *path.links[--path.depth];
        link->balance = static_cast<signed char>(link->balance - weight(path.sides[path.depth]));
        bool lower =
            link->balance == 0 || ((link->balance == 2 || link->balance == -2) && rebalance(link));
        if (!lower) return;
    }
}

// Takes a node out of the tree. One with two children gives its place to the node that follows it.
void unlink(Node *&link, Path &path) {
    Node *node = link;
    if (!node->child[left] || !node->child[right]) {
        link = node->child[node->child[left] ? left : right];
        note_loss(path);
        return;
    }
    unsigned at = path.depth;
    Node **place = &path.descend(link, right);
    while ((*place)->child[left]) place = &path.descend(*place, left);
    Node *next = *place;
    *place = next->child[right];
    next->child[left] = node->child[left];
    next->child[right] = node->child[right];
    next->balance = node->balance;
    link = next;
    if (path.depth > at + 1) path.links[at + 1] = &next->child[right];
    note_loss(path);
}

Node *make_node(const void *key) {
    auto *node = static_cast<Node *>(heap_allocate(sizeof(Node)));
    if (node)
        *node = {key, {nullptr, nullptr}, 0};
    else
        set_errno(ENOMEM);
    return node;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

void *_tsearch(const void *key, void **rootp, int (*compar)(const void *, const void *)) {
    if (!rootp) return set_errno(EINVAL), nullptr;
    Path path;
    Node *&link = find(*reinterpret_cast<Node **>(rootp), key, compar, path);
    if (link) return link;
    Node *node = make_node(key);
    if (!node) return nullptr;
    link = node;
    note_growth(path);
    return node;
}

void *_tfind(const void *key, void *const *rootp, int (*compar)(const void *, const void *)) {
    auto *node = rootp ? static_cast<Node *>(*rootp) : nullptr;
    while (node) {
        int order = compar(key, node->key);
        if (order == 0) break;
        node = node->child[order < 0 ? left : right];
    }
    return node;
}

void *_tdelete(const void *key, void **rootp, int (*compar)(const void *, const void *)) {
    if (!rootp) return nullptr;
    Path path;
    Node *&link = find(*reinterpret_cast<Node **>(rootp), key, compar, path);
    Node *node = link;
    if (!node) return nullptr;
    void *parent = path.depth ? static_cast<void *>(*path.links[path.depth - 1]) : rootp;
    unlink(link, path);
    heap_release(node);
    return parent;
}

// A node is not looked at any more once its last action has begun.
void _twalk(const void *root, void (*action)(const void *node, VISIT which, int depth)) {
    struct Level {
        const Node *node;
        bool left_done;
    } levels[Path::limit];
    int depth = 0;
    auto *next = static_cast<const Node *>(root);
    for (;;) {
        if (next && next->is_leaf()) {
            action(next, leaf, depth);
        } else if (next) {
            action(next, preorder, depth);
            levels[depth++] = {next, false};
            next = next->child[left];
            continue;
        }
        while (depth && levels[depth - 1].left_done) {
            --depth;
            action(levels[depth].node, endorder, depth);
        }
        if (depth == 0) return;
        Level &level = levels[depth - 1];
        level.left_done = true;
        action(level.node, postorder, depth - 1);
        next = level.node->child[right];
    }
}

} // extern "C"
