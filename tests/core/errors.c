/* errno: its values for system errors, its texts, and that it belongs to the thread. */
#include "check.h"
#include "child.h"
#include "script.h"

#include <io.h>
#include <locale.h>
#include <malloc.h>
#include <stdlib.h>
#include <threads.h>

__declspec(dllimport) void __stdcall SetLastError(unsigned long code);
__declspec(dllimport) unsigned long __stdcall GetLastError(void);

static unsigned system_error;
static void *__stdcall fail_to_open(const char *p, unsigned a, unsigned b, void *s, unsigned c, unsigned d, void *h)
{
    SetLastError(system_error);
    return (void *)-1;
}

static void test_system_errors(void)
{
    static const struct {
        int first, last, error;
    } ranges[] = {
        {2, 3, ENOENT},     {4, 4, EMFILE},     {5, 5, EACCES},     {7, 9, ENOMEM},     {10, 10, E2BIG},
        {11, 11, ENOEXEC},  {15, 15, ENOENT},   {16, 16, EACCES},   {17, 17, EXDEV},    {18, 18, ENOENT},
        {19, 34, EACCES},   {36, 36, EACCES},   {53, 53, ENOENT},   {65, 65, EACCES},   {67, 67, ENOENT},
        {80, 80, EEXIST},   {82, 83, EACCES},   {89, 89, EAGAIN},   {108, 108, EACCES}, {109, 109, EPIPE},
        {111, 111, ENAMETOOLONG}, {112, 112, ENOSPC}, {113, 113, EAGAIN}, {114, 114, EBADF},
        {128, 129, ECHILD}, {130, 130, EBADF},  {132, 132, EACCES}, {145, 145, ENOTEMPTY},
        {155, 155, EAGAIN}, {158, 158, EACCES}, {161, 161, ENOENT}, {164, 164, EAGAIN}, {167, 167, EACCES},
        {170, 170, EBUSY},  {183, 183, EEXIST}, {188, 202, ENOEXEC}, {206, 206, ENOENT}, {215, 215, EAGAIN},
        {1816, 1816, ENOMEM},
    };
    size_t next = 0;
    script_import("CreateFileA", fail_to_open);
    for (int code = 0; code < 2000; ++code) {
        while (next < sizeof ranges / sizeof *ranges && code > ranges[next].last) ++next;
        int listed = next < sizeof ranges / sizeof *ranges && code >= ranges[next].first;
        char label[24];
        snprintf(label, sizeof label, "system error %d", code);
        check_label = label;
        system_error = (unsigned)code;
        CHECK_ERRNO(_open("x", 0), -1, listed ? ranges[next].error : EINVAL);
    }
    check_label = "";
    script_restore();
}

static void test_texts(void)
{
    static const struct {
        int code;
        const char *text;
    } cases[] = {
        {0, "No error"},
        {EPERM, "Operation not permitted"},
        {EINTR, "Interrupted function"},
        {EDOM, "Mathematics argument out of domain of function"},
        {EFPOS, "File positioning error"},
        {EILSEQ, "Multibyte encoding error"},
        {15, "Error #015"},
        {26, "Error #026"},
        {37, "Error #037"},
        {43, "Error #043"},
        {255, "Error #255"},
        {256, "Unknown error"},
        {-1, "Unknown error"},
        {-2147483647 - 1, "Unknown error"},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        wchar_t wide[64];
        size_t length = strlen(cases[i].text);
        CHECK_STR(strerror(cases[i].code), cases[i].text);
        CHECK_INT(strerrorlen_s(cases[i].code), length);
        for (size_t k = 0; k <= length; ++k) wide[k] = (wchar_t)cases[i].text[k];
        CHECK_WSTR(_wcserror(cases[i].code), wide);
    }
    CHECK(strerror(15) == strerror(43)); /* one buffer a thread */
}

static int violations;
static void count_violation(const char *message, void *instance, errno_t code)
{
    ++violations;
    CHECK_STR(message, "Invalid argument");
    CHECK(instance == NULL);
    CHECK_INT(code, EINVAL);
}

