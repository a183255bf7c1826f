// Finds where the match that ends at a known place starts, and its subexpressions, from right to
// left.
//
// The lists of ways that sweeper.h makes are states of a deterministic automaton, which is cached,
// with the decisions that were made on the way to the next one. When the match's start has been
// reached, the best way is walked from left to right by these decisions. For that the states of the
// positions are noted. If they are too many, the text is taken in pieces: of each its end state is
// noted, and the states within it are found again when the walk gets there. Of pieces, too, only a
// few are noted, and larger ones divided again; so memory does not depend on the text, and the
// number of times that a byte is read is bounded by the logarithm of the text's length to the base
// of the number of pieces.
#pragma once

#include "regex/forward.h"
#include "regex/sweeper.h"

namespace vexrt {

class Locator {
public:
    [[nodiscard]] bool create(const Program &program, const Alphabet &alphabet);

    // Looks for the start of the longest match that ends at `end`. There is one.
    Outcome find_start(const Text &text, const unsigned char *end, const unsigned char *&start);

    // After find_start: the subexpressions 1 to `count` - 1 of the match, as records from
    // matches[1] on, with offsets from `origin`. False without memory.
    bool find_groups(const Text &text, const unsigned char *start, const unsigned char *end,
                     const unsigned char *origin, regmatch_t *matches, size_t count);

private:
    // A key is `program_ends` and the kind of the byte behind, then the chains of the leaves that
    // take this byte.
    static constexpr uint32_t program_ends = 0x100;

    // A transition leads to the position before. It is the address of the next state, with these
    // bits.
    static constexpr uint32_t special = 1; // something is to be looked at
    static constexpr uint32_t starts = 2;  // a match starts at the position
    static constexpr uint32_t unknown = special;

    static constexpr size_t path_limit = 16384; // positions of a piece
    static constexpr unsigned piece_limit = 64;

    // What a sweep leaves: the list, then the decisions.
    struct Sweep {
        uint32_t starts, count;
        ChainEntry *entries() { return reinterpret_cast<ChainEntry *>(this + 1); }
        uint32_t *decisions() { return reinterpret_cast<uint32_t *>(entries() + count); }
    };
    struct Record {
        const unsigned char *start, *end;
        uint64_t opened; // the number of the opening, 0: never
    };
    // Where a piece ends, and the state there.
    struct PieceEnd {
        const unsigned char *at;
        uint32_t *key;
        size_t key_size;
    };
    class PieceEnds;

    CachedState *find_or_add(const uint32_t *key, size_t size);
    CachedState *end_state(const Text &text, const unsigned char *end);
    Sweep *sweep_of(CachedState *&state, Kind before);
    uint32_t build(CachedState *&state, Symbol symbol);
    bool build_key(Sweep &sweep, Symbol symbol);
    Kind kind_before(const Text &text, const unsigned char *at) const {
        return at == text.start ? text.before : alphabet_->kinds[alphabet_->category_of[at[-1]]];
    }
    uint32_t *sweep_slot(CachedState *state, Kind before) const {
        return state->slots() + alphabet_->size + before;
    }

    void start_path(const unsigned char *end);
    bool path_valid() const { return path_flushes_ == cache_.flush_count(); }
    const uint32_t *decisions_at(const Text &text) const;
    bool walk_piece(const Text &text, const unsigned char *low, const PieceEnd &high);
    bool find_path(const Text &text, const unsigned char *low, const PieceEnd &high,
                   PieceEnds &ends);
    void walk(const Text &text);
    void open_group(uint32_t number);
    void report(const unsigned char *origin, regmatch_t *matches, size_t count);

    const Program *program_;
    const Alphabet *alphabet_;
    Sweeper sweeper_;
    StateCache cache_;
    Array<uint32_t> key_;

    Array<CachedState *> path_; // the states of the positions from `path_end_` on to the left
    const unsigned char *path_end_ = nullptr;
    unsigned path_flushes_ = 0; // they are gone when the cache has been flushed since

    Array<Record> records_; // by subexpression
    const unsigned char *walk_at_ = nullptr;
    uint32_t walk_state_ = 0;
    uint64_t openings_ = 0;
};

} // namespace vexrt
