// Which ways to match are the best, step by step from right to left.
//
// The rule. Of the ways to match, the one is taken whose subpatterns are the longest, earlier ones
// first, and a pattern before its own parts. Seen from a point within the expression and a position
// in the text: the constructs around the point have started already, and better is the way on that
// ends the outermost of them later; if both end it there, the next one, and so on inwards. If all
// end alike the ways differ in nothing that matters but which alternative is taken, and that is the
// earlier one. Which way on is best does not depend on how the point was reached.
//
// So the best ways can be found from right to left: for every leaf (an instruction that takes a
// byte) the best way behind it, from those behind the leaves that take the next byte. A way is told
// by the chain of the ends of the constructs around its leaf, the outermost first. Only constructs
// whose end is not given by that of the construct around them count; those are marked as tracked.
// The chains of all leaves are kept as a sorted list, worst first, with the number of links that
// each shares with the one before it. That is all that the next step needs, since where the ends
// are does not matter, only their order. What a chain gains in a step is ends at the current
// position, which are earlier than all ends before.
//
// A step is a sweep over the strip from right to left. It decides at each construct that leaves a
// choice which way is the best. A loop is met at its close, before what a further iteration would
// be like is known; so a first sweep finds the best iteration of each loop that takes the next
// byte. A further iteration that takes nothing is never considered: it would not be longer than
// none.
//
// A sweep takes time in proportion to the strip.
#pragma once

#include "regex/alphabet.h"
#include "regex/array.h"

namespace vexrt {

// The way on from a point of the expression: it shares its first `old` links with entry `entry` of
// the sorted list, which is the first one of those that have them in common; its other links end at
// the current position. The greater is the better.
struct Way {
    int32_t entry; // -1: there is none
    uint32_t old;

    bool alive() const { return entry >= 0; }
    bool operator==(const Way &other) const { return entry == other.entry && old == other.old; }
    bool operator>(const Way &other) const {
        return entry != other.entry ? entry > other.entry : old > other.old;
    }
};
constexpr Way no_way{-1, 0};

// One of the sorted chains. `shared` of the first one is `shares_none`.
struct ChainEntry {
    uint32_t leaf;
    int32_t shared;
};
constexpr int32_t shares_none = -1;

class Sweeper {
public:
    [[nodiscard]] bool create(const Program &program);

    // From the ways behind the leaves that take the next byte, and behind the program if `at_end`,
    // to those at this position. False without memory. The results are valid until the next step.
    bool step(const ChainEntry *entries, size_t count, bool at_end, Kind before, Kind after);

    bool starts() const { return starts_; } // there is a way from the program's start on
    const Array<ChainEntry> &entries() const { return entries_; }
    // A bit for each instruction: go into this alternative or option, iterate once more.
    const Array<uint32_t> &decisions() const { return decisions_; }
    static bool decided(const uint32_t *decisions, uint32_t state) {
        return decisions[state / 32] >> (state % 32) & 1;
    }

private:
    // A construct whose end counts.
    struct Construct {
        uint32_t parent, close, depth;
    };
    struct Reached {
        uint32_t leaf;
        Way way;
    };
    // What is to be known at the opening of a construct whose content is being swept.
    struct Frame {
        Way behind, best;
        bool passes_behind, best_passes;
    };

    bool find_constructs();
    [[nodiscard]] bool load(const ChainEntry *entries, size_t count);
    void enter(uint32_t word) { depth_ += is_tracked(word); }
    void leave(uint32_t word) {
        if (is_tracked(word)) leave_construct();
    }
    void leave_construct();
    void push_frame();
    void take_better(Way way, bool passes);
    template <bool deciding>
    void sweep(Way at_end, Kind before, Kind after);
    template <bool deciding>
    void sweep_loop(uint32_t state, uint32_t word);
    template <bool deciding>
    void sweep_option(uint32_t state, uint32_t word);
    template <bool deciding>
    void sweep_choice(uint32_t state, uint32_t word);
    void decide(uint32_t state) { decisions_[state / 32] |= uint32_t(1) << (state % 32); }
    void sort_reached();
    template <typename KeyOf>
    void sort_by(uint32_t limit, KeyOf key_of);
    bool list_reached();
    int32_t shared_links(const Reached &left, const Reached &right) const;

    const Program *program_;
    bool has_loops_ = false, starts_ = false;
    Array<uint32_t> enclosing_; // by leaf: the innermost tracked construct
    Array<Construct> constructs_;
    uint32_t deepest_ = 0;

    // Of the list that a step starts from.
    Array<int32_t> shared_, link_; // link: the last entry before that shares fewer
    Array<Way> way_at_; // by leaf, the way before it; by loop_close, the best further iteration

    // Of a sweep: the way on from where it is, and whether from there the end of the innermost loop
    // can be reached without a byte.
    Way way_;
    bool passes_;
    uint32_t depth_;
    Array<Frame> frames_;

    Array<Reached> reached_, sorted_;
    Array<uint32_t> counts_;
    Array<ChainEntry> entries_;
    Array<uint32_t> decisions_;
};

} // namespace vexrt
