#include "string/kernels.h"
#include "string/two_way.h"

#include <immintrin.h>
#include <stddef.h>
#include <stdint.h>

#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)

#include "string/kernel_set.h"
#include "string/sse2_vector.h"

namespace vexrt {

namespace {

// Blocks of 32 bytes.
struct Avx2 {
    using Half = Sse2;
    using Block = __m256i;
    static constexpr size_t width = sizeof(Block);
    static constexpr uint32_t all = 0xFFFFFFFF;

    static Block load(const char *from) {
        return _mm256_loadu_si256(reinterpret_cast<const Block *>(from));
    }
    static Block load_aligned(const char *from) {
        return _mm256_load_si256(reinterpret_cast<const Block *>(from));
    }
    static void store(void *to, Block block) {
        _mm256_storeu_si256(static_cast<Block *>(to), block);
    }
    static void store_aligned(void *to, Block block) {
        _mm256_store_si256(static_cast<Block *>(to), block);
    }
    static void stream(void *to, Block block) {
        _mm256_stream_si256(static_cast<Block *>(to), block);
    }
    static void fence() { _mm_sfence(); }
    static Block broadcast(char c) { return _mm256_set1_epi8(c); }
    static Block broadcast(wchar_t c) { return _mm256_set1_epi16(static_cast<short>(c)); }
    template <typename Char>
    static Block equal(Block left, Block right) {
        if constexpr (is_narrow<Char>)
            return _mm256_cmpeq_epi8(left, right);
        else
            return _mm256_cmpeq_epi16(left, right);
    }
    template <typename Char>
    static Block greater(Block left, Block right) {
        if constexpr (is_narrow<Char>)
            return _mm256_cmpgt_epi8(left, right);
        else
            return _mm256_cmpgt_epi16(left, right);
    }
    static uint32_t mask(Block block) { return static_cast<uint32_t>(_mm256_movemask_epi8(block)); }

    // The rows of a byte set (see span.h), each half for both halves of a block.
    static constexpr bool has_contained = true;
    struct Set {
        Block below_128, from_128;
    };

    static Set set_of(const uint8_t *rows) {
        auto half = reinterpret_cast<const __m128i *>(rows);
        return {_mm256_broadcastsi128_si256(_mm_load_si128(half)),
                _mm256_broadcastsi128_si256(_mm_load_si128(half + 1))};
    }

    // A shuffle index picks by its low four bits and gives 0 where its top bit is set.
    static Block contained(Block block, const Set &set) {
        Block top_flipped = _mm256_xor_si256(block, _mm256_set1_epi8(-128));
        Block row = _mm256_shuffle_epi8(set.below_128, block) |
                    _mm256_shuffle_epi8(set.from_128, top_flipped);
        const Block bits = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201));
        Block high_digit = _mm256_srli_epi16(block, 4) & _mm256_set1_epi8(7);
        Block bit = _mm256_shuffle_epi8(bits, high_digit);
        return _mm256_cmpeq_epi8(row & bit, bit);
    }
};

} // namespace

constinit const Kernels avx2_kernels = kernels_of<Avx2>;

} // namespace vexrt

#pragma clang attribute pop
