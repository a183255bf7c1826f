// A set of bytes.
#pragma once

#include <stdint.h>

namespace vexrt {

struct ByteSet {
    uint32_t words[8];

    bool has(unsigned byte) const { return words[byte / 32] >> (byte % 32) & 1; }
    void add(unsigned byte) { words[byte / 32] |= uint32_t(1) << (byte % 32); }
    void remove(unsigned byte) { words[byte / 32] &= ~(uint32_t(1) << (byte % 32)); }
    void add(const ByteSet &other) {
        for (int i = 0; i < 8; ++i) words[i] |= other.words[i];
    }
    void keep(const ByteSet &other) {
        for (int i = 0; i < 8; ++i) words[i] &= other.words[i];
    }
    void remove(const ByteSet &other) {
        for (int i = 0; i < 8; ++i) words[i] &= ~other.words[i];
    }
    bool empty() const { return *this == ByteSet{}; }
    void invert() {
        for (uint32_t &word : words) word = ~word;
    }
    bool operator==(const ByteSet &other) const {
        for (int i = 0; i < 8; ++i)
            if (words[i] != other.words[i]) return false;
        return true;
    }
};

} // namespace vexrt
