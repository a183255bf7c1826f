/* Formatted input: what each conversion takes and leaves, from strings, wide strings and streams. */
#include "check.h"
#include "guard.h"
#include "violations.h"
#include "widen.h"

#include <float.h>
#include <limits.h>
#include <stdint.h>

static wchar_t wide_format[60];

/* One field each: what the call returns, what %n says is consumed behind it (-1: not reached), errno. */
static const struct {
    const char *text, *format;
    int result;
    long long value;
    int consumed, error;
} integers[] = {
    {"12abc", "%lld%n", 1, 12, 2, 0},
    {"  -7 ", "%lld%n", 1, -7, 4, 0},
    {"+5", "%lld%n", 1, 5, 2, 0},
    {"1234567", "%5lld%n", 1, 12345, 5, 0},
    {"-12", "%2lld%n", 1, -1, 2, 0},
    {"-12", "%1lld%n", 0, 0, -1, 0},
    {"", "%lld", -1, 0, -1, 0},
    {"   ", "%lld", -1, 0, -1, 0},
    {"-", "%lld", 0, 0, -1, 0},
    {"x", "%lld", 0, 0, -1, 0},
    {"", "x%lld", 0, 0, -1, 0},
    {"0x1f", "%lli%n", 1, 31, 4, 0},
    {"-0X1F", "%lli%n", 1, -31, 5, 0},
    {"017", "%lli%n", 1, 15, 3, 0},
    {"09", "%lli%n", 1, 0, 1, 0},
    {"0", "%lli%n", 1, 0, 1, 0},
    {"0x", "%lli%n", 0, 0, -1, 0},
    {"0xg", "%llx%n", 0, 0, -1, 0},
    {"0x1f", "%3lli%n", 1, 1, 3, 0},
    {"0x1f", "%2llx%n", 0, 0, -1, 0},
    {"0x1f", "%llx%n", 1, 31, 4, 0},
    {"BeEf", "%llX%n", 1, 0xBEEF, 4, 0},
    {"0x1f", "%llu%n", 1, 0, 1, 0},
    {"778", "%llo%n", 1, 077, 2, 0},
    {"-1", "%llu%n", 1, -1, 2, 0},
    {"00000000000000000000000000000000000000000000000001", "%lld%n", 1, 1, 50, 0},
    {"9223372036854775807", "%lld%n", 1, LLONG_MAX, 19, 0},
    {"9223372036854775808", "%lld%n", 1, LLONG_MAX, 19, ERANGE},
    {"-9223372036854775808", "%lld%n", 1, LLONG_MIN, 20, 0},
    {"-9223372036854775809", "%lli%n", 1, LLONG_MIN, 20, ERANGE},
    {"18446744073709551615", "%llu%n", 1, -1, 20, 0},
    {"18446744073709551616", "%llu%n", 1, -1, 20, ERANGE},
    {"-18446744073709551616", "%llu%n", 1, -1, 21, ERANGE},
    {"1777777777777777777777", "%llo%n", 1, -1, 22, 0},
    {"99999999999999999999999999999999999999999", "%jd%n", 1, LLONG_MAX, 41, ERANGE},
    {"42", "%I64d%n", 1, 42, 2, 0},
    {"a 1", "a%lld%n", 1, 1, 3, 0},
    {"a\t\n 1", "a %lld%n", 1, 1, 5, 0},
    {"%5", "%%%lld%n", 1, 5, 2, 0},
    {"  % 5", " %%%lld%n", 1, 5, 5, 0},
    {"5", "%%%lld%n", 0, 0, -1, 0},
    {"", "%%%lld%n", -1, 0, -1, 0},
    {"ab5", "ac%lld%n", 0, 0, -1, 0},
    {"1 2", "%*d%lld%n", 1, 2, 3, 0},
    {"5", "%0lld%n", 1, 5, 1, 0},
    {"5", "%99999999999lld%n", 1, 5, 1, 0},
    {"5", "%y", 0, 0, -1, 0},
    {"5", "%", 0, 0, -1, 0},
};

/* The narrow function, or the wide one. */
#define SCAN(wide_form, text, format, ...)                                                         \
    ((wide_form) ? swscanf(widen(text), widen_to(wide_format, format), __VA_ARGS__)                \
                 : sscanf(text, format, __VA_ARGS__))

