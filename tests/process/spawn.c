/* Child processes: every member of the family, what arrives in the child, modes, names, waiting. The child
   is the program child.exe beside this one. */
#include "check.h"
#include "script.h"

#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <stdlib.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);
__declspec(dllimport) int __stdcall CopyFileA(const char *from, const char *to, int fail);
__declspec(dllimport) int __stdcall CreateDirectoryA(const char *path, void *security);
__declspec(dllimport) int __stdcall RemoveDirectoryA(const char *path);
__declspec(dllimport) int __stdcall SetEnvironmentVariableA(const char *name, const char *value);

/* Runs a call with standard output in a file and gives what was written. */
static int saved_output;
static void begin_output(void)
{
    fflush(stdout);
    saved_output = _dup(1);
    int fd = _open("spawn-output.tmp", O_RDWR | O_CREAT | O_TRUNC | O_BINARY, 0x180);
    _dup2(fd, 1);
    _close(fd);
}

static const char *end_output(void)
{
    static char text[2000];
    _dup2(saved_output, 1);
    _close(saved_output);
    FILE *file = fopen("spawn-output.tmp", "rb");
    text[fread(text, 1, sizeof text - 1, file)] = '\0';
    fclose(file);
    DeleteFileA("spawn-output.tmp");
    return text;
}

#define CHECK_OUTPUT(call, result, due)                                                            \
    do {                                                                                           \
        begin_output();                                                                            \
        errno = EDOM;                                                                              \
        long long spawned_ = (call);                                                               \
        int error_ = errno;                                                                        \
        const char *text_ = end_output();                                                          \
        CHECK_INT(spawned_, result);                                                               \
        CHECK_INT(error_, 0); /* cleared by a spawn that succeeds */                               \
        CHECK_STR(text_, due);                                                                     \
    } while (0)

static char *variable_text(const char *name, const char *value)
{
    char *text = malloc(strlen(name) + strlen(value) + 1);
    return strcat(strcpy(text, name), value);
}

