// Text to floating point, for narrow and wide text and both precisions.
//
// A fixed number of significant digits is kept: 27 decimal or 21 hexadecimal ones for double, 9 or
// 7 for float. The first integer digit beyond them rounds the kept ones half up; fraction digits
// beyond them are dropped. What is kept of a decimal number is converted with correct rounding.
#pragma once

namespace vexrt {

// Converts the longest acceptable prefix of `text`, times 10^power if it is decimal. `end` is
// behind it, or at `text` when there is none. ERANGE when a decimal number becomes 0 or infinite.
template <typename Float, typename Char>
Float parse_float(const Char *text, const Char *&end, int power);

} // namespace vexrt
