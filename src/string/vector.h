// What the kernels share. sse2.cpp and avx2.cpp include the kernel headers, each with its own
// `Vector` and its own compiler target; everything in these headers is therefore in an unnamed
// namespace, so that the linker never takes code of one variant for the other.
//
// A `Vector` is a processor's block of bytes:
//   Block, width       the type, and its size in bytes
//   load, load_aligned, store, store_aligned
//   stream, fence      stores past the caches
//   broadcast(c)       c in every element
//   equal<Char>(a, b)  all ones in the elements that are equal
//   greater<Char>(a, b) likewise where a is greater as a signed number
//   mask(block)        the top bit of every byte
//   contained(block, set) all ones in the bytes that are in the set, where `has_contained`
//
// Over-reading: a block is read beyond what the caller named only where it shares a page with a
// byte that the function must read. Blocks at a multiple of their own size never cross a page.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace vexrt {
namespace {

constexpr size_t page_size = 4096;

template <typename Char>
constexpr bool is_narrow = sizeof(Char) == 1;

template <typename Char>
struct UnsignedOf {
    using Type = unsigned char;
};
template <>
struct UnsignedOf<wchar_t> {
    using Type = wchar_t;
};

template <typename Char>
int difference(Char left, Char right) {
    using Unsigned = typename UnsignedOf<Char>::Type;
    return static_cast<Unsigned>(left) - static_cast<Unsigned>(right);
}

inline uintptr_t address_of(const void *pointer) { return reinterpret_cast<uintptr_t>(pointer); }

template <size_t alignment>
const char *align_down(const char *pointer) {
    return reinterpret_cast<const char *>(address_of(pointer) & ~(alignment - 1));
}

// A wide string at an odd address does not fit the blocks; the plain loops take it.
template <typename Char>
bool splits_characters(const Char *characters) {
    return address_of(characters) % sizeof(Char) != 0;
}

inline unsigned lowest_bit(uint32_t mask) { return static_cast<unsigned>(__builtin_ctz(mask)); }
inline unsigned highest_bit(uint32_t mask) {
    return 31 - static_cast<unsigned>(__builtin_clz(mask));
}

template <typename Char>
Char *character_at(const char *byte) {
    return const_cast<Char *>(reinterpret_cast<const Char *>(byte));
}

template <typename Char>
const char *bytes_of(const Char *characters) {
    return reinterpret_cast<const char *>(characters);
}

} // namespace
} // namespace vexrt