static void test_integers(void)
{
    for (size_t i = 0; i < sizeof integers / sizeof *integers; ++i)
        for (int k = 0; k < 2; ++k) {
            long long value = 0;
            int consumed = -1;
            check_label = integers[i].text;
            CHECK_ERRNO(SCAN(k, integers[i].text, integers[i].format, &value, &consumed), integers[i].result,
                        integers[i].error);
            CHECK_INT(value, integers[i].value);
            CHECK_INT(consumed, integers[i].consumed);
        }
    check_label = "";
}

/* Every length stores its own width and nothing beside it. */
static void test_lengths(void)
{
    static const struct {
        const char *format;
        size_t size;
    } cases[] = {{"%hhd", 1}, {"%hd", 2}, {"%d", 4}, {"%ld", 4}, {"%td", 4}, {"%zu", 4}, {"%lld", 8}, {"%jd", 8}, {"%Li", 4}, {"%p", 4}};
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        unsigned char got[12], due[12];
        memset(got, 0xA5, sizeof got);
        memset(due, 0xA5, sizeof due);
        memset(due, cases[i].format[1] == 'p' ? 0x11 : 0xFF, cases[i].size);
        CHECK_INT(sscanf(cases[i].format[1] == 'p' ? "11111111" : cases[i].format[1] == 'z' ? "4294967295" : "-1",
                         cases[i].format, got), 1);
        CHECK_MEM(got, due, sizeof got);
    }
    int value = 0;
    CHECK_ERRNO(sscanf("4294967297", "%d", &value), 1, 0); /* checked as 64 bits */
    CHECK_INT(value, 1);
    int8_t small[3] = {9, 9, 9};
    CHECK_INT(sscanf("ab", "%*c%hhn", small + 1), 0);
    CHECK(small[0] == 9 && small[1] == 1 && small[2] == 9);
}

static const struct {
    const char *text, *format;
    int result;
    double value;
    int consumed;
} floats[] = {
    {"3.25xyz", "%lf%n", 1, 3.25, 4},
    {" -1e3", "%le%n", 1, -1000, 5},
    {".5", "%lg%n", 1, 0.5, 2},
    {"5.", "%lf%n", 1, 5, 2},
    {".", "%lf", 0, 0, -1},
    {"", "%lf", -1, 0, -1},
    {"+", "%lf", 0, 0, -1},
    {"1e", "%lf%n", 0, 0, -1},
    {"100er", "%lf%n", 0, 0, -1},
    {"1e+", "%lf%n", 0, 0, -1},
    {"1.25", "%3lf%n", 1, 1.2, 3},
    {"1e55", "%3lf%n", 1, 1e5, 3},
    {"12e5", "%3lf%n", 0, 0, -1},
    {"0x1.8p1", "%la%n", 1, 3, 7},
    {"0x", "%lf", 0, 0, -1},
    {"0x.p1", "%lf", 0, 0, -1},
    {"-inf", "%lf%n", 1, -__builtin_inf(), 4},
    {"InFiNiTyx", "%lf%n", 1, __builtin_inf(), 8},
    {"infx", "%lf%n", 1, __builtin_inf(), 3},
    {"infinx", "%lf", 0, 0, -1},
    {"in", "%lf", 0, 0, -1},
    {"nan(a_1", "%lf", 0, 0, -1},
    {"nax", "%lf", 0, 0, -1},
    {"0000000000000000000000000000000000000000000000000001.5", "%lf%n", 1, 1.5, 54},
    {"0.00000000000000000000000000000000000000000000000001e50", "%lf%n", 1, 1, 55},
    {"100000000000000000000000000000000000000000000000000e-50", "%lf%n", 1, 1, 55},
    {"0x10000000000000000000000000000000000000000000000000p-196", "%lf%n", 1, 1, 57},
    {"0x.00000000000000000000000000000000000000000000000001p200", "%lf%n", 1, 1, 57},
    {"3.14159265358979323846264338327950288419716939937510582", "%lf%n", 1, 3.141592653589793, 55},
    {"0e99999999999999999999", "%lf%n", 1, 0, 22},
    {"1e-99999999999999999999", "%Lf%n", 1, 0, 23},
};

static void test_floats(void)
{
    for (size_t i = 0; i < sizeof floats / sizeof *floats; ++i)
        for (int k = 0; k < 2; ++k) {
            double value = 0;
            int consumed = -1;
            check_label = floats[i].text;
            CHECK_INT(SCAN(k, floats[i].text, floats[i].format, &value, &consumed), floats[i].result);
            CHECK(value == floats[i].value);
            CHECK_INT(consumed, floats[i].consumed);
        }
    check_label = "";
    float single = 0, pair[2] = {1, 1};
    CHECK_INT(sscanf("0.1 nan(abc_1)z", "%f%*f%f", &single, pair), 1);
    CHECK(single == 0.1f);
    CHECK_INT(sscanf("nan(abc_1)5", "%f%f", pair, pair + 1), 2);
    CHECK(pair[0] != pair[0] && pair[1] == 5);
    CHECK_ERRNO(sscanf("1e400", "%f", &single), 1, ERANGE);
    CHECK(single == __builtin_inff());
}

