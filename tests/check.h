/*
 * check.h - the harness of the test programs. A program groups its cases in functions, calls them
 * from main, and ends with `return check_done();`.
 *
 *   CHECK(condition)                 a line on failure
 *   CHECK_INT(got, due)              integers of up to 64 bits
 *   CHECK_STR(got, due)              strings
 *   CHECK_WSTR(got, due)             wide strings
 *   CHECK_MEM(got, due, size)        bytes
 *   CHECK_ERRNO(call, result, code)  the call's result, and errno after it
 *
 * `check_label` names the case under test in a table-driven loop; it is shown with a failure.
 */
#ifndef CHECK_H
#define CHECK_H

#include <errno.h>
#include <stdio.h>
#include <string.h>
#include <wchar.h>

static int check_passed, check_failed;
static const char *check_label = "";

/* A text with what does not print made visible. */
static const char *check_visible(const void *bytes, size_t size)
{
    static char texts[4][256];
    static int next;
    const unsigned char *from = bytes;
    char *text = texts[next = (next + 1) % 4], *to = text;
    size_t i;
    for (i = 0; i < size && to < text + sizeof texts[0] - 8; ++i) {
        if (from[i] >= 32 && from[i] < 127 && from[i] != '\\') *to++ = (char)from[i];
        else to += sprintf(to, "\\x%02x", from[i]);
    }
    if (i < size) { memcpy(to, "...", 3); to += 3; }
    *to = '\0';
    return text;
}

static int check_report(int ok, const char *file, int line, const char *what)
{
    if (ok) {
        ++check_passed;
        return 1;
    }
    ++check_failed;
    printf("%s:%d: %s%s%s", file, line, check_label, *check_label ? ": " : "", what);
    return 0;
}

static void check_true(int ok, const char *file, int line, const char *what)
{
    if (!check_report(ok, file, line, what)) printf("\n");
}

static void check_int(long long got, long long due, const char *file, int line, const char *what)
{
    if (!check_report(got == due, file, line, what))
        printf(" is %lld (0x%llx), due %lld (0x%llx)\n", got, got, due, due);
}

static void check_mem(const void *got, const void *due, size_t size, const char *file, int line,
                      const char *what)
{
    if (!check_report(got && memcmp(got, due, size) == 0, file, line, what))
        printf(" is \"%s\", due \"%s\"\n", got ? check_visible(got, size) : "(null)",
               check_visible(due, size));
}

static void check_str(const char *got, const char *due, const char *file, int line, const char *what)
{
    if (!check_report(got && due ? strcmp(got, due) == 0 : got == due, file, line, what))
        printf(" is \"%s\", due \"%s\"\n", got ? check_visible(got, strlen(got)) : "(null)",
               due ? check_visible(due, strlen(due)) : "(null)");
}

static void check_wstr(const wchar_t *got, const wchar_t *due, const char *file, int line,
                       const char *what)
{
    if (!check_report(got && due ? wcscmp(got, due) == 0 : got == due, file, line, what))
        printf(" is \"%s\", due \"%s\"\n", got ? check_visible(got, 2 * wcslen(got)) : "(null)",
               due ? check_visible(due, 2 * wcslen(due)) : "(null)");
}

static void check_errno(long long got, int error, long long due, int due_error, const char *file,
                        int line, const char *what)
{
    if (!check_report(got == due && error == due_error, file, line, what))
        printf(" is %lld with errno %d, due %lld with errno %d\n", got, error, due, due_error);
}

#define CHECK(condition) check_true(!!(condition), __FILE__, __LINE__, #condition)
#define CHECK_INT(got, due) check_int((got), (due), __FILE__, __LINE__, #got)
#define CHECK_STR(got, due) check_str((got), (due), __FILE__, __LINE__, #got)
#define CHECK_WSTR(got, due) check_wstr((got), (due), __FILE__, __LINE__, #got)
#define CHECK_MEM(got, due, size) check_mem((got), (due), (size), __FILE__, __LINE__, #got)
#define CHECK_ERRNO(call, result, code)                                                            \
    do {                                                                                           \
        errno = 0;                                                                                 \
        long long check_got_ = (long long)(call);                                                  \
        check_errno(check_got_, errno, (result), (code), __FILE__, __LINE__, #call);               \
    } while (0)

static int check_done(void)
{
    printf("%d passed, %d failed\n", check_passed, check_failed);
    return check_failed != 0;
}

#endif
