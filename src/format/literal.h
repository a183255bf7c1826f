// How far the text in front of the next conversion goes.
#pragma once

#include <emmintrin.h>
#include <stddef.h>
#include <stdint.h>

namespace vexrt {

namespace literal {

inline __m128i broadcast(char c) { return _mm_set1_epi8(c); }
inline __m128i broadcast(wchar_t c) { return _mm_set1_epi16(static_cast<short>(c)); }
inline __m128i equal(__m128i a, __m128i b, char) { return _mm_cmpeq_epi8(a, b); }
inline __m128i equal(__m128i a, __m128i b, wchar_t) { return _mm_cmpeq_epi16(a, b); }

} // namespace literal

// The number of characters in front of the first '%' or NUL. Reads whole aligned blocks of 16
// bytes, which never reach into another page than the text does.
template <typename Char>
inline size_t literal_length(const Char *text) {
    using namespace literal;
    auto address = reinterpret_cast<uintptr_t>(text);
    if (address % sizeof(Char)) {
        size_t length = 0;
        while (text[length] && text[length] != '%') ++length;
        return length;
    }
    const __m128i percent = broadcast(Char('%')), nul = _mm_setzero_si128();
    uintptr_t block = address & ~uintptr_t{15};
    unsigned before = ~0u << (address & 15); // what lies in front of the text does not count
    for (;; block += 16, before = ~0u) {
        __m128i bytes = _mm_load_si128(reinterpret_cast<const __m128i *>(block));
        __m128i ends = _mm_or_si128(equal(bytes, percent, Char()), equal(bytes, nul, Char()));
        if (unsigned found = static_cast<unsigned>(_mm_movemask_epi8(ends)) & before)
            return (block + static_cast<unsigned>(__builtin_ctz(found)) - address) / sizeof(Char);
    }
}

} // namespace vexrt
