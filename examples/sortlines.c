/*
 * sortlines - prints the lines of its input in order.
 *
 *   sortlines [-r] [-u] [FILE...]
 *
 *   -r   the other way round
 *   -u   of equal lines only one
 *
 * Shows getline, qsort_s with a context, and a runtime-constraint handler.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

struct lines {
    char **items;
    size_t count, capacity;
};

struct options {
    int reverse, unique;
};

static void fail(const char *what)
{
    perror(what);
    exit(EXIT_FAILURE);
}

static void add(struct lines *lines, const char *text)
{
    if (lines->count == lines->capacity) {
        lines->capacity = lines->capacity ? 2 * lines->capacity : 256;
        lines->items = realloc(lines->items, lines->capacity * sizeof *lines->items);
        if (!lines->items) fail("sortlines");
    }
    lines->items[lines->count] = strdup(text);
    if (!lines->items[lines->count++]) fail("sortlines");
}

static void read_lines(struct lines *lines, const char *name)
{
    char *text = NULL;
    size_t capacity = 0;
    FILE *file = strcmp(name, "-") == 0 ? stdin : fopen(name, "r");
    if (!file) fail(name);
    for (ssize_t length; (length = getline(&text, &capacity, file)) > 0;) {
        if (text[length - 1] == '\n') text[length - 1] = '\0';
        add(lines, text);
    }
    if (ferror(file)) fail(name);
    if (file != stdin) fclose(file);
    free(text);
}

static int compare(const void *a, const void *b, void *context)
{
    const struct options *options = context;
    int order = strcmp(*(char *const *)a, *(char *const *)b);
    return options->reverse ? -order : order;
}

int main(int argc, char **argv)
{
    struct lines lines = {0};
    struct options options = {0};
    int i;
    set_constraint_handler_s(abort_handler_s);
    for (i = 1; i < argc && argv[i][0] == '-' && argv[i][1]; ++i) {
        if (strcmp(argv[i], "-r") == 0) options.reverse = 1;
        else if (strcmp(argv[i], "-u") == 0) options.unique = 1;
        else {
            fputs("usage: sortlines [-r] [-u] [FILE...]\n", stderr);
            return 2;
        }
    }
    if (i == argc) read_lines(&lines, "-");
    for (; i < argc; ++i) read_lines(&lines, argv[i]);
    qsort_s(lines.items, lines.count, sizeof *lines.items, compare, &options);

    setvbuf(stdout, NULL, _IOFBF, 8192);
    for (size_t k = 0; k < lines.count; ++k)
        if (!options.unique || k == 0 || strcmp(lines.items[k], lines.items[k - 1]) != 0)
            puts(lines.items[k]);
    return fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
