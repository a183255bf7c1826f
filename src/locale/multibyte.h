// One multibyte character to one wide character and back, in the thread's locale.
#pragma once

#include "core/thread_record.h"
#include "locale/locale_record.h"

#include <_mbstate.h>
#include <stdint.h>

namespace vexrt {

// Whether the codes below 0x80 are single bytes of the same value: in UTF-8 and in every code page.
inline bool has_ascii(const LocaleRecord &locale) {
    return reinterpret_cast<uintptr_t>(locale.decode[0]) <= 1;
}

constexpr unsigned short raw_two_bytes = 0x8000; // mbstate_t::__flags: whatever the locale

// In the "C" locale every byte is the wide character of the same value.
inline bool byte_is_character(const LocaleRecord &locale) {
    return locale.decode[0] == c_state_table.of;
}

// What a decoder or encoder that has no result returns. The second is the decoder's alone.
constexpr int invalid_sequence = -1, incomplete_sequence = -2;

// All four modes.
int decode_by_mode(wchar_t *to, const char *s, size_t n, mbstate_t &state);
int encode_by_mode(char *to, wchar_t wc, mbstate_t &state);

/*
 * Decodes the character at `s`, of which `n` bytes may be read, into `to` (may be null). Returns
 * the bytes taken, 0 for L'\0', incomplete_sequence (what was read is kept in the state), or
 * invalid_sequence with errno EILSEQ. In a locale of a double-byte code page the result is 1 for
 * two bytes, too. A null `s` resets the state and tells whether the encoding has states.
 */
inline int decode_character(wchar_t *to, const char *s, size_t n, mbstate_t &state) {
    bool plain = !(state.__flags & raw_two_bytes) && !state.__state && state.__value <= 0xFF;
    if (s && n && plain && byte_is_character(*thread_record().locale)) {
        wchar_t wc = static_cast<unsigned char>(*s);
        state.__value = wc;
        if (to) *to = wc;
        return wc != 0;
    }
    return decode_by_mode(to, s, n, state);
}

/*
 * Decodes a character for those that read texts: as decode_character(), but returns the bytes that
 * the character really takes, the terminator's included, so never 0; incomplete_sequence for a lead
 * byte alone, too, and then leaves the state as it was; and knows every raw unit.
 */
int take_character_by_mode(wchar_t &to, const char *s, size_t n, mbstate_t &state);

inline int take_character(wchar_t &to, const char *s, size_t n, mbstate_t &state) {
    bool plain = !(state.__flags & raw_two_bytes) && !state.__state && state.__value <= 0xFF;
    if (n && plain && byte_is_character(*thread_record().locale)) {
        to = static_cast<unsigned char>(*s);
        return 1;
    }
    return take_character_by_mode(to, s, n, state);
}

// Encodes `wc` into `to`, which has room for multibyte_limit bytes. Returns the bytes written or
// invalid_sequence with errno EILSEQ.
inline int encode_character(char *to, wchar_t wc, mbstate_t &state) {
    bool plain = !(state.__flags & raw_two_bytes) && !state.__state;
    if (plain && byte_is_character(*thread_record().locale)) {
        *to = static_cast<char>(wc);
        return 1;
    }
    return encode_by_mode(to, wc, state);
}

} // namespace vexrt
