// Where formatted text goes: a window of memory that is filled directly, and a function for the
// pieces that do not fit it. Writing to a buffer thus costs a comparison and a copy per piece; a
// sink is called when its window is full.
#pragma once

#include "core/errno.h"

#include <limits.h>
#include <stddef.h>
#include <stdint.h>
#include <string.h>

namespace vexrt {

// Most pieces are a few characters: a pair of overlapping moves each, without a call.
inline void copy_short(void *to, const void *from, size_t size) {
    auto *out = static_cast<char *>(to);
    auto *in = static_cast<const char *>(from);
    auto copy_ends = [=](auto unit) {
        decltype(unit) first, last;
        __builtin_memcpy(&first, in, sizeof unit);
        __builtin_memcpy(&last, in + size - sizeof unit, sizeof unit);
        __builtin_memcpy(out, &first, sizeof unit);
        __builtin_memcpy(out + size - sizeof unit, &last, sizeof unit);
    };
    struct Block {
        uint64_t words[2];
    };
    if (size >= 16)
        copy_ends(Block{});
    else if (size >= 8)
        copy_ends(uint64_t{});
    else if (size >= 4)
        copy_ends(uint32_t{});
    else if (size >= 2)
        copy_ends(uint16_t{});
    else if (size)
        *out = *in;
}

template <typename Char>
inline void copy_text(Char *to, const Char *text, size_t count) {
    size_t size = count * sizeof(Char);
    if (size <= 32)
        copy_short(to, text, size);
    else
        memcpy(to, text, size);
}

template <typename Char>
class Output {
public:
    Output(const Output &) = delete;
    Output &operator=(const Output &) = delete;

    // False: the output failed, and nothing more may be put.
    bool put(const Char *text, size_t count) {
        if (__builtin_expect(count > room(), false)) return spill(text, count);
        copy_text(pos_, text, count);
        pos_ += count;
        return true;
    }

    // The place for so many characters, which the caller then writes; null when they do not fit.
    Char *reserve(uint64_t count) {
        if (count > room()) return nullptr;
        Char *place = pos_;
        pos_ += count;
        return place;
    }

    // What has been put so far reaches its place.
    bool settle() { return overflow_(*this, nullptr, 0); }

    // All characters so far, at most INT_MAX; those that found no room are counted, too.
    int count() const { return static_cast<int>(before_ + used()); }

protected:
    // Deals with a piece that is longer than room(); a piece of no length settles.
    using Overflow = bool (*)(Output &, const Char *text, size_t count);

    Output(Char *window, size_t size, Overflow overflow) : overflow_(overflow) {
        set_window(window, size);
        pos_ = window;
    }

    // `size` may be more than there can be: the end of memory and the largest count limit it.
    void set_window(Char *window, size_t size) {
        size_t memory = (UINTPTR_MAX - reinterpret_cast<uintptr_t>(window)) / sizeof(Char);
        if (size > memory) size = memory;
        if (size > INT_MAX) size = INT_MAX;
        begin_ = window;
        end_ = window + size;
    }

    size_t room() const { return static_cast<size_t>(end_ - pos_); }
    size_t used() const { return static_cast<size_t>(pos_ - begin_); }

    // Fills the window with the start of a piece that is too long for it. Returns what was left
    // over.
    size_t fill(const Char *text, size_t count) {
        size_t fits = room() < count ? room() : count;
        memcpy(pos_, text, fits * sizeof(Char));
        pos_ += fits;
        return count - fits;
    }

    Char *begin_, *pos_, *end_;
    size_t before_ = 0; // characters counted that are not in the window

private:
    // Here alone the count can become too large: a window holds no more than INT_MAX.
    [[gnu::noinline]] bool spill(const Char *text, size_t count) {
        if (count <= INT_MAX - before_ - used()) return overflow_(*this, text, count);
        set_errno(ERANGE);
        return false;
    }

    Overflow overflow_;
};

} // namespace vexrt
