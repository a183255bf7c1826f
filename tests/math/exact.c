/* options: -fno-builtin -Wno-missing-field-initializers */
/*
 * Functions whose results are exact, or rounded correctly: against plain rules over integers, on edges
 * and on random numbers of all sizes, in all rounding directions where they count.
 */
#include "check.h"

#include <fenv.h>
#include <float.h>
#include <limits.h>
#include <math.h>

#define INF HUGE_VAL
#define WATCHED (FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW | FE_UNDERFLOW)

typedef unsigned long long u64;

static u64 state = 88172645463325252ULL;
static u64 next_random(void)
{
    state ^= state << 13;
    state ^= state >> 7;
    return state ^= state << 17;
}

static double of_bits(u64 bits)
{
    double x;
    memcpy(&x, &bits, 8);
    return x;
}
static u64 bits_of(double x)
{
    u64 bits;
    memcpy(&bits, &x, 8);
    return bits;
}

static double random_double(void)
{
    for (;;) {
        double x = of_bits(next_random());
        if (isfinite(x)) return x;
    }
}

static int same(double a, double b) { return (a != a && b != b) || bits_of(a) == bits_of(b); }

static void check_same(double got, double due, const char *what, double x, double y)
{
    if (same(got, due)) {
        ++check_passed;
        return;
    }
    ++check_failed;
    printf("%s(%a, %a) is %a, due %a\n", what, x, y, got, due);
}

/* ---- magnitudes as integers times powers of two ---- */

static u64 significand(double x, int *exponent)
{
    u64 bits = bits_of(x) & ~(1ULL << 63), fraction = bits & ((1ULL << 52) - 1);
    *exponent = (int)(bits >> 52);
    if (*exponent) fraction |= 1ULL << 52;
    else *exponent = 1;
    *exponent -= 1075;
    return fraction;
}

/* |x| modulo |y|, one bit of the quotient after the other; the quotient's last bits in *quotient. */
static double plain_remainder(double x, double y, unsigned *quotient)
{
    int ex, ey;
    u64 a = significand(x, &ex), b = significand(y, &ey), rest;
    *quotient = 0;
    if (ex < ey) {
        if (ey - ex > 60) return fabs(x);
        /* Both in units of x: y's significand moves up as far as it takes to be above a. */
        while (ey > ex && b < 1ULL << 62) b <<= 1, --ey;
        if (ey > ex) return fabs(x);
        *quotient = (unsigned)(a / b);
        return ldexp((double)(a % b), ex);
    }
    rest = a % b;
    *quotient = (unsigned)(a / b);
    for (; ex > ey; --ex) {
        rest <<= 1;
        *quotient <<= 1;
        if (rest >= b) rest -= b, *quotient |= 1;
    }
    return ldexp((double)rest, ey);
}

static void test_remainders(void)
{
    for (int i = 0; i < 40000; ++i) {
        double x = random_double(), y = random_double();
        unsigned quotient;
        int told;
        if (i & 1) y = x * (0.001 + (double)(next_random() >> 40)) * (i & 2 ? 1 : 1e-9);
        if (i % 64 == 5) y = of_bits(next_random() >> 12);
        if (y == 0 || !isfinite(y)) continue;
        double rest = plain_remainder(x, y, &quotient);
        check_same(fmod(x, y), copysign(rest, x), "fmod", x, y);
        double other = fabs(y) - rest;
        int above = rest > other || (rest == other && quotient & 1); /* exact near the half */
        double nearest = above ? rest - fabs(y) : rest;
        nearest = signbit(x) ? -nearest : nearest;
        if (nearest == 0) nearest = copysign(0, x);
        check_same(remainder(x, y), nearest, "remainder", x, y);
        check_same(remquo(x, y, &told), nearest, "remquo", x, y);
        unsigned due = (quotient + (unsigned)above) & 7;
        CHECK(((unsigned)(told < 0 ? -told : told) & 7) == due);
        CHECK(told == 0 || (told < 0) == (signbit(x) != signbit(y)));
    }
    CHECK(fmod(0x1.fffffffffffffp1023, 0x1p-1074) == 0);
    CHECK(fmodf(0x1.fffffep127f, 0x1.8p-148f) == (float)plain_remainder(0x1.fffffep127, 0x1.8p-148, &(unsigned){0}));
}

