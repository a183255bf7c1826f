/* Floating conversions against the step-by-step reference, and hexadecimal digits there and back. */
#include "check.h"
#include "float_reference.h"
#include "sweep.h"

#include <float.h>
#include <stdlib.h>

static unsigned long long state = 88172645463325252ULL;
static unsigned long long next(void)
{
    state ^= state << 13;
    state ^= state >> 7;
    return state ^= state << 17;
}

/* A finite number: any bits, a short decimal, an integer, near a power of ten, subnormal. */
static double any_value(void)
{
    unsigned long long bits = next();
    double value;
    switch (next() % 6) {
    case 0: return (double)(long long)(next() % 2000001 - 1000000) / 1000;
    case 1: return (double)(long long)(next() >> next() % 64);
    case 2: bits &= 0x800FFFFFFFFFFFFF; break;
    case 3:
        value = 1;
        for (unsigned i = (unsigned)(next() % 300); i; --i) value *= next() % 2 ? 10 : 5;
        if (value > DBL_MAX) value = 1;
        memcpy(&bits, &value, sizeof bits);
        bits += next() % 5 - 2;
        break;
    }
    memcpy(&value, &bits, sizeof value);
    return value - value == 0 ? value : 1.5;
}

static void compare(char letter, int alternative, int precision, double value)
{
    static char due[1200], got[1200];
    char format[16];
    sprintf(format, "%%%s%s%c", alternative ? "#" : "", precision < 0 ? "" : ".*", letter);
    reference_format(due, letter, alternative, precision, value);
    if (precision < 0) sprintf(got, format, value);
    else sprintf(got, format, precision, value);
    if (strcmp(got, due)) {
        check_label = format;
        CHECK_STR(got, due);
    }
}

int main(void)
{
    static const double special[] = {0,   -0.0,    0.5,     2.5,     9.5,         99.5,    DBL_MAX, DBL_MIN, DBL_TRUE_MIN,
                                     1e8, 1e8 - 1, 99999999.5, 1e16, 9.9996,      1e22,    1e23,    0.1,     999999.5,
                                     1e-5, 123456789, 0x1.fffffffffffffp-1, 0x1.fffffffffffffp62, 0.0001};
    long count = sweep_count(200000, 12000000);
    for (size_t i = 0; i < sizeof special / sizeof *special; ++i)
        for (int precision = -1; precision < 40; ++precision)
            for (const char *letter = "efga"; *letter; ++letter)
                for (int alternative = 0; alternative < 2; ++alternative)
                    compare(*letter, alternative, precision, special[i]);
    for (long i = 0; i < count && check_failed < 10; ++i) {
        double value = any_value();
        int precision = (int)(next() % 24) - 1;
        compare("efga"[i % 4], next() % 8 == 0, precision, value);
    }
    for (long i = 0; i < count / 4 && check_failed < 10; ++i) {
        double value = any_value(), back;
        char text[40];
        sprintf(text, "%a", value);
        back = strtod(text, NULL);
        if (memcmp(&back, &value, sizeof back)) CHECK_STR(text, "the same value");
    }
    printf("%ld values\n", count);
    CHECK_INT(check_failed, 0);
    return check_done();
}
