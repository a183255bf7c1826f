/* %s and %c, with and without l, in both engines. */
#include "check.h"

#include <locale.h>
#include <stdlib.h>

static int (*volatile narrow)(char *, size_t, const char *, ...) = snprintf;
static int (*volatile wide)(wchar_t *, size_t, const wchar_t *, ...) = snwprintf;

static char text[1200];
static wchar_t wide_text[1200];

#define NARROW(due, format, ...)                                                                   \
    do {                                                                                           \
        check_label = format;                                                                      \
        CHECK_INT(narrow(text, sizeof text, format, ##__VA_ARGS__), sizeof(due) - 1);              \
        CHECK_MEM(text, due, sizeof(due));                                                         \
        check_label = "";                                                                          \
    } while (0)
#define WIDE(due, format, ...)                                                                     \
    do {                                                                                           \
        check_label = #format;                                                                     \
        CHECK_INT(wide(wide_text, 1200, format, ##__VA_ARGS__), sizeof(due) / sizeof(wchar_t) - 1);\
        CHECK_MEM(wide_text, due, sizeof(due));                                                    \
        check_label = "";                                                                          \
    } while (0)

static const char open_ended[3] = {'a', 'b', 'c'};
static const wchar_t wide_open_ended[3] = {L'a', L'b', L'c'};

static void test_own_strings(void)
{
    NARROW("hello", "%s", "hello");
    NARROW("hello", "%hs", "hello");
    NARROW("hello", "%lls", "hello");
    NARROW("  hello", "%7s", "hello");
    NARROW("  hello", "%07s", "hello");
    NARROW("hello  |", "%-7s|", "hello");
    NARROW("hel", "%.3s", "hello");
    NARROW("  hel", "%5.3s", "hello");
    NARROW("", "%.0s", "hello");
    NARROW("", "%.s", "hello");
    NARROW("hello", "%.*s", -2, "hello");
    NARROW("abc", "%.3s", open_ended);
    NARROW("hello", "%.2147483647s", "hello");
    NARROW("(null)", "%s", (char *)0);
    NARROW("(nu", "%.3s", (char *)0);
    NARROW("  (null)", "%8s", (char *)0);
    NARROW("\xE9\xFF\x80", "\xE9%s\x80", "\xFF");
    WIDE(L"hello", L"%ls", L"hello");
    WIDE(L"  hello", L"%7ls", L"hello");
    WIDE(L"hello  |", L"%-7ls|", L"hello");
    WIDE(L"abc", L"%.3ls", wide_open_ended);
    WIDE(L"hello", L"%.2147483647ls", L"hello");
    WIDE(L"(null)", L"%ls", (wchar_t *)0);
    WIDE(L"\x20AC\xD83D\xDE00", L"\x20AC%ls", L"\xD83D\xDE00");
}

static void test_own_characters(void)
{
    NARROW("x", "%c", 'x');
    NARROW("x", "%c", 0x12300 + 'x');
    NARROW("x", "%hc", 'x');
    NARROW("  x", "%3c", 'x');
    NARROW("x  |", "%-3c|", 'x');
    NARROW("x", "%.0c", 'x');
    NARROW("a\0b", "a%cb", 0);
    NARROW("  \0|", "%3c|", 0);
    WIDE(L"\x20AC", L"%lc", 0x20AC);
    WIDE(L"a\0b", L"a%lcb", 0);
    WIDE(L"  x", L"%3lc", L'x');
}

/* In the "C" locale a wide character is written as its low byte. */
static void test_wide_text_in_narrow(void)
{
    NARROW("hello", "%ls", L"hello");
    NARROW("\xAC\xE9", "%ls", L"\x20AC\xE9");
    NARROW("  hello", "%7ls", L"hello");
    NARROW("hello  |", "%-7ls|", L"hello");
    NARROW("hel", "%.3ls", L"hello");
    NARROW("  hel", "%5.3ls", L"hello");
    NARROW("abc", "%.3ls", wide_open_ended);
    NARROW("|", "%.0ls|", L"hello");
    NARROW("(null)", "%ls", (wchar_t *)0);
    NARROW("(nu", "%.3ls", (wchar_t *)0);
    NARROW("x", "%lc", L'x');
    NARROW("\xAC", "%lc", 0x20AC);
    NARROW("|", "%lc|", 0);
    NARROW("   |", "%3lc|", 0);
    NARROW("x", "%.0lc", L'x');
    NARROW("x  |", "%-3lc|", L'x');
}

static void test_narrow_text_in_wide(void)
{
    WIDE(L"hello", L"%s", "hello");
    WIDE(L"\xE9\x80", L"%s", "\xE9\x80");
    WIDE(L"  hello", L"%7s", "hello");
    WIDE(L"hello  |", L"%-7s|", "hello");
    WIDE(L"  hel", L"%5.3s", "hello");
    WIDE(L"abc", L"%.3s", open_ended);
    WIDE(L"(null)", L"%s", (char *)0);
    WIDE(L"hello", L"%hs", "hello");
    WIDE(L"x", L"%c", 'x');
    WIDE(L"\xE9", L"%c", 0xE9);
    WIDE(L"|", L"%c|", 0);
    WIDE(L"   |", L"%3c|", 0);
}

/* Converted text of `length` letters in a field of `width` columns. Left-justified text that does not
   fit the buffer of 64 is not padded; right-justified text always is. */
static void test_long_converted_text(void)
{
    static const struct {
        int length, width, due;
    } cases[] = {
        {60, 62, 62},   {63, 64, 64},   {64, 70, 70},   {65, 70, 70},  {64, -70, 70},
        {65, -70, 65},  {65, -1000, 65},{63, -1000, 1000}, {130, -140, 130}, {130, 140, 140},
        {300, 10, 300}, {300, 0, 300},  {61, 61, 61},   {62, 62, 62},  {0, 100, 100},
        {0, -100, 100}, {200, 199, 200}, {66, 69, 69},
    };
    for (unsigned i = 0; i < sizeof cases / sizeof *cases; ++i) {
        int length = cases[i].length, width = cases[i].width, due = cases[i].due, at, lead;
        char source[400], label[60];
        wchar_t wide_source[400];
        for (at = 0; at < length; ++at)
            wide_source[at] = source[at] = (char)('a' + at % 26);
        wide_source[length] = source[length] = 0;
        sprintf(label, "%d letters in %d columns", length, width);
        check_label = label;
        lead = width > 0 ? due - length : 0;
        CHECK_INT(narrow(text, sizeof text, "%*ls", width, wide_source), due);
        CHECK_INT(wide(wide_text, 1200, L"%*s", width, source), due);
        for (at = 0; at < due; ++at) {
            int letter = at < lead || at >= lead + length ? ' ' : source[at - lead];
            if (text[at] != letter || wide_text[at] != letter) break;
        }
        CHECK_INT(at, due);
        CHECK(text[due] == 0 && wide_text[due] == 0);
    }
    check_label = "";
}

/* Characters of two bytes, whose second may be the first of another: as text of a format, and as
   narrow text that the wide engine converts. */
static void test_two_byte_characters(void)
{
    if (!setlocale(LC_ALL, "JP")) {
        CHECK(!"JP");
        return;
    }
    NARROW("\x8A\xBF\x8E\x9A" "5%", "\x8A\xBF\x8E\x9A%d%%", 5);
    NARROW("\x8A\xBF\x8E\x9A", "%ls", L"\x6F22\x5B57");
    NARROW(" \x8A\xBF", "%3.3ls", L"\x6F22\x5B57");
    NARROW("a\x8A", "a\x8A%d", 5); /* a byte that is no character ends the format */
    WIDE(L"[  \x6F22\x5B57]", L"[%4s]", "\x8A\xBF\x8E\x9A");
    WIDE(L"\x6F22|", L"%.1s|", "\x8A\xBF\x8E\x9A");
    CHECK_ERRNO(wide(wide_text, 1200, L"[%s]", "a\x8A"), -1, EILSEQ);
    CHECK_WSTR(wide_text, L"[a");
    setlocale(LC_ALL, "C");
}

/* The buffer of a padded field comes from the heap; this one cannot be had. */
static void test_no_memory(void)
{
    CHECK_ERRNO(narrow(text, sizeof text, "a%2147483600lsb", L"x"), -1, ENOMEM);
    CHECK_STR(text, "a");
    CHECK_ERRNO(wide(wide_text, 1200, L"a%2147483600sb", "x"), -1, ENOMEM);
    CHECK_WSTR(wide_text, L"a");
}

__declspec(dllimport) void *__stdcall VirtualAlloc(void *, size_t, unsigned long, unsigned long);
__declspec(dllimport) int __stdcall VirtualProtect(void *, size_t, unsigned long, unsigned long *);

/* Formats, arguments and buffers that end where memory ends: nothing behind them is touched. */
static void test_page_end(void)
{
    unsigned long old;
    char *pages = VirtualAlloc(NULL, 3 * 4096, 0x3000 /* reserve, commit */, 4 /* read, write */);
    char *end = pages + 4096, *target_end = pages + 3 * 4096;
    VirtualProtect(end, 4096, 1 /* no access */, &old);
    for (int length = 0; length < 70; ++length) {
        char *format = end - length - 1;
        wchar_t *wide_format = (wchar_t *)end - length - 1;
        for (int i = 0; i < length; ++i) format[i] = (char)('a' + i % 26);
        format[length] = 0;
        CHECK_INT(narrow(text, sizeof text, format), length);
        CHECK_STR(text, format);
        CHECK_INT(narrow(target_end - length - 1, (size_t)length + 1, "%s", format), length);
        CHECK_STR(target_end - length - 1, format);
        CHECK_INT(narrow(text, sizeof text, "%.*s", length + 1, format), length);
        CHECK_INT(narrow(text, sizeof text, "%.500s", format), length);
        CHECK_INT(narrow(text, sizeof text, "%.*s", length, format + 1), length ? length - 1 : 0);
        for (int i = 0; i < length; ++i) wide_format[i] = (wchar_t)('a' + i % 26);
        wide_format[length] = 0;
        CHECK_INT(wide(wide_text, 1200, wide_format), length);
        CHECK_WSTR(wide_text, wide_format);
        CHECK_INT(wide(wide_text, 1200, L"%ls", wide_format), length);
        CHECK_INT(narrow(text, sizeof text, "%ls", wide_format), length);
        CHECK_INT(narrow(text, sizeof text, "%.*ls", length, wide_format), length);
    }
}

int main(void)
{
    test_page_end();
    test_own_strings();
    test_own_characters();
    test_wide_text_in_narrow();
    test_narrow_text_in_wide();
    test_long_converted_text();
    test_two_byte_characters();
    test_no_memory();
    return check_done();
}