/* ---- fma ---- */

/* x y + z by a number of 4300 bits, rounded in the direction. */
enum { limbs = 140 };
struct wide {
    unsigned limb[limbs];
    int negative;
};

static void add_shifted(struct wide *sum, u64 value, int position, int subtract)
{
    long long carry = 0;
    int word = position / 32, shift = position % 32;
    unsigned parts[3] = {(unsigned)(value << shift), (unsigned)((value << shift) >> 32),
                         shift ? (unsigned)(value >> (64 - shift)) : 0};
    for (int i = 0; word + i < limbs; ++i) {
        long long part = i < 3 ? parts[i] : 0;
        carry += (long long)sum->limb[word + i] + (subtract ? -part : part);
        sum->limb[word + i] = (unsigned)carry;
        carry >>= 32;
        if (i >= 3 && carry == 0) break;
    }
}

static void negate(struct wide *x)
{
    u64 carry = 1;
    for (int i = 0; i < limbs; ++i) {
        carry += (unsigned)~x->limb[i];
        x->limb[i] = (unsigned)carry;
        carry >>= 32;
    }
}

enum { origin = 2200 }; /* the position of 2^0 */

static int bit_at(const struct wide *x, int position) { return x->limb[position / 32] >> position % 32 & 1; }

static double rounded(struct wide *x, int direction)
{
    int negative = x->limb[limbs - 1] >> 31, top, last, sticky = 0;
    if (negative) negate(x);
    for (top = limbs * 32 - 1; top >= 0 && !bit_at(x, top); --top) {}
    if (top < 0) return direction == FE_DOWNWARD ? -0.0 : 0.0;
    last = top - 52 < origin - 1074 ? origin - 1074 : top - 52;
    u64 kept = 0;
    for (int i = top; i >= last; --i) kept = kept << 1 | (u64)bit_at(x, i);
    int half = bit_at(x, last - 1);
    for (int i = 0; i < last - 1; ++i) sticky |= bit_at(x, i);
    int up = direction == FE_TONEAREST ? half && (sticky || kept & 1)
             : direction == FE_UPWARD  ? (half || sticky) && !negative
             : direction == FE_DOWNWARD ? (half || sticky) && negative : 0;
    double result = ldexp((double)(kept + (u64)up), last - origin);
    return negative ? -result : result;
}

static double plain_fma(double x, double y, double z, int direction)
{
    static struct wide sum;
    int ex, ey, ez;
    u64 a = significand(x, &ex), b = significand(y, &ey), c = significand(z, &ez);
    u64 al = a & 0x3FFFFFF, ah = a >> 26, bl = b & 0x3FFFFFF, bh = b >> 26;
    int negative = signbit(x) != signbit(y);
    memset(&sum, 0, sizeof sum);
    add_shifted(&sum, al * bl, ex + ey + origin, negative);
    add_shifted(&sum, al * bh, ex + ey + origin + 26, negative);
    add_shifted(&sum, ah * bl, ex + ey + origin + 26, negative);
    add_shifted(&sum, ah * bh, ex + ey + origin + 52, negative);
    add_shifted(&sum, c, ez + origin, signbit(z) != 0);
    return rounded(&sum, direction);
}

static void check_fma(double x, double y, double z)
{
    for (int direction = 0; direction < 4; ++direction) {
        fesetround(direction);
        double got = fma(x, y, z);
        fesetround(FE_TONEAREST);
        double due = plain_fma(x, y, z, direction);
        if (fabs(due) > DBL_MAX) due = copysign(direction == FE_TONEAREST ? INF : fabs(got), due);
        if (!same(got, due)) printf("z %a, direction %d: ", z, direction);
        check_same(got, due, "fma", x, y);
    }
}

