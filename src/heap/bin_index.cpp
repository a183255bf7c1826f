#include "heap/bin_index.h"

#include "heap/system_tier.h"

#include <emmintrin.h>

namespace vexrt {

namespace {

constexpr Word group = 8; // sizes that are compared at once
constexpr Word first_capacity = 512;

} // namespace

void BinIndex::build(Word *head) {
    if (!make_room()) return;
    Word *node = head;
    do {
        node = previous_node(node);
        add(node);
    } while (node != head && is_active());
}

void BinIndex::add(Word *node) {
    if (count_ == capacity_ && !make_room()) return give_up();
    if (count_ % group == 0)
        for (Word i = 0; i < group; ++i) sizes_[count_ + i] = 0;
    sizes_[count_] = static_cast<uint16_t>(*node);
    nodes_[count_] = node;
    position_of(node) = count_++;
    ++live_;
    if (*node > bound_) bound_ = *node;
}

bool BinIndex::holds(Word *node) const {
    Word position = position_of(node);
    return position < count_ && nodes_[position] == node && sizes_[position] != 0;
}

// The newest entry is never a zero one.
void BinIndex::remove(Word *node) {
    if (!holds(node)) return give_up();
    sizes_[position_of(node)] = 0;
    --live_;
    while (count_ > 0 && sizes_[count_ - 1] == 0) --count_;
}

void BinIndex::resize(Word *node) {
    if (!holds(node)) return give_up();
    sizes_[position_of(node)] = static_cast<uint16_t>(*node);
    if (*node > bound_) bound_ = *node;
}

Word *BinIndex::find(Word words, Word *last) {
    if (words > bound_) return nullptr;
    if (!last) {
        Word *found = newest(words);
        if (!found) bound_ = words - 1;
        return found;
    }
    uint16_t &size = sizes_[position_of(last)];
    uint16_t set_aside = size;
    size = 0;
    Word *found = newest(words);
    size = set_aside;
    return found ? found : (set_aside >= words ? last : nullptr);
}

// Sizes fit a signed 16-bit number: only bins of up to 512 words are indexed.
Word *BinIndex::newest(Word words) const {
    const __m128i *groups = reinterpret_cast<const __m128i *>(sizes_);
    __m128i less = _mm_set1_epi16(static_cast<short>(words - 1));
    for (Word i = (count_ + group - 1) / group; i-- > 0;) {
        unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpgt_epi16(groups[i], less)));
        if (mask) return nodes_[i * group + (31 - static_cast<unsigned>(__builtin_clz(mask))) / 2];
    }
    return nullptr;
}

// Squeezes the array where it stands when half of it is free then, else into a larger one.
bool BinIndex::make_room() {
    if (live_ < capacity_ / 2) {
        squeeze_into(sizes_, nodes_);
        return true;
    }
    Word capacity = capacity_ ? capacity_ * 2 : first_capacity;
    auto *sizes = static_cast<uint16_t *>(
        system_allocate(capacity * (sizeof *sizes_ + sizeof *nodes_), sizeof(__m128i)));
    if (!sizes) return false;
    uint16_t *old = sizes_;
    squeeze_into(sizes, reinterpret_cast<Word **>(sizes + capacity));
    capacity_ = capacity;
    if (old) system_release(old);
    return true;
}

void BinIndex::squeeze_into(uint16_t *sizes, Word **nodes) {
    Word to = 0;
    for (Word from = 0; from < count_; ++from) {
        if (sizes_[from] == 0) continue;
        sizes[to] = sizes_[from];
        nodes[to] = nodes_[from];
        position_of(nodes[to]) = to;
        ++to;
    }
    count_ = to;
    for (; to % group != 0; ++to) sizes[to] = 0;
    sizes_ = sizes;
    nodes_ = nodes;
}

void BinIndex::give_up() {
    if (sizes_) system_release(sizes_);
    *this = BinIndex{};
}

} // namespace vexrt
