/* strtod and its relatives: what is a number, what is kept of it, limits, narrow and wide. */
#include "check.h"
#include "guard.h"
#include "widen.h"

#include <float.h>
#include <stdlib.h>

double __stod(const char *text, char **end, int power);
float __wstof(const wchar_t *text, wchar_t **end, int power);

#define INF __builtin_inf()
#define NOT_A_NUMBER __builtin_nan("")

static void check_double(double got, double due)
{
    long long got_bits, due_bits;
    memcpy(&got_bits, &got, sizeof got);
    memcpy(&due_bits, &due, sizeof due);
    CHECK_INT(got_bits, due_bits);
}

static const struct {
    const char *text;
    double due;
    int end, error;
} cases[] = {
    {"  -1.5e3xyz", -1500.0, 8, 0},
    {"1e5", 1e5, 3, 0},
    {"1e", 1.0, 0, 0}, /* an exponent without digits: the value, but the end at the start */
    {"1e+", 1.0, 0, 0},
    {"  2.5e-", 2.5, 0, 0},
    {".5", 0.5, 2, 0},
    {"5.", 5.0, 2, 0},
    {".", 0.0, 0, 0},
    {"-.", -0.0, 0, 0},
    {"e5", 0.0, 0, 0},
    {"-", -0.0, 0, 0},
    {"- 1", -0.0, 0, 0},
    {"", 0.0, 0, 0},
    {"\t\n\v\f\r +7", 7.0, 8, 0},
    {"000.000e99999999999999999999", 0.0, 28, 0},
    {"-0", -0.0, 2, 0},
    {"00012.50", 12.5, 8, 0},
    {"1.0000000000000000000000000000000000000000000000000001", 1.0, 54, 0},
    /* words */
    {"inf", INF, 3, 0},
    {"-INFINITYx", -INF, 9, 0},
    {"infx", INF, 3, 0},
    {"infinite", 0.0, 0, 0}, /* "infi" must go on */
    {"-infin", -0.0, 0, 0},
    {"in", 0.0, 0, 0},
    {"nan", NOT_A_NUMBER, 3, 0},
    {"-nan", NOT_A_NUMBER, 4, 0}, /* no sign */
    {"NaN(abc_1)z", NOT_A_NUMBER, 10, 0},
    {"nan()", NOT_A_NUMBER, 5, 0},
    {"nan(abc", 0.0, 0, 0},
    {"-nan(a-b)", -0.0, 0, 0},
    {"na", 0.0, 0, 0},
    /* hexadecimal */
    {"0x1p4", 16.0, 5, 0},
    {"-0X.8P1z", -1.0, 7, 0},
    {"0x", 0.0, 0, 0},
    {"-0x", -0.0, 0, 0},
    {"0x.", 0.0, 0, 0},
    {"0xg", 0.0, 0, 0},
    {"0x1p", 1.0, 0, 0},
    {"0x1p99999", INF, 9, 0}, /* no error */
    {"0x1p-99999", 0.0, 10, 0},
    {"0x1.fffffffffffff8p0", 2.0, 20, 0},  /* a tie, to even */
    {"0x1.fffffffffffff7ffp0", 0x1.fffffffffffffp0, 22, 0},
    {"0x1.00000000000008p0", 1.0, 20, 0},
    {"0x1.00000000000008000001p0", 0x1.0000000000001p0, 26, 0},
    {"0x1.fffffffffffffp-1030", 0x0.01fffffffffffp-1022, 23, 0}, /* cut, not rounded */
    {"0x1p-1074", DBL_TRUE_MIN, 9, 0},
    {"0x1.ffp-1075", 0.0, 12, 0},
    {"0x1.fffffffffffffp1023", DBL_MAX, 22, 0},
    {"0x1.fffffffffffff8p1023", INF, 23, 0},
    {"0x10000000000000000000000000000000", 0x1p124, 34, 0},
    {"0x100000000000000000000000p-92", 1.0, 30, 0},
    {"0x0000000000000000000000000000001.8", 1.5, 35, 0},
    /* limits */
    {"1e400", INF, 5, ERANGE},
    {"-1e400", -INF, 6, ERANGE},
    {"1e-400", 0.0, 6, ERANGE},
    {"-1e-400", -0.0, 7, ERANGE},
    {"1e99999999999", INF, 13, ERANGE},
    {"1e-99999999999", 0.0, 14, ERANGE},
    {"0e999", 0.0, 5, 0},
    {"4e-320", 4e-320, 6, 0}, /* subnormal: no error */
    {"4.9406564584124654e-324", DBL_TRUE_MIN, 23, 0},
    {"2.4703282292062328e-324", DBL_TRUE_MIN, 23, 0}, /* just above half */
    {"2.4703282292062327e-324", 0.0, 23, ERANGE},
    {"1.7976931348623157e308", DBL_MAX, 22, 0},
    {"1.7976931348623158e308", DBL_MAX, 22, 0},
    {"1.7976931348623159e308", INF, 22, ERANGE},
    {"2.2250738585072011e-308", 0x0.fffffffffffffp-1022, 23, 0},
    {"2.2250738585072014e-308", DBL_MIN, 23, 0},
    /* midpoints, decided exactly */
    {"9007199254740993", 9007199254740992.0, 16, 0},
    {"9007199254740995", 9007199254740996.0, 16, 0},
    {"9007199254740993.00000000001", 9007199254740994.0, 28, 0},
    {"9007199254740992.99999999999", 9007199254740992.0, 28, 0},
    {"1.00000000000000011102230246", 1.0, 28, 0}, /* below 1 + 2^-53 by 10^-26 and a bit */
    {"1.00000000000000011102230247", 0x1.0000000000001p0, 28, 0},
    /* twenty-seven digits: an integer digit beyond them rounds half up, a fraction digit is dropped */
    {"9007199254740992999999999995", 9007199254740993000000000000.0, 28, 0},
    {"0.000000000000000000000000000000001e33", 1.0, 38, 0},
};

