// The mode strings of fopen and its family.
#pragma once

#include "stdio/stream.h"

namespace vexrt {

// Parses a mode into stream flags, added to those given (SF_UMODE permits a leading u). False when
// the mode is invalid. `encodings`: whether the "CCS" key may stand at its end.
template <typename Char>
bool parse_mode(const Char *mode, bool encodings, uint32_t &flags);

} // namespace vexrt
