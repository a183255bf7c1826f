/* Exceptions of the processor that become signals: the filter's verdicts, and what happens to a main()
   that leaves one unhandled. */
#include "check.h"
#include "child.h"
#include "script.h"

#include <setjmp.h>
#include <signal.h>
#include <stdlib.h>

int __xcptfilter(unsigned long code, void *pointers);
__declspec(dllimport) void __stdcall RaiseException(unsigned code, unsigned flags, unsigned count,
                                                    const unsigned *arguments);

static void *passed_on;
static long __stdcall answer(void *pointers)
{
    passed_on = pointers;
    return 77;
}

static int delivered, reset;
static void handle(int number)
{
    delivered = number;
    reset = signal(number, SIG_DFL) == SIG_DFL;
}

static const struct {
    unsigned code;
    int signal; /* 0: not one */
} cases[] = {
    {0xC0000005, SIGSEGV}, {0xC000001D, SIGILL}, {0xC0000096, SIGILL}, {0xC000008C, 0},
    {0xC000008D, SIGFPE},  {0xC000008E, SIGFPE}, {0xC000008F, SIGFPE}, {0xC0000090, SIGFPE},
    {0xC0000091, SIGFPE},  {0xC0000092, SIGFPE}, {0xC0000093, SIGFPE}, {0xC0000094, 0},
    {0xC0000095, 0},       {0xC00002B3, 0},      {0xC00002B4, SIGFPE}, {0xC00002B5, SIGFPE},
    {0xC00002B6, 0},       {0xC00000FD, 0},      {0x80000003, 0},      {0xE0000001, 0},
};

static void set_all(void (*handler)(int))
{
    signal(SIGSEGV, handler);
    signal(SIGILL, handler);
    signal(SIGFPE, handler);
}

static void test_verdicts(void)
{
    char label[32];
    script_import("UnhandledExceptionFilter", answer);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        unsigned code = cases[i].code;
        int number = cases[i].signal;
        snprintf(label, sizeof label, "exception %x", code);
        check_label = label;
        passed_on = NULL;
        set_all(SIG_DFL);
        CHECK_INT(__xcptfilter(code, label), 77);
        CHECK(passed_on == label);
        set_all(SIG_IGN);
        CHECK_INT(__xcptfilter(code, label), number ? -1 : 77);
        delivered = 0;
        set_all(handle);
        CHECK_INT(__xcptfilter(code, label), number ? -1 : 77);
        CHECK_INT(delivered, number);
        if (number) CHECK(reset);
    }
    check_label = "";
    set_all(SIG_DFL);
    script_restore();
}

static void *__stdcall no_memory(void *heap, unsigned long flags, size_t size) { return NULL; }

/* In a child: what its argument names. */
static jmp_buf back;
static void jump_back(int number) { longjmp(back, number); }
static void leave(void) { fputs("exit handler\n", stdout); }

__attribute__((noinline)) static int read_at(volatile int *at) { return *at; }

static int child_main(const char *what)
{
    atexit(leave);
    if (strcmp(what, "fault") == 0) return read_at((volatile int *)16);
    if (strcmp(what, "ignore") == 0) {
        signal(SIGILL, SIG_IGN);
        RaiseException(0xC000001D, 0, 0, NULL);
        return 21;
    }
    if (strcmp(what, "once") == 0) { /* resumed, faults again, and there is no handler any more */
        signal(SIGSEGV, handle);
        return read_at((volatile int *)16);
    }
    if (strcmp(what, "jump") == 0) {
        for (volatile int round = 0; round < 3; ++round) {
            signal(SIGSEGV, jump_back);
            if (setjmp(back) == 0) return read_at((volatile int *)16);
        }
        return 22;
    }
    if (strcmp(what, "float") == 0) {
        volatile double zero = 0, one = 1;
        unsigned control = 0x1D00 | (0x1F80 & ~0x1F80); /* nothing masked */
        signal(SIGFPE, jump_back);
        if (setjmp(back) == SIGFPE) return 23;
        __asm__ volatile("ldmxcsr %0" : : "m"(control));
        one = one / zero;
        return 1;
    }
    return 99;
}

static void test_main(void)
{
    static const struct {
        const char *what;
        int status;
        const char *output, *error;
    } children[] = {
        {"fault", 255, "", "CRT: unhandled exception (main) -- terminating\r\n"},
        {"once", 255, "", "CRT: unhandled exception (main) -- terminating\r\n"},
        {"ignore", 21, "exit handler\r\n", ""},
        {"jump", 22, "exit handler\r\n", ""},
        {"float", 23, "exit handler\r\n", ""},
    };
    for (size_t i = 0; i < sizeof children / sizeof *children; ++i) {
        check_label = children[i].what;
        struct child child = child_run(children[i].what, NULL);
        CHECK_INT(child.status, children[i].status);
        CHECK_STR(child.output, children[i].output);
        CHECK(strstr(child.error, children[i].error) != NULL);
    }
    check_label = "";
}

int main(int argc, char **argv)
{
    if (argc > 1) return child_main(argv[1]);
    test_verdicts();
    test_main();
    return check_done();
}