static void test_fma(void)
{
    static const double edges[] = {0x1p-1074, 0x1p-1022, 0x1.fffffffffffffp-1, 1, -1, 0x1.0000000000001p0,
                                   0x1.fffffffffffffp511, 0x1p-537, -0x1.8p-538, 0x1.fffffffffffffp1023, 0x1p53};
    enum { count = sizeof edges / sizeof *edges };
    for (int i = 0; i < count; ++i)
        for (int k = 0; k < count; ++k)
            for (int m = 0; m < count; ++m)
                if (fabs(edges[i] * edges[k]) < 1e300) check_fma(edges[i], edges[k], edges[m]);
    for (int i = 0; i < 4000; ++i) {
        double x = random_double(), y = random_double();
        int exponent;
        frexp(x, &exponent);
        y = ldexp(frexp(y, &(int){0}), (i & 1 ? -exponent : -exponent - 1020) + (int)(next_random() % 8));
        double z = -x * y * (1 + (double)(int)(next_random() % 5 - 2) * DBL_EPSILON);
        if (i % 5 == 0) z = ldexp(z, (int)(next_random() % 240) - 120);
        if (y != 0 && isfinite(y) && isfinite(z)) check_fma(x, y, z);
    }
    feclearexcept(FE_ALL_EXCEPT);
    errno = 0;
    CHECK(fma(0x1p1000, 0x1p1000, -0x1p1000) == INF && errno == ERANGE && fetestexcept(WATCHED) == FE_OVERFLOW);
    feclearexcept(FE_ALL_EXCEPT);
    CHECK(isnan(fma(INF, 0, 1)) && errno == EDOM && fetestexcept(WATCHED) == FE_INVALID);
    CHECK(fma(INF, 2, 1) == INF && fma(3, 4, -INF) == -INF && isnan(fma(INF, 1, -INF)));
    CHECK(same(fma(0, -1, 0), 0) && same(fma(0, -1, -0.0), -0.0) && same(fma(1, 1, -1), 0));
    CHECK(fma(0x1.8p1023, 1.25, -0x1.8p1023) == 0x1.8p1021);
    /* The product is not rounded to double on the way to float. */
    CHECK(fmaf(0x1.000002p0f, 0x1.000002p0f, 0x1p-60f) == 0x1.000004p0f);
    CHECK(fmaf(0x1.000002p0f, 0x1.7ffffep0f, -0x1.8p-24f) == 0x1.8p0f);
    CHECK(fmaf(0x1p100f, 0x1p100f, 0) == HUGE_VALF && fmaf(0x1p-100f, 0x1p-49f, 0) == 0x1p-149f);
}

/* ---- exponents and neighbours ---- */

