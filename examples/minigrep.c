/*
 * minigrep - prints the lines that match a regular expression.
 *
 *   minigrep [-Eivnoc] PATTERN [FILE...]
 *
 *   -E   the pattern is an extended expression, not a basic one
 *   -i   letters of either case are the same
 *   -v   the lines that do not match
 *   -n   with the number of the line
 *   -o   only what matches, each match on a line of its own
 *   -c   only how many lines there are
 *
 * Without a FILE, or for one that is "-", it reads standard input. With several each line starts
 * with the file's name. The status is 0 when a line was selected, 1 when none was, 2 after an error.
 */
#include <errno.h>
#include <regex.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static struct {
    int extended, ignore_case, invert, numbers, only_matches, count, names;
} options;

static regex_t expression;
static int any_selected, any_error;

static void complain(const char *what, const char *why)
{
    fprintf(stderr, "minigrep: %s: %s\n", what, why);
    any_error = 1;
}

/* A line without its end. Lines may be of any length and hold any bytes. */
struct line {
    char *text;
    size_t length, capacity;
};

/* Makes room for `more` bytes and a terminator. */
static void reserve(struct line *line, size_t more)
{
    if (line->length + more < line->capacity) return;
    line->capacity = 2 * (line->length + more) + 128;
    line->text = realloc(line->text, line->capacity);
    if (!line->text) {
        complain("memory", strerror(ENOMEM));
        exit(2);
    }
}

static void append(struct line *line, const char *text, size_t length)
{
    reserve(line, length);
    memcpy(line->text + line->length, text, length);
    line->length += length;
}

/* What has been read and not been used. */
struct input {
    FILE *file;
    char bytes[32768];
    size_t start, end;
};

/* The next line; 0 at the end of the input. */
static int read_line(struct input *input, struct line *line)
{
    int any = 0;
    for (line->length = 0;; any = 1) {
        if (input->start == input->end) {
            input->start = 0;
            input->end = fread(input->bytes, 1, sizeof input->bytes, input->file);
            if (input->end == 0) return any;
        }
        char *from = input->bytes + input->start;
        size_t available = input->end - input->start;
        char *newline = memchr(from, '\n', available);
        size_t length = newline ? (size_t)(newline - from) : available;
        append(line, from, length);
        input->start += length + (newline != NULL);
        if (newline) return 1;
    }
}

static void print_prefix(const char *name, unsigned long number)
{
    if (options.names) printf("%s:", name);
    if (options.numbers) printf("%lu:", number);
}

/* The match at or behind `from`. */
static int find(const struct line *line, size_t from, regmatch_t *match)
{
    match->rm_so = (regoff_t)from;
    match->rm_eo = (regoff_t)line->length;
    return regexec(&expression, line->text, 1, match, REG_STARTEND | (from ? REG_NOTBOL : 0)) == 0;
}

static void print_matches(const struct line *line, const char *name, unsigned long number)
{
    regmatch_t match;
    for (size_t from = 0; from <= line->length && find(line, from, &match);) {
        size_t length = (size_t)(match.rm_eo - match.rm_so);
        from = (size_t)match.rm_eo + (length == 0);
        if (length == 0) continue;
        print_prefix(name, number);
        fwrite(line->text + match.rm_so, 1, length, stdout);
        putchar('\n');
    }
}

static void print_line(const struct line *line, const char *name, unsigned long number)
{
    print_prefix(name, number);
    fwrite(line->text, 1, line->length, stdout);
    putchar('\n');
}

static void search(FILE *file, const char *name)
{
    static struct input input;
    static struct line line;
    unsigned long number = 0, selected = 0;
    input.file = file;
    input.start = input.end = 0;
    reserve(&line, 1);
    while (read_line(&input, &line)) {
        regmatch_t match;
        ++number;
        if (find(&line, 0, &match) == options.invert) continue;
        ++selected;
        if (options.count) continue;
        if (!options.only_matches) print_line(&line, name, number);
        else if (!options.invert) print_matches(&line, name, number);
    }
    if (ferror(file)) complain(name, strerror(errno));
    if (options.count && options.names) printf("%s:", name);
    if (options.count) printf("%lu\n", selected);
    any_selected |= selected != 0;
}

static void search_file(const char *name)
{
    if (strcmp(name, "-") == 0) {
        search(stdin, "(standard input)");
        return;
    }
    FILE *file = fopen(name, "rb");
    if (!file) {
        complain(name, strerror(errno));
        return;
    }
    search(file, name);
    fclose(file);
}

static int set_option(char c)
{
    switch (c) {
    case 'E': return options.extended = 1;
    case 'i': return options.ignore_case = 1;
    case 'v': return options.invert = 1;
    case 'n': return options.numbers = 1;
    case 'o': return options.only_matches = 1;
    case 'c': return options.count = 1;
    default: return 0;
    }
}

static int usage(void)
{
    fputs("usage: minigrep [-Eivnoc] PATTERN [FILE...]\n", stderr);
    return 2;
}

int main(int argc, char **argv)
{
    int i = 1;
    for (; i < argc && argv[i][0] == '-' && argv[i][1]; ++i) {
        if (strcmp(argv[i], "--") == 0) {
            ++i;
            break;
        }
        for (const char *c = argv[i] + 1; *c; ++c)
            if (!set_option(*c)) return usage();
    }
    if (i == argc) return usage();
    const char *pattern = argv[i++];
    int code = regcomp(&expression, pattern,
                       (options.extended ? REG_EXTENDED : 0) | (options.ignore_case ? REG_ICASE : 0));
    if (code) {
        char text[64];
        regerror(code, &expression, text, sizeof text);
        complain(pattern, text);
        return 2;
    }
    setvbuf(stdout, NULL, _IOFBF, 32768);
    options.names = argc - i > 1;
    if (i == argc) search_file("-");
    for (; i < argc; ++i) search_file(argv[i]);
    regfree(&expression);
    if (fflush(stdout) != 0) complain("standard output", strerror(errno));
    return any_error ? 2 : !any_selected;
}
