// The copies of the process environment that attach takes.

#include "core/fatal.h"
#include "heap/heap.h"
#include "startup/startup.h"

namespace vexrt {

char *environment_block;
wchar_t *wide_environment_block;

namespace {

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

void capture_environment() {
    environment_block = captured_block<char>();
    wide_environment_block = captured_block<wchar_t>();
}

} // namespace vexrt
