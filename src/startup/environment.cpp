// The copies of the process environment, as attach takes them and as they are taken anew.

#include "core/fatal.h"
#include "heap/heap.h"
#include "startup/startup.h"

namespace vexrt {

namespace {

EnvironmentCopy<char> narrow_copy;
EnvironmentCopy<wchar_t> wide_copy;

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
EnvironmentCopy<Char> captured_environment() {
    static constexpr Char empty[1] = {};
    Char *system = system_block(Char());
    const Char *block = system ? system : empty;

    size_t units = 1;
    EnvironmentCopy<Char> copy = {};
    for_each_variable(block, [&](const Char *, size_t size) {
        units += size;
        ++copy.count;
    });
    using Variable = typename EnvironmentCopy<Char>::Variable;
    copy.strings = static_cast<Char *>(heap_allocate(units * sizeof(Char)));
    copy.variables = static_cast<Variable *>(heap_allocate((copy.count + 1) * sizeof(Variable)));
    if (!copy.strings || !copy.variables) fatal(FatalCode::out_of_memory);

    Char *to = copy.strings;
    Variable *variable = copy.variables;
    for_each_variable(block, [&](const Char *string, size_t size) {
        *variable++ = {to, name_length_of(string)};
        for (size_t i = 0; i < size; ++i) *to++ = string[i];
    });
    *to = 0;
    if (system) free_system_block(system);
    return copy;
}

} // namespace

template <>
EnvironmentCopy<char> &environment_copy<char>() {
    return narrow_copy;
}
template <>
EnvironmentCopy<wchar_t> &environment_copy<wchar_t>() {
    return wide_copy;
}

template <typename Char>
void recapture_environment() {
    EnvironmentCopy<Char> &copy = environment_copy<Char>();
    heap_release(copy.strings);
    heap_release(copy.variables);
    copy = captured_environment<Char>();
}

template void recapture_environment<char>();
template void recapture_environment<wchar_t>();

void capture_environment() {
    narrow_copy = captured_environment<char>();
    wide_copy = captured_environment<wchar_t>();
}

} // namespace vexrt
