#include "regex/alphabet.h"

#include <ctype.h>

namespace vexrt {

// A category lies wholly inside or outside of what an assertion sees, if the program has one: see
// the parser. Without assertions the kinds are all the same, so that they divide no states.
void Alphabet::create(const Program &program) {
    category_of = program.categories;
    end_of_line = program.category_count;
    end_within_line = end_of_line + 1;
    size = end_within_line + 1;
    for (Symbol symbol = 0; symbol < size; ++symbol) kinds[symbol] = 0;
    bool lines = false, words = false;
    for (uint32_t i = program.first_state; i < program.last_state; ++i) {
        Op op = op_of(program.strip[i]);
        lines |= op == Op::line_start || op == Op::line_end;
        words |= op == Op::word_start || op == Op::word_end;
    }
    for (unsigned byte = 0; byte < byte_count; ++byte) {
        Symbol symbol = category_of[byte];
        representatives[symbol] = static_cast<unsigned char>(byte);
        if (lines && (program.compile_flags & REG_NEWLINE) && byte == '\n')
            kinds[symbol] |= at_line;
        if (words && (isalnum(static_cast<int>(byte)) || byte == '_')) kinds[symbol] |= at_word;
    }
    if (lines) kinds[end_of_line] = at_line;
}

} // namespace vexrt
