// __heap_validate: looks a block over, or the whole heap, without trusting what it finds.

#include "heap/small_heap.h"
#include "heap/system_tier.h"

#include <malloc.h>

namespace vexrt {

namespace {

bool is_word_aligned(const void *address) {
    return reinterpret_cast<uintptr_t>(address) % sizeof(Word) == 0;
}

} // namespace

bool SmallHeap::holds_word(const Word *word) const {
    return is_word_aligned(word) && bottom_ < word && word < top_;
}

// Follows the whole list: a node must be a free block of this bin, and its neighbours must know it.
// A list with more nodes than the heap can have goes round without coming back to its head.
bool SmallHeap::bin_is_valid(unsigned bin) const {
    Word *head = bins_.heads[bin];
    if (!head) return true;
    const BinIndex &index = bins_.indexes[bin];
    auto most = static_cast<Word>(top_ - bottom_) / minimum_block;
    Word *node = head;
    Word count = 0;
    do {
        Word size = *node;
        if (is_in_use(size) || size < minimum_block || bin_of(size) != bin) return false;
        if (size > static_cast<Word>(node - bottom_) || node[1 - static_cast<int>(size)] != size)
            return false;
        Word *next = next_node(node), *previous = previous_node(node);
        if (!holds_word(next) || !holds_word(previous)) return false;
        if (previous_node(next) != node || next_node(previous) != node) return false;
        if (index.is_active() && !index.holds(node)) return false;
        node = next;
    } while (node != head && ++count < most);
    return node == head && (!index.is_active() || index.live() == count + 1);
}

bool SmallHeap::segment_is_valid(Segment *segment) const {
    Word total = size_of_tag(segment->start);
    if (!is_in_use(segment->start) || total > static_cast<Word>(top_ + 1 - &segment->start))
        return false;
    Word *end = segment->end();
    if (*end != segment->start) return false;
    for (Word *header = segment->first_block(); header != end;) {
        Word size = size_of_tag(*header);
        if (size == 0 || size > static_cast<Word>(end - header)) return false;
        if (header[size - 1] != *header) return false;
        header += size;
    }
    return true;
}

bool SmallHeap::is_valid() const {
    if (!newest_) return true;
    for (unsigned bin = 0; bin < bin_count; ++bin) {
        Word *head = bins_.heads[bin];
        if (head && (bin < bins_.lowest || !holds_word(head) || !bin_is_valid(bin))) return false;
    }
    if (bins_.always_zero != 0) return false;
    auto most = static_cast<Word>(top_ - bottom_);
    for (Segment *segment = newest_; segment; segment = segment->older) {
        auto *start = reinterpret_cast<Word *>(segment);
        if (start < bottom_ || start >= top_ || !is_word_aligned(start)) return false;
        if (!segment_is_valid(segment) || --most == 0) return false;
    }
    return true;
}

namespace {

bool small_block_is_valid(const void *block) {
    return under_heap_lock([block] { return small_heap.is_block(block); });
}

bool small_heap_is_valid() {
    return under_heap_lock([] { return small_heap.is_valid(); });
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" int __heap_validate(const void *block) {
    if (!block) return small_heap_is_valid() && system_heap_is_valid();
    return small_heap.owns(block) ? small_block_is_valid(block) : system_block_is_valid(block);
}
