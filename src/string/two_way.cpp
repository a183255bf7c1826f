// The two-way algorithm of Crochemore and Perrin ("Two-way string-matching", 1991).
//
// The needle is cut in two at a critical position: one where the shortest repetition around the cut
// is as long as the period of the whole needle. The right part is compared first, left to right; a
// mismatch there allows a shift past it. Then the left part, right to left; a mismatch allows a
// shift by the period. Where the needle is periodic, what a shift by the period leaves matched is
// remembered, so no character of the haystack is compared more than a fixed number of times.

#include "string/two_way.h"

#include "string/kernels.h"

namespace vexrt {

namespace {

struct Suffix {
    size_t start, period;
};

// The greatest suffix in the order of the characters or in the reverse order, and its period.
template <typename Char>
Suffix greatest_suffix(const Char *needle, size_t length, bool reversed) {
    size_t start = 0, candidate = 1, matched = 0, period = 1;
    while (candidate + matched < length) {
        Char of_candidate = needle[candidate + matched], of_best = needle[start + matched];
        if (of_candidate == of_best) {
            if (++matched == period) {
                candidate += period;
                matched = 0;
            }
        } else if ((of_candidate < of_best) != reversed) {
            candidate += matched + 1;
            matched = 0;
            period = candidate - start;
        } else {
            start = candidate++;
            matched = 0;
            period = 1;
        }
    }
    return {start, period};
}

// The haystack, whose length is found out only as far as it is needed.
template <typename Char>
class Haystack {
public:
    explicit Haystack(const Char *text) : text_(text) {}

    // Whether `length` characters from `at` on are there.
    bool has(size_t at, size_t length) {
        if (at + length <= known_) return true;
        size_t wanted = at + length - known_, ahead = wanted + look_ahead;
        size_t found = string_kernels<Char>().bounded_length(text_ + known_, ahead);
        known_ += found;
        return found >= wanted;
    }

    const Char *operator+(size_t at) const { return text_ + at; }

private:
    static constexpr size_t look_ahead = 512;
    const Char *text_;
    size_t known_ = 0;
};

template <typename Char>
class TwoWay {
public:
    explicit TwoWay(const Char *needle)
        : needle_(needle), length_(string_kernels<Char>().length(needle)) {
        Suffix forward = greatest_suffix(needle, length_, false);
        Suffix backward = greatest_suffix(needle, length_, true);
        Suffix cut = forward.start > backward.start ? forward : backward;
        cut_ = cut.start;
        period_ = cut.period;
        periodic_ = string_kernels<Char>().compare(needle, needle + period_, cut_) == 0;
        if (!periodic_) period_ = (cut_ > length_ - cut_ ? cut_ : length_ - cut_) + 1;
    }

    const Char *find(const Char *text) const {
        Haystack<Char> haystack(text);
        size_t remembered = 0; // characters at the front of the needle known to match
        for (size_t at = 0; haystack.has(at, length_);) {
            const Char *here = haystack + at;
            size_t right = remembered > cut_ ? remembered : cut_;
            while (right < length_ && needle_[right] == here[right]) ++right;
            if (right < length_) {
                at += right - cut_ + 1;
                remembered = 0;
                continue;
            }
            size_t left = cut_;
            while (left > remembered && needle_[left - 1] == here[left - 1]) --left;
            if (left <= remembered) return here;
            at += period_;
            remembered = periodic_ ? length_ - period_ : 0;
        }
        return nullptr;
    }

private:
    const Char *needle_;
    size_t length_, cut_, period_;
    bool periodic_;
};

} // namespace

char *two_way_search(const char *haystack, const char *needle) {
    return const_cast<char *>(TwoWay<char>(needle).find(haystack));
}

wchar_t *two_way_search(const wchar_t *haystack, const wchar_t *needle) {
    return const_cast<wchar_t *>(TwoWay<wchar_t>(needle).find(haystack));
}

} // namespace vexrt
