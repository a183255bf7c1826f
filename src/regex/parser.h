// Both grammars.
#pragma once

#include "regex/tree.h"

namespace vexrt {

// Builds the tree of the pattern. Returns 0 or an error code of <regex.h>.
int parse(Tree &tree, const char *pattern, size_t length, int flags);

// What a pattern is read from.
struct Reader {
    const unsigned char *at, *end;

    bool more() const { return at < end; }
    bool sees(char c) const { return at < end && *at == static_cast<unsigned char>(c); }
    bool sees(char first, char second) const {
        return end - at >= 2 && at[0] == static_cast<unsigned char>(first) &&
               at[1] == static_cast<unsigned char>(second);
    }
    bool eat(char c) { return sees(c) && ++at; }
    bool eat(char first, char second) { return sees(first, second) && (at += 2); }
};

// Parses what stands behind the opening bracket, its closing one included, into `set`.
int parse_bracket(Reader &reader, ByteSet &set, int flags);

// Adds the other case of every letter.
void fold_case(ByteSet &set);

} // namespace vexrt
