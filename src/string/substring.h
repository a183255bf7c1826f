// The kernel that looks for a string in a string.
//
// Blocks of the haystack are tested for the needle's first two characters side by side, and only
// where both stand is the rest compared. Haystacks that defeat this (many long partial matches)
// are noticed by the number of characters compared, and the search goes on with the two-way
// algorithm, so that the time stays linear.
#pragma once

#include "string/scan.h"
#include "string/two_way.h"

namespace vexrt {
namespace {

template <typename Vector, typename Char>
class SubstringSearch {
public:
    SubstringSearch(const Char *haystack, const Char *needle)
        : haystack_(haystack), needle_(needle), first_(needle[0]), second_(needle[1]) {}

    Char *run() {
        const char *block = align_down<width>(bytes_of(haystack_));
        if (take_first_block(block)) return result_;
        for (block += width; address_of(block) % group; block += width)
            if (take_block(block)) return result_;
        for (;;) {
            while (!interesting(block, 4)) block += group;
            for (const char *end = block + group; block < end; block += width)
                if (take_block(block)) return result_;
        }
    }

private:
    static constexpr size_t width = Vector::width, group = 4 * width;
    static constexpr uint32_t one_per_character = is_narrow<Char> ? 0xFFFFFFFF : 0x55555555;
    // Characters that may be compared in vain: some at once, and so many for every one passed.
    static constexpr size_t free_comparisons = 1024, comparisons_per_character = 4;

    // The character before `block` has been looked at already and may be read.
    auto pairs_at(const char *block) const {
        return first_(Vector::load(block - sizeof(Char))) & second_(Vector::load_aligned(block));
    }

    bool interesting(const char *block, int count) const {
        auto found = pairs_at(block) | zero_(Vector::load_aligned(block));
        for (int i = 1; i < count; ++i) {
            block += width;
            found |= pairs_at(block) | zero_(Vector::load_aligned(block));
        }
        return Vector::mask(found) != 0;
    }

    // Nothing before the first block may be read: there the pairs are joined in the mask.
    bool take_first_block(const char *block) {
        uint32_t valid = ~uint32_t(0) << (bytes_of(haystack_) - block);
        auto bytes = Vector::load_aligned(block);
        uint32_t first = Vector::mask(first_(bytes)) & valid;
        uint32_t pairs = Vector::mask(second_(bytes)) & (first << sizeof(Char));
        return take(block, pairs, Vector::mask(zero_(bytes)) & valid);
    }

    bool take_block(const char *block) {
        return take(block, Vector::mask(pairs_at(block)),
                    Vector::mask(zero_(Vector::load_aligned(block))));
    }

    // Looks at the pairs before the end of the haystack; true when the search is over.
    bool take(const char *block, uint32_t pairs, uint32_t end) {
        if (end) pairs &= (end & (0 - end)) - 1;
        for (pairs &= one_per_character; pairs; pairs &= pairs - 1)
            if (try_at(character_at<Char>(block + lowest_bit(pairs)) - 1)) return true;
        return end != 0;
    }

    // True when the search is over: found, or the haystack is too short, or handed on.
    bool try_at(Char *candidate) {
        size_t at = 2;
        while (needle_[at] && needle_[at] == candidate[at]) ++at;
        if (!needle_[at]) {
            result_ = candidate;
            return true;
        }
        if (!candidate[at]) return true;
        compared_ += at;
        size_t passed = static_cast<size_t>(candidate - haystack_);
        if (compared_ < free_comparisons + comparisons_per_character * passed) return false;
        result_ = two_way_search(candidate + 1, needle_);
        return true;
    }

    const Char *haystack_, *needle_;
    IsWanted<Vector, Char> first_, second_;
    IsZero<Vector, Char> zero_;
    size_t compared_ = 0;
    Char *result_ = nullptr;
};

template <typename Vector, typename Char>
Char *find_string(const Char *haystack, const Char *needle) {
    if (!needle[0]) return const_cast<Char *>(haystack);
    if (!needle[1]) return find_in_string<Vector>(haystack, needle[0]);
    if (splits_characters(haystack)) return two_way_search(haystack, needle);
    return SubstringSearch<Vector, Char>(haystack, needle).run();
}

} // namespace
} // namespace vexrt
