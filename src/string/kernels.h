// The string functions whose speed depends on the processor, once for each set of vector
// instructions.
//
// Every public function that has such a kernel jumps through `kernels`, which starts as the SSE2
// set, so that calls made before the processor is known are right, and becomes the AVX2 set at
// attach where the processor has it.
#pragma once

#include <stddef.h>

namespace vexrt {

template <typename Char>
struct StringKernels {
    size_t (*length)(const Char *string);
    size_t (*bounded_length)(const Char *string, size_t limit);
    Char *(*find)(const Char *characters, Char wanted, size_t count);
    Char *(*find_in_string)(const Char *string, Char wanted);
    Char *(*find_last_in_string)(const Char *string, Char wanted);
    int (*compare)(const Char *left, const Char *right, size_t count);
    int (*compare_strings)(const Char *left, const Char *right);
    int (*compare_strings_bounded)(const Char *left, const Char *right, size_t limit);
    // As if A to Z, and no other letters, were lower case.
    int (*compare_ignoring_case)(const Char *left, const Char *right, size_t limit);
    Char *(*copy_string)(Char *to, const Char *from); // returns `to`
    // Copies `limit` characters at most, the terminator among them if it is. Returns the length.
    size_t (*copy_string_bounded)(Char *to, const Char *from, size_t limit);
    Char *(*fill)(Char *to, Char value, size_t count); // returns `to`
    // How many characters at the front are (are not) in the set; never more than `limit`.
    size_t (*span_in)(const Char *string, const Char *set, size_t limit);
    size_t (*span_outside)(const Char *string, const Char *set, size_t limit);
    Char *(*find_string)(const Char *haystack, const Char *needle);
};

struct Kernels {
    StringKernels<char> narrow;
    StringKernels<wchar_t> wide;
    void *(*move)(void *to, const void *from, size_t size); // the two may overlap
};

extern Kernels kernels;
extern const Kernels avx2_kernels;

void choose_string_kernels(); // at attach, once the processor is known

template <typename Char>
const StringKernels<Char> &string_kernels();
template <>
inline const StringKernels<char> &string_kernels<char>() {
    return kernels.narrow;
}
template <>
inline const StringKernels<wchar_t> &string_kernels<wchar_t>() {
    return kernels.wide;
}

} // namespace vexrt
