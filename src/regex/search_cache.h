// What a search needs besides the program: the two automata with the states found so far. It is
// kept with the program from one search to the next.
//
// A search takes the cache out of the program and puts it back when it is done. One that finds none
// there, because another thread's has it, makes its own; so nobody waits.
#pragma once

#include "regex/forward.h"
#include "regex/locator.h"

namespace vexrt {

struct SearchCache {
    bool one_word; // which of the two it is
    Alphabet alphabet;
    bool has_locator = false; // made when a search first needs it
    Locator locator;
};

template <typename StateSet>
struct SearchCacheOf : SearchCache {
    Forward<StateSet> forward;
};

// Null without memory.
template <typename StateSet>
SearchCacheOf<StateSet> *take_cache(const Program &program);

void put_cache_back(const Program &program, SearchCache *cache);

} // namespace vexrt
