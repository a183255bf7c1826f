// The kernel that copies a string: finds the terminator and copies in one pass.
//
// The source is read in aligned blocks, as in scan.h. What is stored never reaches beyond what has
// been read, so a string may be moved down in place.
#pragma once

#include "string/move.h"
#include "string/scan.h"

namespace vexrt {
namespace {

template <typename Vector>
void move_up_to_two_blocks(char *to, const char *from, size_t size) {
    if (size < Vector::width)
        move_below_block<Vector>(to, from, size);
    else
        move_end_blocks<Vector, 1>(to, from, size);
}

template <typename Vector, typename Char>
struct StringCopy {
    static constexpr size_t width = Vector::width, group = 4 * width;

    char *to;
    const char *from;
    size_t size; // bytes that may be copied, not 0
    IsZero<Vector, Char> is_zero;

    uint32_t zeros_at(size_t at) const { return mask_at<Vector>(from + at, is_zero); }

    // Copies from `at` on, two blocks at most, up to the terminator at `zero` or up to `size`.
    // Returns the length of the copy in characters.
    size_t finish(size_t at, size_t zero) const {
        size_t length = zero < size ? zero : size;
        size_t end = zero < size ? zero + sizeof(Char) : size;
        move_up_to_two_blocks<Vector>(to + at, from + at, end - at);
        return length / sizeof(Char);
    }

    __attribute__((always_inline)) size_t run() const {
        size_t offset = address_of(from) % width, at = width - offset;
        if (uint32_t mask = mask_at<Vector>(from - offset, is_zero) >> offset)
            return finish(0, lowest_bit(mask));
        if (size <= at) return finish(0, size);
        if (uint32_t mask = zeros_at(at)) return finish(0, at + lowest_bit(mask));
        if (size - at <= width) return finish(0, size);
        auto first = Vector::load(from), second = Vector::load_aligned(from + at);
        Vector::store(to, first);
        Vector::store(to + at, second);
        return copy_blocks(at + width);
    }

    // Between the steps there is at least one more byte to copy at `at`.
    size_t copy_blocks(size_t at) const {
        for (;; at += width) {
            if (address_of(from + at) % group == 0) at = copy_groups(at);
            if (uint32_t mask = zeros_at(at)) return finish(at, at + lowest_bit(mask));
            if (size - at <= width) return finish(at, size);
            Vector::store(to + at, Vector::load_aligned(from + at));
        }
    }

    size_t copy_groups(size_t at) const {
        for (; size - at > group; at += group) {
            auto a = Vector::load_aligned(from + at);
            auto b = Vector::load_aligned(from + at + width);
            auto c = Vector::load_aligned(from + at + 2 * width);
            auto d = Vector::load_aligned(from + at + 3 * width);
            if (Vector::mask(is_zero(a) | is_zero(b) | is_zero(c) | is_zero(d))) break;
            Vector::store(to + at, a);
            Vector::store(to + at + width, b);
            Vector::store(to + at + 2 * width, c);
            Vector::store(to + at + 3 * width, d);
        }
        return at;
    }
};

template <typename Char>
size_t copy_plainly(Char *to, const Char *from, size_t limit) {
    size_t at = 0;
    while (at < limit && (to[at] = from[at]) != 0) ++at;
    return at;
}

template <typename Vector, typename Char>
size_t copy_string_bounded(Char *to, const Char *from, size_t limit) {
    if (limit == 0) return 0;
    if (splits_characters(from)) return copy_plainly(to, from, limit);
    return StringCopy<Vector, Char>{
        reinterpret_cast<char *>(to), bytes_of(from), size_of<Char>(limit), {}}
        .run();
}

template <typename Vector, typename Char>
Char *copy_string(Char *to, const Char *from) {
    copy_string_bounded<Vector>(to, from, SIZE_MAX);
    return to;
}

} // namespace
} // namespace vexrt
