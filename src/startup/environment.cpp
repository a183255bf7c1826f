// The copies of the process environment, as attach takes them and as they are taken anew.

#include "core/fatal.h"
#include "heap/heap.h"
#include "startup/startup.h"

namespace vexrt {

namespace {

char *narrow_copy;
wchar_t *wide_copy;

char *system_block(char) { return GetEnvironmentStrings(); }
wchar_t *system_block(wchar_t) { return GetEnvironmentStringsW(); }
void free_system_block(char *block) { FreeEnvironmentStringsA(block); }
void free_system_block(wchar_t *block) { FreeEnvironmentStringsW(block); }

template <typename Char>
size_t string_size(const Char *string) {
    size_t size = 1;
    while (*string++) ++size;
    return size;
}

// Calls `use(string, size)` for every string but those that begin with '=': the system keeps the
// current directory of each drive in those, and programs never see them.
template <typename Char, typename Use>
void for_each_variable(const Char *block, Use use) {
    while (*block) {
        size_t size = string_size(block);
        if (*block != '=') use(block, size);
        block += size;
    }
}

template <typename Char>
Char *captured_block() {
    static constexpr Char empty[1] = {};
    Char *system = system_block(Char());
    const Char *block = system ? system : empty;

    size_t units = 1;
    for_each_variable(block, [&](const Char *, size_t size) { units += size; });
    auto *copy = static_cast<Char *>(heap_allocate(units * sizeof(Char)));
    if (!copy) fatal(FatalCode::out_of_memory);

    Char *to = copy;
    for_each_variable(block, [&](const Char *string, size_t size) {
        for (size_t i = 0; i < size; ++i) *to++ = string[i];
    });
    *to = 0;
    if (system) free_system_block(system);
    return copy;
}

} // namespace

template <>
char *&environment_copy<char>() {
    return narrow_copy;
}
template <>
wchar_t *&environment_copy<wchar_t>() {
    return wide_copy;
}

template <typename Char>
void recapture_environment() {
    heap_release(environment_copy<Char>());
    environment_copy<Char>() = captured_block<Char>();
}

template void recapture_environment<char>();
template void recapture_environment<wchar_t>();

void capture_environment() {
    narrow_copy = captured_block<char>();
    wide_copy = captured_block<wchar_t>();
}

} // namespace vexrt
