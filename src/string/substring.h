// The kernel that looks for a string in a string.
//
// Blocks of the haystack are tested for three characters of the needle, the first one, one of the
// next seven and one between them, and only where all three stand in their distances is the needle
// compared. Haystacks that defeat this (many long partial matches)
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
    SubstringSearch(const Char *haystack, const Char *needle, size_t last)
        : haystack_(haystack), needle_(needle), last_(last * sizeof(Char)),
          last_from_middle_((last - last / 2) * sizeof(Char)), is_first_(needle[0]),
          is_middle_(needle[last / 2]), is_last_(needle[last]) {}

    // The tested characters lie within one block of each other.
    static constexpr size_t last_limit = 7;

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

    // The three characters, their last one in this block. What lies before the block has been read
    // already.
    auto hits_at(const char *block) const {
        return is_first_(Vector::load(block - last_)) &
               is_middle_(Vector::load(block - last_from_middle_)) &
               is_last_(Vector::load_aligned(block));
    }

    bool interesting(const char *block, int count) const {
        auto found = hits_at(block) | is_zero_(Vector::load_aligned(block));
        for (int i = 1; i < count; ++i) {
            block += width;
            found |= hits_at(block) | is_zero_(Vector::load_aligned(block));
        }
        return Vector::mask(found) != 0;
    }

    // Nothing before the first block may be read: there the three are joined in the masks.
    bool take_first_block(const char *block) {
        uint32_t valid = ~uint32_t(0) << (bytes_of(haystack_) - block);
        auto bytes = Vector::load_aligned(block);
        uint32_t first = Vector::mask(is_first_(bytes)) & valid;
        uint32_t hits = Vector::mask(is_last_(bytes)) & (first << last_) &
                        (Vector::mask(is_middle_(bytes)) << last_from_middle_);
        return take(block, hits, Vector::mask(is_zero_(bytes)) & valid);
    }

    bool take_block(const char *block) {
        return take(block, Vector::mask(hits_at(block)),
                    Vector::mask(is_zero_(Vector::load_aligned(block))));
    }

    // Looks at the hits before the end of the haystack; true when the search is over.
    bool take(const char *block, uint32_t hits, uint32_t end) {
        if (end) hits &= (end & (0 - end)) - 1;
        for (hits &= one_per_character; hits; hits &= hits - 1)
            if (try_at(character_at<Char>(block + lowest_bit(hits) - last_))) return true;
        return end != 0;
    }

    // True when the search is over: found, or the haystack is too short, or handed on.
    bool try_at(Char *candidate) {
        if (candidate < haystack_) return false; // in the second block
        size_t at = 0;
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
    size_t last_, last_from_middle_; // distances in bytes
    IsWanted<Vector, Char> is_first_, is_middle_, is_last_;
    IsZero<Vector, Char> is_zero_;
    size_t compared_ = 0;
    Char *result_ = nullptr;
};

template <typename Vector, typename Char>
Char *find_string(const Char *haystack, const Char *needle) {
    if (!needle[0]) return const_cast<Char *>(haystack);
    if (!needle[1]) return find_in_string<Vector>(haystack, needle[0]);
    if (splits_characters(haystack)) return two_way_search(haystack, needle);
    size_t last = 1;
    while (last < SubstringSearch<Vector, Char>::last_limit && needle[last + 1]) ++last;
    return SubstringSearch<Vector, Char>(haystack, needle, last).run();
}

} // namespace
} // namespace vexrt