static void test_members(void)
{
    static char *const arguments[] = {"child", "arguments", "a b", "\"c d\"", NULL};
    static char *const variable[] = {"x", "variable", "SPAWNED", NULL};
    char *path = variable_text("PATH=", getenv("PATH"));
    wchar_t wide_path[2000] = L"PATH=";
    mbstowcs(wide_path, path, 2000);
    char *environment[] = {"SPAWNED=yes", path, NULL};
    static wchar_t *const wide_arguments[] = {L"child", L"arguments", L"\x20AC", NULL};
    static wchar_t *const wide_variable[] = {L"x", L"variable", L"SPAWNED", NULL};
    wchar_t *wide_environment[] = {L"SPAWNED=wide", wide_path, NULL};
    const char *due = "[child][arguments][a][b][c d]"; /* joined as they are: only the child splits */
    CHECK_OUTPUT(_spawnv(_P_WAIT, "child", arguments), 0, due);
    CHECK_OUTPUT(_spawnvp(_P_WAIT, "child.exe", arguments), 0, due);
    CHECK_OUTPUT(_spawnve(_P_WAIT, "child", variable, environment), 0, "yes");
    CHECK_OUTPUT(_spawnvpe(_P_WAIT, ".\\child", variable, environment), 0, "yes");
    CHECK_OUTPUT(_spawnl(_P_WAIT, "child", "x", "arguments", "1", NULL), 0, "[x][arguments][1]");
    CHECK_OUTPUT(_spawnlp(_P_WAIT, "child", "x", "arguments", NULL), 0, "[x][arguments]");
    CHECK_OUTPUT(_spawnle(_P_WAIT, "child", "x", "variable", "SPAWNED", NULL, environment), 0, "yes");
    CHECK_OUTPUT(_spawnlpe(_P_WAIT, "child", "x", "variable", "TEMP", NULL, environment), 0, "(none)");
    CHECK_OUTPUT(_wspawnv(_P_WAIT, L"child", wide_arguments), 0, "[child][arguments][\x80]");
    CHECK_OUTPUT(_wspawnvp(_P_WAIT, L"child", wide_arguments), 0, "[child][arguments][\x80]");
    CHECK_OUTPUT(_wspawnve(_P_WAIT, L"child", wide_variable, wide_environment), 0, "wide");
    CHECK_OUTPUT(_wspawnvpe(_P_WAIT, L"child", wide_variable, wide_environment), 0, "wide");
    CHECK_OUTPUT(_wspawnl(_P_WAIT, L"child", L"x", L"arguments", NULL), 0, "[x][arguments]");
    CHECK_OUTPUT(_wspawnlp(_P_WAIT, L"child", L"x", L"exit", L"5", NULL), 5, "");
    CHECK_OUTPUT(_wspawnle(_P_WAIT, L"child", L"x", L"variable", L"SPAWNED", NULL, wide_environment), 0, "wide");
    CHECK_OUTPUT(_wspawnlpe(_P_WAIT, L"child", L"x", L"variable", L"SPAWNED", NULL, wide_environment), 0, "wide");
    /* the directories of the drives, wherever in the system's block they stand */
    CHECK(SetEnvironmentVariableA("=::", "::\\") && SetEnvironmentVariableA("=Q:", "Q:\\here"));
    CHECK_OUTPUT(_spawnle(_P_WAIT, "child", "x", "drive", "=Q:", NULL, environment), 0, "Q:\\here");
    CHECK_OUTPUT(_wspawnle(_P_WAIT, L"child", L"x", L"drive", L"=Q:", NULL, wide_environment), 0, "Q:\\here");
    CHECK(SetEnvironmentVariableA("=::", NULL) && SetEnvironmentVariableA("=Q:", NULL));
    CHECK_OUTPUT(_spawnl(_P_WAIT, "child", "x", "exit", "-3", NULL), -3, "");
    CHECK_OUTPUT(_spawnl(_P_DETACH, "child", "x", "exit", "3", NULL), 0, "");
    free(path);
}

/* The functions that replace this program: each in a copy of it, which must not come back. */
static int replace(int which)
{
    static char *const arguments[] = {"x", "exit", "0", NULL}, *const environment[] = {"A=b", NULL};
    static wchar_t *const wide[] = {L"x", L"exit", L"0", NULL}, *const wide_environment[] = {L"A=b", NULL};
    switch (which) {
    case 0: _execv("child", arguments); break;
    case 1: _execve("child", arguments, environment); break;
    case 2: _execvp("child", arguments); break;
    case 3: _execvpe("child", arguments, environment); break;
    case 4: _execl("child", "x", "exit", "0", NULL); break;
    case 5: _execle("child", "x", "exit", "0", NULL, environment); break;
    case 6: _execlp("child", "x", "exit", "0", NULL); break;
    case 7: _execlpe("child", "x", "exit", "0", NULL, environment); break;
    case 8: _wexecv(L"child", wide); break;
    case 9: _wexecve(L"child", wide, wide_environment); break;
    case 10: _wexecvp(L"child", wide); break;
    case 11: _wexecvpe(L"child", wide, wide_environment); break;
    case 12: _wexecl(L"child", L"x", L"exit", L"0", NULL); break;
    case 13: _wexecle(L"child", L"x", L"exit", L"0", NULL, wide_environment); break;
    case 14: _wexeclp(L"child", L"x", L"exit", L"0", NULL); break;
    case 15: _wexeclpe(L"child", L"x", L"exit", L"0", NULL, wide_environment); break;
    default: return _execl("no-such-program", "x", NULL) == -1 && errno == ENOENT ? 42 : 1;
    }
    return 1;
}

