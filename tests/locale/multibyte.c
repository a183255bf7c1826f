/* Conversion between multibyte and wide characters in the "C" locale, and in the raw two-byte mode
   that a state can ask for. */
#include "check.h"

#include <stdlib.h>
#include <uchar.h>

#define FAILED ((size_t)-1)

static int violations;
static void count_violation(const char *message, void *instance, errno_t code) { ++violations; }

#define CHECK_REFUSED(call, code)                                                                  \
    do {                                                                                           \
        violations = 0;                                                                            \
        CHECK_INT(call, code);                                                                     \
        CHECK_INT(violations, 1);                                                                  \
    } while (0)

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

static void test_strings(void)
{
    wchar_t wide[8];
    char bytes[8];
    const char *from;
    const wchar_t *wide_from;
#define FRESH (memset(wide, 0x7E, sizeof wide), memset(bytes, '~', sizeof bytes))
    FRESH;
    CHECK_INT(mbstowcs(wide, "h\xE9llo", 8), 5);
    CHECK_MEM(wide, L"h\xE9llo\0\x7E7E", 14);
    FRESH;
    CHECK_INT(mbstowcs(wide, "hello", 5), 5);
    CHECK_MEM(wide, L"hello\x7E7E", 12);
    FRESH;
    CHECK_INT(mbstowcs(wide, "hello", 2), 2);
    CHECK_MEM(wide, L"he\x7E7E", 6);
    /* Counting stops at the limit, too. */
    CHECK_INT(mbstowcs(NULL, "hello", 100), 5);
    CHECK_INT(mbstowcs(NULL, "hello", 3), 3);
    CHECK_INT(mbstowcs(NULL, "hello", 0), 0);
    FRESH;
    CHECK_INT(wcstombs(bytes, L"h\x20ACllo", 8), 5);
    CHECK_MEM(bytes, "h\xACllo\0~", 7);
    FRESH;
    CHECK_INT(wcstombs(bytes, L"hello", 5), 5);
    CHECK_MEM(bytes, "hello~", 6);
    FRESH;
    CHECK_INT(wcstombs(bytes, L"hello", 2), 2);
    CHECK_MEM(bytes, "he~", 3);
    CHECK_INT(wcstombs(bytes, L"hello", 0), 0);
    CHECK_INT(wcstombs(NULL, L"hello", 100), 5);
    CHECK_INT(wcstombs(NULL, L"hello", 3), 3);

    FRESH;
    from = "hello";
    CHECK_INT(mbsrtowcs(NULL, &from, 2, NULL), 5);
    CHECK_STR(from, "hello");
    CHECK_INT(mbsrtowcs(wide, &from, 2, NULL), 2);
    CHECK_MEM(wide, L"he\x7E7E", 6);
    CHECK_STR(from, "llo");
    CHECK_INT(mbsrtowcs(wide, &from, 3, NULL), 3);
    CHECK_STR(from, "");
    CHECK_INT(mbsrtowcs(wide, &from, 8, NULL), 0);
    CHECK(from == NULL && wide[0] == 0);
    FRESH;
    wide_from = L"hello";
    CHECK_INT(wcsrtombs(NULL, &wide_from, 2, NULL), 5);
    CHECK_WSTR(wide_from, L"hello");
    CHECK_INT(wcsrtombs(bytes, &wide_from, 4, NULL), 4);
    CHECK_MEM(bytes, "hell~", 5);
    CHECK_WSTR(wide_from, L"o");
    CHECK_INT(wcsrtombs(bytes, &wide_from, 1, NULL), 1);
    CHECK_WSTR(wide_from, L"");
    CHECK_INT(wcsrtombs(bytes, &wide_from, 1, NULL), 0);
    CHECK(wide_from == NULL && bytes[0] == 0);
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

static void test_bounds_checked(void)
{
    wchar_t wide[8];
    char bytes[8];
    const char *from = "hello";
    const wchar_t *wide_from = L"hello";
    mbstate_t state = {0};
    size_t count = 77;
    int status = 77;
    set_constraint_handler_s(count_violation);
    FRESH;
    CHECK_INT(mbstowcs_s(&count, wide, 8, "hello", 7), 0);
    CHECK_INT(count, 5);
    CHECK_MEM(wide, L"hello\0\x7E7E", 14);
    FRESH;
    CHECK_INT(mbstowcs_s(&count, wide, 8, "hello", 2), 0);
    CHECK_INT(count, 2);
    CHECK_MEM(wide, L"he\0\x7E7E", 8);
    CHECK_INT(mbstowcs_s(&count, NULL, 0, "hello", 2), 0);
    CHECK_INT(count, 5);
    CHECK_INT(mbstowcs_s(&count, wide, 6, "hello", 6), 0);
    CHECK_INT(mbstowcs_s(&count, wide, 6, "hello", 5), 0);
    CHECK_INT(mbstowcs_s(&count, wide, 6, "hello!", 5), 0);
    CHECK_REFUSED(mbstowcs_s(&count, wide, 5, "hello", 5), ERANGE);
    CHECK_INT(count, FAILED);
    CHECK_INT(wide[0], 0);
    FRESH;
    CHECK_REFUSED(mbstowcs_s(&count, wide, 5, NULL, 5), EINVAL);
    CHECK_INT(wide[0], 0);
    CHECK_REFUSED(mbstowcs_s(NULL, wide, 5, "x", 5), EINVAL);
    CHECK_REFUSED(mbstowcs_s(&count, NULL, 5, "x", 5), EINVAL);
    CHECK_REFUSED(mbstowcs_s(&count, wide, 0, "x", 5), EINVAL);
    CHECK_REFUSED(mbstowcs_s(&count, wide, 0x80000000u, "x", 5), EINVAL);
    CHECK_REFUSED(mbstowcs_s(&count, wide, 5, "x", 0x80000000u), EINVAL);
    CHECK_INT(mbsrtowcs_s(&count, wide, 8, &from, 2, &state), 0);
    CHECK_STR(from, "llo");
    CHECK_INT(mbsrtowcs_s(&count, wide, 8, &from, 8, &state), 0);
    CHECK(from == NULL);
    CHECK_REFUSED(mbsrtowcs_s(&count, wide, 8, &from, 8, &state), EINVAL);
    CHECK_REFUSED(mbsrtowcs_s(&count, wide, 8, (const char *[]){"x"}, 8, NULL), EINVAL);
    FRESH;
    CHECK_INT(wcstombs_s(&count, bytes, 8, L"hello", 7), 0);
    CHECK_INT(count, 5);
    CHECK_MEM(bytes, "hello\0~", 7);
    CHECK_INT(wcstombs_s(&count, bytes, 8, L"hello", 2), 0);
    CHECK_MEM(bytes, "he\0lo", 5);
    CHECK_INT(wcstombs_s(&count, NULL, 0, L"hello", 2), 0);
    CHECK_INT(count, 5);
    CHECK_REFUSED(wcstombs_s(&count, bytes, 5, L"hello", 7), ERANGE);
    CHECK_INT(bytes[0], 0);
    CHECK_REFUSED(wcstombs_s(&count, bytes, 5, NULL, 7), EINVAL);
    CHECK_INT(wcsrtombs_s(&count, bytes, 8, &wide_from, 2, &state), 0);
    CHECK_WSTR(wide_from, L"llo");
    FRESH;
    CHECK_INT(wcrtomb_s(&count, bytes, 1, L'x', &state), 0);
    CHECK_INT(count, 1);
    CHECK_MEM(bytes, "x~", 2);
    CHECK_INT(wcrtomb_s(&count, NULL, 0, L'x', &state), 0);
    CHECK_INT(count, 1);
    CHECK_REFUSED(wcrtomb_s(&count, bytes, 0, L'x', &state), EINVAL);
    CHECK_REFUSED(wcrtomb_s(&count, bytes, 1, L'x', NULL), EINVAL);
    CHECK_REFUSED(wcrtomb_s(&count, NULL, 1, L'x', &state), EINVAL);
    CHECK_REFUSED(wcrtomb_s(&count, bytes, 1, L'x', &(mbstate_t){0, 0x8000, 0}), ERANGE);
    CHECK_INT(count, FAILED);
    CHECK_INT(bytes[0], 0);
    CHECK_INT(wctomb_s(&status, bytes, 1, L'x'), 0);
    CHECK_INT(status, 1);
    CHECK_INT(wctomb_s(&status, NULL, 0, L'x'), 0);
    CHECK_INT(status, 0);
    status = 77;
    CHECK_REFUSED(wctomb_s(&status, bytes, 0, L'x'), ERANGE);
    CHECK_REFUSED(wctomb_s(&status, NULL, 1, L'x'), EINVAL);
    CHECK_REFUSED(wctomb_s(&status, bytes, 0x80000000u, L'x'), EINVAL);
    CHECK_INT(status, 77);
    set_constraint_handler_s(NULL);
}

int main(void)
{
    test_all_characters();
    test_edges();
    test_raw_mode();
    test_strings();
    test_room();
    test_bounds_checked();
    return check_done();
}
