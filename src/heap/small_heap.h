// The small tier: boundary-tagged blocks in one contiguous arena, served first fit from segregated
// free lists. Its functions expect the heap lock to be held, except `owns`.
//
// The arena is reserved whole on first need and committed in steps of 64 KiB from its start. A step
// that continues the newest segment enlarges it; any other begins a new one. A segment opens with a
// link to the next older one and a sentinel and closes with another sentinel; sentinels are in use,
// so that no block merges across them.
#pragma once

#include "core/lock.h"
#include "heap/bins.h"

namespace vexrt {

struct Segment {
    Segment *older;
    Word start; // sentinel: the words from here to the end sentinel, both counted

    Word *end() { return footer_of(&start, size_of_tag(start)); }
    Word *first_block() { return &start + 1; }
};

class SmallHeap {
public:
    // Whether a pointer lies in the arena's used part.
    bool owns(const void *user) const {
        const Word *header = header_of(user);
        return bottom_ < header && header < top_;
    }

    // Null when the arena cannot grow; the small tier is then switched off for good.
    [[gnu::always_inline]] void *allocate(Word words) {
        Word *node = bins_.find(words, top_);
        if (__builtin_expect(!node, false)) {
            node = grow(words);
            if (!node) return nullptr;
        }
        return carve(node, words);
    }

    // False, and nothing happens, when this is not a block in use.
    [[gnu::always_inline]] bool release(void *user) {
        Word *header = header_of(user);
        if (!has_sound_tags(header)) return false;
        Word size = size_of_tag(*header), preceding = header[-1], following = header[size];
        if (!is_in_use(following) && !is_free_block(header + size, following)) return false;
        if (!is_in_use(preceding)) {
            if (!is_free_block(header - preceding, preceding)) return false;
            bins_.unlink(header - 1, bin_of(preceding));
            *header = size; // inside a free block now: a second release must not trust it
            size += preceding;
            header -= preceding;
        }
        join_lists(header, size, following);
        return true;
    }

    // Whether a pointer that the heap owns is that of a block in use with sound tags.
    bool is_block(const void *user) const { return has_sound_tags(header_of(user)); }
    size_t usable_size(const void *user) const {
        return usable_bytes(size_of_tag(*header_of(user)));
    }

    // Makes a block in use `words` long where it is; false when what follows leaves no room.
    bool resize(void *user, Word words);

    // A block for `bytes` at a multiple of `alignment`, a power of two of at least 4.
    void *allocate_aligned(size_t alignment, size_t bytes);

    bool is_valid() const;
    void destroy();

private:
    // Hands out the lower words of a free block, or all of it when too little would be left.
    [[gnu::always_inline]] void *carve(Word *node, Word words) {
        Word size = *node, rest = size - words;
        Word *header = node - size + 1;
        if (rest < minimum_block) {
            bins_.unlink(node, bin_of(size));
            words = size;
        } else {
            bins_.resize(node, size, rest);
        }
        write_tags(header, words, in_use_bit);
        return header + 1;
    }

    // Lists a released block. A free block behind it merges with it and keeps its node.
    [[gnu::always_inline]] void join_lists(Word *header, Word size, Word following) {
        if (is_in_use(following)) return insert(header, size);
        Word merged = size + following;
        unsigned bin = bin_of(merged);
        bins_.resize(footer_of(header, merged), following, merged);
        if (bin != bin_of(following)) last_grown_bin_ = bin;
    }

    void insert(Word *header, Word size);

    bool has_sound_tags(const Word *header) const {
        if (reinterpret_cast<uintptr_t>(header) % sizeof(Word) != 0) return false;
        Word tag = *header, size = size_of_tag(tag);
        if (!is_in_use(tag) || size - 1 >= static_cast<Word>(top_ - header)) return false;
        return header[size - 1] == tag;
    }

    // Whether a neighbour whose tag on this side says that it is free says so on the other side,
    // too.
    bool is_free_block(const Word *header, Word size) const {
        if (header <= bottom_ || size >= static_cast<Word>(top_ - bottom_)) return false;
        return *header == size && (footer_of(header, size) < top_) &&
               *footer_of(header, size) == size;
    }

    void shorten(Word *header, Word size, Word words);
    void extend(Word *header, Word size, Word shortfall);

    Word *grow(Word words);
    char *commit(Word words);
    void extend_newest(Word words);
    void add_segment(Word *range, Word words);

    bool holds_word(const Word *word) const;
    bool bin_is_valid(unsigned bin) const;
    bool segment_is_valid(Segment *segment) const;

    Bins bins_;
    Word *bottom_; // of the lowest segment
    Word *top_;    // the end sentinel of the newest segment
    Segment *newest_;
    unsigned last_grown_bin_; // where the latest growth or release put its node
    char *arena_;             // null: not reserved yet
};

extern SmallHeap small_heap;

// The heap lock, lock 0. No operation of the small tier calls back or nests, so while the process
// has one thread, the whole operation is one plain section and the lock itself is not touched.
template <class Operation>
[[gnu::noinline]] auto under_shared_heap_lock(Operation operation) {
    Locked guard(static_locks[lock_heap]);
    return operation();
}

template <class Operation>
[[gnu::always_inline]] inline auto under_heap_lock(Operation operation) {
    if (__builtin_expect(!begin_plain_section(), false)) return under_shared_heap_lock(operation);
    auto result = operation();
    end_plain_section();
    return result;
}

} // namespace vexrt
