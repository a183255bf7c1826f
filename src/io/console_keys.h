// Keys that are no characters, as the two-byte codes that PC programs know.
#pragma once

#include "platform/kernel32.h"

namespace vexrt {

// The byte that is read first, 0 or E0 but for two rows of the enhanced keys, and the one that
// follows it. `second` is 0 in no code but those two rows'.
struct KeyCode {
    unsigned char first, second;
    bool exists;
};

// The code of a key event that has no character.
KeyCode find_key_code(const KEY_EVENT_RECORD &event);

} // namespace vexrt
