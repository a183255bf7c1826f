// Finds where the leftmost match ends, the longest of those, from left to right.
//
// The automaton's threads run in groups of the same starting point, the oldest first; a state is
// held by the oldest group that reaches it. When a group reaches the end of the program there is a
// match: younger groups can no longer win and are dropped, and no new ones start; older ones may
// still, and the group itself may find a longer match. So the last match seen when all groups have
// died is the one. The ordered groups are one state of a deterministic automaton, which is cached;
// it does not say where the groups started.
//
// Most texts hold long stretches where no thread is alive. The bytes that leave this state are put
// into a table when a text is first long enough for that to pay.
//
// An assertion needs the bytes on both sides of it, so instructions between two bytes are run when
// the second one is known, and a match shows one symbol late.
#pragma once

#include "regex/alphabet.h"
#include "regex/state_cache.h"
#include "regex/state_sets.h"

namespace vexrt {

enum class Outcome { found, none, no_memory };

template <typename StateSet>
class Forward {
public:
    [[nodiscard]] bool create(const Program &program, const Alphabet &alphabet);

    // Sets `end`. With `any_end` it is that of the first match to end.
    Outcome find_end(const Text &text, bool any_end, const unsigned char *&end);

private:
    // A key is `searching` and the kind of the byte before, then the leaves whose byte was the last
    // one, group by group, with `boundary` behind every group.
    static constexpr uint32_t searching = 0x100, boundary = 0;

    // A transition is the address of the next state, with these bits.
    static constexpr uint32_t special = 1; // something is to be looked at
    static constexpr uint32_t matched = 2; // a match ends before the symbol
    static constexpr uint32_t unknown = special;
    static CachedState *state_of(uint32_t transition) {
        return reinterpret_cast<CachedState *>(transition & ~(special | matched));
    }

    static constexpr ptrdiff_t long_text = 512;

    CachedState *initial_state(Kind before);
    void find_leaving_bytes();
    const unsigned char *rest(const unsigned char *at, const unsigned char *end) const;
    bool is_resting(const CachedState *state) const {
        return leaving_known_ && state == initial_[0];
    }
    bool is_dead(const CachedState *state) const {
        return state->key_size == 1 && !(*cache_.key_of(state) & searching);
    }
    uint32_t build(CachedState *state, Symbol symbol);
    CachedState *add_built();
    bool step(const uint32_t *key, size_t size, Symbol symbol);
    bool run_from(uint32_t first, Kind before, Symbol symbol);
    void visit(uint32_t state) {
        if (seen_.insert(state)) pending_[pending_count_++] = state;
    }

    const Program *program_;
    const Alphabet *alphabet_;
    StateCache cache_;
    CachedState *initial_[kind_count];
    bool leaving_known_ = false;
    unsigned leaving_count_;
    unsigned char last_leaving_;
    bool leaves_[byte_count]; // the state in which no thread is alive
    StateSet seen_;
    Array<uint32_t> pending_; // states to be run
    uint32_t pending_count_ = 0;
    Array<uint32_t> key_; // the one being built
};

extern template class Forward<WordStates>;
extern template class Forward<ByteStates>;

} // namespace vexrt
