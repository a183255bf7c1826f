// Finding a unit in text of bytes or of wide characters; what stays inside this folder.
#pragma once

#include <string.h>
#include <wchar.h>

namespace vexrt {

// The first `wanted` in [from, end), or `end`.
inline const char *find_unit(const char *from, const char *end, char wanted) {
    const void *found = memchr(from, wanted, static_cast<size_t>(end - from));
    return found ? static_cast<const char *>(found) : end;
}

inline const wchar_t *find_unit(const wchar_t *from, const wchar_t *end, wchar_t wanted) {
    const wchar_t *found = wmemchr(from, wanted, static_cast<size_t>(end - from));
    return found ? found : end;
}

} // namespace vexrt
