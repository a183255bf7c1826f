/* Lines and strings: fgets, gets_s, getline, getdelim, fputs, puts, at every length round the buffer. */
#include "check.h"
#include "child.h"

#include <fcntl.h>
#include <io.h>
#include <stdlib.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);

#define NAME "lines.tmp"

/* A line of `length` bytes, newline included, that differs from its neighbours. */
static void make_line(char *line, size_t length)
{
    for (size_t i = 0; i + 1 < length; ++i) line[i] = (char)('a' + (length + i) % 26);
    line[length - 1] = '\n';
    line[length] = '\0';
}

static void test_line_lengths(void)
{
    static const size_t lengths[] = {1, 2, 127, 128, 129, 255, 256, 510, 511, 512, 513, 514, 1023, 1025, 3000};
    char due[3002], line[3002], *grown = NULL;
    size_t capacity = 0;
    FILE *file = fopen(NAME, "w");
    for (size_t i = 0; i < sizeof lengths / sizeof *lengths; ++i) {
        make_line(due, lengths[i]);
        CHECK_INT(fputs(due, file), 0);
    }
    fputs("no newline", file);
    fclose(file);

    for (int pass = 0; pass < 2; ++pass) {
        file = fopen(NAME, "r");
        for (size_t i = 0; i < sizeof lengths / sizeof *lengths; ++i) {
            make_line(due, lengths[i]);
            if (pass == 0) CHECK_STR(fgets(line, sizeof line, file), due);
            else {
                CHECK_INT(getline(&grown, &capacity, file), lengths[i]);
                CHECK_STR(grown, due);
            }
        }
        if (pass == 0) {
            CHECK_STR(fgets(line, 4, file), "no ");
            CHECK_STR(fgets(line, 1, file), "");
            CHECK_STR(fgets(line, sizeof line, file), "newline");
            CHECK(fgets(line, sizeof line, file) == NULL);
            CHECK_STR(line, "newline");
        } else {
            CHECK_INT(getline(&grown, &capacity, file), 10);
            CHECK_INT(getline(&grown, &capacity, file), -1);
        }
        CHECK(feof(file) && !ferror(file));
        fclose(file);
    }
    free(grown);
}

static void test_delimiters(void)
{
    FILE *file = fopen(NAME, "wb+");
    fwrite("a,b\0c,,d", 1, 8, file);
    rewind(file);
    char *text = malloc(2);
    size_t capacity = 2;
    CHECK_INT(getdelim(&text, &capacity, ',', file), 2);
    CHECK_MEM(text, "a,", 3);
    CHECK_INT(getdelim(&text, &capacity, 0, file), 2);
    CHECK_MEM(text, "b\0", 3);
    CHECK_INT(getdelim(&text, &capacity, ',', file), 2);
    CHECK_INT(getdelim(&text, &capacity, ',', file), 1);
    CHECK_INT(getdelim(&text, &capacity, EOF, file), 1);
    CHECK_STR(text, "d");
    CHECK_ERRNO(getdelim(NULL, &capacity, ',', file), -1, EINVAL);
    CHECK_ERRNO(getdelim(&text, NULL, ',', file), -1, EINVAL);
    fclose(file);
    free(text);
    char line[8] = "kept";
    CHECK_ERRNO(fgets(line, 0, stdin), 0, EINVAL);
    CHECK_ERRNO(fgets(NULL, 8, stdin), 0, EINVAL);
    CHECK_STR(line, "kept");
    CHECK_ERRNO(fputs(NULL, stdout), EOF, EINVAL);
    CHECK_ERRNO(puts(NULL), EOF, EINVAL);
}

/* An old error indicator does not make a good read fail. */
static void test_error_indicator(void)
{
    FILE *file = fopen(NAME, "w+");
    fputs("line\n", file);
    rewind(file);
    char line[8];
    fgetc(file);
    fputc('x', file);
    CHECK(ferror(file));
    CHECK_STR(fgets(line, sizeof line, file), "ine\n");
    fclose(file);
}

static int violations;
static void count_violation(const char *message, void *instance, errno_t code)
{
    violations += code == EINVAL;
}

/* In a child with its own standard input. */
static int read_standard_input(void)
{
    char line[16];
    set_constraint_handler_s(count_violation);
    printf("[%s]", gets(line) ? line : "null");
    printf("[%s]", gets_s(line, 6) ? line : "null");  /* "abcd" and its newline just fit */
    printf("[%s]", gets_s(line, 5) ? line : "null");  /* "abcd" does not */
    printf("%d", (unsigned char)line[0]);
    printf("[%s]", gets_s(line, 0) ? line : "null");  /* drops a line */
    printf("[%s]", gets_s(NULL, 9) ? line : "null");  /* and one more */
    printf("[%s]", gets_s(line, 16) ? line : "null");
    strcpy(line, "old");
    printf("[%s]", gets_s(line, 16) ? line : "null");
    printf("%d violations %d", violations, (unsigned char)line[0]);
    return 0;
}

static void test_standard_input(void)
{
    struct child child = child_run("input", "one\r\nabcd\r\nabcdefg\r\nx\r\ny\r\nlast");
    CHECK_INT(child.status, 0);
    CHECK_STR(child.output, "[one][abcd][null]0[null][null][last][null]3 violations 0");
}

int main(int argc, char **argv)
{
    if (argc > 1) return read_standard_input();
    test_line_lengths();
    test_delimiters();
    test_error_indicator();
    test_standard_input();
    DeleteFileA(NAME);
    return check_done();
}
