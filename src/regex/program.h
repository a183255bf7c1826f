// A compiled expression.
//
// The program is a strip of 32-bit words that still shows the expression's structure: every
// construct is an opening and a closing instruction with its content between them, so the strip can
// be run as an automaton from left to right (search.h) and walked as a tree from right to left
// (locator.h). A state of the automaton is an index into the strip.
#pragma once

#include "regex/byte_set.h"

#include <regex.h>
#include <stdint.h>

namespace vexrt {

enum class Op : uint32_t {
    end = 1,  // before and after the program
    byte = 2, // operand: the byte
    set = 3,  // operand: the index of a set
    line_start = 4,
    line_end = 5,
    group_open = 6, // operand: the number of the subexpression
    group_close = 7,
    back_reference = 8, // operand: the number of the subexpression
    loop_open = 9,      // content: once or more. operand: the distance to the close
    loop_close = 10,    // operand: the distance to the opening
    option_open = 11,   // content: once or not at all. operand: the distance to the close
    option_close = 12,
    choice_open = 13, // before the first alternative. operand: the distance to the next one's
    choice_exit = 14, // behind an alternative but the last. operand: the distance to the close
    choice_next = 15, // before another one. operand as with choice_open, 0 in the last
    choice_close = 16,
    repeat_open = 17, // content: the copies of something that is repeated
    repeat_close = 18,
    word_start = 19,
    word_end = 20,
};

constexpr unsigned op_shift = 26;
constexpr uint32_t op_mask = 0x7C000000;
constexpr uint32_t operand_mask = 0x00FFFFFF;

// Bits of the operands of opening and closing instructions. What the locator must know about where
// a construct ends is explained in locator.h.
constexpr uint32_t tracked_bit = 0x02000000;
constexpr uint32_t iteration_tracked_bit = 0x01000000; // loops: each iteration
constexpr uint32_t reluctant_bit = 0x01000000; // options: an empty content is as good as none

constexpr uint32_t instruction(Op op, uint32_t operand = 0) {
    return static_cast<uint32_t>(op) << op_shift | operand;
}
constexpr Op op_of(uint32_t word) { return static_cast<Op>((word & op_mask) >> op_shift); }
constexpr uint32_t operand_of(uint32_t word) { return word & operand_mask; }
constexpr bool is_tracked(uint32_t word) { return (word & tracked_bit) != 0; }
static_assert(instruction(Op::end) == 0x4000000);

constexpr uint32_t strip_limit = 1 << 20; // longer programs are refused
constexpr unsigned repetition_limit = 255;

constexpr int expression_magic = 0xF265, program_magic = 0xD245;
constexpr unsigned failed_internally = 4;
constexpr unsigned byte_count = 256;

struct SearchCache;

} // namespace vexrt

struct re_guts {
    int magic;
    uint32_t *strip;
    vexrt::ByteSet *sets;
    uint32_t set_count;
    int set_size; // the number of characters
    int compile_flags;
    uint32_t first_state, last_state;
    unsigned flags;
    uint32_t state_count;
    size_t subexpression_count;
    unsigned short categories[vexrt::byte_count]; // bytes of one category are never distinguished
    unsigned category_count;                      // category 0 included
    unsigned char *must;                          // what every match contains, or null; ends with 0
    size_t must_length;
    size_t must_reach; // how far before it a match may start, SIZE_MAX: any number of bytes
    unsigned repetition_depth;
    uint32_t *parents; // of each subexpression: the number of the one around it
    bool literal;      // the program is the must string and nothing else
    bool anchored;     // matches start at the text's start only
    bool has_assertions, has_back_references;
    mutable vexrt::SearchCache *cache; // null while a search has taken it; see search_cache.h
};

namespace vexrt {
using Program = re_guts;

// What a search leaves for the next one. Takes null.
void release_cache(SearchCache *cache);

// Whether the instruction takes one byte, and then whether it takes this one.
inline bool is_leaf(Op op) { return op == Op::byte || op == Op::set; }
inline bool takes(const Program &program, uint32_t word, unsigned byte) {
    uint32_t operand = operand_of(word);
    return op_of(word) == Op::byte ? operand == byte : program.sets[operand].has(byte);
}
} // namespace vexrt
