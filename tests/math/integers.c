/* Integer division and shifts: the operators, the exported routines, and the standard's functions,
   against division by repeated subtraction of shifted divisors. */
#include "check.h"

#include <limits.h>
#include <stdlib.h>

long long __stdcall ___lldiv(long long divisor, long long dividend);
long long __stdcall ___llmod(long long divisor, long long dividend);
long long __stdcall ___llmul(long long a, long long b);
long long __stdcall ___llshl(int count, long long value);
long long __stdcall ___llshr(int count, long long value);
unsigned long long __stdcall ___ulldiv(unsigned long long divisor, unsigned long long dividend);
unsigned long long __stdcall ___ullmod(unsigned long long divisor, unsigned long long dividend);
unsigned long long __stdcall ___ullshr(int count, unsigned long long value);

typedef unsigned long long u64;

/* The plain rule. */
static u64 long_division(u64 dividend, u64 divisor, u64 *remainder)
{
    u64 quotient = 0, rest = 0;
    for (int bit = 63; bit >= 0; --bit) {
        int carry = rest >> 63 != 0;
        rest = rest << 1 | (dividend >> bit & 1);
        if (carry || rest >= divisor) {
            rest -= divisor;
            quotient |= 1ULL << bit;
        }
    }
    *remainder = rest;
    return quotient;
}

static u64 random_state = 88172645463325252ULL;
static u64 next_random(void)
{
    random_state ^= random_state << 13;
    random_state ^= random_state >> 7;
    return random_state ^= random_state << 17;
}

static void check_division(u64 a, u64 b)
{
    u64 rest, quotient = long_division(a, b, &rest);
    if (___ulldiv(b, a) != quotient || ___ullmod(b, a) != rest || a / b != quotient || a % b != rest) {
        CHECK_INT(___ulldiv(b, a), quotient);
        CHECK_INT(___ullmod(b, a), rest);
        printf("  %llx / %llx\n", a, b);
    }
}

static void test_unsigned(void)
{
    static const u64 edges[] = {1, 2, 3, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x100000000, 0x100000001,
                                0x1FFFFFFFF, 0x7FFFFFFFFFFFFFFF, 0x8000000000000000, 0x8000000000000001,
                                0xFFFFFFFF00000000, 0xFFFFFFFFFFFFFFFE, 0xFFFFFFFFFFFFFFFF};
    for (size_t i = 0; i < sizeof edges / sizeof *edges; ++i)
        for (size_t k = 0; k < sizeof edges / sizeof *edges; ++k) check_division(edges[i], edges[k]);
    for (int i = 0; i < 300000; ++i) {
        u64 a = next_random() >> (next_random() & 63), b = next_random() >> (next_random() & 63);
        if (b) check_division(a, b);
    }
    CHECK_INT(check_failed, 0);
}

static void test_signed(void)
{
    static const struct {
        long long a, b, quotient, remainder;
    } cases[] = {{-7, 2, -3, -1},
                 {7, -2, -3, 1},
                 {-7, -2, 3, -1},
                 {LLONG_MIN, 1, LLONG_MIN, 0},
                 {LLONG_MIN, LLONG_MIN, 1, 0},
                 {LLONG_MAX, LLONG_MIN, 0, LLONG_MAX},
                 {LLONG_MIN, 10, -922337203685477580, -8},
                 {5000000000, -7, -714285714, 2}};
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        CHECK_INT(___lldiv(cases[i].b, cases[i].a), cases[i].quotient);
        CHECK_INT(___llmod(cases[i].b, cases[i].a), cases[i].remainder);
        lldiv_t both = lldiv(cases[i].a, cases[i].b);
        CHECK_INT(both.quot, cases[i].quotient);
        CHECK_INT(both.rem, cases[i].remainder);
    }
    CHECK_INT(___llmul(-3, 0x123456789ABCDEFLL), -3 * 0x123456789ABCDEFLL);
    CHECK_INT(___llmul(0xFFFFFFFFLL, 0xFFFFFFFFLL), (long long)0xFFFFFFFE00000001ULL);
    CHECK_INT(abs(-5) + labs(-6L) + llabs(LLONG_MIN + 1), LLONG_MIN + 10);
    CHECK_INT(div(-7, 2).quot, -3);
    CHECK_INT(ldiv(-7, 2).rem, -1);
}

static void test_shifts(void)
{
    static const struct {
        int count;
        long long value, left, right;
        u64 logical;
    } cases[] = {{0, -1, -1, -1, ~0ULL},
                 {1, -2, -4, -1, ~0ULL >> 1},
                 {32, 0x123456789LL, 0x2345678900000000LL, 1, 1},
                 {63, -1, LLONG_MIN, -1, 1},
                 {64, -1, 0, -1, 0},
                 {100, -1, 0, -1, 0},
                 {100, 5, 0, 0, 0}};
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        CHECK_INT(___llshl(cases[i].count, cases[i].value), cases[i].left);
        CHECK_INT(___llshr(cases[i].count, cases[i].value), cases[i].right);
        CHECK_INT(___ullshr(cases[i].count, (u64)cases[i].value), cases[i].logical);
    }
}

int main(void)
{
    test_unsigned();
    test_signed();
    test_shifts();
    return check_done();
}