static void test_cases(void)
{
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        const char *text = cases[i].text;
        char *end;
        wchar_t *wide_end;
        check_label = text;
        errno = 0;
        check_double(strtod(text, &end), cases[i].due);
        CHECK_INT(end - text, cases[i].end);
        CHECK_INT(errno, cases[i].error);
        errno = 0;
        check_double(wcstod(widen(text), &wide_end), cases[i].due);
        CHECK_INT(wide_end - wide, cases[i].end);
        CHECK_INT(errno, cases[i].error);
        check_double((double)strtold(text, NULL), cases[i].due);
        check_double((double)wcstold(widen(text), NULL), cases[i].due);
        check_double(atof(text), cases[i].due);
        check_double(_wtof(widen(text)), cases[i].due);
    }
    check_label = "";
}

/* The digit that decides stands in the 28th place: before the point it rounds, behind it is nothing. */
static void test_kept_digits(void)
{
    /* 2^53 + 1 is a midpoint; 27 digits of it are followed by one more */
    check_double(strtod("9007199254740993000000000004e-12", NULL), 9007199254740992.0);
    check_double(strtod("9007199254740993000000000005e-12", NULL), 9007199254740994.0);
    check_double(strtod("9007199254740993.000000000009", NULL), 9007199254740992.0);
    check_double(strtod("0x10000000000000800000079p-108", NULL), 0x1p-20); /* 0x7 in the 22nd place */
    check_double(strtod("0x10000000000000800000089p-108", NULL), 0x1.0000000000001p-20);
    /* float keeps nine: 16777217 is a midpoint */
    check_double(strtof("16777217.0", NULL), 16777216.0);
    check_double(strtof("16777217.00001", NULL), 16777216.0);
    check_double(strtof("16777217.1", NULL), 16777218.0);
    check_double(strtof("16777217049e-3", NULL), 16777216.0);
    check_double(strtof("16777217050e-3", NULL), 16777218.0);
    check_double(strtof("0x1000001fp-28", NULL), 0x1.000002p0);
    check_double(strtof("0x1.00000101p0", NULL), 1.0); /* a tie, since the ninth digit is dropped */
}

static void test_float(void)
{
    errno = 0;
    check_double(strtof("3.4028235e38", NULL), FLT_MAX);
    check_double(strtof("1.4e-45", NULL), FLT_TRUE_MIN);
    check_double(strtof("7.1e-46", NULL), FLT_TRUE_MIN);
    check_double(strtof("1.17549421e-38", NULL), 0x0.fffffep-126);
    check_double(strtof("-0x1.8p-149", NULL), -FLT_TRUE_MIN);
    check_double(strtof("0x1p128", NULL), INF);
    CHECK_INT(errno, 0);
    check_double(wcstof(L"-3.4028236e38", NULL), -INF);
    CHECK_INT(errno, ERANGE);
    errno = 0;
    check_double(strtof("7e-46", NULL), 0);
    CHECK_INT(errno, ERANGE);
    /* the power is added to a decimal exponent only */
    check_double(__stod("12e1", NULL, 2), 12000);
    check_double(__stod("0x12", NULL, 2), 18);
    check_double(__wstof(L"5", NULL, -1), 0.5f);
    check_double(__stod("1", NULL, 2147483647), INF);
    check_double(__stod("1", NULL, -2147483647 - 1), 0);
}

/* A million digits on a page that ends with the text. */
static void test_long_text(void)
{
    enum { LENGTH = 1 << 20 };
    char *text = guard_pages(LENGTH / GUARD_PAGE), *end;
    memset(text, '3', LENGTH - 1);
    check_double(strtod(text, &end), INF);
    CHECK_INT(end - text, LENGTH - 1);
    text[1] = '.';
    check_double(strtod(text, &end), 3.33333333333333333333333333);
    CHECK_INT(end - text, LENGTH - 1);
    memset(text + 2, '0', LENGTH - 3);
    memcpy(text, "0.", 2);
    memcpy(text + LENGTH - 10, "3e1048563", 9);
    check_double(strtod(text, &end), 3e-2);
    CHECK_INT(end - text, LENGTH - 1);
    memset(text, 'a', LENGTH - 1);
    memcpy(text, "nan(", 4);
    check_double(strtod(text, &end), 0);
    CHECK(end == text);
    strcpy(text + LENGTH - 5, "-0x1");
    check_double(strtod(text + LENGTH - 5, &end), -1);
    CHECK(*end == 0);
}

int main(void)
{
    test_cases();
    test_kept_digits();
    test_float();
    test_long_text();
    return check_done();
}
