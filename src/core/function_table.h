// Tables of functions that the linker puts together: everything between the A and the Z section of
// a name, sorted.
#pragma once

namespace vexrt {

using TableFunction = void (*)();

// The optimiser must not reason about what lies between two objects.
template <typename Entry>
const Entry *opaque(const Entry *entry) {
    __asm__("" : "+r"(entry));
    return entry;
}

// Calls the functions from the first to the last; the linker may leave empty entries.
inline void run_table(const TableFunction *begin, const TableFunction *end) {
    for (const TableFunction *entry = opaque(begin); entry < opaque(end); ++entry)
        if (*entry) (*entry)();
}

} // namespace vexrt
