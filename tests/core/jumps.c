/* setjmp and longjmp: values, registers, frames with __try, jumps out of handlers and filters. */
#include "check.h"

#include <setjmp.h>
#include <signal.h>

__declspec(dllimport) void __stdcall RaiseException(unsigned code, unsigned flags, unsigned count,
                                                    const unsigned *arguments);

static char trace[64];
static void note(const char *text) { strcat(trace, text); }
static void check_trace(const char *due)
{
    CHECK_STR(trace, due);
    trace[0] = '\0';
}

static jmp_buf place;

__attribute__((noinline)) static void jump(int value) { longjmp(place, value); }

static void test_values(void)
{
    static const int values[] = {1, 0, -5, 0x7FFFFFFF};
    static const int dues[] = {1, 1, -5, 0x7FFFFFFF};
    for (volatile int i = 0; i < 4; ++i) {
        int got = setjmp(place);
        if (got == 0) jump(values[i]);
        CHECK_INT(got, dues[i]);
    }
}

/* What does not change between the two returns is still there. */
__attribute__((noinline)) static int keep(int a, int b, int c, int d)
{
    volatile int tries = 0;
    int e = a * b, f = c * d;
    if (setjmp(place) < 3) {
        tries = tries + 1;
        jump(tries);
    }
    return a + b + c + d + e + f + tries;
}

static void deep(int n)
{
    static void (*volatile const end)(int) = jump;
    volatile char room[100];
    room[n % 100] = 1;
    if (n == 0) end(9);
    else deep(n - 1);
    room[0] = 2;
}

static void test_registers(void)
{
    CHECK_INT(keep(1, 2, 3, 4), 27);
    int got = setjmp(place);
    if (got == 0) deep(1000);
    CHECK_INT(got, 9);
}

static void leave_two(void)
{
    __try {
        __try {
            note("a");
            jump(2);
        } __finally {
            note("1");
        }
    } __finally {
        note("2");
    }
    note("!");
}

static void test_unwinding(void)
{
    if (setjmp(place) == 0) {
        __try {
            leave_two();
        } __except ((note("!"), 1)) {
            note("!");
        }
    } else {
        note("z");
    }
    check_trace("a12z");
}

/* The target has a __try of its own: the jump leaves the inner ones and stays in the outer one. */
static void test_own_levels(void)
{
    __try {
        if (setjmp(place) == 0) {
            __try {
                __try {
                    jump(1);
                } __finally {
                    note("1");
                }
            } __finally {
                note("2");
            }
        } else {
            note("t");
        }
        RaiseException(0xE0000001, 0, 0, NULL);
    } __except (1) {
        note("h");
    }
    check_trace("12th");
}

static void test_within_one_level(void)
{
    __try {
        if (setjmp(place) == 0) jump(1);
        note("a");
    } __finally {
        note("f");
    }
    check_trace("af");
}

static void raise_through_finally(void)
{
    __try {
        RaiseException(0xE0000002, 0, 0, NULL);
    } __finally {
        note("f");
        jump(3); /* out of an unwind that is under way */
    }
}

static void test_out_of_finally(void)
{
    if (setjmp(place) == 0) {
        __try {
            __try {
                raise_through_finally();
            } __finally {
                note("g");
            }
        } __except (1) {
            note("!");
        }
    } else {
        note("z");
    }
    check_trace("fgz");
    __try {
        RaiseException(0xE0000003, 0, 0, NULL);
    } __except (1) {
        note("h"); /* dispatch still works */
    }
    check_trace("h");
}

static int jump_in_filter(void)
{
    note("f");
    jump(4);
    return 0;
}

static void test_out_of_filter(void)
{
    if (setjmp(place) == 0) {
        __try {
            __try {
                RaiseException(0xE0000004, 0, 0, NULL);
            } __finally {
                note("u");
            }
        } __except (jump_in_filter()) {
            note("!");
        }
    }
    check_trace("fu");
}

static void on_signal(int number)
{
    note("s");
    jump(number);
}

static void test_out_of_signal_handler(void)
{
    signal(SIGTERM, on_signal);
    int got = setjmp(place);
    if (got == 0) raise(SIGTERM);
    CHECK_INT(got, SIGTERM);
    check_trace("s");
}

static int *passed_env;
static void __stdcall leave_by_hand(int *env) { passed_env = env; }

static void test_further_arguments(void)
{
    int got = _setjmp3(place, 3, leave_by_hand, -1, 77);
    if (got == 0) jump(5);
    CHECK_INT(got, 5);
    CHECK(passed_env == place);
    CHECK_INT(place[10], 77);
}

int main(void)
{
    test_values();
    test_registers();
    test_unwinding();
    test_own_levels();
    test_within_one_level();
    test_out_of_finally();
    test_out_of_filter();
    test_out_of_signal_handler();
    test_further_arguments();
    return check_done();
}