static void test_exponents(void)
{
    for (int i = 0; i < 20000; ++i) {
        double x = random_double();
        int exponent;
        if (x == 0) continue;
        double fraction = frexp(x, &exponent);
        CHECK(fabs(fraction) >= 0.5 && fabs(fraction) < 1 && ldexp(fraction, exponent) == x);
        CHECK(ilogb(x) == exponent - 1 && logb(x) == exponent - 1);
        double whole, rest = modf(ldexp(fraction, i % 60 - 3), &whole);
        CHECK(whole + rest == ldexp(fraction, i % 60 - 3) && trunc(whole) == whole && fabs(rest) < 1);
        double up = nextafter(x, INF), down = nexttoward(x, -INF);
        CHECK(up > x && down < x && nextafter(up, -INF) == x && nextafterf((float)fraction, 2) > (float)fraction);
    }
    static const struct {
        double x;
        int n;
        double due;
        int excepts;
    } cases[] = {{1, 1024, INF, FE_OVERFLOW},        {-1, INT_MAX, -INF, FE_OVERFLOW},
                 {1, -1075, 0, FE_UNDERFLOW},        {1.5, -1075, 0x1p-1074, FE_UNDERFLOW},
                 {3, -1075, 0x1p-1073, FE_UNDERFLOW}, {-1, INT_MIN, -0.0, FE_UNDERFLOW},
                 {0x1p-1074, 2097, 0x1p1023, 0},     {0x1.8p0, -1073, 0x1.8p-1073, 0},
                 {0, INT_MAX, 0, 0},                 {INF, -5, INF, 0},
                 {0x1.fffffffffffffp0, -1023, 0x1p-1022, 0}};
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        feclearexcept(FE_ALL_EXCEPT);
        check_same(ldexp(cases[i].x, cases[i].n), cases[i].due, "ldexp", cases[i].x, cases[i].n);
        CHECK_INT(fetestexcept(WATCHED), cases[i].excepts);
        check_same(scalbn(cases[i].x, cases[i].n), cases[i].due, "scalbn", cases[i].x, cases[i].n);
        check_same((double)scalblnl(cases[i].x, cases[i].n), cases[i].due, "scalblnl", cases[i].x, cases[i].n);
    }
    CHECK(ldexpf(1, -150) == 0 && ldexpf(1.5f, -150) == 0x1p-149f && scalbnf(1, 128) == HUGE_VALF);
    errno = 0;
    CHECK(ilogb(0) == FP_ILOGB0 && errno == EDOM && ilogbf(NAN) == FP_ILOGBNAN && ilogbl(-INF) == INT_MAX);
    errno = 0;
    CHECK(nextafter(DBL_MAX, INF) == INF && errno == ERANGE);
    CHECK(nextafter(0, -1) == -0x1p-1074 && nextafterf(0x1p-149f, 0) == 0 && nexttowardf(1, 1 + 1e-12L) == 0x1.000002p0f);
    u64 payload = bits_of(nan("0x1234"));
    CHECK((payload & 0xFFFF) == 0x1234 && isnan(nanf("7")) && isnan(nanl("")) && isnan(nan("not a number")));
    CHECK(fdim(DBL_MAX, -DBL_MAX) == INF && fdimf(FLT_MAX, -FLT_MAX / 0x1p30f) == FLT_MAX);
}

/* ---- rounding to integers ---- */

