// Starting programs: the name of the file, the command line, the environment, and the descriptors
// that the child inherits.

#include "core/errno.h"
#include "heap/heap.h"
#include "io/io.h"
#include "process/process.h"

#include <io.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

template <typename Char>
struct System;

template <>
struct System<char> {
    using StartupInfo = STARTUPINFOA;
    static constexpr DWORD flags = 0;
    static char *environment() { return GetEnvironmentStrings(); }
    static void free_environment(char *block) { FreeEnvironmentStringsA(block); }
    static size_t length(const char *text) { return strlen(text); }
    static int access(const char *path) { return _access(path, 0); }
    static char *get_variable(const char *name) { return getenv(name); }
    static constexpr const char *path_variable = "PATH";
    static BOOL create(const char *path, char *command, DWORD creation, char *environment_block,
                       StartupInfo *info, PROCESS_INFORMATION *process) {
        return CreateProcessA(path, command, nullptr, nullptr, true, creation, environment_block,
                              nullptr, info, process);
    }
};

template <>
struct System<wchar_t> {
    using StartupInfo = STARTUPINFOW;
    static constexpr DWORD flags = CREATE_UNICODE_ENVIRONMENT;
    static wchar_t *environment() { return GetEnvironmentStringsW(); }
    static void free_environment(wchar_t *block) { FreeEnvironmentStringsW(block); }
    static size_t length(const wchar_t *text) { return wcslen(text); }
    static int access(const wchar_t *path) { return _waccess(path, 0); }
    static wchar_t *get_variable(const wchar_t *name) { return _wgetenv(name); }
    static constexpr const wchar_t *path_variable = L"PATH";
    static BOOL create(const wchar_t *path, wchar_t *command, DWORD creation,
                       wchar_t *environment_block, StartupInfo *info,
                       PROCESS_INFORMATION *process) {
        return CreateProcessW(path, command, nullptr, nullptr, true, creation, environment_block,
                              nullptr, info, process);
    }
};

// Text on the heap, gone at the end of the scope.
template <typename Char>
class HeapText {
public:
    explicit HeapText(size_t length)
        : text_(static_cast<Char *>(heap_allocate(length * sizeof(Char)))), end_(text_) {
        if (!text_) set_errno(ENOMEM);
    }
    ~HeapText() { heap_release(text_); }
    HeapText(const HeapText &) = delete;
    HeapText &operator=(const HeapText &) = delete;
    explicit operator bool() const { return text_; }

    void add(const Char *text, size_t length) {
        memcpy(end_, text, length * sizeof(Char));
        end_ += length;
    }
    void add(Char c) { *end_++ = c; }
    Char *get() const { return text_; }
    Char *&end() { return end_; }

private:
    Char *text_, *end_;
};

template <typename Char>
bool is_separator(Char c) {
    return c == '\\' || c == '/' || c == ':';
}

template <typename Char>
const Char *file_name_part(const Char *path) {
    const Char *name = path;
    for (; *path; ++path)
        if (is_separator(*path)) name = path + 1;
    return name;
}

// A dot at the very beginning does not begin an extension.
template <typename Char>
bool has_extension(const Char *name) {
    for (const Char *at = name; *at; ++at)
        if (*at == '.' && at != name) return true;
    return false;
}

constexpr const char *extensions[] = {".com", ".exe", ".bat", ".cmd"};
constexpr size_t extension_length = 4;

// Appends the extension of a file that exists to a name that has none. False with errno.
template <typename Char>
bool complete_name(HeapText<Char> &file, bool complete) {
    if (complete) {
        file.add(0);
        return System<Char>::access(file.get()) == 0;
    }
    Char *end = file.end();
    for (const char *extension : extensions) {
        for (size_t i = 0; i <= extension_length; ++i) end[i] = static_cast<Char>(extension[i]);
        if (System<Char>::access(file.get()) == 0) return true;
    }
    return false;
}

// ---- command line and environment ----

// Nothing is quoted: arguments are joined as they are.
template <typename Char>
size_t joined_size(Char *const *strings) {
    size_t size = 1;
    for (; *strings; ++strings) size += System<Char>::length(*strings) + 1;
    return size;
}

template <typename Char>
void join(HeapText<Char> &to, Char *const *strings, Char separator) {
    for (; *strings; ++strings) {
        to.add(*strings, System<Char>::length(*strings));
        to.add(separator);
    }
}

// The run of entries "=C:=directory" in which the system keeps the current directory of each drive.
// Entries of other kinds, such as "=::=::\\", may stand before it.
template <typename Char>
struct DriveEntries {
    Char *block;
    const Char *begin, *end;

    DriveEntries() : block(System<Char>::environment()), begin(block), end(block) {
        if (!block) return;
        while (*begin && !is_drive_entry(begin)) begin += System<Char>::length(begin) + 1;
        for (end = begin; is_drive_entry(end);) end += System<Char>::length(end) + 1;
    }
    ~DriveEntries() {
        if (block) System<Char>::free_environment(block);
    }
    DriveEntries(const DriveEntries &) = delete;
    DriveEntries &operator=(const DriveEntries &) = delete;

    static bool is_drive_entry(const Char *entry) {
        return entry[0] == '=' && static_cast<unsigned>((entry[1] | 0x20) - 'a') < 26 &&
               entry[2] == ':' && entry[3] == '=';
    }
};

// ---- the process ----

