#include "heap/bin_index.h"

#include "heap/system_tier.h"

#include <emmintrin.h>

namespace vexrt {

namespace {

constexpr Word group = 8; // sizes that are compared at once
constexpr Word chunk = 64;
constexpr Word first_capacity = chunk * group;

// The position behind the last one in [begin, end) whose size is more than `less`; `begin` when
// there is none. Sizes fit a signed 16-bit number: only bins of up to 512 words are indexed.
Word last_above(const uint16_t *sizes, Word begin, Word end, __m128i less) {
    Word first = (end - 1) & ~(group - 1);
    unsigned valid = (4u << 2 * (end - 1 - first)) - 1; // two bits of the mask for each size
    for (Word i = first;; i -= group, valid = ~0u) {
        auto eight = _mm_load_si128(reinterpret_cast<const __m128i *>(sizes + i));
        auto mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpgt_epi16(eight, less))) & valid;
        if (mask) return i + (33 - static_cast<unsigned>(__builtin_clz(mask))) / 2;
        if (i == begin) return begin;
    }
}

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
    put(count_++, node);
    ++live_;
}

void BinIndex::put(Word position, Word *node) {
    if (position % chunk == 0) bounds_[position / chunk] = 0;
    nodes_[position] = node;
    position_of(node) = position;
    set_size(position, *node);
}

bool BinIndex::holds(Word *node) const {
    Word position = position_of(node);
    return position < count_ && nodes_[position] == node && sizes_[position] != 0;
}

void BinIndex::set_size(Word position, Word size) {
    sizes_[position] = static_cast<uint16_t>(size);
    uint16_t &bound = bounds_[position / chunk];
    if (size > bound) bound = static_cast<uint16_t>(size);
}

void BinIndex::resize(Word *node) {
    if (!holds(node)) return give_up();
    set_size(position_of(node), *node);
}

// The newest entry is never a zero one.
void BinIndex::remove(Word *node) {
    if (!holds(node)) return give_up();
    sizes_[position_of(node)] = 0;
    --live_;
    while (count_ > 0 && sizes_[count_ - 1] == 0) --count_;
}

Word *BinIndex::find(Word words, Word *last) {
    if (!last) return newest(words);
    if (!holds(last)) {
        give_up();
        return nullptr;
    }
    Word position = position_of(last), size = sizes_[position];
    sizes_[position] = 0;
    Word *found = newest(words);
    set_size(position, size);
    return found ? found : (size >= words ? last : nullptr);
}

Word *BinIndex::newest(Word words) {
    if (count_ == 0) return nullptr;
    __m128i less = _mm_set1_epi16(static_cast<short>(words - 1));
    Word end = count_;
    do {
        Word chunks = last_above(bounds_, 0, (end + chunk - 1) / chunk, less);
        if (chunks == 0) return nullptr;
        Word begin = (chunks - 1) * chunk;
        if (end > begin + chunk) end = begin + chunk;
        Word found = last_above(sizes_, begin, end, less);
        if (found > begin) return nodes_[found - 1];
        bounds_[begin / chunk] = static_cast<uint16_t>(words - 1);
        end = begin;
    } while (end > 0);
    return nullptr;
}

// Squeezes the arrays where they stand when half of them is free then, else into larger ones.
bool BinIndex::make_room() {
    BinIndex old = *this;
    if (!sizes_ || live_ >= capacity_ / 2) {
        Word capacity = capacity_ ? capacity_ * 2 : first_capacity;
        Word sizes = capacity + capacity / chunk;
        auto *memory = static_cast<uint16_t *>(
            system_allocate(sizes * sizeof *sizes_ + capacity * sizeof *nodes_, sizeof(__m128i)));
        if (!memory) return false;
        sizes_ = memory;
        bounds_ = memory + capacity;
        nodes_ = reinterpret_cast<Word **>(memory + sizes);
        capacity_ = capacity;
    }
    if (!old.sizes_) return true;
    count_ = 0;
    for (Word from = 0; from < old.count_; ++from)
        if (old.sizes_[from] != 0) put(count_++, old.nodes_[from]);
    if (old.sizes_ != sizes_) system_release(old.sizes_);
    return true;
}

void BinIndex::give_up() {
    if (sizes_) system_release(sizes_);
    *this = BinIndex{};
}

} // namespace vexrt
