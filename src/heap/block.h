// The blocks of the small tier: boundary tags, and the lists of free ones.
//
// Everything is counted in 32-bit words. The first and the last word of a block, its header and its
// footer, both hold its size, with bit 31 set while it is in use; the program's memory lies between
// them. Either neighbour of a block is thus found in one step, and merging takes constant time.
//
// A free block keeps its list node at its end: the footer, before it the pointer to the next node,
// before that the one to the previous node. Nodes are known by the addresses of their footers, so a
// block that loses words at its front stays where it is in its list.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace vexrt {

using Word = uint32_t;

constexpr Word in_use_bit = 0x80000000;
constexpr Word minimum_block = 4;
constexpr Word tag_words = 2; // header and footer

inline Word size_of_tag(Word tag) { return tag & ~in_use_bit; }
inline bool is_in_use(Word tag) { return tag & in_use_bit; }

inline Word *footer_of(Word *header, Word size) { return header + size - 1; }
inline const Word *footer_of(const Word *header, Word size) { return header + size - 1; }

inline void write_tags(Word *header, Word size, Word mark) {
    *header = size | mark;
    *footer_of(header, size) = size | mark;
}

inline Word *header_of(const void *user) {
    return static_cast<Word *>(const_cast<void *>(user)) - 1;
}

// What the program may use of a block, in bytes.
inline size_t usable_bytes(Word size) { return (size - tag_words) * sizeof(Word); }

// The size of the block for a request of so many bytes.
inline Word block_words(size_t bytes) {
    Word words = bytes / sizeof(Word) + (bytes % sizeof(Word) != 0);
    return words < 2 ? minimum_block : words + tag_words;
}

inline Word *&next_node(Word *node) { return reinterpret_cast<Word **>(node)[-1]; }
inline Word *&previous_node(Word *node) { return reinterpret_cast<Word **>(node)[-2]; }

} // namespace vexrt