static void test_bounded_text(void)
{
    static const struct {
        size_t size;
        int result;
        const char *text;
    } cases[] = {{64, 0, "File exists"}, {12, 0, "File exists"}, {11, ERANGE, "File ex..."},
                 {5, ERANGE, "F..."},    {4, ERANGE, "..."},     {3, ERANGE, "Fi"},
                 {1, ERANGE, ""}};
    char text[64];
    CHECK(set_constraint_handler_s(count_violation) != NULL);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        memset(text, '#', sizeof text);
        CHECK_INT(strerror_s(text, cases[i].size, EEXIST), cases[i].result);
        CHECK_STR(text, cases[i].text);
        CHECK_INT(text[strlen(cases[i].text) + 1], '#');
    }
    CHECK_INT(violations, 0);
    CHECK_INT(strerror_s(NULL, 10, 1), EINVAL);
    CHECK_INT(strerror_s(text, 0, 1), EINVAL);
    CHECK_INT(strerror_s(text, 0x80000000u, 1), EINVAL);
    CHECK_INT(violations, 3);
    CHECK(set_constraint_handler_s(NULL) == count_violation);
    CHECK_INT(strerror_s(NULL, 10, 1), EINVAL);
    CHECK_INT(violations, 3);
}

static char *narrow_text;
static wchar_t *wide_text;

static unsigned long __stdcall other_thread(void *unused)
{
    /* The first call of a thread makes its record; what the system said last must survive it. */
    SetLastError(1234);
    int *mine = &errno;
    CHECK_INT(GetLastError(), 1234);
    CHECK_INT(*mine, 0);
    *mine = 55;
    CHECK_INT(strerror_s(NULL, 1, 1), EINVAL); /* the other thread's handler is not called */
    narrow_text = strerror(15);
    wide_text = _wcserror(15);
    return 0;
}

static void test_threads(void)
{
    set_constraint_handler_s(count_violation);
    violations = 0;
    errno = 7;
    void *thread = CreateThread(NULL, 0, other_thread, NULL, 0, NULL);
    WaitForSingleObject(thread, 10000);
    CloseHandle(thread);
    CHECK_INT(errno, 7);
    CHECK_INT(violations, 0);
    CHECK_INT(__heap_validate(narrow_text), 0); /* freed with the thread; the wide one is kept */
    CHECK_INT(__heap_validate(wide_text), 1);
    CHECK_WSTR(wide_text, L"Error #015");
    set_constraint_handler_s(NULL);
}

#define CHECK_KEEPS(call) (SetLastError(99), (call), check_int(GetLastError(), 99, __FILE__, __LINE__, #call))

/* What the system said last to the program is still there after calls that ask the system, too. */
static void test_last_error(void)
{
    FILE *device = fopen("NUL", "w");
    mtx_t mutex;
    cnd_t condition;
    tss_t key;
    CHECK_KEEPS(_isatty(5));
    CHECK_KEEPS(strerror(15));
    CHECK_KEEPS(malloc(100000));
    CHECK_KEEPS(mtx_init(&mutex, mtx_timed));
    CHECK_KEEPS(cnd_init(&condition));
    CHECK_KEEPS(tss_create(&key, free));
    CHECK_KEEPS(tss_set(key, NULL));
    CHECK_KEEPS(fprintf(device, "%s\n", "text"));
    CHECK_KEEPS(fflush(device));
    CHECK_KEEPS(setlocale(LC_ALL, ""));
    setlocale(LC_ALL, "C");
    fclose(device);
}

static int child_main(const char *what)
{
    if (strcmp(what, "perror") == 0) {
        errno = ENOENT;
        perror("prefix");
        perror("");
        errno = 200;
        perror(NULL);
        return 0;
    }
    set_constraint_handler_s(strcmp(what, "abort") == 0 ? abort_handler_s : ignore_handler_s);
    strerror_s(NULL, 1, 1);
    return 3;
}

static void test_children(void)
{
    struct child child = child_run("perror", NULL);
    CHECK_STR(child.error, "prefix: No such file or directory\r\nNo such file or directory\r\nError #200\r\n");
    child = child_run("abort", NULL);
    CHECK_INT(child.status, 1);
    CHECK_STR(child.error, "Invalid argument\r\nabort -- terminating\r\n");
    child = child_run("ignore", NULL);
    CHECK_INT(child.status, 3);
    CHECK_STR(child.error, "");
}

int main(int argc, char **argv)
{
    if (argc > 1) return child_main(argv[1]);
    test_system_errors();
    test_texts();
    test_bounded_text();
    test_threads();
    test_last_error();
    test_children();
    return check_done();
}
