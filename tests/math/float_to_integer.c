/*
 * The conversions that generated code calls with the operand on the x87 stack: results, ranges, flags,
 * the registers that stay, and a stack that is empty afterwards.
 */
#include "check.h"

#include <fenv.h>
#include <limits.h>

struct outcome {
    unsigned low, high, ecx, tags;
    int invalid;
};

/* Calls the routine with `value` on the stack, and known values in ecx and edx. */
#define CALL(routine, value, result)                                                               \
    do {                                                                                           \
        double operand_ = (value);                                                                 \
        fenv_t after_;                                                                             \
        __asm__ volatile("fninit\n\tfldl %4\n\t"                                                   \
                         "movl $0x12345678, %%ecx\n\tmovl $0x87654321, %%edx\n\t"                  \
                         "call _" #routine "\n\t"                                                  \
                         "fnstenv %3\n\tfldenv %3"                                                 \
                         : "=a"((result).low), "=d"((result).high), "=c"((result).ecx),            \
                           "=m"(after_)                                                            \
                         : "m"(operand_)                                                           \
                         : "memory", "cc");                                                        \
        (result).invalid = fetestexcept(FE_INVALID) != 0;                                          \
        (result).tags = after_.__tags & 0xFFFF;                                                    \
    } while (0)

static const double infinity = __builtin_inf(), not_a_number = __builtin_nan("");

static void check_outcome(const char *name, double value, struct outcome got, unsigned due, int invalid,
                          int keeps_edx)
{
    char label[64];
    snprintf(label, sizeof label, "%s of %lld/1000", name,
             value == value && value < 1e15 && value > -1e15 ? (long long)(value * 1000) : 0LL);
    check_label = label;
    CHECK_INT((int)got.low, (int)due);
    CHECK_INT(got.tags, 0xFFFF);
    CHECK_INT(got.ecx, 0x12345678);
    if (keeps_edx) CHECK_INT(got.high, 0x87654321);
    CHECK_INT(got.invalid, invalid);
    check_label = "";
}

#define CHECK_FORM(routine, value, due, invalid)                                                   \
    do {                                                                                           \
        struct outcome outcome_;                                                                   \
        feclearexcept(FE_ALL_EXCEPT);                                                              \
        CALL(routine, value, outcome_);                                                            \
        check_outcome(#routine, value, outcome_, (unsigned)(due), invalid, 1);                     \
    } while (0)

static void test_small_forms(void)
{
    CHECK_FORM(___ftoc, 127.9, 127, 0);
    CHECK_FORM(___ftoc, 128.0, -128, 1);
    CHECK_FORM(___ftoc, -128.0, -128, 0);
    CHECK_FORM(___ftoc, -128.5, -128, 1); /* tested before truncation */
    CHECK_FORM(___ftoc, not_a_number, -128, 1);
    CHECK_FORM(___ftoc, -0.9, 0, 0);
    CHECK_FORM(___ftos, 32767.99, 32767, 0);
    CHECK_FORM(___ftos, 32768.0, -32768, 1);
    CHECK_FORM(___ftos, -32768.0, -32768, 0);
    CHECK_FORM(___ftos, -infinity, -32768, 1);
    CHECK_FORM(___ftouc, 255.9, 255, 0);
    CHECK_FORM(___ftouc, 256.0, 0, 1);
    CHECK_FORM(___ftouc, -0.5, 0, 1);
    CHECK_FORM(___ftouc, -0.0, 0, 0);
    CHECK_FORM(___ftous, 65535.5, 65535, 0);
    CHECK_FORM(___ftous, 65536.0, 0, 1);
    CHECK_FORM(___ftoul, 4294967295.9, 4294967295u, 0);
    CHECK_FORM(___ftoul, 4294967296.0, 0, 1);
    CHECK_FORM(___ftoul, -1.0, 0, 1);
    CHECK_FORM(___ftoul, not_a_number, 0, 1);
    CHECK_FORM(___ftol, -2147483648.0, INT_MIN, 0);
    CHECK_FORM(___ftol, 1234.9, 1234, 0);
    CHECK_FORM(___ftol, -1234.9, -1234, 0);
    CHECK_FORM(___ftol, 1e10, INT_MIN, 1);
}

#define CHECK_WIDE(routine, value, due, invalid)                                                   \
    do {                                                                                           \
        struct outcome outcome_;                                                                   \
        feclearexcept(FE_ALL_EXCEPT);                                                              \
        CALL(routine, value, outcome_);                                                            \
        check_outcome(#routine, value, outcome_, (unsigned)(due), invalid, 0);                     \
        CHECK_INT(outcome_.high, (unsigned)((unsigned long long)(due) >> 32));                     \
    } while (0)

static void test_wide_forms(void)
{
    CHECK_WIDE(___ftoll, -1.9, -1LL, 0);
    CHECK_WIDE(___ftoll, 9e18, 9000000000000000000LL, 0);
    CHECK_WIDE(___ftoll, 1e19, LLONG_MIN, 1);
    CHECK_WIDE(___ftoull, 0.9, 0ULL, 0);
    CHECK_WIDE(___ftoull, 9e18, 9000000000000000000ULL, 0);
    CHECK_WIDE(___ftoull, 1e19, 0x8000000000000000ULL, 0); /* no exception is left */
    CHECK_WIDE(___ftoull, 18446744073709551616.0, 0ULL, 1);
    CHECK_WIDE(___ftoull, -0.5, 0ULL, 1);
    CHECK_WIDE(___ftoull, not_a_number, 0ULL, 1);
}

/* The rounding direction comes back, whatever it was; the flag that was set before stays. */
static void test_environment_stays(void)
{
    struct outcome outcome;
    fexcept_t invalid = FE_INVALID;
    unsigned short control;
    double value = 2.7;
    unsigned result;
    fesetround(FE_UPWARD);
    __asm__ volatile("fldl %1\n\tcall ____ftol" : "=a"(result) : "m"(value) : "edx", "memory", "cc");
    __asm__ volatile("fnstcw %0" : "=m"(control));
    CHECK_INT(result, 2);
    CHECK_INT(control >> 10 & 3, FE_UPWARD);
    fesetround(FE_TONEAREST);
    fesetexceptflag(&invalid, FE_INVALID);
    CALL(___ftoull, 1e19, outcome);
    CHECK(fetestexcept(FE_INVALID));
    feclearexcept(FE_ALL_EXCEPT);
}

int main(void)
{
    test_small_forms();
    test_wide_forms();
    test_environment_stays();
    return check_done();
}
