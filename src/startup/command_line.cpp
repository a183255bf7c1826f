// The command line as main() wants it. The executable's start-up object asks for it once.

#include "core/fatal.h"
#include "heap/heap.h"
#include "platform/kernel32.h"

#include <stdlib.h>

extern "C" {
int __argc;
char **__argv;
wchar_t **__wargv;
}

namespace vexrt {

namespace {

constexpr DWORD path_capacity = 260;

template <typename Char>
struct System;

template <>
struct System<char> {
    static char *command_line() { return GetCommandLineA(); }
    static DWORD module_path(char *path) {
        return GetModuleFileNameA(nullptr, path, path_capacity);
    }
    static char **&published() { return __argv; }
};

template <>
struct System<wchar_t> {
    static wchar_t *command_line() { return GetCommandLineW(); }
    static DWORD module_path(wchar_t *path) {
        return GetModuleFileNameW(nullptr, path, path_capacity);
    }
    static wchar_t **&published() { return __wargv; }
};

template <typename Char>
bool is_blank(Char c) {
    return c == ' ' || c == '\t';
}

// Where the parsed arguments go. Without memory it only counts.
template <typename Char>
struct ArgumentSink {
    Char **vector = nullptr;
    Char *text = nullptr;
    size_t arguments = 0;
    size_t units = 0;

    void begin() {
        if (vector) vector[arguments] = text + units;
        ++arguments;
    }
    void put(Char c) {
        if (text) text[units] = c;
        ++units;
    }
    void end() { put(0); }
};

// The program name is taken as it stands: quotes around it count, backslashes do not.
template <typename Char>
const Char *parse_program_name(const Char *line, ArgumentSink<Char> &sink) {
    sink.begin();
    if (*line == '"') {
        for (++line; *line && *line != '"'; ++line) sink.put(*line);
        if (*line) ++line;
    } else {
        for (; *line && !is_blank(*line); ++line) sink.put(*line);
    }
    sink.end();
    return line;
}

// One argument. Backslashes matter only before a double quote: two of them are one, and an odd one
// makes the quote literal. A doubled quote inside quotes is one quote character and leaves the
// quoted stretch.
template <typename Char>
const Char *parse_argument(const Char *line, ArgumentSink<Char> &sink) {
    sink.begin();
    bool quoted = false;
    for (;;) {
        size_t backslashes = 0;
        for (; *line == '\\'; ++line) ++backslashes;
        if (*line == '"') {
            for (size_t i = 0; i < backslashes / 2; ++i) sink.put('\\');
            if (backslashes % 2) {
                sink.put('"');
            } else {
                if (quoted && line[1] == '"') sink.put(*++line);
                quoted = !quoted;
            }
            ++line;
            continue;
        }
        for (size_t i = 0; i < backslashes; ++i) sink.put('\\');
        if (!*line || (!quoted && is_blank(*line))) break;
        sink.put(*line++);
    }
    sink.end();
    return line;
}

template <typename Char>
void parse(const Char *line, ArgumentSink<Char> &sink) {
    line = parse_program_name(line, sink);
    for (;;) {
        while (is_blank(*line)) ++line;
        if (!*line) return;
        line = parse_argument(line, sink);
    }
}

template <typename Char>
Char **publish_arguments() {
    Char path[path_capacity];
    const Char *line = System<Char>::command_line();
    if (!*line) {
        path[System<Char>::module_path(path) ? path_capacity - 1 : 0] = 0;
        line = path;
    }
    ArgumentSink<Char> count;
    parse(line, count);

    size_t pointers = (count.arguments + 1) * sizeof(Char *);
    auto *block = static_cast<char *>(heap_allocate(pointers + count.units * sizeof(Char)));
    if (!block) fatal(FatalCode::out_of_memory);
    ArgumentSink<Char> fill{reinterpret_cast<Char **>(block),
                            reinterpret_cast<Char *>(block + pointers)};
    parse(line, fill);
    fill.vector[fill.arguments] = nullptr;

    __argc = static_cast<int>(fill.arguments);
    System<Char>::published() = fill.vector;
    return fill.vector;
}

template <typename Char>
int concmdln(int *count, Char ***vector) {
    Char **arguments = publish_arguments<Char>();
    *count = __argc;
    *vector = arguments;
    return reinterpret_cast<int>(arguments);
}

// Just past the program name and the blanks behind it, as WinMain wants it.
template <typename Char>
Char *behind_program_name(Char *line) {
    if (*line == '"') {
        for (++line; *line && *line != '"'; ++line) {
        }
        if (*line) ++line;
    } else {
        while (static_cast<unsigned>(*line) > ' ') ++line; // a negative char counts as above
    }
    while (*line && static_cast<unsigned>(*line) <= ' ') ++line;
    return line;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" int __concmdln(int *count, char ***vector) { return concmdln(count, vector); }
extern "C" int __wconcmdln(int *count, wchar_t ***vector) { return concmdln(count, vector); }
extern "C" char *__wincmdln() { return behind_program_name(GetCommandLineA()); }
extern "C" wchar_t *__wwincmdln() { return behind_program_name(GetCommandLineW()); }
