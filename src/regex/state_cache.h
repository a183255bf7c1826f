// The states of a deterministic automaton, made when they are first reached.
//
// A state is told by its key, some words that say all about it, and holds a row of slots for what
// its automaton knows of it, its transitions above all. The memory has a bound; when it is reached
// all states are dropped, and made anew as they are needed.
#pragma once

#include "regex/array.h"

namespace vexrt {

struct CachedState {
    CachedState *next_in_bucket;
    uint32_t hash;
    uint32_t key_size;

    uint32_t *slots() { return reinterpret_cast<uint32_t *>(this + 1); }
    const uint32_t *slots() const { return reinterpret_cast<const uint32_t *>(this + 1); }
};

class StateCache {
public:
    // `largest_key`: in words; a multiple of it is allowed even where it passes the usual bound.
    void create(uint32_t slot_count, size_t largest_key) {
        slot_count_ = slot_count;
        size_t largest = (slot_count + largest_key) * sizeof(uint32_t) + sizeof(CachedState);
        limit_ = largest * states_at_least > usual_limit ? largest * states_at_least : usual_limit;
    }
    ~StateCache();

    // The state of the key, made if need be with all slots at `fresh`. Null without room.
    CachedState *find_or_add(const uint32_t *key, size_t size, uint32_t fresh);
    const uint32_t *key_of(const CachedState *state) const { return state->slots() + slot_count_; }

    // Words that live as long as the states, or null without room.
    uint32_t *allocate(size_t words);

    // Drops all states.
    void flush();
    unsigned flush_count() const { return flush_count_; }

private:
    static constexpr size_t usual_limit = 1 << 20, states_at_least = 16;
    static constexpr size_t first_chunk = 960, largest_chunk = 65536;
    struct Chunk {
        char *bytes;
        size_t size;
    };

    bool next_chunk(size_t needed);
    bool grow_buckets();

    uint32_t slot_count_ = 0;
    size_t limit_ = 0, taken_ = 0; // bytes in all chunks
    Array<Chunk> chunks_;
    size_t chunk_ = 0, used_ = 0;  // the chunk in use, and what of it is
    Array<CachedState *> buckets_; // a power of two
    size_t state_count_ = 0;
    unsigned flush_count_ = 0;
};

} // namespace vexrt
