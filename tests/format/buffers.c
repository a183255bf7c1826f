/* The functions that format to memory: what they write where, and what they refuse. */
#include "check.h"
#include "list_form.h"
#include "script.h"

#include <stdarg.h>
#include <stdlib.h>

static int violations, last_violation;

static void count_violation(const char *message, void *instance, errno_t code)
{
    ++violations;
    last_violation = code;
    CHECK_STR(message, code == ERANGE ? "Range error" : "Invalid argument");
    CHECK(instance == NULL);
}

/* A call, the violations that it must have reported, and their code. */
#define CHECK_VIOLATION(call, result, code)                                                        \
    do {                                                                                           \
        violations = last_violation = 0;                                                           \
        CHECK_INT(call, result);                                                                   \
        CHECK_INT(violations, (code) != 0);                                                        \
        CHECK_INT(last_violation, code);                                                           \
    } while (0)

static char text[64];
static wchar_t wide_text[64];

static void soil(void)
{
    memset(text, '~', sizeof text);
    memset(wide_text, 0x7E, sizeof wide_text);
}

#define NULL_STRING ((char *)0)

/* ---- the `v` members, called as users call them ---- */

#define LIST_CALL(name, type, call)                                                                \
    static int name(type *s, size_t n, const type *format, ...)                                    \
    {                                                                                              \
        WITH_LIST(call);                                                                           \
    }
LIST_CALL(list_sprintf, char, vsprintf(s, format, list))
LIST_CALL(list_snprintf, char, vsnprintf(s, n, format, list))
LIST_CALL(list_sprintf_s, char, vsprintf_s(s, n, format, list))
LIST_CALL(list_snprintf_s, char, vsnprintf_s(s, n, format, list))
LIST_CALL(list_swprintf, wchar_t, vswprintf(s, n, format, list))
LIST_CALL(list_snwprintf, wchar_t, vsnwprintf(s, n, format, list))
LIST_CALL(list_swprintf_s, wchar_t, vswprintf_s(s, n, format, list))
LIST_CALL(list_snwprintf_s, wchar_t, vsnwprintf_s(s, n, format, list))

static int plain_sprintf(char *s, size_t n, const char *format, ...)
{
    int word;
    char *string;
    va_list list;
    va_start(list, format);
    string = va_arg(list, char *);
    word = va_arg(list, int);
    va_end(list);
    return sprintf(s, format, string, word);
}

static void test_sprintf(void)
{
    int (*const members[])(char *, size_t, const char *, ...) = {plain_sprintf, list_sprintf};
    for (int i = 0; i < 2; ++i) {
        soil();
        CHECK_INT(members[i](text, 0, "%s %d", "abc", 12), 6);
        CHECK_MEM(text, "abc 12\0~", 8);
        soil();
        CHECK_INT(members[i](text, 0, "%s%2147483600ls", "abc", (int)L"x"), -1);
        CHECK_MEM(text, "abc~", 4); /* no terminator after a failure */
    }
}

/* snprintf, and all that truncate like it. */
static void test_truncation(void)
{
    int (*const members[])(char *, size_t, const char *, ...) = {snprintf, list_snprintf, snprintf_s,
                                                                 list_snprintf_s};
    int (*const wide_members[])(wchar_t *, size_t, const wchar_t *, ...) = {
        snwprintf, list_snwprintf, snwprintf_s, list_snwprintf_s};
    for (int i = 0; i < 4; ++i) {
        soil();
        CHECK_VIOLATION(members[i](text, 4, "%s", "hello"), 5, 0);
        CHECK_MEM(text, "hel\0~", 5);
        soil();
        CHECK_INT(members[i](text, 5, "%s", "hello"), 5);
        CHECK_MEM(text, "hell\0~", 6);
        soil();
        CHECK_INT(members[i](text, 6, "%s", "hello"), 5);
        CHECK_MEM(text, "hello\0~", 7);
        soil();
        CHECK_INT(members[i](text, 1, "%d-%s%5d", 77, "hello", 1), 13);
        CHECK_MEM(text, "\0~", 2);
        soil();
        CHECK_VIOLATION(wide_members[i](wide_text, 4, L"%ls", L"hello"), 5, 0);
        CHECK_MEM(wide_text, L"hel\0\x7E7E", 10);
        soil();
        CHECK_INT(wide_members[i](wide_text, 6, L"%ls", L"hello"), 5);
        CHECK_MEM(wide_text, L"hello\0\x7E7E", 14);
    }
    for (int i = 0; i < 2; ++i) {
        soil();
        CHECK_INT(members[i](text, 0, "%s", "hello"), 5);
        CHECK_INT(text[0], '~');
        CHECK_INT(members[i](NULL, 0, "%s", "hello"), 5);
        CHECK_INT(wide_members[i](NULL, 0, L"%ls", L"hello"), 5);
        /* Terminated after a failure, too. */
        soil();
        CHECK_INT(members[i](text, 8, "abc%2147483600ls", L"x"), -1);
        CHECK_MEM(text, "abc\0~", 5);
        soil();
        CHECK_INT(members[i](text, 2, "abc%2147483600ls", L"x"), -1);
        CHECK_MEM(text, "a\0~", 3);
        /* A size that reaches beyond the end of memory. */
        soil();
        CHECK_INT(members[i](text, (size_t)-1, "%s", "hello"), 5);
        CHECK_MEM(text, "hello\0~", 7);
        CHECK_INT(wide_members[i](wide_text, (size_t)-1, L"%ls", L"hello"), 5);
        CHECK_WSTR(wide_text, L"hello");
    }
}

