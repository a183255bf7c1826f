// The wide side of streams: what stays inside this folder.
//
// The buffer always holds bytes. They are those of a multibyte encoding, or, on a descriptor in a
// Unicode text mode, UTF-16 units: the descriptor then does the encoding. Which of the two is
// settled when a transfer begins and stands in the stream's conversion state.
#pragma once

#include "locale/multibyte.h"
#include "stdio/stream.h"

namespace vexrt {

inline bool takes_units(const Stream &s) { return s.conv_state.__flags & raw_two_bytes; }

inline bool is_high_surrogate(unsigned unit) { return (unit & 0xFC00) == 0xD800; }

// Whether the last unit of a buffer of units is the first half of a pair.
inline bool ends_with_high_surrogate(const char *begin, const char *end) {
    return end - begin >= 2 && (end[-1] & 0xFC) == 0xD8;
}

// The first half of a pair that was written to an unbuffered stream waits here for the second.
inline wchar_t take_held_unit(Stream &s) {
    auto unit = static_cast<wchar_t>(s.conv_state.__value);
    s.conv_state.__value = 0;
    return unit;
}

// Notes in the conversion state whether the descriptor takes units.
void settle_units(Stream &s);

// The next character, WEOF at the end and on errors.
wint_t get_wide(Stream &s);
// Two characters can be pushed back.
wint_t unget_wide(wint_t wc, Stream &s);
// True when all of it went.
bool write_wide(const wchar_t *text, size_t length, Stream &s);

inline bool has_wide_pushback(Stream &s) { return s.wunget_ptr < s.wide_unget_end(); }

} // namespace vexrt
