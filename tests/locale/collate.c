/* Collation: what comes before what, and that transformed texts compare as their sources do. */
#include "check.h"

#include <locale.h>
#include <stdlib.h>

__declspec(dllimport) int __stdcall CompareStringW(unsigned long lcid, unsigned long flags, const wchar_t *a, int,
                                                   const wchar_t *b, int);

static int sign(int n) { return (n > 0) - (n < 0); }

static void test_order(void)
{
    static const struct {
        const char *locale, *less, *more;
        int order;
    } cases[] = {
        {"C", "B", "a", -1},   {"C", "a", "\xE4", -1}, {"DE", "a", "B", -1}, {"DE", "b", "A", 1},
        {"DE", "\xE4", "b", -1}, {"DE", "abc", "abcd", -1}, {"DE", "", "a", -1}, {"DE", "abc", "ABC", 0},
        {"DE", "z", "a", 1},   {"RU", "\xE0", "\xE1", -1}, {"C", "\x01" "b", "a", -1},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        check_label = cases[i].less;
        setlocale(LC_COLLATE, cases[i].locale);
        CHECK_INT(sign(strcoll(cases[i].less, cases[i].more)), cases[i].order);
        CHECK_INT(sign(strcoll(cases[i].more, cases[i].less)), -cases[i].order);
    }
    check_label = "";
    setlocale(LC_COLLATE, "SE"); /* in Swedish the vowels with marks come last */
    CHECK(wcscoll(L"\xE5ka", L"zebra") > 0);
    CHECK(wcscoll(L"resume", L"r\xE9sum\xE9") < 0);
    setlocale(LC_COLLATE, "DE");
    CHECK(wcscoll(L"\xE5ka", L"zebra") < 0);
    CHECK_INT(sign(wcscoll(L"a", L"B")), -1);
    setlocale(LC_COLLATE, "C");
    CHECK_INT(sign(wcscoll(L"B", L"a")), -1);
}

static unsigned state = 12345;
static unsigned next(unsigned limit)
{
    state = state * 1103515245 + 12345;
    return (state >> 8) % limit;
}

/* Any bytes, any units: an order, and one that the transformed texts have too. */
static void test_random(void)
{
    static const char *const locales[] = {"C", "DE", "FR", "JP"};
    int wrong = 0, wide_wrong = 0;
    for (int i = 0; i < 20000; ++i) {
        char text[3][8], key[2][64];
        wchar_t wide[2][8], wide_key[2][200];
        setlocale(LC_COLLATE, locales[i / 5000]);
        for (int k = 0; k < 3; ++k) {
            unsigned length = next(7);
            memset(text[k], 0, sizeof text[k]);
            if (k < 2) wmemset(wide[k], 0, 8);
            for (unsigned c = 0; c < length; ++c) {
                text[k][c] = (char)(next(3) ? "aBc\xE4-' Z1"[next(9)] : next(255) + 1);
                if (k < 2) wide[k][c] = (wchar_t)(next(3) ? L"aBc\xE4-' \x3042Z"[next(9)] : next(0xD000) + 1);
            }
        }
        size_t lengths[2] = {strxfrm(key[0], text[0], 64), strxfrm(key[1], text[1], 64)};
        int order = sign(strcoll(text[0], text[1]));
        wrong += order != sign(strcmp(key[0], key[1])) || order != -sign(strcoll(text[1], text[0]));
        wrong += strlen(key[0]) != lengths[0] || strxfrm(NULL, text[1], 0) != lengths[1];
        if (order <= 0 && strcoll(text[1], text[2]) <= 0) wrong += strcoll(text[0], text[2]) > 0;
        size_t needed = wcsxfrm(wide_key[0], wide[0], 200);
        wcsxfrm(wide_key[1], wide[1], 200);
        wide_wrong += wcslen(wide_key[0]) != needed;
        wide_wrong += sign(wcscoll(wide[0], wide[1])) != sign(wcscmp(wide_key[0], wide_key[1]));
    }
    CHECK_INT(wrong, 0);
    CHECK_INT(wide_wrong, 0);
    setlocale(LC_ALL, "C");
    char part[3] = "??";
    CHECK_INT(strxfrm(part, "abcdef", 2), 6);
    CHECK_MEM(part, "ab", 2);
}

int main(void)
{
    test_order();
    test_random();
    return check_done();
}