/* swprintf takes as many characters as it is given, and terminates them one place further. */
static void test_swprintf(void)
{
    int (*const members[])(wchar_t *, size_t, const wchar_t *, ...) = {swprintf, list_swprintf};
    for (int i = 0; i < 2; ++i) {
        soil();
        CHECK_INT(members[i](wide_text, 6, L"%ls", L"hello"), 5);
        CHECK_MEM(wide_text, L"hello\0\x7E7E", 14);
        soil();
        CHECK_INT(members[i](wide_text, 5, L"%ls", L"hello"), 5);
        CHECK_MEM(wide_text, L"hello\0\x7E7E", 14);
        soil();
        CHECK_INT(members[i](wide_text, 4, L"%ls", L"hello"), -1);
        CHECK_MEM(wide_text, L"hell\x7E7E", 10);
        soil();
        CHECK_INT(members[i](wide_text, 6, L"a%db%dc", 11, 22), -1);
        CHECK_MEM(wide_text, L"a11b22\x7E7E", 14);
        soil();
        CHECK_INT(members[i](wide_text, 0, L"%ls", L""), 0);
        CHECK_MEM(wide_text, L"\0\x7E7E", 4);
        soil();
        CHECK_INT(members[i](wide_text, 0, L"x"), -1);
        CHECK_MEM(wide_text, L"\x7E7E", 2);
    }
}

/* A text that does not fit is a violation here, and the result is 0, not negative. */
static void test_exact_s(void)
{
    int (*const members[])(char *, size_t, const char *, ...) = {sprintf_s, list_sprintf_s};
    int (*const wide_members[])(wchar_t *, size_t, const wchar_t *, ...) = {swprintf_s,
                                                                            list_swprintf_s};
    for (int i = 0; i < 2; ++i) {
        soil();
        CHECK_VIOLATION(members[i](text, 6, "%s", "hello"), 5, 0);
        CHECK_MEM(text, "hello\0~", 7);
        soil();
        CHECK_VIOLATION(members[i](text, 5, "%s", "hello"), 0, ERANGE);
        CHECK_MEM(text, "\0", 1);
        CHECK_MEM(text + 5, "~", 1);
        soil();
        CHECK_VIOLATION(members[i](text, 1, ""), 0, 0);
        CHECK_MEM(text, "\0~", 2);
        soil();
        CHECK_VIOLATION(wide_members[i](wide_text, 6, L"%ls", L"hello"), 5, 0);
        CHECK_MEM(wide_text, L"hello\0\x7E7E", 14);
        soil();
        CHECK_VIOLATION(wide_members[i](wide_text, 5, L"%ls", L"hello"), 0, ERANGE);
        CHECK_INT(wide_text[0], 0);
        CHECK_INT(wide_text[5], 0x7E7E);
    }
}

