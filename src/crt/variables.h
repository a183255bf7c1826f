// The variables that main() gets as its third argument.
#pragma once

#include "crt/startup.h"
#include "platform/kernel32.h"

namespace vexrt {

inline char *environment_block(char) { return GetEnvironmentStrings(); }
inline wchar_t *environment_block(wchar_t) { return GetEnvironmentStringsW(); }

template <typename Char>
Char *end_of(Char *text) {
    while (*text) ++text;
    return text;
}

// The process's environment as it is now, for as long as the process lives; without the entries
// that begin with '=', which are the system's own.
template <typename Char>
Char **variables() {
    constexpr int out_of_memory = -4;
    static Char empty[1];
    Char *block = environment_block(Char());
    if (!block) block = empty;
    size_t count = 0;
    for (Char *text = block; *text; text = end_of(text) + 1) ++count;
    auto list = static_cast<Char **>(malloc((count + 1) * sizeof(Char *)));
    if (!list) __crt_abort(out_of_memory);
    Char **to = list;
    for (Char *text = block; *text; text = end_of(text) + 1)
        if (*text != '=') *to++ = text;
    *to = nullptr;
    return list;
}

} // namespace vexrt