static const struct {
    const char *text, *format;
    int result;
    const char *first, *second;
} texts[] = {
    {"12abc", "%2s%s", 2, "12", "abc"},
    {"  one\ttwo", "%s%s", 2, "one", "two"},
    {"one", "%s%s", 1, "one", ""},
    {"", "%s", -1, "", ""},
    {"abc", "%[0-9]", -1, "", ""}, /* not a matching failure */
    {"5abc", "%[0-9]%[0-9]", 1, "5", ""},
    {"]a]b", "%[]a]%s", 2, "]a]", "b"},
    {"ab]", "%[^]]%s", 2, "ab", "]"},
    {"a-b", "%[a-]%s", 2, "a-", "b"},
    {"-ab", "%[-a]%s", 2, "-a", "b"},
    {"a-c", "%[a-c]%s", 2, "a", "-c"},
    {"+,-.", "%[+--]%s", 2, "+,-", "."},
    {"a-ce", "%[a-c-e]%s", 1, "a-ce", ""},
    {"zam", "%[z-a]%s", -1, "", ""}, /* an empty range */
    {"a^b", "%[a^]%s", 2, "a^", "b"},
    {"abc", "%[", 0, "", ""},
    {"abc", "%[^]", 0, "", ""},
    {"abc", "%[abc", 0, "", ""},
    {"abcdef", "%3[a-z]%2[a-z]", 2, "abc", "de"},
    {"\xE9\xE8x", "%[\xE0-\xEF]%s", 2, "\xE9\xE8", "x"},
    {" x", "%[ x]%s", 1, " x", ""},
    {"skip this", "%*s%s", 1, "this", ""},
};

static void test_texts(void)
{
    for (size_t i = 0; i < sizeof texts / sizeof *texts; ++i)
        for (int k = 0; k < 2; ++k) {
            char first[40] = "", second[40] = "";
            check_label = texts[i].format;
            CHECK_INT(SCAN(k, texts[i].text, texts[i].format, first, second), texts[i].result);
            CHECK_STR(first, texts[i].first);
            CHECK_STR(second, texts[i].second);
        }
    check_label = "";
    char text[8] = "-------";
    CHECK_INT(sscanf("ab", "%3c", text), 1); /* fewer than asked for: stored, and counted */
    CHECK_STR(text, "ab-----");
    CHECK_INT(sscanf(" x", "%c%c", text, text + 1), 2);
    CHECK_STR(text, " x-----");
    CHECK_INT(sscanf("", "%c", text), -1);
    int consumed = -1, value = -1;
    CHECK_INT(sscanf("17 rest", "%*d %n", &consumed), 0);
    CHECK_INT(consumed, 3);
    CHECK_INT(sscanf("abc 17", "%*[a-z] %d", &value), 1);
    CHECK_INT(value, 17);
    wcscpy(wide, L"-------");
    CHECK_INT(sscanf("h\xE9h\xE9 rest", "%ls", wide), 1);
    CHECK_WSTR(wide, L"h\xE9h\xE9");
    CHECK_INT(sscanf("ab", "%lc%l[b]", wide, wide + 1), 2);
    CHECK_WSTR(wide, L"ab");
    CHECK_INT(swscanf(L"\x20AC\x4E00 z", L"%l[\x20A0-\x20AF]%ls%lc", wide, wide + 3, wide + 6), 3);
    CHECK_WSTR(wide, L"\x20AC");
    CHECK_WSTR(wide + 3, L"\x4E00");
    CHECK_INT(wide[6], ' ');
}

