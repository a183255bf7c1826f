/* Regular expressions. */
#include "bench.h"

#include <regex.h>
#include <stdlib.h>
#include <string.h>

static regex_t expression;
static regmatch_t matches[10];

static void compile(const char *pattern, int flags)
{
    if (regcomp(&expression, pattern, REG_EXTENDED | flags)) exit(1);
}

static unsigned long state = 1;
static unsigned below(unsigned limit)
{
    state = (state * 1103515245ul + 12345) & 0x7FFFFFFF;
    return (unsigned)(state >> 16) % limit;
}

/* Words of small letters, without an end of line. */
static char *make_text(size_t size)
{
    char *text = malloc(size + 1);
    for (size_t i = 0; i < size; ++i) text[i] = below(6) ? (char)('a' + below(20)) : ' ';
    text[size] = '\0';
    return text;
}

enum { LINES = 10000 };
static char lines[LINES][128];

static void make_lines(void)
{
    static const char *const methods[] = {"GET", "POST", "PUT", "HEAD"};
    for (int i = 0; i < LINES; ++i)
        sprintf(lines[i], "10.%u.%u.%u - - [%02u/Oct/2023:13:%02u:36 +0000] \"%s /item/%u HTTP/1.1\" %u %u",
                below(256), below(256), below(256), 1 + below(28), below(60), methods[below(4)], below(100000),
                below(50) ? 200 : 500, below(100000));
}

static int search_lines(size_t count)
{
    int found = 0;
    for (int i = 0; i < LINES; ++i) found += regexec(&expression, lines[i], count, matches, 0) == 0;
    return found;
}

#define SEARCH(name, text, count) BENCH(name, 1, bench_keep(regexec(&expression, text, count, matches, 0)))
#define SEARCH_LINES(name, count) BENCH(name, LINES, bench_keep(search_lines(count)))

int main(void)
{
    char *text = make_text(65536), letters[3001];
    memcpy(text + 65000, "needle in it", 12);
    make_lines();

    BENCH("compile a literal", 1, (compile("needle", 0), regfree(&expression)));
    BENCH("compile a log line", 1,
          (compile("^([0-9.]+) - - \\[([^]]+)\\] \"([A-Z]+) ([^ ]+) HTTP/([0-9.]+)\" ([0-9]+) ([0-9]+)$", 0),
           regfree(&expression)));
    BENCH("compile and match once", 1,
          (compile("([a-z]+)=([0-9]+)", 0), regexec(&expression, "key=15", 3, matches, 0), regfree(&expression)));

    compile("needle", 0);
    SEARCH("literal in 64 KiB", text, 1);
    regfree(&expression);
    compile("needle|thread|button", REG_NOSUB);
    SEARCH("alternation in 64 KiB", text, 0);
    regfree(&expression);
    compile("NEEDLE|THREAD|BUTTON", REG_NOSUB);
    SEARCH("alternation in 64 KiB, no match", text, 0);
    regfree(&expression);
    compile("NEEDLE", REG_ICASE);
    SEARCH("ignoring case in 64 KiB", text, 1);
    regfree(&expression);
    compile("[^a-z ]", 0);
    SEARCH("bracket in 64 KiB, no match", text, 1);
    regfree(&expression);
    compile("[[:alpha:]]+ing", 0);
    SEARCH("bracket loop and letters in 64 KiB", text, 1);
    regfree(&expression);

    compile("(POST|PUT) .*\" 500 ", REG_NOSUB);
    SEARCH_LINES("log lines, alternation", 0);
    regfree(&expression);
    compile("\" 500 [0-9]+$", 0);
    SEARCH_LINES("log lines, where", 1);
    regfree(&expression);
    compile("^([0-9.]+) - - \\[([^]]+)\\] \"([A-Z]+) ([^ ]+) HTTP/([0-9.]+)\" ([0-9]+) ([0-9]+)$", 0);
    SEARCH_LINES("log lines, 7 groups", 8);
    SEARCH_LINES("log lines, 7 groups not wanted", 0);
    regfree(&expression);

    memset(letters, 'a', sizeof letters);
    letters[28] = '\0';
    compile("(a|aa)*b", 0);
    SEARCH("(a|aa)*b on 28 letters", letters, 2);
    regfree(&expression);
    letters[28] = 'a';
    letters[3000] = '\0';
    compile("(a|aa)*b", 0);
    SEARCH("(a|aa)*b on 3000 letters", letters, 2);
    regfree(&expression);
    memset(letters, 'x', 3000);
    letters[30] = '\0';
    compile("(x+x+)+y", 0);
    SEARCH("(x+x+)+y on 30 letters", letters, 2);
    regfree(&expression);
    letters[30] = 'x';
    compile("(x+x+)+y", 0);
    SEARCH("(x+x+)+y on 3000 letters", letters, 2);
    regfree(&expression);
    letters[2999] = 'y';
    compile("(x+x+)+y", 0);
    SEARCH("(x+x+)+y on 2999 letters and y", letters, 2);
    regfree(&expression);
    return 0;
}
