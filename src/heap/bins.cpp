#include "heap/bins.h"

namespace vexrt {

namespace {

constexpr unsigned long_walk = 24; // steps

// The blocks of the first bin have no room for a position, the sizes of the last one no bound.
bool can_be_indexed(unsigned bin) { return bin != 0 && bin != last_bin; }

} // namespace

void Bins::insert(Word *node, unsigned bin) {
    if (Word *head = heads[bin]) {
        Word *last = previous_node(head);
        next_node(node) = head;
        previous_node(node) = last;
        next_node(last) = node;
        previous_node(head) = node;
    } else {
        next_node(node) = node;
        previous_node(node) = node;
        if (bin < lowest) lowest = bin;
    }
    heads[bin] = node;
    if (__builtin_expect(indexed, false)) index_add(node, bin);
}

void Bins::unlink(Word *node, unsigned bin) {
    Word *next = next_node(node);
    if (next == node) {
        heads[bin] = nullptr;
        while (lowest < last_bin && !heads[lowest]) ++lowest;
    } else {
        Word *previous = previous_node(node);
        next_node(previous) = next;
        previous_node(next) = previous;
        if (heads[bin] == node) heads[bin] = next;
    }
    if (__builtin_expect(indexed, false)) index_remove(node, bin);
}

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
