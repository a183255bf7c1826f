// The two ways to keep a set of states. Everything that runs the automaton is a template over them.
#pragma once

#include "regex/array.h"

#include <string.h>

namespace vexrt {

constexpr uint32_t word_states = 32; // what the one-word engine can hold

// One bit a state.
class WordStates {
public:
    [[nodiscard]] bool create(uint32_t) { return true; }
    void clear() { bits_ = 0; }
    bool insert(uint32_t state) { // false when it is in already
        uint32_t bit = uint32_t(1) << state;
        if (bits_ & bit) return false;
        bits_ |= bit;
        return true;
    }

private:
    uint32_t bits_ = 0;
};

// One byte a state.
class ByteStates {
public:
    [[nodiscard]] bool create(uint32_t count) { return bytes_.resize(count); }
    void clear() { memset(bytes_.data(), 0, bytes_.size()); }
    bool insert(uint32_t state) {
        if (bytes_[state]) return false;
        bytes_[state] = 1;
        return true;
    }

private:
    Array<unsigned char> bytes_;
};

} // namespace vexrt