static void test_replacing(char *self)
{
    for (int i = 0; i <= 16; ++i) {
        char number[8];
        check_label = _itoa(i, number, 10);
        CHECK_INT(_spawnl(_P_WAIT, self, "self", number, NULL), i < 16 ? 0 : 42);
    }
    check_label = "";
}

static void test_descriptors(void)
{
    static const struct {
        int flags, due;
    } cases[] = {{O_BINARY, 2}, {O_TEXT, 1}, {O_TEXT | O_NOINHERIT, 3}};
    for (int i = 0; i < 3; ++i) {
        char number[8], text[8] = "";
        int fd = _open("spawn-descriptor.tmp", O_RDWR | O_CREAT | O_TRUNC | cases[i].flags, 0x180);
        CHECK_INT(_spawnl(_P_WAIT, "child", "x", "descriptor", _itoa(fd, number, 10), NULL), cases[i].due);
        _lseek(fd, 0, SEEK_SET);
        _setmode(fd, O_BINARY);
        CHECK_INT(_read(fd, text, 8), i == 0 ? 2 : i == 1 ? 3 : 0);
        _close(fd);
    }
    DeleteFileA("spawn-descriptor.tmp");
}

static void test_waiting(void)
{
    int status = 0;
    intptr_t child = _spawnl(_P_NOWAIT, "child", "x", "exit", "17", NULL);
    CHECK(child != -1);
    CHECK_INT(_waitpid(child, &status, 0), child);
    CHECK_INT(status, 17);
    CHECK_INT(_waitpid(child, NULL, 3), child);
    CHECK_ERRNO(_waitpid(child, &status, 4), -1, EINVAL);
    CHECK_INT(_cwait(NULL, child, 99), child);
    CHECK_ERRNO(_cwait(&status, child, 0), -1, ECHILD); /* closed by the first */
    CHECK_INT(status, -1);
    CHECK_ERRNO(_cwait(NULL, -1, 0), -1, ECHILD);
    CHECK_ERRNO(_waitpid(-2, NULL, 0), -1, ECHILD);
    child = _spawnl(_P_NOWAITO, "child", "x", "exit", "0", NULL);
    CHECK_INT(_cwait(&status, child, 0), child);
    CHECK_INT(status, 0);
    CHECK(_getpid() != 0);
}

static void test_names(void)
{
    static char *const arguments[] = {"x", "exit", "4", NULL};
    CHECK_ERRNO(_spawnv(_P_WAIT, "no-such-program", arguments), -1, ENOENT);
    CHECK_ERRNO(_spawnv(_P_WAIT, "child.txt", arguments), -1, ENOENT);
    CHECK_ERRNO(_spawnv(9, "child", arguments), -1, EINVAL);
    CHECK_ERRNO(_spawnv(_P_WAIT, NULL, arguments), -1, EINVAL);
    CHECK_ERRNO(_spawnv(_P_WAIT, "child", NULL), -1, EINVAL);
    CHECK_ERRNO(_spawnvp(_P_WAIT, "", arguments), -1, ENOENT);
    CHECK_ERRNO(_spawnv(_P_WAIT, ".", arguments), -1, ENOENT);
    /* .com comes before .exe */
    CHECK(CopyFileA("child.exe", "spawn-name.com", 0) && CopyFileA("child.exe", "spawn-name.exe", 0));
    FILE *broken = fopen("spawn-name.exe", "wb");
    fputs("no program", broken);
    fclose(broken);
    CHECK_INT(_spawnv(_P_WAIT, "spawn-name", arguments), 4);
    CHECK_INT(_spawnv(_P_WAIT, "spawn-name.exe", arguments), -1);
    DeleteFileA("spawn-name.com");
    DeleteFileA("spawn-name.exe");
    /* a batch file */
    FILE *batch = fopen("spawn-batch.bat", "w");
    fputs("@echo batch %1\n@exit 6\n", batch);
    fclose(batch);
    CHECK_OUTPUT(_spawnl(_P_WAIT, "spawn-batch", "spawn-batch.bat", "one", NULL), 6, "batch one\r\n");
    DeleteFileA("spawn-batch.bat");
    /* a command line beyond the system's limit */
    size_t length = 40000;
    char *argument = malloc(length + 1);
    memset(argument, 'x', length);
    argument[length] = '\0';
    CHECK_INT(_spawnl(_P_WAIT, "child", "x", argument, NULL), -1);
    free(argument);
}

