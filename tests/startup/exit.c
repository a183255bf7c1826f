/* The ways a process ends, and what runs and is written then. */
#include "check.h"
#include "child.h"
#include "script.h"

#include <assert.h>
#include <io.h>
#include <setjmp.h>
#include <signal.h>
#include <stdlib.h>

__declspec(dllimport) void __stdcall ExitProcess(unsigned status);
__declspec(dllimport) int __stdcall DeleteFileA(const char *path);
__declspec(dllimport) int __stdcall SetEnvironmentVariableA(const char *name, const char *value);
__declspec(dllimport) void *__stdcall CreateEventA(void *security, int manual, int set, const char *name);
__declspec(dllimport) void __stdcall Sleep(unsigned milliseconds);

#define NAME "exit.tmp"

static void first(void) { fputs("first ", stdout); }
static void second(void) { fputs("second ", stdout); }
static void registers_more(void)
{
    atexit(first);
    fputs("more ", stdout);
}
static void exits_again(void) { exit(9); }

/* A file with something in its buffer. */
static FILE *open_with_text(void)
{
    FILE *file = fopen(NAME, "wb");
    fputs("buffered", file);
    return file;
}

static unsigned long __stdcall hold_heap_lock(void *stream)
{
    for (;;) free(malloc(100));
}

/* Holds a stream's lock for good: a reader of a pipe that never has anything. */
static unsigned long __stdcall read_for_ever(void *stream)
{
    fgetc(stream);
    return 0;
}

static unsigned long __stdcall read_past_streams(void *fd)
{
    char byte;
    _read((int)(size_t)fd, &byte, 1);
    return 0;
}

/* Many atexit calls; how many are taken is written by the last resort of stderr. */
static void fill_handlers(void)
{
    int count = 0;
    while (atexit(registers_more) == 0) ++count;
    fprintf(stderr, "%d", count);
    _Exit(0);
}

static void *__stdcall no_module(const char *name) { return NULL; }
static void *__stdcall no_heap_memory(void *heap, unsigned flags, size_t size) { return NULL; }
static unsigned long __stdcall touch_errno(void *unused)
{
    errno = 1;
    return 0;
}

static int fake_format(char *to, const char *format, ...)
{
    return sprintf(to, "formatted by %s", format);
}
static int __stdcall box(void *owner, const char *text, const char *caption, unsigned style)
{
    printf("box %d|%s|%s|%x", owner == NULL, text, caption, style);
    fflush(stdout);
    return 1;
}
static void *__stdcall some_library(const char *name) { return strcmp(name, "user32.dll") ? NULL : (void *)4; }
static int debugged;
static int __stdcall is_debugged(void) { return debugged; }
static void *__stdcall fake_address(void *module, const char *name)
{
    if (strcmp(name, "IsDebuggerPresent") == 0) return (void *)is_debugged;
    if (strcmp(name, "wsprintfA") == 0) return (void *)fake_format;
    return strcmp(name, "MessageBoxA") == 0 ? (void *)box : NULL;
}
static int __stdcall accept_free(void *module) { return 1; }

/* Descriptor 2 becomes another handle; its old number, which would be used again, is taken first. */
static void replace_standard_error(void)
{
    _close(2);
    CreateEventA(NULL, 0, 0, NULL);
    _dup2(1, 2);
}

/* Asserts where the report goes to a box, which is not there if `library` finds none. */
static void assert_boxed(void *__stdcall library(const char *name))
{
    script_import("LoadLibraryA", library);
    script_import("GetProcAddress", fake_address);
    script_import("FreeLibrary", accept_free);
    assert(!"boxed");
}

static const char *const fatal_texts[] = {
    "unexpected error", "unexpected error", "unable to init HEAP", "unable to init threads", "out of memory",
    "corrupt per-thread data", "invalid stream lock number", "unable to init mutex", "unable to lock mutex",
    "unable to unlock mutex", "unable to init semaphore", "unable to post semaphore",
    "unable to wait on semaphore", "unable to destroy semaphore", "unable to create thread",
    "unhandled exception in thread", "unhandled exception (main)", "out of stack space", "unexpected error",
};
enum { fatal_count = sizeof fatal_texts / sizeof *fatal_texts };

static jmp_buf back;
static void __stdcall come_back(unsigned status) { longjmp(back, (int)status); }

/* All fatal errors in one process, from 0 down; the number of statuses that are not 255. */
static int report_all(void)
{
    volatile int wrong = 0;
    script_import("ExitProcess", come_back);
    for (volatile int code = 0; code < fatal_count; ++code) {
        int status = setjmp(back);
        if (status == 0) __crt_abort(-code);
        wrong += status != 255;
    }
    script_restore();
    return wrong;
}

