/* strtol and _itoa and all their relatives: tables, and random numbers in every base both ways. */
#include "check.h"
#include "widen.h"

#include <inttypes.h>
#include <limits.h>
#include <stdlib.h>

unsigned long __stoul(const char *text, char **end, int base);

static void test_signed_32(void)
{
    static const struct {
        const char *text;
        int base;
        long value;
        int end, error;
    } cases[] = {
        {"  -2147483648", 10, LONG_MIN, 13, 0},
        {"2147483647 ", 10, LONG_MAX, 10, 0},
        {"2147483648", 10, LONG_MAX, 0, ERANGE}, /* ERANGE leaves the end pointer at the start */
        {" -2147483649", 10, LONG_MIN, 0, ERANGE},
        {"99999999999999999999", 10, LONG_MAX, 0, ERANGE},
        {"-99999999999999999999", 10, LONG_MIN, 0, ERANGE},
        {"0x1A", 0, 26, 4, 0},
        {"017", 0, 15, 3, 0},
        {"09", 0, 0, 1, 0},
        {"-0X7fG", 16, -127, 5, 0},
        {"0x", 16, 0, 0, 0}, /* nothing converts */
        {"0x", 0, 0, 0, 0},
        {"0xg", 0, 0, 0, 0},
        {"0x1", 10, 0, 1, 0},
        {"Zz", 36, 35 * 36 + 35, 2, 0},
        {"12", 1, 0, 0, 0},
        {"12", 37, 0, 0, 0},
        {"12", -2, 0, 0, 0},
        {"", 10, 0, 0, 0},
        {"  +", 10, 0, 0, 0},
        {"+-5", 10, LONG_MAX, 0, ERANGE}, /* the second sign reaches the parser */
        {"-+5", 10, -5, 3, 0},
        {"--5", 10, LONG_MIN, 0, ERANGE},
        {"\t\n\v\f\r 42", 10, 42, 8, 0},
        {"0000000000000000000000000000000000001", 10, 1, 37, 0},
        {"1010", 2, 10, 4, 0},
        {"\xB2", 36, 0, 0, 0},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        char *end;
        wchar_t *wide_end;
        check_label = cases[i].text;
        errno = 0;
        CHECK_INT(strtol(cases[i].text, &end, cases[i].base), cases[i].value);
        CHECK_INT(end - cases[i].text, cases[i].end);
        CHECK_INT(errno, cases[i].error);
        errno = 0;
        CHECK_INT(wcstol(widen(cases[i].text), &wide_end, cases[i].base), cases[i].value);
        CHECK_INT(wide_end - wide, cases[i].end);
        CHECK_INT(errno, cases[i].error);
        CHECK_INT(strtol(cases[i].text, NULL, cases[i].base), cases[i].value);
    }
    check_label = "";
}

static void test_limits(void)
{
    char *end;
    CHECK_ERRNO(strtoul("-1", NULL, 10), (long long)ULONG_MAX, 0);
    CHECK_ERRNO(strtoul("4294967295", NULL, 10), (long long)ULONG_MAX, 0);
    const char *over = "4294967296";
    CHECK_ERRNO(strtoul(over, &end, 10), (long long)ULONG_MAX, ERANGE);
    CHECK(end == over);
    CHECK_ERRNO(strtoul("-4294967296", &end, 10), (long long)ULONG_MAX, ERANGE); /* not negated */
    CHECK_ERRNO(strtoll("9223372036854775807", NULL, 10), LLONG_MAX, 0);
    CHECK_ERRNO(strtoll("9223372036854775808", NULL, 10), LLONG_MAX, ERANGE);
    CHECK_ERRNO(strtoll("-9223372036854775808", NULL, 10), LLONG_MIN, 0);
    CHECK_ERRNO(strtoimax("-8000000000000001", NULL, 16), LLONG_MIN, ERANGE);
    CHECK_ERRNO(strtoull("18446744073709551615", NULL, 10), -1, 0);
    CHECK_ERRNO(strtoull("18446744073709551616", NULL, 10), -1, ERANGE);
    CHECK_ERRNO(strtoumax("99999999999999999999", NULL, 10), -1, ERANGE);
    CHECK_ERRNO(wcstoull(L"0xFFFFFFFFFFFFFFFF", NULL, 0), -1, 0);
    CHECK_ERRNO(wcstoll(L"-0x8000000000000000", NULL, 0), LLONG_MIN, 0);
    CHECK_ERRNO(atoi("3000000000"), (int)3000000000u, 0);
    CHECK_ERRNO(atoi("5000000000"), -1, ERANGE);
    CHECK_ERRNO(atol("  -77x"), -77, 0);
    CHECK_ERRNO(atoll("10000000000000000000"), (long long)10000000000000000000u, 0);
    CHECK_ERRNO(_wtoi(L"-12"), -12, 0);
    CHECK_ERRNO(_wtoll(L"-12000000000"), -12000000000LL, 0);
    CHECK_ERRNO(__stoul("", NULL, 10), 0, 0);
}

