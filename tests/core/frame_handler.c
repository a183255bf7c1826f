/* Structured exceptions: __try with __except and __finally, in every nesting. */
#include "check.h"

__declspec(dllimport) void __stdcall RaiseException(unsigned code, unsigned flags, unsigned count,
                                                    const unsigned *arguments);

static char trace[128];
static void note(const char *text) { strcat(trace, text); }

static void check_trace(const char *due)
{
    CHECK_STR(trace, due);
    trace[0] = '\0';
}

static int filter(const char *name, int verdict)
{
    note(name);
    return verdict;
}

static void throw_code(unsigned code) { RaiseException(code, 0, 0, NULL); }

static void test_handler_runs(void)
{
    __try {
        note("a");
        throw_code(0xE0000001);
        note("!");
    } __except (filter("f", 1)) {
        note("h");
    }
    note("z");
    check_trace("afhz");
}

static void test_no_exception(void)
{
    __try {
        note("a");
    } __except (filter("!", 1)) {
        note("!");
    }
    __try {
        note("b");
    } __finally {
        note("c");
    }
    check_trace("abc");
}

static void throw_through_finally(void)
{
    __try {
        __try {
            throw_code(0xE0000002);
        } __finally {
            note("1");
        }
    } __finally {
        note("2");
    }
    note("!");
}

static void test_unwind_order(void)
{
    __try {
        __try {
            throw_through_finally();
        } __except (filter("i", 0)) { /* does not want it */
            note("!");
        }
    } __except (filter("o", 1)) {
        note("h");
    }
    check_trace("io12h"); /* all filters before any finally block */
}

static void test_continue(void)
{
    __try {
        throw_code(0xE0000003);
        note("on");
    } __except (filter("f", -1)) {
        note("!");
    }
    check_trace("fon");
}

static unsigned seen_code;
static int look(unsigned code, void **information)
{
    seen_code = code;
    return information && *information && *(unsigned *)*information == code;
}

static void test_information(void)
{
    int local = 5;
    __try {
        local = 6;
        throw_code(0xE0001234);
    } __except (look(__exception_code(), (void **)__exception_info())) {
        ++local;
    }
    CHECK_INT(seen_code, 0xE0001234);
    CHECK_INT(local, 7);
}

__attribute__((noinline)) static int read_at(volatile int *at) { return *at; }

static void test_hardware_fault(void)
{
    int value = 0;
    __try {
        value = read_at((volatile int *)16);
    } __except (__exception_code() == 0xC0000005) {
        value = -1;
    }
    CHECK_INT(value, -1);
}

static void throw_in_finally(void)
{
    __try {
        __try {
            throw_code(0xE0000005);
        } __finally {
            note("f");
            throw_code(0xE0000006);
        }
    } __except (filter("c", __exception_code() == 0xE0000006)) {
        note("6");
    }
}

static void test_exception_in_finally(void)
{
    __try {
        throw_in_finally();
    } __except (filter("o", 1)) {
        note("h");
    }
    CHECK(strstr(trace, "f") != NULL && strchr(trace, '!') == NULL);
    trace[0] = '\0';
}

static int leave_early(int how)
{
    __try {
        if (how == 1) return 1;
        if (how == 2) __leave;
        note("e");
    } __finally {
        note("f");
    }
    return 0;
}

static void test_leaving(void)
{
    CHECK_INT(leave_early(0), 0);
    check_trace("ef");
    CHECK_INT(leave_early(1), 1);
    check_trace("f");
    CHECK_INT(leave_early(2), 0);
    check_trace("f");
}

static int depth(int n)
{
    int result = 0;
    __try {
        if (n > 0) result = depth(n - 1) + 1;
        else throw_code(0xE0000007);
    } __except (filter("", n % 2)) {
        result = 100;
    }
    return result;
}

int main(void)
{
    test_handler_runs();
    test_no_exception();
    test_unwind_order();
    test_continue();
    test_information();
    test_hardware_fault();
    test_exception_in_finally();
    test_leaving();
    CHECK_INT(depth(10), 109); /* level 1 takes it */
    return check_done();
}
