#include "heap/bins.h"

namespace vexrt {

namespace {

constexpr unsigned long_walk = 24; // steps

// The blocks of the first bin have no room for a position, the sizes of the last one no bound.
bool can_be_indexed(unsigned bin) { return bin != 0 && bin != last_bin; }

} // namespace

void Bins::index_add(Word *node, unsigned bin) {
    if (indexes[bin].is_active()) indexes[bin].add(node);
}

void Bins::index_remove(Word *node, unsigned bin) {
    if (indexes[bin].is_active()) indexes[bin].remove(node);
}

void Bins::index_resize(Word *node, unsigned bin) {
    if (indexes[bin].is_active()) indexes[bin].resize(node);
}

// Leaving comes before the tags are written: the header of a very small block lies where an index
// keeps the position.
[[gnu::noinline]] void Bins::move(Word *node, unsigned old_bin, Word size) {
    unlink(node, old_bin);
    write_tags(node - size + 1, size, 0);
    insert(node, bin_of(size));
}

[[gnu::noinline]] Word *Bins::search(unsigned bin, Word words, const Word *top) {
    Word *head = heads[bin];
    bool head_is_last = head + 1 == top;
    if (indexes[bin].is_active()) return indexes[bin].find(words, head_is_last ? head : nullptr);
    Word *start = head_is_last ? next_node(head) : head;
    Word *node = start, *found = nullptr;
    unsigned steps = 0;
    do {
        if (*node >= words)
            found = node;
        else
            node = next_node(node);
        ++steps;
    } while (!found && node != start);
    if (steps > long_walk && can_be_indexed(bin)) {
        indexes[bin].build(head);
        indexed = true;
    }
    return found;
}

} // namespace vexrt