static void test_to_text(void)
{
    char text[66];
    wchar_t wide_text[66];
    CHECK_STR(_itoa(-255, text, 16), "ffffff01");
    CHECK_STR(_itoa(-255, text, 10), "-255");
    CHECK_STR(_itoa(INT_MIN, text, 10), "-2147483648");
    CHECK_STR(_itoa(INT_MIN, text, 2), "10000000000000000000000000000000");
    CHECK_STR(_ultoa(ULONG_MAX, text, 36), "1z141z3");
    CHECK_STR(_ltoa(0, text, 7), "0");
    CHECK_STR(_lltoa(LLONG_MIN, text, 10), "-9223372036854775808");
    CHECK_STR(_lltoa(-1, text, 8), "1777777777777777777777");
    CHECK_STR(_ulltoa(ULLONG_MAX, text, 2),
              "1111111111111111111111111111111111111111111111111111111111111111");
    CHECK_WSTR(_itow(-10, wide_text, 10), L"-10");
    CHECK_WSTR(_ulltow(ULLONG_MAX, wide_text, 16), L"ffffffffffffffff");
    errno = 0;
    CHECK_STR(_itoa(5, text, 1), "");
    CHECK_INT(errno, EINVAL);
    CHECK_STR(_ultoa(5, text, 37), "");
    CHECK(_ltow(5, wide_text, 0) == wide_text && *wide_text == 0);
}

/* Every base both ways, with values of every length, and one more digit than fits. */
static void test_round_trips(void)
{
    unsigned long long state = 88172645463325252ULL;
    char text[80];
    for (int i = 0; i < 20000; ++i) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        unsigned long long value = state >> (i % 64);
        int base = 2 + i % 35;
        char *end;
        errno = 0;
        _ulltoa(value, text, base);
        unsigned long long back = strtoull(text, &end, base);
        if (back != value || *end || errno) CHECK_STR(text, "read back");
        unsigned long narrow = strtoul(text, &end, base);
        int fits = value <= ULONG_MAX;
        if (narrow != (fits ? value : ULONG_MAX) || (errno == ERANGE) == fits) CHECK_STR(text, "in 32 bits");
        errno = 0;
        strcat(text, "0");
        back = strtoull(text, &end, base);
        fits = value <= ULLONG_MAX / (unsigned)base;
        if (fits ? back != value * (unsigned)base || errno : back != ULLONG_MAX || end != text)
            CHECK_STR(text, "one digit more");
    }
    CHECK_INT(check_failed, 0);
}

int main(void)
{
    test_signed_32();
    test_limits();
    test_to_text();
    test_round_trips();
    imaxdiv_t quotient = imaxdiv(-7, 2);
    CHECK_INT(quotient.quot, -3);
    CHECK_INT(quotient.rem, -1);
    CHECK_INT(imaxabs(-7), 7);
    printf("%" PRId64 " %" PRIxMAX "\n", (int64_t)-1, (uintmax_t)255);
    return check_done();
}
