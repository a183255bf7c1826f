/* Floating conversions: digits, rounding, layout, special values, narrow and wide. */
#include "check.h"

#include <float.h>
#include <stdlib.h>

#define INF __builtin_inf()
#define NOT_A_NUMBER __builtin_nan("")

static const struct {
    const char *format;
    double value;
    const char *due;
} cases[] = {
    /* rounding is half up on the digits, whatever the exact value */
    {"%.0f", 0.5, "1"},
    {"%.0f", 2.5, "3"},
    {"%.0f", 0.4, "0"},
    {"%.0f", 9.5, "10"},
    {"%.0f", 99.5, "100"},
    {"%.1f", 0.25, "0.3"},
    {"%.2f", 0.995, "1.00"},
    {"%.3e", 9.9996, "1.000e+01"},
    {"%.0e", 9.5, "1e+01"},
    {"%f", 3.14159265, "3.141593"},
    {"%f", 123456789.0, "123456789.000000"},
    {"%f", 1e-10, "0.000000"},
    {"%.10f", 1e-10, "0.0000000001"},
    {"%.12f", 1.5e-10, "0.000000000150"},
    {"%.30f", 0.1, "0.100000000000000000000000000000"},
    {"%.25e", 1.0, "1.0000000000000000000000000e+00"},
    {"%.3f", 1e22, "10000000000000000000000.000"},
    {"%.0f", 1e22, "10000000000000000000000"},
    {"%#.0f", 1e22, "10000000000000000000000."},
    {"%#.0f", 3.0, "3."},
    {"%#.0e", 3.0, "3.e+00"},
    /* exponents */
    {"%e", 0.0, "0.000000e+00"},
    {"%e", 1e100, "1.000000e+100"},
    {"%E", 1e-5, "1.000000E-05"},
    {"%e", DBL_MAX, "1.797693e+308"},
    {"%e", DBL_MIN, "2.225074e-308"},
    {"%e", DBL_TRUE_MIN, "4.940656e-324"},
    /* the shorter style */
    {"%g", 100000.0, "100000"},
    {"%g", 1000000.0, "1e+06"},
    {"%g", 0.0001, "0.0001"},
    {"%g", 0.00001, "1e-05"},
    {"%g", 0.0, "0"},
    {"%#g", 1.0, "1.00000"},
    {"%#g", 1e10, "1.00000e+10"},
    {"%.0g", 123.0, "1e+02"},
    {"%.3g", 123.0, "123"},
    {"%.10g", 123.0, "123"},
    {"%G", 1e-7, "1E-07"},
    {"%g", 999999.5, "1e+06"},
    /* hexadecimal: the first digit is always 8 to f */
    {"%a", 0.0, "0x0p+0"},
    {"%.2a", 0.0, "0x0.00p+0"},
    {"%a", 1.0, "0x8p-3"},
    {"%a", 0.5, "0x8p-4"},
    {"%a", 3.0, "0xcp-2"},
    {"%.1a", 1.0, "0x8.0p-3"},
    {"%A", 1.0, "0X8P-3"},
    {"%a", 0.1, "0xc.cccccccccccdp-7"},
    {"%.0a", 1.96875, "0x1p+1"}, /* f.c rounds up and carries out */
    {"%.1a", 1.9921875, "0xf.fp-3"},
    {"%a", DBL_TRUE_MIN, "0x8p-1077"},
    {"%A", -DBL_MAX, "-0XF.FFFFFFFFFFFF8P+1020"},
    {"%.40a", 1.0, "0x8.0000000000000000000000000000000000000000p-3"},
    /* signs, padding, special values */
    {"%f", -0.0, "-0.000000"},
    {"%+.1f", 2.0, "+2.0"},
    {"% .1f", 2.0, " 2.0"},
    {"%08.2f", -3.14159, "-0003.14"},
    {"%-8.2f|", 3.14159, "3.14    |"},
    {"%012a", 1.0, "0x0000008p-3"},
    {"%f", INF, "inf"},
    {"%05f", INF, "  inf"},
    {"%-5F|", -INF, "-INF |"},
    {"%+e", INF, "+inf"},
    {"%A", INF, "INF"},
    {"%+f", NOT_A_NUMBER, "nan"},
    {"%06G", NOT_A_NUMBER, "   NAN"},
    {"%Lf", 1.5, "1.500000"},
};

static void test_cases(void)
{
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        char text[400];
        wchar_t wide[400], wide_format[16];
        check_label = cases[i].format;
        int length = snprintf(text, sizeof text, cases[i].format, cases[i].value);
        CHECK_STR(text, cases[i].due);
        CHECK_INT(length, strlen(cases[i].due));
        size_t k = 0;
        do wide_format[k] = (wchar_t)cases[i].format[k];
        while (cases[i].format[k++]);
        CHECK_INT(snwprintf(wide, 400, wide_format, cases[i].value), length);
        for (k = 0; k <= (size_t)length; ++k) text[k] = (char)wide[k];
        CHECK_STR(text, cases[i].due);
    }
    check_label = "";
}

/* Nineteen digits at the most; every further place is a zero, and there may be very many. */
static void test_long_output(void)
{
    static char text[2000];
    CHECK_INT(snprintf(text, sizeof text, "%f", 1e300), 308);
    for (int i = 19; i < 301; ++i)
        if (text[i] != '0') CHECK_INT(i, 0);
    CHECK_INT(snprintf(text, sizeof text, "%.1000f", 2.0 / 3), 1002);
    CHECK_MEM(text, "0.66666666666666", 16);
    CHECK_INT(text[1001], '0');
    CHECK_INT(snprintf(NULL, 0, "%.2147483647f", 1.5), -1); /* more than can be counted */
    CHECK_INT(snprintf(NULL, 0, "%.2147483640f", 1.5), 2147483642);
    CHECK_INT(snprintf(NULL, 0, "%.2147483640f", 1e-300), 2147483642);
    CHECK_INT(snprintf(NULL, 0, "%.2147483630e", 1e-300), 2147483637);
    CHECK_STR((snprintf(text, sizeof text, "%.2147483647g", 0.5), text), "0.5");
}

/* The value that is printed is near, by a reader that rounds correctly. */
static void test_random_values(void)
{
    unsigned long long state = 88172645463325252ULL;
    for (int i = 0; i < 50000; ++i) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        unsigned long long bits = state & 0x7FFFFFFFFFFFFFFF;
        double value;
        char text[40];
        memcpy(&value, &bits, sizeof value);
        if (value != value || value > DBL_MAX / 2) continue;
        snprintf(text, sizeof text, "%.16e", value);
        double error = strtod(text, NULL) - value;
        if ((error < 0 ? -error : error) > value * 1e-13 + DBL_TRUE_MIN * 2) CHECK_STR(text, "near the value");
    }
    CHECK(1);
}

int main(void)
{
    test_cases();
    test_long_output();
    test_random_values();
    return check_done();
}