static void test_integers(void)
{
    static const double values[] = {0.5, -0.5, 1.5, -1.5, 2.5, -2.5, 0.25, -0.75, 0x1.fffffffffffffp-2, 1e10 + 0.5,
                                    4503599627370495.5, 4503599627370494.5, 0x1p-1074, 3, -7};
    /* nearest even, down, up, toward zero of the first eight */
    static const int due[4][8] = {{0, 0, 2, -2, 2, -2, 0, -1}, {0, -1, 1, -2, 2, -3, 0, -1},
                                  {1, 0, 2, -1, 3, -2, 1, 0},  {0, 0, 1, -1, 2, -2, 0, 0}};
    for (int direction = 0; direction < 4; ++direction) {
        fesetround(direction);
        for (int i = 0; i < 8; ++i) {
            CHECK_INT(lrint(values[i]), due[direction][i]);
            CHECK_INT(llrintf((float)values[i]), due[direction][i]);
            CHECK(rint(values[i]) == due[direction][i] && nearbyintf((float)values[i]) == due[direction][i]);
        }
        for (size_t i = 0; i < sizeof values / sizeof *values; ++i) {
            CHECK(nearbyint(values[i]) == (double)llrint(values[i]));
            CHECK(floor(values[i]) <= values[i] && floor(values[i]) + 1 > values[i]);
            CHECK(ceil(-values[i]) == -floor(values[i]));
        }
    }
    fesetround(FE_TONEAREST);
    for (int i = 0; i < 20000; ++i) {
        double x = ldexp((double)(long long)next_random(), -(int)(next_random() % 66));
        long long whole = (long long)x; /* truncates */
        CHECK(trunc(x) == (double)whole && rint(x) == nearbyint(x));
        double rest = fabs(x - (double)whole);
        double away = rest >= 0.5 ? (double)whole + (x < 0 ? -1 : 1) : (double)whole;
        CHECK(round(x) == away);
        if (fabs(x) < 9e18) CHECK(llround(x) == (long long)away);
        float xf = (float)x;
        CHECK(floorf(xf) == (float)floor(xf) && ceilf(xf) == (float)ceil(xf) && roundf(xf) == (float)round(xf));
        CHECK(truncf(xf) == (float)trunc(xf) && rintf(xf) == (float)rint(xf));
    }
    static const double beyond[] = {0x1p31, -0x1p31 - 1, 1e300, INF, NAN};
    for (size_t i = 0; i < sizeof beyond / sizeof *beyond; ++i) {
        feclearexcept(FE_ALL_EXCEPT);
        CHECK_ERRNO(lrint(beyond[i]), LONG_MIN, EDOM);
        CHECK_INT(fetestexcept(WATCHED), FE_INVALID);
        CHECK_ERRNO(lround(beyond[i]), LONG_MIN, EDOM);
    }
    CHECK_ERRNO(lrint(2147483647.25), 2147483647, 0);
    CHECK_ERRNO(lrint(2147483647.5), LONG_MIN, EDOM);
    CHECK_ERRNO(lround(-2147483648.25), LONG_MIN, 0);
    CHECK_ERRNO(llrint(-0x1p63), LLONG_MIN, 0);
    CHECK_ERRNO(llrint(0x1p63), LLONG_MIN, EDOM);
    CHECK_ERRNO(llroundf(0x1p62f), 1LL << 62, 0);
}

static void test_classes(void)
{
    static const struct {
        double x;
        int class;
    } cases[] = {{0, FP_ZERO}, {-0.0, FP_ZERO}, {1, FP_NORMAL}, {-0x1p-1022, FP_NORMAL}, {0x1p-1023, FP_SUBNORMAL},
                 {-0x1p-1074, FP_SUBNORMAL}, {INF, FP_INFINITE}, {-INF, FP_INFINITE}, {NAN, FP_NAN}, {DBL_MAX, FP_NORMAL}};
    feclearexcept(FE_ALL_EXCEPT);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        double x = cases[i].x;
        CHECK_INT(__fpclass(x), cases[i].class);
        CHECK_INT(__fpclassl(x), cases[i].class);
        CHECK_INT(fpclassify(x), cases[i].class);
        CHECK_INT(__fpsign(x), signbit(x));
        CHECK_INT(!!isnan(x), cases[i].class == FP_NAN);
        CHECK_INT(!!isfinite(x), cases[i].class > FP_INFINITE);
        for (size_t k = 0; k < sizeof cases / sizeof *cases; ++k) {
            double y = cases[k].x;
            int due = isunordered(x, y) ? _FP_UNORDERED : isless(x, y) ? _FP_LESS : isgreater(x, y) ? _FP_GREATER : _FP_EQUAL;
            CHECK_INT(__fpcomp(x, y), due);
            CHECK_INT(__fpcompl(x, y), due);
        }
    }
    CHECK_INT(fetestexcept(WATCHED), 0);
    CHECK_INT(__fpclassf(0x1p-149f), FP_SUBNORMAL);
    CHECK_INT(fpclassify(0x1p-149f), FP_SUBNORMAL);
    CHECK_INT(__fpcompf(1, 2), _FP_LESS);
    CHECK_INT(__fpsignl(-0.0L) + __fpsignf(-HUGE_VALF) + __fpsignf(0), 2);
}

int main(void)
{
    test_remainders();
    test_fma();
    test_exponents();
    test_integers();
    test_classes();
    return check_done();
}
