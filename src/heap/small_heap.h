// The small tier: boundary-tagged blocks in one contiguous arena, served first fit from segregated
// free lists. Its functions expect the heap lock to be held, except `owns`.
//
// The arena is reserved whole on first need and committed in steps of 64 KiB from its start. A step
// that continues the newest segment enlarges it; any other begins a new one. A segment opens with a
// link to the next older one and a sentinel and closes with another sentinel; sentinels are in use,
// so that no block merges across them.
#pragma once

#include "core/lock.h"
#include "heap/block.h"

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
    void *allocate(Word words) {
        Word *node = find(words);
        if (__builtin_expect(!node, false)) {
            node = grow(words);
            if (!node) return nullptr;
        }
        return carve(node, words);
    }

    // False, and nothing happens, when this is not a block in use.
    bool release(void *user);

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
    Word *find(Word words) const {
        unsigned bin = bin_of(words);
        if (bin < bins_.lowest) bin = bins_.lowest;
        for (; bin < bin_count; ++bin) {
            Word *start = bins_.heads[bin];
            if (!start) continue;
            // The block below the top comes last: growth then extends it.
            if (start + 1 == top_) start = next_node(start);
            Word *node = start;
            do {
                if (*node >= words) return node;
                node = next_node(node);
            } while (node != start);
        }
        return nullptr;
    }

    // Hands out the lower words of a free block, or all of it when too little would be left.
    void *carve(Word *node, Word words) {
        Word size = *node, rest = size - words;
        Word *header = node - size + 1;
        if (rest < minimum_block) {
            bins_.unlink(node, bin_of(size));
            words = size;
        } else {
            write_tags(header + words, rest, 0);
            bins_.move(node, bin_of(size), bin_of(rest));
        }
        write_tags(header, words, in_use_bit);
        return header + 1;
    }

    bool has_sound_tags(const Word *header) const {
        Word tag = *header, size = size_of_tag(tag);
        if (reinterpret_cast<uintptr_t>(header) % sizeof(Word) != 0) return false;
        if (!is_in_use(tag) || size - 1 >= static_cast<Word>(top_ - header)) return false;
        return header[size - 1] == tag;
    }

    void shorten(Word *header, Word size, Word words);
    void extend(Word *header, Word size, Word shortfall);

    Word *grow(Word words);
    char *commit(Word bytes);
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
class HeapLocked {
public:
    HeapLocked() : plain_(begin_plain_section()) {
        if (__builtin_expect(!plain_, false)) static_locks[lock_heap].enter();
    }
    ~HeapLocked() {
        if (__builtin_expect(plain_, true))
            end_plain_section();
        else
            static_locks[lock_heap].leave();
    }
    HeapLocked(const HeapLocked &) = delete;
    HeapLocked &operator=(const HeapLocked &) = delete;

private:
    bool plain_;
};

} // namespace vexrt
