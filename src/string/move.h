// Kernels that copy and fill.
//
// Up to eight blocks are all loaded before the first is stored, so overlap does not matter. Larger
// areas go in groups of four blocks with aligned stores, upwards unless the target begins inside
// the source; the blocks at the two ends are loaded beforehand and stored last.
#pragma once

#include "string/vector.h"

namespace vexrt {
namespace {

template <typename Unit>
struct AnyAddress {
    using Type __attribute__((aligned(1), may_alias)) = Unit;
};

// From `sizeof(Unit)` to twice as many bytes.
template <typename Unit>
void move_ends(char *to, const char *from, size_t size) {
    using Piece = typename AnyAddress<Unit>::Type;
    Unit first = *reinterpret_cast<const Piece *>(from);
    Unit last = *reinterpret_cast<const Piece *>(from + size - sizeof(Unit));
    *reinterpret_cast<Piece *>(to) = first;
    *reinterpret_cast<Piece *>(to + size - sizeof(Unit)) = last;
}

// From `count` blocks to twice as many.
template <typename Vector, size_t count>
void move_end_blocks(char *to, const char *from, size_t size) {
    constexpr size_t width = Vector::width;
    typename Vector::Block first[count], last[count];
    const char *tail = from + size - count * width;
#pragma unroll
    for (size_t i = 0; i < count; ++i) {
        first[i] = Vector::load(from + i * width);
        last[i] = Vector::load(tail + i * width);
    }
    char *to_tail = to + size - count * width;
#pragma unroll
    for (size_t i = 0; i < count; ++i) {
        Vector::store(to + i * width, first[i]);
        Vector::store(to_tail + i * width, last[i]);
    }
}

template <typename Vector>
void move_below_block(char *to, const char *from, size_t size) {
    if constexpr (Vector::width > 16)
        if (size >= Vector::width / 2)
            return move_end_blocks<typename Vector::Half, 1>(to, from, size);
    if (size >= 8) return move_ends<uint64_t>(to, from, size);
    if (size >= 4) return move_ends<uint32_t>(to, from, size);
    if (size >= 2) return move_ends<uint16_t>(to, from, size);
    if (size) *to = *from;
}

template <typename Vector>
void store_cached(char *to, typename Vector::Block block) {
    Vector::store_aligned(to, block);
}

template <typename Vector>
void store_past_caches(char *to, typename Vector::Block block) {
    Vector::stream(to, block);
}

template <typename Vector, void (*store)(char *, typename Vector::Block) = store_cached<Vector>>
void move_group(char *to, const char *from) {
    constexpr size_t width = Vector::width;
    auto a = Vector::load(from), b = Vector::load(from + width);
    auto c = Vector::load(from + 2 * width), d = Vector::load(from + 3 * width);
    store(to, a);
    store(to + width, b);
    store(to + 2 * width, c);
    store(to + 3 * width, d);
}

// Areas that no cache holds twice: there is no use in fetching the target before it is overwritten.
constexpr size_t beyond_caches = size_t(8) << 20;

template <typename Vector>
size_t move_groups_past_caches(char *to, const char *from, size_t at, size_t size) {
    constexpr size_t group = 4 * Vector::width, ahead = 512; // bytes
    for (; size - at >= group; at += group) {
        for (size_t line = 0; line < group; line += 64)
            __builtin_prefetch(from + at + ahead + line);
        move_group<Vector, store_past_caches<Vector>>(to + at, from + at);
    }
    Vector::fence();
    return at;
}

template <typename Vector>
void move_up(char *to, const char *from, size_t size) {
    constexpr size_t width = Vector::width;
    auto head = Vector::load(from), tail = Vector::load(from + size - width);
    size_t at = width - address_of(to) % width;
    if (size >= beyond_caches) at = move_groups_past_caches<Vector>(to, from, at, size);
    for (; size - at >= 4 * width; at += 4 * width) move_group<Vector>(to + at, from + at);
    for (; size - at > width; at += width) Vector::store_aligned(to + at, Vector::load(from + at));
    Vector::store(to, head);
    Vector::store(to + size - width, tail);
}

template <typename Vector>
void move_down(char *to, const char *from, size_t size) {
    constexpr size_t width = Vector::width;
    auto head = Vector::load(from), tail = Vector::load(from + size - width);
    size_t end = size - address_of(to + size) % width;
    for (; end >= 4 * width; end -= 4 * width)
        move_group<Vector>(to + end - 4 * width, from + end - 4 * width);
    for (; end > width; end -= width)
        Vector::store_aligned(to + end - width, Vector::load(from + end - width));
    Vector::store(to, head);
    Vector::store(to + size - width, tail);
}

template <typename Vector>
void *move(void *target, const void *source, size_t size) {
    constexpr size_t width = Vector::width;
    char *to = static_cast<char *>(target);
    const char *from = static_cast<const char *>(source);
    if (size < width)
        move_below_block<Vector>(to, from, size);
    else if (size <= 2 * width)
        move_end_blocks<Vector, 1>(to, from, size);
    else if (size <= 4 * width)
        move_end_blocks<Vector, 2>(to, from, size);
    else if (size <= 8 * width)
        move_end_blocks<Vector, 4>(to, from, size);
    else if (address_of(to) - address_of(from) >= size)
        move_up<Vector>(to, from, size);
    else
        move_down<Vector>(to, from, size);
    return target;
}

// Front and end, which may overlap.
template <typename Vector, typename Char>
void fill_below_block(Char *characters, Char value, size_t count) {
    auto block = Vector::broadcast(value);
    char *to = reinterpret_cast<char *>(characters), *end = to + count * sizeof(Char);
    size_t size = count * sizeof(Char);
    if constexpr (Vector::width > 16) {
        using Half = typename Vector::Half;
        if (size < Half::width) return fill_below_block<Half>(characters, value, count);
        Half::store(to, Half::broadcast(value));
        Half::store(end - Half::width, Half::broadcast(value));
    } else if (size >= 8) {
        Vector::store_half(to, block);
        Vector::store_half(end - 8, block);
    } else if (size >= 4) {
        Vector::store_word(to, block);
        Vector::store_word(end - 4, block);
    } else {
        for (; count; --count) *characters++ = value;
    }
}

// The blocks at the two ends are stored unaligned, so that every size above a block is covered.
template <typename Vector, typename Char>
void fill_blocks(Char *characters, Char value, size_t count) {
    constexpr size_t width = Vector::width;
    auto block = Vector::broadcast(value);
    char *to = reinterpret_cast<char *>(characters), *end = to + count * sizeof(Char);
    Vector::store(to, block);
    Vector::store(end - width, block);
    if (count <= 2 * width / sizeof(Char)) return;
    // A wide character at an odd address is cut by an aligned block; its halves are not alike.
    if (splits_characters(characters)) {
        for (to += width; to < end - width; to += width) Vector::store(to, block);
        return;
    }
    to += width - address_of(to) % width;
    for (; static_cast<size_t>(end - to) > 4 * width; to += 4 * width) {
        Vector::store_aligned(to, block);
        Vector::store_aligned(to + width, block);
        Vector::store_aligned(to + 2 * width, block);
        Vector::store_aligned(to + 3 * width, block);
    }
    for (; to < end - width; to += width) Vector::store_aligned(to, block);
}

template <typename Vector, typename Char>
Char *fill(Char *characters, Char value, size_t count) {
    if (count < Vector::width / sizeof(Char))
        fill_below_block<Vector>(characters, value, count);
    else
        fill_blocks<Vector>(characters, value, count);
    return characters;
}
} // namespace
} // namespace vexrt
