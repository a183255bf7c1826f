// _spawn, _exec and all their members: which search, which environment, and how the arguments come.

#include "core/errno.h"
#include "process/process.h"

#include <process.h>
#include <stdarg.h>

namespace vexrt {

namespace {

// Arguments that are passed one by one lie in memory as a vector does, the first of them in front
// of what va_start finds.
template <typename Char>
Char *const *as_vector(va_list behind_first) {
    return reinterpret_cast<Char *const *>(behind_first) - 1;
}

// The environment comes behind the null that ends the arguments.
template <typename Char>
Char *const *environment_behind(Char *const *arguments) {
    while (*arguments) ++arguments;
    return reinterpret_cast<Char *const *>(arguments[1]);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

// One width of the family: `W` is what its names have in front, `Char` its character.
#define VEXRT_LIST(first)                                                                          \
    va_list list;                                                                                  \
    va_start(list, first);                                                                         \
    Char *const *arguments = as_vector<Char>(list);                                                \
    va_end(list)

#define VEXRT_SPAWN_FAMILY(W)                                                                      \
    intptr_t W##spawnve(int mode, const Char *path, Char *const a[], Char *const e[]) {            \
        return spawn(mode, path, a, e);                                                            \
    }                                                                                              \
    intptr_t W##spawnvpe(int mode, const Char *name, Char *const a[], Char *const e[]) {           \
        return spawn_from_path(mode, name, a, e);                                                  \
    }                                                                                              \
    intptr_t W##spawnv(int mode, const Char *path, Char *const a[]) {                              \
        return spawn<Char>(mode, path, a, nullptr);                                                \
    }                                                                                              \
    intptr_t W##spawnvp(int mode, const Char *name, Char *const a[]) {                             \
        return spawn_from_path<Char>(mode, name, a, nullptr);                                      \
    }                                                                                              \
    intptr_t W##spawnl(int mode, const Char *path, const Char *first, ...) {                       \
        VEXRT_LIST(first);                                                                         \
        return spawn<Char>(mode, path, arguments, nullptr);                                        \
    }                                                                                              \
    intptr_t W##spawnle(int mode, const Char *path, const Char *first, ...) {                      \
        VEXRT_LIST(first);                                                                         \
        return spawn(mode, path, arguments, environment_behind<Char>(arguments));                  \
    }                                                                                              \
    intptr_t W##spawnlp(int mode, const Char *name, const Char *first, ...) {                      \
        VEXRT_LIST(first);                                                                         \
        return spawn_from_path<Char>(mode, name, arguments, nullptr);                              \
    }                                                                                              \
    intptr_t W##spawnlpe(int mode, const Char *name, const Char *first, ...) {                     \
        VEXRT_LIST(first);                                                                         \
        return spawn_from_path(mode, name, arguments, environment_behind<Char>(arguments));        \
    }                                                                                              \
    intptr_t W##execve(const Char *path, Char *const a[], Char *const e[]) {                       \
        return spawn(spawn_replace, path, a, e);                                                   \
    }                                                                                              \
    intptr_t W##execvpe(const Char *name, Char *const a[], Char *const e[]) {                      \
        return spawn_from_path(spawn_replace, name, a, e);                                         \
    }                                                                                              \
    intptr_t W##execv(const Char *path, Char *const a[]) {                                         \
        return spawn<Char>(spawn_replace, path, a, nullptr);                                       \
    }                                                                                              \
    intptr_t W##execvp(const Char *name, Char *const a[]) {                                        \
        return spawn_from_path<Char>(spawn_replace, name, a, nullptr);                             \
    }                                                                                              \
    intptr_t W##execl(const Char *path, const Char *first, ...) {                                  \
        VEXRT_LIST(first);                                                                         \
        return spawn<Char>(spawn_replace, path, arguments, nullptr);                               \
    }                                                                                              \
    intptr_t W##execle(const Char *path, const Char *first, ...) {                                 \
        VEXRT_LIST(first);                                                                         \
        return spawn(spawn_replace, path, arguments, environment_behind<Char>(arguments));         \
    }                                                                                              \
    intptr_t W##execlp(const Char *name, const Char *first, ...) {                                 \
        VEXRT_LIST(first);                                                                         \
        return spawn_from_path<Char>(spawn_replace, name, arguments, nullptr);                     \
    }                                                                                              \
    intptr_t W##execlpe(const Char *name, const Char *first, ...) {                                \
        VEXRT_LIST(first);                                                                         \
        return spawn_from_path(spawn_replace, name, arguments,                                     \
                               environment_behind<Char>(arguments));                               \
    }

#define Char char
VEXRT_SPAWN_FAMILY(_)
#undef Char
#define Char wchar_t
VEXRT_SPAWN_FAMILY(_w)
#undef Char

} // extern "C"
