// The segregated lists of free blocks.
#pragma once

#include "heap/bin_index.h"

namespace vexrt {

// Bin 0 takes blocks of up to 8 words, each further one twice that, the last one all the rest.
constexpr unsigned bin_count = 8;
constexpr unsigned last_bin = bin_count - 1;

inline unsigned bin_of(Word size) {
    unsigned bin = 29 - static_cast<unsigned>(__builtin_clz((size - 1) | 7));
    return bin < last_bin ? bin : last_bin;
}

// Circular, doubly linked lists.
struct Bins {
    Word *heads[bin_count]; // null: empty
    Word always_zero;       // stands guard behind the heads
    unsigned lowest;        // no bin below this one has a node
    bool indexed;           // whether any bin has an index
    BinIndex indexes[bin_count];

    void insert(Word *node, unsigned bin); // as the new head
    void unlink(Word *node, unsigned bin);

    // Gives a block another size, by words in front of it: its node stays, and stays in its place
    // in the list when the bin is the same.
    [[gnu::always_inline]] void resize(Word *node, Word from, Word to) {
        unsigned old_bin = bin_of(from), bin = bin_of(to);
        if (__builtin_expect(bin != old_bin, false)) return move(node, old_bin, to);
        write_tags(node - to + 1, to, 0);
        if (__builtin_expect(indexed, false)) index_resize(node, bin);
    }

    // The first block of at least so many words; the one that ends at `top` comes last in its bin
    // when it is the head, so that growth can extend it.
    [[gnu::always_inline]] Word *find(Word words, const Word *top) {
        unsigned bin = bin_of(words);
        if (bin < lowest) bin = lowest;
        for (; bin < bin_count; ++bin) {
            Word *head = heads[bin];
            if (!head) continue;
            if (*head >= words && (head + 1 != top || next_node(head) == head)) return head;
            if (Word *node = search(bin, words, top)) return node;
        }
        return nullptr;
    }

private:
    void index_add(Word *node, unsigned bin);
    void index_remove(Word *node, unsigned bin);
    void index_resize(Word *node, unsigned bin);
    void move(Word *node, unsigned old_bin, Word size);
    Word *search(unsigned bin, Word words, const Word *top);
};

} // namespace vexrt
