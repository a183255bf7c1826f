/* Conversion between multibyte and wide characters in the "C" locale, and in the raw two-byte mode
   that a state can ask for. */
#include "check.h"
#include "violations.h"

#include <uchar.h>

#define FAILED ((size_t)-1)

/* Every byte is a character; every wide character is its low byte. */
static void test_all_characters(void)
{
    int wrong = 0;
    for (int c = 0; c < 256; ++c) {
        char byte = (char)c;
        wchar_t wc = 0x5555;
        char16_t c16 = 0x5555;
        char32_t c32 = 0x55555555;
        int due = c != 0;
        CHECK_INT(mbtowc(&wc, &byte, 1), due);
        CHECK_INT(wc, c);
        wc = 0x5555;
        CHECK_INT(mbrtowc(&wc, &byte, 1, NULL), due);
        CHECK_INT(wc, c);
        CHECK_INT(mbrtoc16(&c16, &byte, 1, NULL), due);
        CHECK_INT(c16, c);
        CHECK_INT(mbrtoc32(&c32, &byte, 1, NULL), due);
        CHECK_INT(c32, c);
        CHECK_INT(mblen(&byte, 1), due);
        CHECK_INT(mbrlen(&byte, 1, NULL), due);
        CHECK_INT(btowc(c), c);
    }
    CHECK_INT(btowc(EOF), WEOF);
    for (unsigned c = 0; c < 65536; ++c) {
        char bytes[4] = "~~~";
        wchar_t wc = (wchar_t)c;
        wrong += wctomb(bytes, wc) != 1 || bytes[0] != (char)c || bytes[1] != '~';
        wrong += wcrtomb(bytes, wc, NULL) != 1 || bytes[0] != (char)c || bytes[1] != '~';
        wrong += c16rtomb(bytes, (char16_t)c, NULL) != 1 || bytes[0] != (char)c;
        wrong += c32rtomb(bytes, c, NULL) != 1 || bytes[0] != (char)c;
        wrong += wctob((wint_t)c) != (c == WEOF ? EOF : (int)(c & 0xFF));
    }
    CHECK_INT(wrong, 0);
    CHECK_ERRNO((long)c32rtomb((char[4]){0}, 0x1F600, NULL), -1, EILSEQ);
    CHECK_ERRNO((long)c32rtomb((char[4]){0}, 0xFFFFFFFF, NULL), -1, EILSEQ);
}

static void test_edges(void)
{
    mbstate_t state = {0};
    wchar_t wc = 0x5555;
    CHECK_INT(mbtowc(&wc, "a", 0), -1);
    CHECK_INT(mblen("a", 0), -1);
    CHECK_INT(mbrtowc(&wc, "a", 0, &state), (size_t)-2);
    CHECK_INT(mbrtowc(NULL, "ab", 2, &state), 1);
    CHECK_INT(mbrtowc(&wc, NULL, 5, &state), 0);
    CHECK_INT(wc, 0x5555);
    CHECK_INT(mbtowc(NULL, NULL, 0), 0);
    CHECK_INT(mblen(NULL, 0), 0);
    CHECK_INT(wctomb(NULL, L'x'), 0);
    CHECK_INT(wcrtomb(NULL, L'x', &state), 1);
    CHECK_INT(c32rtomb(NULL, 0x1F600, &state), 1);
    CHECK(mbsinit(NULL));
    CHECK(mbsinit(&state));
    state.__state = 1;
    CHECK(!mbsinit(&state));
    /* A state that no table stands for. */
    CHECK_ERRNO((long)mbrtowc(&wc, "a", 1, &state), -1, EILSEQ);
    CHECK_ERRNO((long)wcrtomb((char[4]){0}, L'a', &state), -1, EILSEQ);
    CHECK_INT(state.__state, 1);
    CHECK_INT(mbrlen(NULL, 0, &state), 0); /* resets it */
    CHECK(mbsinit(&state));
    state.__state = 0xFFFF;
    CHECK_ERRNO((long)mbrtowc(&wc, "a", 1, &state), -1, EILSEQ);
}