// As the modes have it, with the handles of a process that has begun.
intptr_t result_by_mode(int mode, const PROCESS_INFORMATION &process) {
    set_errno(0); // deliberate
    CloseHandle(process.hThread);
    switch (mode) {
    case spawn_replace: _Exit(0);
    case spawn_wait: {
        DWORD code;
        bool done = exit_code_of(process.hProcess, code);
        CloseHandle(process.hProcess);
        return done ? static_cast<intptr_t>(code) : -1;
    }
    case spawn_detached: CloseHandle(process.hProcess); return 0;
    default: return reinterpret_cast<intptr_t>(process.hProcess);
    }
}

template <typename Char>
intptr_t create_process(int mode, const Char *path, Char *command, Char *environment) {
    unsigned size;
    void *descriptors = build_inherited_block(mode == spawn_detached, size);
    if (!descriptors) return fail_with(ENOMEM);
    typename System<Char>::StartupInfo info{};
    info.cb = sizeof info;
    info.cbReserved2 = static_cast<WORD>(size);
    info.lpReserved2 = static_cast<BYTE *>(descriptors);
    PROCESS_INFORMATION process;
    DWORD flags =
        (mode == spawn_detached ? DETACHED_PROCESS : 0) | (environment ? System<Char>::flags : 0);
    bool done = System<Char>::create(path, command, flags, environment, &info, &process);
    DWORD error = GetLastError();
    heap_release(descriptors);
    if (done) return result_by_mode(mode, process);
    map_os_error(error);
    return -1;
}

template <typename Char>
intptr_t spawn_file(int mode, const Char *path, Char *const *arguments, Char *const *environment) {
    HeapText<Char> command(joined_size(arguments));
    if (!command) return -1;
    join(command, arguments, Char(' '));
    if (command.end() != command.get()) --command.end();
    command.add(0);
    if (!environment) return create_process<Char>(mode, path, command.get(), nullptr);
    DriveEntries<Char> drives;
    auto drives_size = static_cast<size_t>(drives.end - drives.begin);
    HeapText<Char> block(drives_size + joined_size(environment) + 1);
    if (!block) return -1;
    block.add(drives.begin, drives_size);
    join(block, environment, Char(0));
    if (block.end() == block.get()) block.add(0);
    block.add(0);
    return create_process(mode, path, command.get(), block.get());
}

} // namespace

template <typename Char>
intptr_t spawn(int mode, const Char *path, Char *const *arguments, Char *const *environment) {
    if (mode < spawn_wait || mode > spawn_detached || !path || !arguments) return fail_with(EINVAL);
    const Char *name = file_name_part(path);
    size_t length = System<Char>::length(path);
    HeapText<Char> file(2 + length + extension_length + 1);
    if (!file) return -1;
    if (name == path) {
        file.add('.');
        file.add('\\');
    }
    file.add(path, length);
    if (!complete_name(file, has_extension(name))) return -1;
    return spawn_file(mode, file.get(), arguments, environment);
}

// ---- the search path ----

namespace {

constexpr size_t path_capacity = 260;

// Takes the next element, without its quotes. The length; 0 at the end of the path and for an
// element that is too long.
template <typename Char>
size_t take_element(const Char *&path, Char *to) {
    while (*path == ';') ++path;
    size_t length = 0;
    for (bool quoted = false; *path && (quoted || *path != ';'); ++path) {
        if (*path == '"') {
            quoted = !quoted;
            continue;
        }
        if (length == path_capacity - 2) return 0;
        to[length++] = *path;
    }
    return length;
}

template <typename Char>
bool begins_as_network_path(const Char *path) {
    auto slash = [](Char c) { return c == '\\' || c == '/'; };
    return slash(path[0]) && slash(path[1]);
}

template <typename Char>
bool contains_slash(const Char *name) {
    while (*name && *name != '/') ++name;
    return *name;
}

} // namespace

template <typename Char>
intptr_t spawn_from_path(int mode, const Char *name, Char *const *arguments,
                         Char *const *environment) {
    intptr_t result = spawn(mode, name, arguments, environment);
    ThreadRecord &record = thread_record();
    if (result != -1 || record.error_number != ENOENT || contains_slash(name)) return result;
    const Char *path = System<Char>::get_variable(System<Char>::path_variable);
    if (!path) return result;
    size_t name_length = System<Char>::length(name), path_length = System<Char>::length(path);
    HeapText<Char> copy(path_length + 1); // another thread may change the variable
    if (!copy) return -1;
    copy.add(path, path_length + 1);
    path = copy.get();
    Char file[path_capacity + 1];
    while (size_t length = take_element(path, file)) {
        if (file[length - 1] != '\\' && file[length - 1] != '/') file[length++] = '\\';
        if (length + name_length >= path_capacity) break;
        memcpy(file + length, name, (name_length + 1) * sizeof(Char));
        result = spawn<Char>(mode, file, arguments, environment);
        if (result != -1 || (record.error_number != ENOENT && !begins_as_network_path(file))) break;
    }
    return result;
}

template intptr_t spawn(int, const char *, char *const *, char *const *);
template intptr_t spawn(int, const wchar_t *, wchar_t *const *, wchar_t *const *);
template intptr_t spawn_from_path(int, const char *, char *const *, char *const *);
template intptr_t spawn_from_path(int, const wchar_t *, wchar_t *const *, wchar_t *const *);

} // namespace vexrt