static void __stdcall note_debug_text(const char *text)
{
    printf("|%s", text);
    fflush(stdout);
}
/* What a debugger does that goes on behind the breakpoint. */
static int step_over(void **information)
{
    unsigned char **place = (unsigned char **)((char *)information[1] + 0xB8); /* Eip in the context */
    if (**place == 0xCC) ++*place;
    note_debug_text("stopped");
    return -1;
}
static void abort_debugged(void)
{
    debugged = 1;
    script_import("IsDebuggerPresent", is_debugged);
    script_import("OutputDebugStringA", note_debug_text);
    __try {
        __crt_abort(-4);
    } __except (step_over(__exception_info())) {
    }
}

static int child_main(const char *what)
{
    if (strcmp(what, "fatal-texts") == 0) {
        return report_all();
    } else if (strcmp(what, "exit") == 0) {
        atexit(first);
        atexit(second);
        open_with_text();
        exit(7);
    } else if (strcmp(what, "return") == 0) {
        atexit(registers_more);
        open_with_text();
        return 300;
    } else if (strcmp(what, "nested") == 0) {
        atexit(first);
        atexit(exits_again);
        atexit(second);
        exit(1);
    } else if (strcmp(what, "quick") == 0) {
        atexit(first);
        at_quick_exit(second);
        open_with_text();
        quick_exit(5);
    } else if (strcmp(what, "_Exit") == 0) {
        atexit(first);
        open_with_text();
        _Exit(6);
    } else if (strcmp(what, "process") == 0) {
        atexit(first);
        open_with_text();
        ExitProcess(4);
    } else if (strcmp(what, "abort") == 0) {
        atexit(first);
        open_with_text();
        abort();
    } else if (strncmp(what, "raise", 5) == 0) {
        raise(atoi(what + 5));
    } else if (strcmp(what, "handlers") == 0) {
        fill_handlers();
    } else if (strcmp(what, "handlers-open") == 0) {
        open_with_text();
        fill_handlers();
    } else if (strcmp(what, "quick-handlers") == 0) {
        int count = 0;
        while (at_quick_exit(first) == 0) ++count;
        fprintf(stderr, "%d", count);
        _Exit(0);
    } else if (strcmp(what, "busy-threads") == 0) {
        int fds[2];
        _pipe(fds, 512, 0);
        open_with_text();
        CreateThread(NULL, 0, hold_heap_lock, NULL, 0, NULL);
        CreateThread(NULL, 0, read_for_ever, _fdopen(fds[0], "r"), 0, NULL);
        Sleep(50);
        ExitProcess(8);
    } else if (strcmp(what, "waiting-readers") == 0) {
        int fds[2][2];
        for (int i = 0; i < 2; ++i) _pipe(fds[i], 512, 0);
        open_with_text();
        CreateThread(NULL, 0, read_for_ever, _fdopen(fds[0][0], "r"), 0, NULL);
        _fdopen(fds[1][0], "r"); /* a stream, and a reader past it */
        CreateThread(NULL, 0, read_past_streams, (void *)(size_t)fds[1][0], 0, NULL);
        Sleep(50);
        exit(11);
    } else if (strcmp(what, "assert") == 0) {
        open_with_text();
        assert(1 == 1);
        assert(!"reached");
    } else if (strcmp(what, "assert-box") == 0) {
        replace_standard_error();
        assert_boxed(some_library);
    } else if (strcmp(what, "assert-no-box") == 0) {
        replace_standard_error();
        assert_boxed(no_module);
    } else if (strcmp(what, "assert-debugged") == 0) {
        debugged = 1;
        assert_boxed(some_library);
        return 12;
    } else if (strcmp(what, "assert-conformance") == 0) {
        SetEnvironmentVariableA("__VEXC_CONFORMANCE_TEST__", "");
        replace_standard_error();
        assert(!"conforming");
    } else if (strcmp(what, "no-record") == 0) {
        extern __declspec(dllimport) unsigned __bheap_threshold;
        __bheap_threshold = 0;
        script_import("HeapAlloc", no_heap_memory);
        WaitForSingleObject(CreateThread(NULL, 0, touch_errno, NULL, 0, NULL), 5000);
    } else if (strcmp(what, "no-lock") == 0) {
        extern __declspec(dllimport) unsigned __bheap_threshold;
        __bheap_threshold = 0;
        script_import("HeapAlloc", no_heap_memory);
        fgetc(stdin);
    } else if (strcmp(what, "closed-error") == 0) {
        _close(2);
        __crt_abort(-17);
    } else if (strcmp(what, "stream-lock") == 0) {
        ((unsigned *)stdin)[19] = 256; /* its number in the table of locks */
        fgetc(stdin);
    } else if (strcmp(what, "debugged") == 0) {
        abort_debugged();
    }
    return 99;
}

