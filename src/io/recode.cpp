#include "heap/heap.h"
#include "io/io.h"

namespace vexrt {

void recode_in_place(UINT to, UINT from, char *text, int length) {
    if (to == 0 || from == 0 || to == from || length == 0) return;
    int units = MultiByteToWideChar(from, 0, text, length, nullptr, 0);
    if (units == 0) return;
    auto *wide =
        static_cast<wchar_t *>(heap_allocate(static_cast<unsigned>(units) * sizeof(wchar_t)));
    if (!wide) return;
    if (MultiByteToWideChar(from, 0, text, length, wide, units) == units &&
        WideCharToMultiByte(to, 0, wide, units, nullptr, 0, nullptr, nullptr) == length)
        WideCharToMultiByte(to, 0, wide, units, text, length, nullptr, nullptr);
    heap_release(wide);
}

} // namespace vexrt
