// Kernels that measure how far the characters of a set, or those outside it, reach.
//
// A set of narrow characters becomes a table of 256 bits. Bit `high % 8` of byte
// `low + 16 * (high / 8)` stands for the character with the digits `high` and `low`, so that a
// shuffle can look up 16 or 32 characters at once; without one they are looked up singly. A wide
// set is compared member by member with a block of the text, and so is the first block of a narrow
// text: it is mostly the only one.
#pragma once

#include "string/scan.h"

namespace vexrt {
namespace {

struct alignas(32) ByteSet {
    uint8_t rows[32] = {};

    void add(uint8_t c) {
        rows[(c & 15) | (c >> 7 << 4)] |= static_cast<uint8_t>(1 << (c >> 4 & 7));
    }
    bool has(uint8_t c) const { return rows[(c & 15) | (c >> 7 << 4)] >> (c >> 4 & 7) & 1; }
};

// With `ends_at_members` the span stops at the first member or at the terminator, else at the
// first character that is no member (the terminator never is one).
template <bool ends_at_members>
ByteSet stop_set(const char *set) {
    ByteSet bytes;
    for (; *set; ++set) bytes.add(static_cast<uint8_t>(*set));
    if (ends_at_members) bytes.add(0);
    return bytes;
}

template <typename Vector, bool ends_at_members>
struct StopsSpan {
    typename Vector::Set members;
    auto operator()(typename Vector::Block block) const {
        auto member = Vector::contained(block, members);
        if constexpr (ends_at_members)
            return member;
        else
            return ~member;
    }
};

template <typename Vector, typename Char, bool ends_at_members>
struct StopsAtMember {
    const Char *set;
    auto operator()(typename Vector::Block block) const {
        auto member = Vector::broadcast(Char(0));
        if (ends_at_members) member = Vector::template equal<Char>(block, member);
        for (const Char *next = set; *next; ++next)
            member |= Vector::template equal<Char>(block, Vector::broadcast(*next));
        if constexpr (ends_at_members)
            return member;
        else
            return ~member;
    }
};

template <bool ends_at_members, typename Test>
size_t span_plainly(const char *string, size_t limit, const Test &set) {
    size_t at = 0;
    while (at < limit && set.has(static_cast<uint8_t>(string[at])) != ends_at_members) ++at;
    return at;
}

template <bool ends_at_members>
size_t span_plainly(const wchar_t *string, size_t limit, const wchar_t *set) {
    size_t at = 0;
    for (; at < limit && string[at]; ++at) {
        const wchar_t *member = set;
        while (*member && *member != string[at]) ++member;
        if ((*member != 0) == ends_at_members) break;
    }
    return at;
}

template <typename Vector, bool ends_at_members>
size_t span_by_table(const char *string, const char *set, size_t limit) {
    const ByteSet bytes = stop_set<ends_at_members>(set);
    if constexpr (Vector::has_contained) {
        const StopsSpan<Vector, ends_at_members> stops{Vector::set_of(bytes.rows)};
        const char *stop = scan_bounded<Vector>(string, limit, stops);
        return stop ? static_cast<size_t>(stop - string) : limit;
    } else {
        return span_plainly<ends_at_members>(string, limit, bytes);
    }
}

template <typename Vector, bool ends_at_members>
size_t span(const char *string, const char *set, size_t limit) {
    if (limit == 0) return 0;
    const StopsAtMember<Vector, char, ends_at_members> stops_first{set};
    const char *block = align_down<Vector::width>(string);
    size_t passed = Vector::width - static_cast<size_t>(string - block);
    if (uint32_t mask = mask_at<Vector>(block, stops_first) >> (string - block))
        return lowest_bit(mask) < limit ? lowest_bit(mask) : limit;
    if (limit <= passed) return limit;
    return passed + span_by_table<Vector, ends_at_members>(string + passed, set, limit - passed);
}

template <typename Vector, bool ends_at_members>
size_t span(const wchar_t *string, const wchar_t *set, size_t limit) {
    if (splits_characters(string) || splits_characters(set))
        return span_plainly<ends_at_members>(string, limit, set);
    const StopsAtMember<Vector, wchar_t, ends_at_members> stops{set};
    const char *from = bytes_of(string);
    const char *stop = scan_bounded<Vector>(from, size_of<wchar_t>(limit), stops);
    return stop ? static_cast<size_t>(stop - from) / sizeof(wchar_t) : limit;
}

template <typename Vector, typename Char>
size_t span_in(const Char *string, const Char *set, size_t limit) {
    return span<Vector, false>(string, set, limit);
}

// One member at most is a plain search.
template <typename Vector, typename Char>
size_t span_outside(const Char *string, const Char *set, size_t limit) {
    if (set[0] && set[1]) return span<Vector, true>(string, set, limit);
    if (splits_characters(string)) {
        size_t at = 0;
        while (at < limit && string[at] && string[at] != set[0]) ++at;
        return at;
    }
    const char *from = bytes_of(string);
    const IsWantedOrZero<Vector, Char> stops(set[0]);
    const char *stop = scan_bounded<Vector>(from, size_of<Char>(limit), stops);
    return stop ? static_cast<size_t>(stop - from) / sizeof(Char) : limit;
}

} // namespace
} // namespace vexrt