static void test_search_path(void)
{
    char *saved = variable_text("PATH=", getenv("PATH")), path[2000];
    CreateDirectoryA("spawn;dir", NULL);
    CHECK(CopyFileA("child.exe", "spawn;dir\\found-by-path.exe", 0));
    static const struct {
        const char *path, *name;
        int due;
    } cases[] = {
        {"C:\\none;\"spawn;dir\"", "found-by-path", 0},
        {";;\"spawn;\"dir\\;C:\\none", "found-by-path", 0},
        {"spawn;dir", "found-by-path", -1},
        {"\\\\no-such-server\\share;\"spawn;dir\"", "found-by-path", 0},
        {"\"spawn;dir\"", "./found-by-path", -1}, /* a slash: no search */
        {"", "found-by-path", -1},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        check_label = cases[i].path;
        sprintf(path, "PATH=%s;%s", cases[i].path, saved + 5); /* with the library's own folder behind */
        _putenv(path);
        CHECK_INT(_spawnlp(_P_WAIT, cases[i].name, "x", "exit", "0", NULL), cases[i].due);
    }
    check_label = "";
    memset(path, 'x', 880); /* an element that is too long ends the walk */
    memcpy(path, "PATH=", 5);
    strcpy(path + 400, ";\"spawn;dir\"");
    _putenv(path);
    CHECK_ERRNO(_spawnlp(_P_WAIT, "found-by-path", "x", "exit", "0", NULL), -1, ENOENT);
    DeleteFileA("spawn;dir\\found-by-path.exe");
    RemoveDirectoryA("spawn;dir");
    _putenv(saved);
    free(saved);
}

static void test_system(void)
{
    char saved[300] = "COMSPEC=";
    strcat(saved, getenv("COMSPEC"));
    CHECK_INT(system(NULL), 1);
    CHECK_INT(_wsystem(NULL), 1);
    CHECK_OUTPUT(system("echo hello"), 0, "hello\r\n");
    CHECK_INT(system("exit 3"), 3);
    CHECK_INT(_wsystem(L"exit 4"), 4);
    _putenv("COMSPEC=");
    CHECK_INT(system(NULL), 0);
    CHECK_INT(system("exit 5"), 5); /* by the search path */
    _putenv("COMSPEC=C:\\no\\such\\interpreter.exe");
    CHECK_INT(system(NULL), 0);
    CHECK_INT(system("exit 6"), 6);
    _putenv(saved);
    CHECK_INT(system(""), 0);
}

/* No block of descriptors, no memory: the failure is told and nothing begins. */
__declspec(dllimport) void __stdcall SetLastError(unsigned long code);
static unsigned long refusal;
static int __stdcall refused(void *a, void *b, void *c, void *d, int e, unsigned long f, void *g, void *h, void *i, void *j)
{
    return SetLastError(refusal), 0;
}

static void test_refusals(void)
{
    script_import("CreateProcessA", refused);
    refusal = 193;
    CHECK_ERRNO(_spawnl(_P_WAIT, "child", "x", NULL), -1, ENOEXEC);
    refusal = 8;
    CHECK_ERRNO(_spawnl(_P_NOWAIT, "child", "x", NULL), -1, ENOMEM);
    script_restore();
}

int main(int argc, char **argv)
{
    if (argc > 1) return replace(atoi(argv[1]));
    test_members();
    test_replacing(argv[0]);
    test_descriptors();
    test_waiting();
    test_names();
    test_search_path();
    test_system();
    test_refusals();
    return check_done();
}
