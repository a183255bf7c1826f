/* options: -fno-builtin */
/* The functions without bounds: what the tables say, narrow and wide. */
#ifndef WIDE_PASS
#define WIDE_PASS
#include "check.h"

#include <stdint.h>
#include <stdlib.h>

static int sign(int value) { return (value > 0) - (value < 0); }

#include "plain.c"
#define WIDE
#include "plain.c"

static void memory(void)
{
    char bytes[] = "aBc\0dEf", to[8] = {0};
    CHECK(_memccpy(to, bytes, 'c', 8) == to + 3);
    CHECK_MEM(to, "aBc\0\0\0\0", 8);
    CHECK(_memccpy(to, bytes, 'z', 6) == NULL);
    CHECK_MEM(to, "aBc\0dE\0", 8);
    CHECK(_memccpy(to, bytes, 'c', 0) == NULL);
    CHECK(memchr(bytes, 0x100 + 'd', 8) == bytes + 4); /* as an unsigned char */
    CHECK(strchr(bytes, 0x100 + 'c') == bytes + 2);
    CHECK_INT(sign(memcmp("a\x80", "a\x7f", 2)), 1);
    CHECK_INT(sign(_memicmp("AB\0C", "ab\0D", 4)), -1);
    CHECK_INT(_memicmp("AB\0C", "ab\0c", 4), 0);
    CHECK_INT(_memicmp("AB", "XY", 0), 0);
    CHECK(memset(to, 0x141, 3) == to);
    CHECK_MEM(to, "AAA\0dE\0", 8);
}

static void wide_tokens(void)
{
    wchar_t text[] = L";a,;b", *position = NULL;
    CHECK_WSTR(wcstok(text, L",;", &position), L"a");
    CHECK_WSTR(wcstok(NULL, L";", &position), L"b");
    CHECK(wcstok(NULL, L";", &position) == NULL);
    CHECK(wcstok(NULL, L";", &position) == NULL);
}

static void tokens_of_the_thread(void)
{
    char text[] = "--one-two--";
    wchar_t wide[] = L"--one-two--";
    CHECK_STR(strtok(text, "-"), "one");
    CHECK_WSTR(_wcstok_ms(wide, L"-"), L"one"); /* a position of its own */
    CHECK_STR(strtok(NULL, "-"), "two");
    CHECK(strtok(NULL, "-") == NULL);
    CHECK(strtok(NULL, "-") == NULL);
    CHECK_WSTR(_wcstok_ms(NULL, L"-"), L"two");
    CHECK(_wcstok_ms(NULL, L"-") == NULL);
    CHECK(_wcstok_ms(NULL, L"-") == NULL);
}

static void duplicates(void)
{
    char *copy = strndup("abcdef", 3), *whole = strndup("ab", SIZE_MAX);
    char unterminated[2] = {'x', 'y'}, *two = strndup(unterminated, 2);
    CHECK_STR(copy, "abc");
    CHECK_STR(whole, "ab");
    CHECK_STR(two, "xy");
    free(copy);
    free(whole);
    free(two);
}

int main(void)
{
    memory();
    wide_tokens();
    tokens_of_the_thread();
    duplicates();
    narrow_all();
    wide_all();
    return check_done();
}

#else
#include "string/both.h"

static void CASES(comparison)(void)
{
    static const struct {
        const CHAR *left, *right;
        size_t limit;
        int plain, bounded, ignoring_case, bounded_ignoring_case;
    } cases[] = {
        {T(""), T(""), 5, 0, 0, 0, 0},
        {T(""), T("a"), 5, -1, -1, -1, -1},
        {T("abc"), T("abd"), 2, -1, 0, -1, 0},
        {T("abc"), T("ab"), 3, 1, 1, 1, 1},
        {T("abc"), T("ABC"), 9, 1, 1, 0, 0},
        {T("aB_"), T("AbX"), 3, 1, 1, -1, -1}, /* '_' lies between the cases */
        {T("abcX"), T("ABCY"), 3, 1, 1, -1, 0},
        {T("\xff"), T("a"), 1, 1, 1, 1, 1},
        {T("same"), T("sane"), 0, -1, 0, -1, 0},
    };
    for (size_t i = 0; i < COUNT(cases); ++i) {
        CHECK_INT(sign(STR(cmp)(cases[i].left, cases[i].right)), cases[i].plain);
        CHECK_INT(sign(STR(ncmp)(cases[i].left, cases[i].right, cases[i].limit)), cases[i].bounded);
        CHECK_INT(sign(EXT(icmp)(cases[i].left, cases[i].right)), cases[i].ignoring_case);
        CHECK_INT(sign(EXT(nicmp)(cases[i].left, cases[i].right, cases[i].limit)),
                  cases[i].bounded_ignoring_case);
    }
}

