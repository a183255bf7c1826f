/* The command line as arguments, narrow and wide, and what WinMain gets of it. */
#include "check.h"
#include "script.h"

#include <stdlib.h>

int __concmdln(int *count, char ***vector);
int __wconcmdln(int *count, wchar_t ***vector);
char *__wincmdln(void);
wchar_t *__wwincmdln(void);

static const char *line;
static wchar_t wide_line[256];
static char *__stdcall answer_line(void) { return (char *)line; }
static wchar_t *__stdcall answer_wide_line(void) { return wide_line; }

static const struct {
    const char *line, *arguments; /* arguments joined by | */
    const char *rest;             /* for WinMain */
} cases[] = {
    {"prog", "prog", ""},
    {"prog ", "prog", ""},
    {"prog a b\tc", "prog|a|b|c", "a b\tc"},
    {"prog a\\\\\\\"b \"c d\" e\"f\"g", "prog|a\\\"b|c d|efg", "a\\\\\\\"b \"c d\" e\"f\"g"},
    {"p \"x\"\"y\"", "p|x\"y", "\"x\"\"y\""},
    {"p \"x\"\"y z\"", "p|x\"y|z", "\"x\"\"y z\""}, /* the doubled quote has left the quotes */
    {"p a\\\\\\\\\"b c\" d", "p|a\\\\b c|d", "a\\\\\\\\\"b c\" d"},
    {"p a\\\\b\\c", "p|a\\\\b\\c", "a\\\\b\\c"},
    {"p \\\\", "p|\\\\", "\\\\"},
    {"p \"\" \"a", "p||a", "\"\" \"a"},
    {"p \\\"", "p|\"", "\\\""},
    {"\"C:\\dir one\\p.exe\\\" a", "C:\\dir one\\p.exe\\|a", "a"},
    {"\"no end", "no end", ""},
    {"\"\" x", "|x", "x"},
    {"pr\"og a\" b", "pr\"og|a b", "a\" b"}, /* quotes inside the name do nothing */
    {"p \x01 \x80", "p|\x01|\x80", "\x80"},
};

static void join(char *to, int count, char **vector)
{
    *to = '\0';
    for (int i = 0; i < count; ++i) {
        if (i) strcat(to, "|");
        strcat(to, vector[i]);
    }
}

static void test_parsing(void)
{
    char joined[256];
    script_import("GetCommandLineA", answer_line);
    script_import("GetCommandLineW", answer_wide_line);
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        int count = -1;
        char **vector = NULL;
        line = check_label = cases[i].line;
        int result = __concmdln(&count, &vector);
        CHECK_INT(result, (int)vector);
        CHECK(vector == __argv && count == __argc && vector[count] == NULL);
        join(joined, count, vector);
        CHECK_STR(joined, cases[i].arguments);
        CHECK_STR(__wincmdln(), cases[i].rest);

        size_t length = strlen(line);
        for (size_t k = 0; k <= length; ++k) wide_line[k] = (unsigned char)line[k];
        int wide_count = -1;
        wchar_t **wide_vector = NULL;
        result = __wconcmdln(&wide_count, &wide_vector);
        CHECK_INT(result, (int)wide_vector);
        CHECK(wide_vector == __wargv && wide_vector[wide_count] == NULL);
        CHECK_INT(wide_count, count);
        for (int k = 0; k < count; ++k) {
            size_t size = strlen(vector[k]);
            CHECK_INT(wcslen(wide_vector[k]), size);
            for (size_t u = 0; u < size; ++u) CHECK_INT(wide_vector[k][u], (unsigned char)vector[k][u]);
        }
        CHECK_INT(wcslen(__wwincmdln()), strlen(cases[i].rest));
    }
    check_label = "";
}

static void test_empty_line(void)
{
    int count;
    char **vector;
    line = "";
    __concmdln(&count, &vector);
    CHECK_INT(count, 1);
    CHECK(strstr(vector[0], "command_line.exe") != NULL);
    script_restore();
}

int main(int argc, char **argv)
{
    CHECK_INT(argc, __argc);
    CHECK(argv == __argv);
    test_parsing();
    test_empty_line();
    return check_done();
}
