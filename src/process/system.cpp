// system: runs a command by the command interpreter.

#include "core/errno.h"
#include "process/process.h"

#include <io.h>
#include <stdlib.h>

namespace vexrt {

namespace {

template <typename Char>
struct Interpreter;
template <>
struct Interpreter<char> {
    static char *from_environment() { return getenv("COMSPEC"); }
    static bool exists(const char *path) { return _access(path, 0) == 0; }
    static constexpr const char *option = "/c", *fallback = "cmd.exe";
};
template <>
struct Interpreter<wchar_t> {
    static wchar_t *from_environment() { return _wgetenv(L"COMSPEC"); }
    static bool exists(const wchar_t *path) { return _waccess(path, 0) == 0; }
    static constexpr const wchar_t *option = L"/c", *fallback = L"cmd.exe";
};

} // namespace

template <typename Char>
intptr_t run_command(int mode, const Char *command) {
    Char *interpreter = Interpreter<Char>::from_environment();
    Char *arguments[] = {interpreter, const_cast<Char *>(Interpreter<Char>::option),
                         const_cast<Char *>(command), nullptr};
    if (interpreter) {
        intptr_t result = spawn<Char>(mode, interpreter, arguments, nullptr);
        int error = thread_record().error_number;
        if (result != -1 || (error != ENOENT && error != EACCES)) return result;
    }
    arguments[0] = const_cast<Char *>(Interpreter<Char>::fallback);
    return spawn_from_path<Char>(mode, Interpreter<Char>::fallback, arguments, nullptr);
}

template intptr_t run_command(int, const char *);
template intptr_t run_command(int, const wchar_t *);

namespace {

template <typename Char>
int system_command(const Char *command) {
    if (command) return static_cast<int>(run_command(spawn_wait, command));
    const Char *interpreter = Interpreter<Char>::from_environment();
    return interpreter && Interpreter<Char>::exists(interpreter);
}

} // namespace

} // namespace vexrt

extern "C" int system(const char *command) { return vexrt::system_command(command); }
extern "C" int _wsystem(const wchar_t *command) { return vexrt::system_command(command); }
