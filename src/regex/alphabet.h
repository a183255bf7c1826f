// What an automaton reads: the category of a byte, or one of two symbols for the end of the text.
#pragma once

#include "regex/program.h"

namespace vexrt {

// What assertions see of the byte on one side of a position, as bits.
using Kind = unsigned;
constexpr Kind at_line = 1; // the start or the end of a line is there
constexpr Kind at_word = 2; // the byte belongs to a word
constexpr unsigned kind_count = 4;

using Symbol = uint32_t;

struct Alphabet {
    const unsigned short *category_of;
    Symbol size;                                   // the two symbols for the end included
    Symbol end_of_line, end_within_line;           // the text's end, without and with REG_NOTEOL
    unsigned char kinds[byte_count + 3];           // by symbol
    unsigned char representatives[byte_count + 3]; // a byte of the category

    void create(const Program &program);
    bool is_end(Symbol symbol) const { return symbol >= end_of_line; }
};

// Whether an assertion holds between two bytes.
inline bool holds(Op assertion, Kind before, Kind after) {
    switch (assertion) {
    case Op::line_start: return before & at_line;
    case Op::line_end: return after & at_line;
    case Op::word_start: return !(before & at_word) && (after & at_word);
    default: return (before & at_word) && !(after & at_word);
    }
}

inline bool is_assertion(Op op) {
    return op == Op::line_start || op == Op::line_end || op >= Op::word_start;
}

// The text of one search. What is outside of it is not looked at.
struct Text {
    const unsigned char *start, *end;
    Kind before;       // what stands before its start
    Symbol end_symbol; // what stands behind its end
};

} // namespace vexrt
