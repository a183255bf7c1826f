// Runs of characters whose narrow and wide forms have the same code, sixteen at a time.
#pragma once

#include "locale/multibyte.h"

#include <emmintrin.h>
#include <stdint.h>

namespace vexrt {

// The characters that are the same in both forms.
enum class Plain { none, ascii, all };

inline Plain plain_characters(const mbstate_t &state) {
    if (state.__flags & raw_two_bytes || state.__state || state.__value > 0xFF) return Plain::none;
    const LocaleRecord &locale = *thread_record().locale;
    if (byte_is_character(locale)) return Plain::all;
    return has_ascii(locale) ? Plain::ascii : Plain::none;
}

// Whether sixteen bytes at an address lie in one page.
inline bool within_page(const void *at) {
    return (reinterpret_cast<uintptr_t>(at) & 0xFFF) <= 0x1000 - 16;
}

// Converts characters up to the first that is none of them, the terminator, or the limit; returns
// how many. A null `to` counts.
inline size_t widen_run(wchar_t *to, const char *from, size_t limit, Plain plain) {
    const __m128i zero = _mm_setzero_si128();
    const int high_bits = plain == Plain::ascii ? 0xFFFF : 0;
    size_t count = 0;
    while (limit - count >= 16 && within_page(from + count)) {
        __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(from + count));
        int ends =
            _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, zero)) | (_mm_movemask_epi8(bytes) & high_bits);
        if (ends) break;
        if (to) {
            auto *out = reinterpret_cast<__m128i *>(to + count);
            _mm_storeu_si128(out, _mm_unpacklo_epi8(bytes, zero));
            _mm_storeu_si128(out + 1, _mm_unpackhi_epi8(bytes, zero));
        }
        count += 16;
    }
    for (; count < limit; ++count) {
        auto byte = static_cast<unsigned char>(from[count]);
        if (byte == 0 || (plain == Plain::ascii && byte >= 0x80)) break;
        if (to) to[count] = byte;
        if (count % 16 == 15) return count + 1; // the caller comes again
    }
    return count;
}

// With all characters plain, each becomes its low byte.
inline size_t narrow_run(char *to, const wchar_t *from, size_t limit, Plain plain) {
    const __m128i zero = _mm_setzero_si128(), low = _mm_set1_epi16(0xFF);
    const __m128i beyond = _mm_set1_epi16(plain == Plain::ascii ? static_cast<short>(0xFF80) : 0);
    size_t count = 0;
    while (limit - count >= 8 && within_page(from + count)) {
        __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i *>(from + count));
        __m128i fit = _mm_cmpeq_epi16(_mm_and_si128(units, beyond), zero);
        if (_mm_movemask_epi8(_mm_andnot_si128(_mm_cmpeq_epi16(units, zero), fit)) != 0xFFFF) break;
        if (to) {
            __m128i bytes = _mm_packus_epi16(_mm_and_si128(units, low), zero);
            _mm_storel_epi64(reinterpret_cast<__m128i *>(to + count), bytes);
        }
        count += 8;
    }
    for (; count < limit; ++count) {
        wchar_t unit = from[count];
        if (unit == 0 || (plain == Plain::ascii && unit >= 0x80)) break;
        if (to) to[count] = static_cast<char>(unit);
        if (count % 8 == 7) return count + 1;
    }
    return count;
}

} // namespace vexrt