static void test_raw_mode(void)
{
    static const char text[] = "\x3D\xD8\x00\xDE" "a\0\xAC\x20";
    mbstate_t raw = {0, 0x8000, 0};
    wchar_t wc = 0, wide[4];
    char32_t c32 = 0;
    char bytes[8] = "~~~~~~~";
    const char *rest = "a\0b\0\0\0";
    CHECK_INT(mbrtowc(&wc, text + 4, 9, &raw), 2);
    CHECK_INT(wc, L'a');
    CHECK_INT(mbrtowc(&wc, text + 6, 2, &raw), 2);
    CHECK_INT(wc, 0x20AC);
    CHECK_ERRNO((long)mbrtowc(&wc, text + 6, 1, &raw), -1, EILSEQ);
    CHECK_INT(mbrtowc(&wc, text + 6, 0, &raw), (size_t)-2);
    /* A unit whose low byte is 0 reads as the terminator. */
    CHECK_INT(mbrtowc(&wc, "\0\xDE", 2, &raw), 0);
    CHECK_INT(wc, 0);
    CHECK_ERRNO((long)mbrtoc32(&c32, text, 4, &raw), -1, EILSEQ);
    CHECK_INT(mbrtoc32(&c32, "\x3D\xD8\x01\xDE", 4, &raw), 4);
    CHECK_INT(c32, 0x1F601);
    CHECK_ERRNO((long)mbrtoc32(&c32, "\x3D\xD8", 2, &raw), -1, EILSEQ);
    CHECK_ERRNO((long)mbrtoc32(&c32, "\x3D\xD8" "a\0", 4, &raw), -1, EILSEQ);
    CHECK_ERRNO((long)mbrtoc32(&c32, "\x01\xDE", 2, &raw), -1, EILSEQ);
    CHECK_INT(wcrtomb(bytes, 0x20AC, &raw), 2);
    CHECK_MEM(bytes, "\xAC\x20~", 3);
    CHECK_INT(mbsrtowcs(wide, &rest, 4, &raw), 2);
    CHECK(rest == NULL);
    CHECK_WSTR(wide, L"ab");
}

/* Conversion of strings both ways: `limit` elements at most, of which `stored` are written. */
static const struct {
    const char *narrow;
    const wchar_t *wide;
    size_t limit, count, stored;
} strings[] = {
    {"h\xE9llo", L"h\xE9llo", 8, 5, 6}, {"hello", L"hello", 6, 5, 6}, {"hello", L"hello", 5, 5, 5},
    {"hello", L"hello", 2, 2, 2},       {"hello", L"hello", 0, 0, 0}, {"", L"", 1, 0, 1},
    {"\xAC|", L"\xAC|", 9, 2, 3},
    {"twenty characters and more", L"twenty characters and more", 24, 24, 24},
};

static void test_strings(void)
{
    for (size_t i = 0; i < sizeof strings / sizeof *strings; ++i) {
        size_t limit = strings[i].limit, count = strings[i].count, stored = strings[i].stored;
        size_t length = strlen(strings[i].narrow);
        const char *from = check_label = strings[i].narrow, *rest = stored > count ? NULL : from + count;
        const wchar_t *wide_from = strings[i].wide, *wide_rest = rest ? wide_from + count : NULL;
        wchar_t wide[2][32];
        char bytes[2][32];
        memset(wide, 0x7E, sizeof wide);
        memset(bytes, 0x7E, sizeof bytes);
        CHECK_INT(mbstowcs(NULL, from, limit), count); /* counting stops at the limit, too */
        CHECK_INT(wcstombs(NULL, wide_from, limit), count);
        CHECK_INT(mbsrtowcs(NULL, &from, limit, NULL), length);
        CHECK_INT(wcsrtombs(NULL, &wide_from, limit, NULL), length);
        CHECK(from == strings[i].narrow && wide_from == strings[i].wide);
        CHECK_INT(mbstowcs(wide[0], from, limit), count);
        CHECK_INT(wcstombs(bytes[0], wide_from, limit), count);
        CHECK_INT(mbsrtowcs(wide[1], &from, limit, NULL), count);
        CHECK_INT(wcsrtombs(bytes[1], &wide_from, limit, NULL), count);
        CHECK(from == rest && wide_from == wide_rest);
        for (int k = 0; k < 2; ++k) {
            CHECK_MEM(wide[k], strings[i].wide, 2 * stored);
            CHECK_MEM(bytes[k], strings[i].narrow, stored);
            CHECK(wide[k][stored] == 0x7E7E && bytes[k][stored] == 0x7E);
        }
    }
    check_label = "";
}

/* Of a raw unit only whole characters fit, except where wcstombs cuts one; it has no such state. */
static void test_room(void)
{
    mbstate_t raw = {0, 0x8000, 0};
    char bytes[8] = "~~~~~~~";
    const wchar_t *from = L"ab";
    CHECK_INT(wcsrtombs(bytes, &from, 3, &raw), 2);
    CHECK_MEM(bytes, "a\0~", 3);
    CHECK_WSTR(from, L"b");
    from = L"ab";
    CHECK_INT(wcsrtombs(bytes, &from, 6, &raw), 4);
    CHECK(from == NULL);
    CHECK_MEM(bytes, "a\0b\0\0\0~", 7);
}

