// Blocks of 16 bytes, which every processor that this library runs on has.
#pragma once

#include "string/vector.h"

#include <emmintrin.h>

namespace vexrt {
namespace {

struct Sse2 {
    using Block = __m128i;
    static constexpr size_t width = sizeof(Block);
    static constexpr uint32_t all = 0xFFFF;
    static constexpr bool has_contained = false;

    static Block load(const char *from) {
        return _mm_loadu_si128(reinterpret_cast<const Block *>(from));
    }
    static Block load_aligned(const char *from) {
        return _mm_load_si128(reinterpret_cast<const Block *>(from));
    }
    // Eight bytes from each of two places; four from each, and the rest zero.
    static Block load_two_halves(const char *low, const char *high) {
        return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const Block *>(low)),
                                  _mm_loadl_epi64(reinterpret_cast<const Block *>(high)));
    }
    static Block load_two_words(const char *low, const char *high) {
        return _mm_unpacklo_epi32(_mm_loadu_si32(low), _mm_loadu_si32(high));
    }
    static void store(void *to, Block block) { _mm_storeu_si128(static_cast<Block *>(to), block); }
    static void store_half(void *to, Block block) {
        _mm_storel_epi64(static_cast<Block *>(to), block);
    }
    static void store_word(void *to, Block block) { _mm_storeu_si32(to, block); }
    static void store_aligned(void *to, Block block) {
        _mm_store_si128(static_cast<Block *>(to), block);
    }
    // Stores past the caches, in no order with other stores before a fence.
    static void stream(void *to, Block block) { _mm_stream_si128(static_cast<Block *>(to), block); }
    static void fence() { _mm_sfence(); }
    static Block broadcast(char c) { return _mm_set1_epi8(c); }
    static Block broadcast(wchar_t c) { return _mm_set1_epi16(static_cast<short>(c)); }
    template <typename Char>
    static Block equal(Block left, Block right) {
        if constexpr (is_narrow<Char>)
            return _mm_cmpeq_epi8(left, right);
        else
            return _mm_cmpeq_epi16(left, right);
    }
    template <typename Char>
    static Block greater(Block left, Block right) {
        if constexpr (is_narrow<Char>)
            return _mm_cmpgt_epi8(left, right);
        else
            return _mm_cmpgt_epi16(left, right);
    }
    static uint32_t mask(Block block) { return static_cast<uint32_t>(_mm_movemask_epi8(block)); }
};

} // namespace
} // namespace vexrt
