// The conversion states that functions keep in the thread's record for a null state argument.
#pragma once

#include "core/thread_record.h"

#include <_mbstate.h>

namespace vexrt {

struct ConversionState : mbstate_t {};

// `given`, or the thread's own state of that function, made on first use. Null when there is no
// memory for it.
mbstate_t *state_or_own(mbstate_t *given, StateOf function);

} // namespace vexrt