/* What the child left in the file. */
static void check_left(const char *due)
{
    char text[64] = "";
    FILE *file = fopen(NAME, "rb");
    if (file) {
        fread(text, 1, sizeof text - 1, file);
        fclose(file);
    }
    CHECK_STR(text, due);
    DeleteFileA(NAME);
}

static const struct {
    const char *what;
    int status;
    const char *output, *error, *left;
} cases[] = {
    {"exit", 7, "second first ", "", "buffered"},
    {"return", 300, "more first ", "", "buffered"},
    {"nested", 9, "second first ", "", ""},
    {"quick", 5, "second ", "", ""},
    {"_Exit", 6, "", "", ""},
    {"process", 4, "", "", "buffered"}, /* only the library's own handlers */
    {"abort", 1, "first ", "abort -- terminating\r\n", "buffered"},
    {"raise2", 1, "", "interruption -- terminating\r\n", ""},
    {"raise3", 1, "", "signal #3 -- terminating\r\n", ""},
    {"raise4", 1, "", "invalid executable code -- terminating\r\n", ""},
    {"raise8", 1, "", "arithmetic error -- terminating\r\n", ""},
    {"raise11", 1, "", "invalid storage access -- terminating\r\n", ""},
    {"raise15", 1, "", "termination request -- terminating\r\n", ""},
    {"raise43", 1, "", "signal #43 -- terminating\r\n", ""},
    {"handlers", 0, "", "80", ""},
    {"handlers-open", 0, "", "79", ""},
    {"quick-handlers", 0, "", "80", ""},
    {"busy-threads", 8, "", "", "buffered"},
    {"waiting-readers", 11, "", "", "buffered"}, /* nobody waits for them */
    {"assert-no-box", 1, "abort -- terminating\r\n", "", ""}, /* text mode was duplicated, too */
    {"no-record", 255, "", "CRT: corrupt per-thread data -- terminating\n", ""},
    {"no-lock", 255, "", "CRT: out of memory -- terminating\n", ""},
    {"closed-error", 255, "", "", ""},
    {"stream-lock", 255, "", "CRT: invalid stream lock number -- terminating\r\n", ""},
    {"debugged", 255, "|stopped|CRT: |out of memory| -- terminating\r\r\n",
     "CRT: out of memory -- terminating\r\n", ""},
};

static void test_endings(void)
{
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        check_label = cases[i].what;
        DeleteFileA(NAME);
        struct child child = child_run(cases[i].what, NULL);
        CHECK_INT(child.status, cases[i].status);
        CHECK_STR(child.output, cases[i].output);
        CHECK_STR(child.error, cases[i].error);
        check_left(cases[i].left);
    }
    check_label = "";
}

static void test_fatal_texts(void)
{
    char due[2048] = "";
    for (int i = 0; i < fatal_count; ++i)
        snprintf(due + strlen(due), sizeof due - strlen(due), "CRT: %s -- terminating\r\n", fatal_texts[i]);
    struct child child = child_run("fatal-texts", NULL);
    CHECK_INT(child.status, 0);
    CHECK_STR(child.error, due);
}

static void test_assertions(void)
{
    struct child child = child_run("assert", NULL);
    CHECK_INT(child.status, 1);
    CHECK(strncmp(child.error, "Assertion failed: file ", 23) == 0);
    CHECK(strstr(child.error, "exit.c, func child_main, line ") != NULL);
    CHECK(strstr(child.error, ", !\"reached\"\r\nabort -- terminating\r\n") != NULL);
    check_left("buffered");
    child = child_run("assert-box", NULL);
    CHECK_INT(child.status, 1);
    CHECK_STR(child.output,
              "box 1|formatted by File %.255s, func %.255s, line %.16s, %.255s|Assertion failed|42010"
              "abort -- terminating\r\n");
    child = child_run("assert-debugged", NULL);
    CHECK_INT(child.status, 12); /* the program goes on */
    CHECK(strncmp(child.output, "box 1|", 6) == 0);
    CHECK_STR(child.error, "");
    child = child_run("assert-conformance", NULL);
    CHECK_INT(child.status, 1);
    CHECK(strncmp(child.output, "Assertion failed: file ", 23) == 0);
}

int main(int argc, char **argv)
{
    if (argc > 1) return child_main(argv[1]);
    test_endings();
    test_fatal_texts();
    test_assertions();
    return check_done();
}
