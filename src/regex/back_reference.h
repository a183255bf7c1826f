// The search for expressions with back-references: by trying, with a bound on the number of steps.
#pragma once

#include "regex/alphabet.h"

namespace vexrt {

// Looks for a match that starts at `from` or later and stores it. Returns a code of <regex.h>.
int search_back_references(const Program &program, const Text &text, const Alphabet &alphabet,
                           const unsigned char *from, const unsigned char *origin,
                           regmatch_t *matches, size_t count);

} // namespace vexrt
