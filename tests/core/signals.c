/* Signals: handlers, their reset, the ones that belong to a thread. */
#include "check.h"
#include "child.h"
#include "script.h"

#include <signal.h>

static int delivered, handler_during;
static void handle(int number)
{
    void (*now)(int) = signal(number, SIG_IGN);
    handler_during = now == SIG_DFL;
    signal(number, SIG_DFL);
    delivered = number;
}

static void test_delivery(void)
{
    static const int numbers[] = {1, SIGINT, SIGILL, SIGABRT, SIGFPE, SIGSEGV, SIGTERM, 43};
    for (size_t i = 0; i < sizeof numbers / sizeof *numbers; ++i) {
        CHECK(signal(numbers[i], handle) == SIG_DFL);
        delivered = 0;
        CHECK_INT(raise(numbers[i]), 0);
        CHECK_INT(delivered, numbers[i]);
        CHECK(handler_during); /* reset before the call */
        CHECK(signal(numbers[i], SIG_IGN) == SIG_DFL);
        CHECK_INT(raise(numbers[i]), 0);
        CHECK(signal(numbers[i], SIG_DFL) == SIG_IGN);
    }
}

static void test_bad_arguments(void)
{
    CHECK(signal(0, handle) == SIG_ERR);
    CHECK(signal(44, handle) == SIG_ERR);
    CHECK(signal(-1, handle) == SIG_ERR);
    CHECK(signal(SIGTERM, SIG_ERR) == SIG_ERR);
    CHECK_ERRNO(raise(0), -1, 0);
    CHECK_ERRNO(raise(44), -1, 0);
}

static unsigned long __stdcall look(void *unused)
{
    CHECK(signal(SIGSEGV, SIG_DFL) == SIG_DFL); /* the thread's own */
    CHECK(signal(SIGTERM, handle) == handle);   /* the process's */
    return 0;
}

static void test_threads(void)
{
    signal(SIGSEGV, handle);
    signal(SIGTERM, handle);
    void *thread = CreateThread(NULL, 0, look, NULL, 0, NULL);
    WaitForSingleObject(thread, 10000);
    CloseHandle(thread);
    CHECK(signal(SIGSEGV, SIG_DFL) == handle);
    signal(SIGTERM, SIG_DFL);
}

static int(__stdcall *console_handler)(unsigned);
static int installed;
static int __stdcall keep_handler(void *handler, int add)
{
    console_handler = (int(__stdcall *)(unsigned))handler;
    installed += add;
    return 1;
}
static int __stdcall refuse_handler(void *handler, int add) { return 0; }

/* In a child, where SIGINT has never been set. */
static int console_child(void)
{
    script_import("SetConsoleCtrlHandler", refuse_handler);
    if (signal(SIGINT, handle) != SIG_ERR) return 1;
    script_restore();
    script_import("SetConsoleCtrlHandler", keep_handler);
    if (signal(SIGINT, handle) != SIG_DFL || signal(SIGINT, handle) != handle || installed != 1) return 2;
    if (!console_handler(0) || delivered != SIGINT) return 3;
    if (console_handler(2)) return 4; /* SIG_DFL again: the system ends the process */
    signal(SIGINT, SIG_IGN);
    return console_handler(1) ? 10 : 5;
}

int main(int argc, char **argv)
{
    if (argc > 1) return console_child();
    test_delivery();
    test_bad_arguments();
    test_threads();
    CHECK_INT(child_run("console", NULL).status, 10);
    return check_done();
}
