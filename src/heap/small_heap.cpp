// The small tier: release, resizing, aligned blocks and growth.

#include "heap/small_heap.h"

#include "platform/kernel32.h"

#include <malloc.h>

extern "C" unsigned int __bheap_threshold = 1024;

namespace vexrt {

SmallHeap small_heap;

namespace {

constexpr Word growth_step = 16384; // words: 64 KiB
constexpr Word arena_bytes = 0x2000000;

} // namespace

void SmallHeap::insert(Word *header, Word size) {
    write_tags(header, size, 0);
    last_grown_bin_ = bin_of(size);
    bins_.insert(footer_of(header, size), last_grown_bin_);
}

// ---- resizing ----------------------------------------------------------------------------------

bool SmallHeap::resize(void *user, Word words) {
    Word *header = header_of(user);
    Word size = size_of_tag(*header);
    if (size >= words) {
        shorten(header, size, words);
        return true;
    }
    Word following = header[size], shortfall = words - size;
    if (is_in_use(following) || following < shortfall) return false;
    extend(header, size, shortfall);
    return true;
}

// A tail that would be no block of its own stays with this one.
void SmallHeap::shorten(Word *header, Word size, Word words) {
    if (size - words < minimum_block) return;
    write_tags(header + words, size - words, in_use_bit);
    write_tags(header, words, in_use_bit);
    release(header + words + 1);
}

// Takes words from the front of the following free block, and all of it when too little would be
// left of it.
void SmallHeap::extend(Word *header, Word size, Word shortfall) {
    Word following = header[size], rest = following - shortfall;
    Word *node = footer_of(header + size, following);
    if (rest < minimum_block) {
        bins_.unlink(node, bin_of(following));
        shortfall = following;
    } else {
        bins_.resize(node, following, rest);
    }
    write_tags(header, size + shortfall, in_use_bit);
}

// A gap in front of the aligned block that is too small for a block of its own stays in use for
// ever; its tags are there so that the walk over the blocks can pass it.
void *SmallHeap::allocate_aligned(size_t alignment, size_t bytes) {
    Word words = block_words(bytes);
    size_t least = usable_bytes(minimum_block) - sizeof(Word) + 1;
    void *user = allocate(block_words((bytes < least ? least : bytes) + alignment - 1));
    if (!user) return nullptr;
    Word *gap_header = header_of(user);
    Word size = size_of_tag(*gap_header);
    auto aligned = (reinterpret_cast<uintptr_t>(user) + alignment - 1) & ~(alignment - 1);
    Word *header = header_of(reinterpret_cast<void *>(aligned));
    Word gap = static_cast<Word>(header - gap_header);
    write_tags(header, size - gap, in_use_bit);
    shorten(header, size - gap, words);
    if (gap > 0) write_tags(gap_header, gap, in_use_bit);
    if (gap >= minimum_block) release(user);
    return header + 1;
}

// ---- growth ------------------------------------------------------------------------------------

// Makes a free block of at least `words` and returns its node. When that fails, every later request
// goes to the system: an exhausted arena is not tried again.
[[gnu::noinline]] Word *SmallHeap::grow(Word words) {
    Word step_words = ((words + 3) & ~(growth_step - 1)) + growth_step;
    auto *range = reinterpret_cast<Word *>(commit(step_words));
    if (!range) {
        __bheap_threshold = 0;
        return nullptr;
    }
    if (newest_ && range == top_ + 1)
        extend_newest(step_words);
    else
        add_segment(range, step_words);
    return bins_.heads[last_grown_bin_];
}

// Commits the arena's next words.
char *SmallHeap::commit(Word words) {
    if (words >= arena_bytes / sizeof(Word)) return nullptr;
    Word bytes = words * sizeof(Word);
    if (!arena_)
        arena_ =
            static_cast<char *>(VirtualAlloc(nullptr, arena_bytes, MEM_RESERVE, PAGE_NOACCESS));
    MEMORY_BASIC_INFORMATION region;
    if (!arena_ || !VirtualQuery(arena_, &region, sizeof region)) return nullptr;
    SIZE_T committed = region.State == MEM_COMMIT ? region.RegionSize : 0;
    if (committed >= arena_bytes || committed + bytes >= arena_bytes) return nullptr;
    char *range = arena_ + committed;
    // A program that changes the protection of pages in the arena makes it look shorter.
    if (newest_ && range <= reinterpret_cast<char *>(top_)) return nullptr;
    return static_cast<char *>(VirtualAlloc(range, bytes, MEM_COMMIT, PAGE_READWRITE));
}

// The old end sentinel becomes the header of a block over the new words; releasing that merges it
// with what was free below the old top.
void SmallHeap::extend_newest(Word words) {
    Word *header = top_;
    Word total = size_of_tag(newest_->start) + words;
    newest_->start = total | in_use_bit;
    top_ = newest_->end();
    *top_ = total | in_use_bit;
    write_tags(header, words, in_use_bit);
    release(header + 1);
}

void SmallHeap::add_segment(Word *range, Word words) {
    auto *segment = reinterpret_cast<Segment *>(range);
    segment->older = newest_;
    write_tags(&segment->start, words - 1, in_use_bit);
    newest_ = segment;
    top_ = segment->end();
    if (!bottom_ || range < bottom_) bottom_ = range;
    insert(segment->first_block(), words - 3); // less the link and the sentinels
}

void SmallHeap::destroy() {
    if (arena_) VirtualFree(arena_, 0, MEM_RELEASE);
    *this = SmallHeap{};
}

} // namespace vexrt