/* The four bounds-checked functions of strings, on "hello": elements of room, and at most so many. */
static void test_checked_strings(void)
{
    static const char text[] = "hello";
    static const wchar_t wide_text[] = L"hello";
    static const struct {
        rsize_t size, limit;
        errno_t result;
        size_t count;
    } cases[] = {
        {8, 7, 0, 5},  {8, 5, 0, 5},      {8, 2, 0, 2},           {6, 6, 0, 5},           {6, 5, 0, 5},
        {3, 2, 0, 2},  {5, 5, ERANGE, 0}, {5, 7, ERANGE, 0},      {2, 2, ERANGE, 0},      {0, 5, EINVAL, 0},
        {1, 0, 0, 0},  {5, 0x80000000, EINVAL, 0}, {0x80000000, 5, EINVAL, 0},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i)
        for (int function = 0; function < 4; ++function) {
            wchar_t wide[9] = L"~~~~~~~~";
            char bytes[9] = "~~~~~~~~", label[60];
            const char *from = text;
            const wchar_t *wide_from = wide_text;
            mbstate_t state = {0};
            rsize_t size = cases[i].size, limit = cases[i].limit;
            size_t count = 77;
            errno_t result;
            sprintf(label, "function %d, size %u, limit %u", function, size, limit);
            check_label = label;
            violations = violation_code = 0;
            switch (function) {
            case 0: result = mbstowcs_s(&count, wide, size, from, limit); break;
            case 1: result = mbsrtowcs_s(&count, wide, size, &from, limit, &state); break;
            case 2: result = wcstombs_s(&count, bytes, size, wide_from, limit); break;
            default: result = wcsrtombs_s(&count, bytes, size, &wide_from, limit, &state);
            }
            CHECK_INT(result, cases[i].result);
            CHECK_INT(violations, result != 0);
            CHECK_INT(violation_code, result);
            CHECK_INT(count, result ? FAILED : cases[i].count);
            for (size_t k = 0; !result && k < 8; ++k) {
                int due = k < count ? text[k] : k == count ? '\0' : '~';
                CHECK_INT(function < 2 ? wide[k] : bytes[k], due);
            }
            if (result) CHECK_INT(function < 2 ? wide[0] : bytes[0], size == 0 || size > 8 ? '~' : '\0');
            if (function == 1 && !result) CHECK(from == (limit > 5 ? NULL : text + limit));
            if (function == 3 && !result) CHECK(wide_from == (limit > 5 ? NULL : wide_text + limit));
        }
    check_label = "";
}

static void test_checked_arguments(void)
{
    wchar_t wide[8] = L"x";
    char bytes[8] = "x";
    const char *none = NULL;
    mbstate_t state = {0}, raw = {0, 0x8000, 0};
    size_t count = 77;
    int status = 77;
    CHECK_REFUSED(mbstowcs_s(&count, wide, 5, NULL, 5), EINVAL, EINVAL);
    CHECK_INT(wide[0], 0);
    CHECK_REFUSED(wcstombs_s(&count, bytes, 5, NULL, 7), EINVAL, EINVAL);
    CHECK_INT(bytes[0], 0);
    CHECK_REFUSED(mbstowcs_s(NULL, wide, 5, "x", 5), EINVAL, EINVAL);
    CHECK_REFUSED(mbstowcs_s(&count, NULL, 5, "x", 5), EINVAL, EINVAL);
    CHECK_REFUSED(mbsrtowcs_s(&count, wide, 8, &none, 8, &state), EINVAL, EINVAL);
    CHECK_REFUSED(mbsrtowcs_s(&count, wide, 8, (const char *[]){"x"}, 8, NULL), EINVAL, EINVAL);
    CHECK_INT(mbstowcs_s(&count, NULL, 0, "hello", 2), 0);
    CHECK_INT(count, 5);
    CHECK_INT(wcstombs_s(&count, NULL, 0, L"hello", 2), 0);
    CHECK_INT(count, 5);
    CHECK_INT(wcrtomb_s(&count, strcpy(bytes, "~~"), 1, L'x', &state), 0);
    CHECK_INT(count, 1);
    CHECK_STR(bytes, "x~");
    CHECK_INT(wcrtomb_s(&count, NULL, 0, L'x', &state), 0);
    CHECK_INT(count, 1);
    CHECK_REFUSED(wcrtomb_s(&count, bytes, 0, L'x', &state), EINVAL, EINVAL);
    CHECK_REFUSED(wcrtomb_s(&count, bytes, 1, L'x', NULL), EINVAL, EINVAL);
    CHECK_REFUSED(wcrtomb_s(&count, NULL, 1, L'x', &state), EINVAL, EINVAL);
    CHECK_REFUSED(wcrtomb_s(&count, strcpy(bytes, "~"), 1, L'x', &raw), ERANGE, ERANGE);
    CHECK_INT(count, FAILED);
    CHECK_STR(bytes, "");
    CHECK_INT(wctomb_s(&status, bytes, 1, L'x'), 0);
    CHECK_INT(status, 1);
    CHECK_INT(wctomb_s(&status, NULL, 0, L'x'), 0);
    CHECK_INT(status, 0);
    status = 77;
    CHECK_REFUSED(wctomb_s(&status, bytes, 0, L'x'), ERANGE, ERANGE);
    CHECK_REFUSED(wctomb_s(&status, NULL, 1, L'x'), EINVAL, EINVAL);
    CHECK_REFUSED(wctomb_s(&status, bytes, 0x80000000u, L'x'), EINVAL, EINVAL);
    CHECK_INT(status, 77);
}

int main(void)
{
    test_all_characters();
    test_edges();
    test_raw_mode();
    test_strings();
    test_room();
    count_violations();
    test_checked_strings();
    test_checked_arguments();
    return check_done();
}