static void test_violations(void)
{
    static const struct {
        int (*member)(char *, size_t, const char *, ...);
        int (*wide_member)(wchar_t *, size_t, const wchar_t *, ...);
        int failure;
    } cases[] = {
        {snprintf_s, snwprintf_s, -1},
        {list_snprintf_s, list_snwprintf_s, -1},
        {sprintf_s, swprintf_s, 0},
        {list_sprintf_s, list_swprintf_s, 0},
    };
    int count = 77;
    for (unsigned i = 0; i < sizeof cases / sizeof *cases; ++i) {
        int failure = cases[i].failure;
        int (*member)(char *, size_t, const char *, ...) = cases[i].member;
        int (*wide_member)(wchar_t *, size_t, const wchar_t *, ...) = cases[i].wide_member;
        soil();
        CHECK_VIOLATION(member(NULL, 8, "x"), failure, EINVAL);
        CHECK_VIOLATION(member(text, 0, "x"), failure, EINVAL);
        CHECK_VIOLATION(member(text, 0x80000000u, "x"), failure, EINVAL);
        CHECK_MEM(text, "~~", 2);
        CHECK_VIOLATION(member(text, 0x7FFFFFFFu, "x"), 1, 0);
        soil();
        CHECK_VIOLATION(member(text, 8, NULL), failure, EINVAL);
        CHECK_MEM(text, "\0~", 2);
        soil();
        CHECK_VIOLATION(member(text, 8, "ab%n", &count), failure, EINVAL);
        CHECK_INT(text[0], 0);
        CHECK_INT(count, 77);
        soil();
        CHECK_VIOLATION(member(text, 8, "ab%s", NULL_STRING), failure, EINVAL);
        CHECK_INT(text[0], 0);
        CHECK_VIOLATION(member(text, 8, "ab%ls", (wchar_t *)0), failure, EINVAL);
        CHECK_VIOLATION(member(text, 8, "ab%.0s", NULL_STRING), failure, EINVAL);
        CHECK_VIOLATION(wide_member(NULL, 8, L"x"), failure, EINVAL);
        CHECK_VIOLATION(wide_member(wide_text, 0, L"x"), failure, EINVAL);
        CHECK_VIOLATION(wide_member(wide_text, 0x80000000u, L"x"), failure, EINVAL);
        soil();
        CHECK_VIOLATION(wide_member(wide_text, 8, NULL), failure, EINVAL);
        CHECK_MEM(wide_text, L"\0\x7E7E", 4);
        CHECK_VIOLATION(wide_member(wide_text, 8, L"ab%n", &count), failure, EINVAL);
        CHECK_VIOLATION(wide_member(wide_text, 8, L"ab%s", NULL_STRING), failure, EINVAL);
        CHECK_VIOLATION(wide_member(wide_text, 8, L"ab%ls", (wchar_t *)0), failure, EINVAL);
        CHECK_INT(wide_text[0], 0);
    }
    /* The members without _s report nothing. */
    CHECK_VIOLATION(snprintf(text, sizeof text, "%s%n", NULL_STRING, &count), 6, 0);
    CHECK_INT(count, 6);
    CHECK_VIOLATION(swprintf(wide_text, 2, L"hello"), -1, 0);
    CHECK_ERRNO(snprintf(text, sizeof text, (char *)0), -1, EINVAL);
}

/* ---- growing buffers ---- */

static int list_asprintf(char **s, const char *format, ...)
{
    WITH_LIST(vasprintf(s, format, list));
}

static int list_aswprintf(wchar_t **s, const wchar_t *format, ...)
{
    WITH_LIST(vaswprintf(s, format, list));
}

static void test_asprintf(void)
{
    static const int widths[] = {1, 254, 255, 256, 257, 511, 512, 1023, 70000};
    int (*const members[])(char **, const char *, ...) = {asprintf, list_asprintf};
    int (*const wide_members[])(wchar_t **, const wchar_t *, ...) = {aswprintf, list_aswprintf};
    for (int i = 0; i < 2; ++i) {
        for (unsigned j = 0; j < sizeof widths / sizeof *widths; ++j) {
            char *made = NULL;
            wchar_t *wide_made = NULL;
            int width = widths[j];
            CHECK_INT(members[i](&made, "%*d%s", width, 5, "end"), width + 3);
            CHECK_INT(strlen(made), width + 3);
            CHECK_STR(made + width - 1, "5end");
            free(made);
            CHECK_INT(wide_members[i](&wide_made, L"%*d%ls", width, 5, L"end"), width + 3);
            CHECK_WSTR(wide_made + width - 1, L"5end");
            free(wide_made);
        }
        char *kept = text;
        CHECK_INT(members[i](&kept, "%2147483600ls", L"x"), -1);
        CHECK(kept == text);
        CHECK_INT(members[i](&kept, ""), 0);
        CHECK_STR(kept, "");
        free(kept);
    }
}

static void *(__stdcall *real_alloc)(void *, unsigned long, unsigned long);
static void *(__stdcall *real_realloc)(void *, unsigned long, void *, unsigned long);

static void *__stdcall scripted_alloc(void *heap, unsigned long flags, unsigned long size)
{
    return script_fail_now() ? NULL : real_alloc(heap, flags, size);
}

static void *__stdcall scripted_realloc(void *heap, unsigned long flags, void *block,
                                        unsigned long size)
{
    return script_fail_now() ? NULL : real_realloc(heap, flags, block, size);
}

/* Memory runs out at every point in turn: the result is -1 and the pointer as before, and at last
   there is enough. */
static void test_growing_without_memory(void)
{
    static char source[40001];
    int failures = 0;
    memset(source, 'x', sizeof source - 1);
    real_alloc = script_import("HeapAlloc", scripted_alloc);
    real_realloc = script_import("HeapReAlloc", scripted_realloc);
    for (;; ++failures) {
        char *made = text;
        script_fail_from(failures + 1, 1);
        int result = asprintf(&made, "%.20000s%.20000s", source, source);
        script_fail_from(0, 0);
        if (result >= 0) {
            CHECK_INT(result, 40000);
            CHECK_MEM(made, source, 40001);
            free(made);
            break;
        }
        CHECK_INT(result, -1);
        CHECK(made == text);
        if (failures > 50) break;
    }
    script_restore();
    CHECK(failures >= 2 && failures < 50);
}

int main(void)
{
    set_constraint_handler_s(count_violation);
    test_sprintf();
    test_truncation();
    test_swprintf();
    test_exact_s();
    test_violations();
    test_asprintf();
    test_growing_without_memory();
    return check_done();
}
