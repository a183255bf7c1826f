/* Conversions that the narrow and the wide engine do alike: each case runs through both. */
#include "check.h"

#include <stddef.h>
#include <stdint.h>

/* Through pointers, so that no compiler checks or replaces the calls. */
static int (*volatile narrow)(char *, size_t, const char *, ...) = snprintf;
static int (*volatile wide)(wchar_t *, size_t, const wchar_t *, ...) = snwprintf;

static char text[1200];
static wchar_t wide_text[1200];

#define BOTH(due, format, ...)                                                                     \
    do {                                                                                           \
        check_label = format;                                                                      \
        CHECK_INT(narrow(text, sizeof text, format, ##__VA_ARGS__), sizeof(due) - 1);              \
        CHECK_STR(text, due);                                                                      \
        CHECK_INT(wide(wide_text, 1200, L##format, ##__VA_ARGS__), sizeof(due) - 1);               \
        CHECK_WSTR(wide_text, L##due);                                                             \
        check_label = "";                                                                          \
    } while (0)

#define LOWEST (-9223372036854775807LL - 1)

static void test_literals(void)
{
    BOTH("", "");
    BOTH("x", "x");
    BOTH("0123456789abcdefghijklmnopqrstuvwxyz", "0123456789abcdefghijklmnopqrstuvwxyz");
    BOTH("%", "%%");
    BOTH("a%b%c", "a%%b%%c");
    BOTH("%", "%5%");
    BOTH("%|", "%-#05.3ll%|");
    BOTH("1 22 333", "%d %d %d", 1, 22, 333);
}

/* Widths, precisions, flags and magnitudes are gone through by integers.c; here are the limits and what the
   flags do to each other and to zero. */
static void test_integers(void)
{
    BOTH("-2147483648", "%i", -2147483647 - 1);
    BOTH("-9223372036854775808", "%lld", LOWEST);
    BOTH("-9223372036854775808", "%I64d", LOWEST);
    BOTH("-9223372036854775808", "%jd", LOWEST);
    BOTH("+5", "% +d", 5);
    BOTH("5", "%+u", 5);
    BOTH("     005", "%08.3d", 5);
    BOTH("5       |", "%-08d|", 5);
    BOTH("", "%.0d", 0);
    BOTH("", "%.d", 0);
    BOTH("+", "%+.0d", 0);
    BOTH("010", "%#o", 8);
    BOTH("0", "%#o", 0);
    BOTH("", "%#.0o", 0);
    BOTH("010", "%#.3o", 8);
    BOTH("01777777777777777777777", "%#llo", -1LL);
    BOTH("0", "%#x", 0);
    BOTH("0XDEADBEEF", "%#X", 0xDEADBEEF);
    BOTH("0x00001f", "%#08x", 0x1F);
    BOTH("fedcba9876543210", "%llx", 0xFEDCBA9876543210ULL);
}

static void test_lengths(void)
{
    BOTH("-56", "%hhd", 200);
    BOTH("200", "%hhu", 0x1C8);
    BOTH("-1", "%hd", 0x1FFFF);
    BOTH("65535", "%hu", -1);
    BOTH("-7", "%ld", -7L);
    BOTH("-7", "%Ld", -7);
    BOTH("4294967289", "%lu", -7L);
    BOTH("ffffffffffffffff", "%jx", (intmax_t)-1);
    /* z is never negative, and t is extended by its sign even where it is unsigned. */
    BOTH("4294967295", "%zd", -1);
    BOTH("4294967295", "%zu", -1);
    BOTH("+4294967295", "%+zi", -1);
    BOTH("-1", "%td", (ptrdiff_t)-1);
    BOTH("ffffffffffffffff", "%tx", (ptrdiff_t)-1);
    BOTH("18446744073709551615", "%tu", (ptrdiff_t)-1);
    BOTH("1777777777777777777777", "%to", (ptrdiff_t)-1);
    /* What is no length modifier is a conversion of its own. */
    BOTH("I32d 5", "%I32d %d", 5);
    BOTH("I6d 5", "%I6d %d", 5);
    BOTH("w 5", "%w %d", 5);
    BOTH("ld 5", "%hld %d", 5);
    BOTH("q 5", "%q %d", 5);
}

static void test_pointers(void)
{
    BOTH("00001234", "%p", (void *)0x1234);
    BOTH("00abcdef", "%p", (void *)0xABCDEF);
    BOTH("00ABCDEF", "%P", (void *)0xABCDEF);
    BOTH("00001234", "%20p", (void *)0x1234);
    BOTH("00001234", "%#p", (void *)0x1234);
    BOTH("00001234", "%llp", (void *)0x1234);
    BOTH("1234    |", "%-p|", (void *)0x1234);
    BOTH("0000001234", "%.10p", (void *)0x1234);
    BOTH("  001234", "%.6p", (void *)0x1234);
    BOTH("00000000", "%p", (void *)0);
    BOTH("        ", "%.0p", (void *)0);
}

static void test_unknown(void)
{
    BOTH("y", "%y");
    BOTH("    y", "%5y");
    BOTH("    y", "%05y");
    BOTH("y    |", "%-5y|");
    BOTH("C S Z b 7", "%C %S %Z %b %d", 7);
    BOTH("b", "%hhb");
}

static void test_width_and_precision(void)
{
    BOTH("     7", "%*d", 6, 7);
    BOTH("7     |", "%*d|", -6, 7);
    BOTH("7     |", "%0*d|", -6, 7);
    BOTH("7", "%.*d", -1, 7);
    BOTH("00007", "%05.*d", -1, 7);
    BOTH("   007", "%*.*d", 6, 3, 7);
    /* Padding is longer than the pieces that it goes out in. */
    BOTH("                                                                     7", "%70d", 7);
    BOTH("0000000000000000000000000000000000000000000000000000000000000000000007", "%070d", 7);
    BOTH("                                7", "%33d", 7);
    BOTH("7                                |", "%-33d|", 7);
}

/* A '%' that ends the format stands for itself, and nothing behind the terminator is read. */
static void test_lone_percent(void)
{
    BOTH("a%", "a%\0%d");
    BOTH("%", "%-5l\0x");
}

static void test_count(void)
{
    struct {
        int before;
        union {
            signed char b;
            short h;
            int i;
            long long q;
        } count;
    } stored;
#define COUNT(format, width, mask)                                                                 \
    do {                                                                                           \
        memset(&stored, 0x55, sizeof stored);                                                      \
        BOTH("123456", "123" format "%d", &stored.count, 456);                                     \
        CHECK_INT(stored.count.q & mask, 3);                                                       \
        CHECK_INT((unsigned long long)stored.count.q & ~(unsigned long long)(mask),                \
                  0x5555555555555555ULL & ~(unsigned long long)(mask));                            \
    } while (0)
    COUNT("%hhn", 1, 0xFF);
    COUNT("%hn", 2, 0xFFFF);
    COUNT("%n", 4, 0xFFFFFFFFLL);
    COUNT("%ln", 4, 0xFFFFFFFFLL);
    COUNT("%zn", 4, 0xFFFFFFFFLL);
    COUNT("%tn", 4, 0xFFFFFFFFLL);
    COUNT("%jn", 8, -1LL);
    COUNT("%lln", 8, -1LL);
    COUNT("%I64n", 8, -1LL);
    /* What a buffer has no room for is counted. */
    int count = 0;
    CHECK_INT(narrow(text, 4, "%100d%n|", 1, &count), 101);
    CHECK_INT(count, 100);
}

/* Fields that no buffer holds: counted, and in reasonable time. */
static void test_huge(void)
{
    CHECK_INT(narrow(0, 0, "%2147483647d", 1), 2147483647);
    CHECK_INT(narrow(0, 0, "%-2147483647d", 1), 2147483647);
    CHECK_INT(narrow(0, 0, "%.2147483647d", 1), 2147483647);
    CHECK_INT(narrow(0, 0, "%02147483646d", 1), 2147483646);
    CHECK_INT(narrow(0, 0, "%99999999999999999999d", 1), 2147483647);
    CHECK_INT(narrow(0, 0, "%*d", 2147483647, 1), 2147483647);
    CHECK_ERRNO(narrow(0, 0, "%.2147483647d", -1), -1, ERANGE);
    CHECK_ERRNO(narrow(0, 0, "%2147483647dx", 1), -1, ERANGE);
    CHECK_ERRNO(narrow(0, 0, "%*d", -2147483647 - 1, 1), -1, ERANGE);
    CHECK_ERRNO(wide(0, 0, L"%2147483647d%d", 1, 1), -1, ERANGE);
    CHECK_INT(wide(0, 0, L"%.99999999999999999999d", 1), 2147483647);
}

int main(void)
{
    test_literals();
    test_integers();
    test_lengths();
    test_pointers();
    test_unknown();
    test_width_and_precision();
    test_lone_percent();
    test_count();
    test_huge();
    return check_done();
}