static void test_bounds_checked(void)
{
    char text[8] = "", other[8] = "";
    int value = 0;
    count_violations();
    CHECK_INT(sscanf_s("abc 12 xyz", "%s%d%3c", text, (rsize_t)4, &value, other, (rsize_t)3), 3);
    CHECK_STR(text, "abc");
    CHECK_INT(swscanf_s(L"ab cd", L"%ls%s", wide, (rsize_t)3, text, (rsize_t)3), 2);
    CHECK_INT(sscanf_s("ab", "%*s%n", &value), 0);
    CHECK_INT(value, 2);
    CHECK_INT(violations, 0);
    CHECK_REFUSED(sscanf_s("5 abc", "%d%s", &value, text, (rsize_t)3), -1, ERANGE);
    CHECK_STR(text, "");
    CHECK_REFUSED(sscanf_s("abc", "%[a-c]", text, (rsize_t)3), -1, ERANGE);
    CHECK_REFUSED(sscanf_s("abc", "%3c", text, (rsize_t)2), -1, ERANGE);
    CHECK_REFUSED(sscanf_s("abc", "%ls", wide, (rsize_t)3), -1, ERANGE);
    CHECK_REFUSED(swscanf_s(L"abc", L"%s", text, (rsize_t)1), -1, ERANGE);
    CHECK_REFUSED(sscanf_s("abc", "%s", text, (rsize_t)0), -1, EINVAL);
    CHECK_REFUSED(sscanf_s("abc", "%s", text, (rsize_t)0x80000000), -1, EINVAL);
    CHECK_REFUSED(sscanf_s("abc", "%s", (char *)NULL, (rsize_t)8), -1, EINVAL);
    CHECK_REFUSED(sscanf_s("abc", "%n", (int *)NULL), -1, EINVAL);
    CHECK_REFUSED(sscanf_s(NULL, "%d", &value), -1, EINVAL);
    CHECK_REFUSED(sscanf_s("1", NULL), -1, EINVAL);
    CHECK_REFUSED(swscanf_s(NULL, L"%d", &value), -1, EINVAL);
    CHECK_REFUSED(fscanf_s(NULL, "%d", &value), -1, EINVAL);
    set_constraint_handler_s(NULL);
    CHECK_ERRNO(sscanf(NULL, "%d", &value), -1, EINVAL);
    CHECK_ERRNO(fscanf(NULL, "%d", &value), -1, EINVAL);
}

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);

/* Fields across the edges of a stream's buffer, buffered and not, with characters pushed back. */
static void test_stream(int buffering)
{
    const char *name = "format-scanf.tmp";
    FILE *file = fopen(name, "w+b");
    for (int i = 0; i < 2000; ++i) fprintf(file, "%d word%d %g\n", i, i, i / 8.0);
    fputs("end", file);
    fclose(file);
    file = fopen(name, "rb");
    setvbuf(file, NULL, buffering, BUFSIZ);
    int number, wrong = 0;
    char word[20], due[20];
    float real;
    for (int i = 0; i < 2000; ++i) {
        wrong += fscanf(file, "%d%s%f", &number, word, &real) != 3;
        sprintf(due, "word%d", i);
        wrong += number != i || strcmp(word, due) || real != (float)(i / 8.0);
        wrong += getc(file) != '\n';
    }
    CHECK_INT(wrong, 0);
    CHECK_INT(ungetc('9', file), '9');
    CHECK_INT(fscanf(file, "%d%c", &number, word), 2);
    CHECK_INT(number, 9);
    CHECK_INT(word[0], 'e');
    long position = ftell(file);
    CHECK_INT(fscanf(file, "x%d", &number), 0); /* what did not match is still there */
    CHECK_INT(ftell(file), position);
    CHECK_INT(fscanf(file, "%d", &number), 0);
    CHECK_INT(fscanf(file, "%s", word), 1);
    CHECK_STR(word, "nd");
    CHECK_INT(fscanf(file, "%d", &number), -1);
    CHECK(feof(file));
    fclose(file);
    DeleteFileA(name);
}

/* Text that ends with its page, and a field of a million digits. */
static void test_long_input(void)
{
    enum { LENGTH = 1 << 20 };
    char *text = guard_pages(LENGTH / GUARD_PAGE);
    long long value = 0;
    double real = 0;
    int consumed = 0;
    memset(text, '7', LENGTH - 1);
    CHECK_INT(sscanf(text, "%lld%n", &value, &consumed), 1);
    CHECK_INT(consumed, LENGTH - 1);
    CHECK_INT(value, LLONG_MAX);
    CHECK_INT(sscanf(text, "%lf%n", &real, &consumed), 1);
    CHECK_INT(consumed, LENGTH - 1);
    CHECK(real == __builtin_inf());
    memcpy(text, "nan(", 4);
    CHECK_INT(sscanf(text, "%lf", &real), 0);
    CHECK_INT(sscanf(text + LENGTH - 2, "%2147483647d%*2147483648s", &consumed), 1);
}

int main(void)
{
    test_integers();
    test_lengths();
    test_floats();
    test_texts();
    test_bounds_checked();
    test_stream(_IOFBF);
    test_stream(_IONBF);
    test_long_input();
    return check_done();
}
