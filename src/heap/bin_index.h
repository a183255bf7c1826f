// An index of one bin, for heaps whose free lists have grown long.
//
// First fit means: of the blocks that are large enough, the one nearest to the head of the list.
// New nodes become the head, so that is the one that joined last. The index keeps the sizes of a
// bin's blocks in the order in which they joined, close together in one array, where sixteen bytes
// at a time are compared; the list itself would have to be followed from block to block. A second
// array holds a bound for each chunk of 64 sizes, raised at once and lowered when a search has
// found it too high. A block that leaves has its size set to zero; the arrays are squeezed when
// they are full. Each block holds its position in the word before its list pointers.
//
// An index is made when a walk has turned out long and needs memory of the system's tier. Where it
// has none, or finds that a program has written into a free block, it gives itself up; the list is
// always there.
#pragma once

#include "heap/block.h"

namespace vexrt {

class BinIndex {
public:
    bool is_active() const { return sizes_ != nullptr; }

    // From a list; no effect when there is no memory.
    void build(Word *head);

    void add(Word *node);
    void remove(Word *node);
    void resize(Word *node); // its footer has the new size

    // The node that joined last of those of at least so many words; null when there is none. The
    // one that is `last` counts as the very last choice.
    Word *find(Word words, Word *last);

    bool holds(Word *node) const;
    Word live() const { return live_; }

private:
    static Word &position_of(Word *node) { return node[-3]; }

    Word *newest(Word words);
    void put(Word position, Word *node);
    void set_size(Word position, Word size);
    bool make_room();
    void give_up();

    uint16_t *sizes_;  // by position; zero for those that have left
    uint16_t *bounds_; // of the chunks: no size in one is larger
    Word **nodes_;
    Word count_, capacity_;
    Word live_; // entries that are not zero
};

} // namespace vexrt
