/* The functions that format to a stream. */
#include "check.h"
#include "child.h"
#include "list_form.h"

#include <stdarg.h>
#include <stdlib.h>

#define FILE_NAME "format-streams.tmp"

static char contents[70000];

/* Closes the stream; its file's contents are then in `contents`, and their length is returned. */
static int collect(FILE *stream)
{
    size_t length;
    fclose(stream);
    stream = fopen(FILE_NAME, "rb");
    length = fread(contents, 1, sizeof contents - 1, stream);
    contents[length] = 0;
    fclose(stream);
    return (int)length;
}

static int list_fprintf(FILE *stream, const char *format, ...)
{
    WITH_LIST(vfprintf(stream, format, list));
}

static int list_fprintf_s(FILE *stream, const char *format, ...)
{
    WITH_LIST(vfprintf_s(stream, format, list));
}

static int (*const members[])(FILE *, const char *, ...) = {fprintf, list_fprintf, fprintf_s,
                                                            list_fprintf_s};

/* Short and long texts, through every kind of buffering. */
static void test_output(void)
{
    static const int buffering[] = {_IOFBF, _IOLBF, _IONBF};
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 3; ++j) {
            static char word[5001];
            memset(word, 'w', sizeof word - 1);
            FILE *stream = fopen(FILE_NAME, "wb");
            setvbuf(stream, NULL, buffering[j], 256);
            CHECK_INT(members[i](stream, "%d %s\n", 42, "abc"), 7);
            CHECK_INT(members[i](stream, ""), 0);
            CHECK_INT(members[i](stream, "%510d%s|%-5000d|", 1, "23456", 2), 5517);
            CHECK_INT(members[i](stream, "<%s>%c", word, 0), 5003);
            CHECK_INT(collect(stream), 7 + 5517 + 5003);
            CHECK_MEM(contents, "42 abc\n    ", 11);
            CHECK_MEM(contents + 7 + 508, " 123456|2   ", 12);
            CHECK_MEM(contents + 7 + 5513, "   |<www", 8);
            CHECK_MEM(contents + 7 + 5517 + 4998, "www>\0", 5);
        }
    }
}

static void test_count(void)
{
    int short_count = -1, long_count = -1;
    FILE *stream = fopen(FILE_NAME, "wb");
    CHECK_INT(fprintf(stream, "abc%n%600d%n", &short_count, 1, &long_count), 603);
    CHECK_INT(short_count, 3);
    CHECK_INT(long_count, 603);
    collect(stream);
}

static void test_failures(void)
{
    FILE *stream = fopen(FILE_NAME, "rb");
    CHECK_INT(fprintf(stream, "x"), -1);
    CHECK(ferror(stream));
    CHECK_INT(fprintf(stream, "%700d%700d", 1, 2), -1); /* longer than what is gathered */
    fclose(stream);
    /* What came before the failure is there. */
    stream = fopen(FILE_NAME, "wb");
    CHECK_ERRNO(fprintf(stream, "before%2147483600ls", L"x"), -1, ENOMEM);
    CHECK_INT(collect(stream), 6);
    CHECK_STR(contents, "before");
    CHECK_ERRNO(fprintf(NULL, "x"), -1, EINVAL);
    CHECK_ERRNO(fprintf(stdout, (char *)0), -1, EINVAL);
    CHECK_ERRNO(printf((char *)0), -1, EINVAL);
}

static FILE *reported_to;
static int violations;

static void report(const char *message, void *instance, errno_t code)
{
    ++violations;
    CHECK_INT(code, EINVAL);
    if (reported_to) fprintf(reported_to, "[%s]", message);
}

static void test_violations(void)
{
    int count = 77;
    set_constraint_handler_s(report);
    CHECK_INT(fprintf_s(NULL, "x"), -1);
    CHECK_INT(list_fprintf_s(stdout, NULL), -1);
    CHECK_INT(printf_s(NULL), -1);
    CHECK_INT(printf_s("%n", &count), -1);
    CHECK_INT(violations, 4);
    CHECK_INT(count, 77);
    /* The handler finds the text so far in the stream, which this thread holds locked. */
    reported_to = fopen(FILE_NAME, "wb");
    CHECK_INT(fprintf_s(reported_to, "abc%s def", (char *)0), -1);
    CHECK_INT(collect(reported_to), 21);
    CHECK_STR(contents, "abc[Invalid argument]");
    set_constraint_handler_s(NULL);
}

static int list_printf(const char *format, ...)
{
    WITH_LIST(vprintf(format, list));
}

static int list_printf_s(const char *format, ...)
{
    WITH_LIST(vprintf_s(format, list));
}

/* What the child prints, and the results of the calls on standard error. */
static int print_something(void)
{
    int results[4];
    results[0] = printf("%s %d\n", "one", 1);
    results[1] = list_printf("%s\n", (char *)0);
    results[2] = printf_s("%x\n", 255);
    results[3] = list_printf_s("%c%99d", 'x', 5);
    fprintf(stderr, "%d %d %d %d", results[0], results[1], results[2], results[3]);
    return 0;
}

/* The prefix is any length, and is written as the locale has it. */
static int report_errors(void)
{
    errno = ENOENT;
    _wperror(L"caf\xE9");
    _wperror(L"");
    _wperror(NULL);
    return errno != ENOENT;
}

static void test_error_reports(void)
{
    struct child child = child_run("errors", NULL);
    CHECK_INT(child.status, 0);
    CHECK_STR(child.error, "caf\xE9: No such file or directory\r\nNo such file or directory\r\n"
                           "No such file or directory\r\n");
}

static void test_standard_output(void)
{
    struct child child = child_run("print", NULL);
    CHECK_INT(child.status, 0);
    CHECK_STR(child.error, "6 7 3 100");
    CHECK_INT(child.output_length, 6 + 7 + 3 + 100 + 3);
    CHECK_MEM(child.output, "one 1\r\n(null)\r\nff\r\nx    ", 24);
}

int main(int argc, char **argv)
{
    if (argc > 1) return strcmp(argv[1], "errors") ? print_something() : report_errors();
    test_output();
    test_count();
    test_failures();
    test_violations();
    test_standard_output();
    test_error_reports();
    return check_done();
}
