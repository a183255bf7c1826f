#include "locale/own_state.h"

#include <stdlib.h>

namespace vexrt {

mbstate_t *state_or_own(mbstate_t *given, StateOf function) {
    if (given) return given;
    ConversionState *&own = thread_record().conversion_states[static_cast<unsigned>(function)];
    if (!own) own = static_cast<ConversionState *>(calloc(1, sizeof *own));
    return own;
}

} // namespace vexrt