static void CASES(search)(void)
{
    static const CHAR text[] = T("one, two; three");
    static const struct {
        const CHAR *set;
        size_t in, outside;
    } spans[] = {
        {T(""), 0, 15}, {T("o"), 1, 0}, {T("x"), 0, 15}, {T(",;"), 0, 3},
        {T("eno"), 3, 0}, {T(" ,;thrwoen"), 15, 0}, {T(";"), 0, 8},
    };
    static const struct {
        const CHAR *needle;
        int at;
    } needles[] = {{T(""), 0}, {T("o"), 0}, {T("three"), 10}, {T("threes"), -1},
                   {T("two"), 5}, {T("ee"), 13}, {T("one, two; three"), 0}};
    for (size_t i = 0; i < COUNT(spans); ++i) {
        const CHAR *due = spans[i].outside < 15 ? text + spans[i].outside : NULL;
        CHECK_INT(STR(spn)(text, spans[i].set), spans[i].in);
        CHECK_INT(STR(cspn)(text, spans[i].set), spans[i].outside);
        CHECK(STR(pbrk)(text, spans[i].set) == due);
    }
    for (size_t i = 0; i < COUNT(needles); ++i) {
        const CHAR *due = needles[i].at < 0 ? NULL : text + needles[i].at;
        CHECK(STR(str)(text, needles[i].needle) == due);
    }
    CHECK(STR(chr)(text, 'e') == text + 2);
    CHECK(STR(rchr)(text, 'e') == text + 14);
    CHECK(STR(chr)(text, 0) == text + 15);
    CHECK(STR(rchr)(text, 0) == text + 15);
    CHECK(STR(chr)(text, 'z') == NULL);
    CHECK(STR(rchr)(text, 'z') == NULL);
    CHECK(MEM(chr)(text, 'e', SIZE_MAX) == text + 2); /* no more is looked at than must be */
    CHECK(MEM(chr)(text, 'e', 2) == NULL);
    CHECK(MEM(cmp)(text, T("one;"), 3) == 0);
    CHECK(MEM(cmp)(text, T("one;"), 4) < 0);
}

static void CASES(copies)(void)
{
    CHAR to[12] = T("###########");
    CHECK(STR(cpy)(to, T("abc")) == to);
    CHECK_MEM(to, T("abc\0#######"), sizeof to);
    CHECK(STR(cat)(to, T("de")) == to);
    CHECK_MEM(to, T("abcde\0#####"), sizeof to);
    CHECK(STR(ncat)(to, T("fgh"), 2) == to);
    CHECK_MEM(to, T("abcdefg\0###"), sizeof to);
    CHECK(STR(ncat)(to, T("h"), 100) == to);
    CHECK_MEM(to, T("abcdefgh\0##"), sizeof to);
    CHECK(STR(ncpy)(to, T("xy"), 5) == to);
    CHECK_MEM(to, T("xy\0\0\0fgh\0##"), sizeof to);
    CHECK(STR(ncpy)(to, T("12345"), 3) == to);
    CHECK_MEM(to, T("123\0\0fgh\0##"), sizeof to);
    CHECK(STR(ncpy)(to, T("12345"), 0) == to);
    CHECK(MEM(cpy)(to + 4, T("mem"), 3) == to + 4);
    CHECK(MEM(move)(to + 1, to, 7) == to + 1);
    CHECK_MEM(to, T("1123\0mem\0##"), sizeof to);
    CHECK(MEM(set)(to, 'z', 2) == to);
    CHECK_TEXT(to, T("zz23"));
#ifdef WIDE
    CHAR *copy = _wcsdup(T("text"));
#else
    CHAR *copy = strdup(T("text"));
#endif
    CHECK_TEXT(copy, T("text"));
    free(copy);
}

static void CASES(changes)(void)
{
    CHAR text[] = T("Ab1z[\xc4\0Q"), odd[] = T("abc"), even[] = T("abcd"), none[] = T("");
    CHECK(EXT(upr)(text) == text);
    CHECK_MEM(text, T("AB1Z[\xc4\0Q"), sizeof text);
    CHECK(EXT(lwr)(text) == text);
    CHECK_MEM(text, T("ab1z[\xc4\0Q"), sizeof text);
    CHECK(EXT(nset)(text, 'x', 2) == text);
    CHECK_TEXT(text, T("xx1z[\xc4"));
    CHECK(EXT(nset)(text, 'y', SIZE_MAX) == text);
    CHECK_MEM(text, T("yyyyyy\0Q"), sizeof text);
    CHECK(EXT(set)(text, 'w') == text);
    CHECK_MEM(text, T("wwwwww\0Q"), sizeof text);
    CHECK(EXT(rev)(odd) == odd);
    CHECK_TEXT(odd, T("cba"));
    CHECK_TEXT(EXT(rev)(even), T("dcba"));
    CHECK_TEXT(EXT(rev)(none), T(""));
}

static void CASES(all)(void)
{
    CASES(comparison)();
    CASES(search)();
    CASES(copies)();
    CASES(changes)();
}
#endif
