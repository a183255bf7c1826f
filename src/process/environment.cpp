// The environment as programs see it: the copies of the process's own that attach took. Each width
// has its own copy, which is taken anew when a variable is set through the same width; the other
// one stays as it was.

#include "core/constraint.h"
#include "core/lock.h"
#include "platform/kernel32.h"
#include "startup/startup.h"

#include <stdlib.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

size_t length_of(const char *text) { return strlen(text); }
size_t length_of(const wchar_t *text) { return wcslen(text); }
bool equal_but_for_case(const char *a, const char *b, size_t n) { return _strnicmp(a, b, n) == 0; }
bool equal_but_for_case(const wchar_t *a, const wchar_t *b, size_t n) {
    return _wcsnicmp(a, b, n) == 0;
}
const char *find_equals_sign(const char *text, size_t length) {
    return static_cast<const char *>(memchr(text, '=', length));
}
const wchar_t *find_equals_sign(const wchar_t *text, size_t length) {
    return wmemchr(text, L'=', length);
}
BOOL set_variable(const char *name, const char *value) {
    return SetEnvironmentVariableA(name, value);
}
BOOL set_variable(const wchar_t *name, const wchar_t *value) {
    return SetEnvironmentVariableW(name, value);
}

// The value, in the copy; null when there is none. Lock 7 is held. The first letters settle most
// cases. A name with a '=' in it reaches into the value of a shorter one.
template <typename Char>
Char *find_variable(const Char *name) {
    size_t length = length_of(name), own_length = length;
    if (const Char *end = find_equals_sign(name, length))
        own_length = static_cast<size_t>(end - name);
    const EnvironmentCopy<Char> &copy = environment_copy<Char>();
    for (unsigned i = 0; i < copy.count; ++i) {
        auto &variable = copy.variables[i];
        if (variable.name_length != own_length) continue;
        if (((*variable.text ^ *name) & ~0x20) != 0 && static_cast<unsigned>(*name) < 0x80)
            continue;
        if (equal_but_for_case(variable.text, name, length) && variable.text[length] == '=')
            return variable.text + length + 1;
    }
    return nullptr;
}

template <typename Char>
Char *get_variable(const Char *name) {
    if (!name) return nullptr;
    Locked guard(numbered_lock(lock_environment));
    return find_variable(name);
}

template <typename Char>
errno_t get_variable_s(size_t *length, Char *buffer, rsize_t size, const Char *name) {
    if (length) *length = 0;
    bool usable = size == 0 || (buffer && size <= RSIZE_MAX);
    if (buffer && size) *buffer = 0;
    if (!usable || !name) return report_constraint(EINVAL);
    Locked guard(numbered_lock(lock_environment));
    const Char *value = find_variable(name);
    if (!value) return ENOENT;
    size_t count = length_of(value);
    if (length) *length = count;
    if (count >= size) return ERANGE;
    memcpy(buffer, value, (count + 1) * sizeof(Char));
    return 0;
}

// "name=value"; without a value the variable goes.
template <typename Char>
int put_variable(const Char *string) {
    if (!string) return -1;
    size_t name_length = name_length_of(string);
    if (!string[name_length]) return -1;
    size_t size = (name_length + 1) * sizeof(Char);
    auto *name = static_cast<Char *>(malloc(size));
    if (!name) return -1;
    memcpy(name, string, size);
    name[name_length] = 0;
    const Char *value = string + name_length + 1;
    Locked guard(numbered_lock(lock_environment));
    bool done = set_variable(name, *value ? value : nullptr);
    if (done) recapture_environment<Char>();
    free(name);
    return done ? 0 : -1;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

char *getenv(const char *name) { return get_variable(name); }
wchar_t *_wgetenv(const wchar_t *name) { return get_variable(name); }

errno_t getenv_s(size_t *length, char *value, rsize_t size, const char *name) {
    return get_variable_s(length, value, size, name);
}
errno_t _wgetenv_s(size_t *length, wchar_t *value, rsize_t size, const wchar_t *name) {
    return get_variable_s(length, value, size, name);
}

int _putenv(const char *string) { return put_variable(string); }
int _wputenv(const wchar_t *string) { return put_variable(string); }

} // extern "C"
