// The sets of %[: which characters are in them.

#include "format/scanner.h"

namespace vexrt {

// A '-' stands for a range only in a set of three and more, and neither first nor last.
template <typename Char>
template <typename Visit>
bool ScanSet<Char>::visit_ranges(Visit visit) const {
    for (const Char *at = first_; at != last_;) {
        bool range = last_ - at > 2 && at[1] == '-';
        if (visit(code_of(at[0]), code_of(at[range ? 2 : 0]))) return true;
        at += range ? 3 : 1;
    }
    return false;
}

template <typename Char>
bool ScanSet<Char>::read(const Char *&at) {
    negated_ = skip_character(at, '^');
    first_ = at;
    if (*at == ']') ++at;
    while (*at && *at != ']') ++at;
    last_ = at;
    if (!skip_character(at, ']')) return false;
    for (uint32_t &word : low_) word = 0;
    visit_ranges([this](unsigned low, unsigned high) {
        for (; low <= high && low < 256; ++low) low_[low / 32] |= 1u << low % 32;
        return false;
    });
    return true;
}

template <typename Char>
bool ScanSet<Char>::contains(int c) const {
    auto code = static_cast<unsigned>(c);
    bool member;
    if (code < 256)
        member = low_[code / 32] >> code % 32 & 1;
    else
        member = visit_ranges(
            [code](unsigned low, unsigned high) { return low <= code && code <= high; });
    return member != negated_;
}

template class ScanSet<char>;
template class ScanSet<wchar_t>;

} // namespace vexrt
