// Builds the kernels of one kind of vector. Included by each variant inside its compiler target.
#pragma once

#include "string/compare.h"
#include "string/copy_string.h"
#include "string/kernels.h"
#include "string/move.h"
#include "string/scan.h"
#include "string/span.h"
#include "string/substring.h"

namespace vexrt {
namespace {

template <typename Vector, typename Char>
constexpr StringKernels<Char> string_kernels_of = {
    .length = length<Vector, Char>,
    .bounded_length = bounded_length<Vector, Char>,
    .find = find<Vector, Char>,
    .find_in_string = find_in_string<Vector, Char>,
    .find_last_in_string = find_last_in_string<Vector, Char>,
    .compare = compare<Vector, Char>,
    .compare_strings = compare_strings<Vector, Char>,
    .compare_strings_bounded = compare_strings_bounded<Vector, Char>,
    .compare_ignoring_case = compare_ignoring_case<Vector, Char>,
    .copy_string = copy_string<Vector, Char>,
    .copy_string_bounded = copy_string_bounded<Vector, Char>,
    .fill = fill<Vector, Char>,
    .span_in = span_in<Vector, Char>,
    .span_outside = span_outside<Vector, Char>,
    .find_string = find_string<Vector, Char>,
};

template <typename Vector>
constexpr Kernels kernels_of = {
    .narrow = string_kernels_of<Vector, char>,
    .wide = string_kernels_of<Vector, wchar_t>,
    .move = move<Vector>,
};

} // namespace
} // namespace vexrt
