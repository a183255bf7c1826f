/* options: -fno-builtin */
/*
 * What is promised for the worst: patterns and texts that are large or meant to be slow, and memory
 * that runs out at any point.
 */
#include "check.h"
#include "script.h"

#include <malloc.h>
#include <regex.h>
#include <stdlib.h>

__declspec(dllimport) unsigned long __stdcall GetTickCount(void);

static char *repeated(const char *left, size_t count, const char *middle, const char *right)
{
    size_t left_size = strlen(left), right_size = strlen(right);
    char *text = malloc(count * (left_size + right_size) + strlen(middle) + 1), *to = text;
    for (size_t i = 0; i < count; ++i, to += left_size) memcpy(to, left, left_size);
    to += sprintf(to, "%s", middle);
    for (size_t i = 0; i < count; ++i, to += right_size) memcpy(to, right, right_size);
    *to = '\0';
    return text;
}

static void test_nesting(void)
{
    enum { DEPTH = 100000 };
    static const struct { const char *left, *right; size_t count; int flags; } nests[] = {
        {"(", ")", DEPTH, REG_EXTENDED},   {"\\(", "\\)", DEPTH, 0},
        {"(", ")*", DEPTH, REG_EXTENDED},  {"(b|", ")", DEPTH, REG_EXTENDED},
        {"(a", "b*)*", 2000, REG_EXTENDED},
    };
    for (unsigned i = 0; i < sizeof nests / sizeof *nests; ++i) {
        size_t count = nests[i].count;
        char *pattern = repeated(nests[i].left, count, "a", nests[i].right);
        regmatch_t *matches = malloc((count + 1) * sizeof *matches);
        regex_t expression;
        check_label = nests[i].left;
        CHECK_INT(regcomp(&expression, pattern, nests[i].flags), 0);
        CHECK_INT(expression.re_nsub, count);
        CHECK_INT(regexec(&expression, "bca", 0, NULL, 0), 0);
        if (i != 4) {
            CHECK_INT(regexec(&expression, "aca", count + 1, matches, 0), 0);
            CHECK_INT(matches[0].rm_eo, 1);
            CHECK_INT(matches[count].rm_so, 0);
            CHECK_INT(matches[count].rm_eo, 1);
        }
        regfree(&expression);
        free(matches);
        free(pattern);
    }
    check_label = "";
    char *open = repeated("(", DEPTH, "a", "");
    regex_t expression;
    CHECK_INT(regcomp(&expression, open, REG_EXTENDED), REG_EPAREN);
    free(open);
}

/* Twice the text may take twice the time, not four times; and no time that a user would notice. */
static void test_time(void)
{
    static const struct { const char *pattern; int nmatch; } slow[] = {
        {"(a|aa)*b", 2}, {"(x+x+)+y", 2}, {"(a*)*b", 2}, {"(a|a|a)*b", 0}, {"((a*)*)*$b", 4},
        {"(a?){100}b", 2}, {"(.*)(.*)(.*)(.*)[^a]", 5}, {"(a*)(a|aa)*(a*)", 4}, {".*.*.*=.*", 1},
        {"(a|b)*a(a|b){12}", 3}, {"(a{1,30}){1,30}b", 2}, {"((a|aa)*(aa|aaa)*)*", 4},
    };
    for (unsigned i = 0; i < sizeof slow / sizeof *slow; ++i) {
        enum { LENGTH = 20000 };
        regex_t expression;
        regmatch_t matches[5];
        char *text = malloc(LENGTH + 1);
        memset(text, slow[i].pattern[1] == 'x' ? 'x' : 'a', LENGTH);
        text[LENGTH] = '\0';
        check_label = slow[i].pattern;
        CHECK_INT(regcomp(&expression, slow[i].pattern, REG_EXTENDED), 0);
        unsigned long start = GetTickCount();
        int code = regexec(&expression, text, (size_t)slow[i].nmatch, matches, 0);
        CHECK(code == 0 || code == REG_NOMATCH);
        CHECK(GetTickCount() - start < 3000);
        regfree(&expression);
        free(text);
    }
    check_label = "";
}

/* A match that is too long for the noted states, and one whose states do not fit the cache. */
static void test_long_matches(void)
{
    enum { LENGTH = 3000000 };
    regex_t expression;
    regmatch_t m[4];
    char *text = malloc(LENGTH + 1);
    memset(text, 'a', LENGTH);
    text[LENGTH] = '\0';
    text[LENGTH - 7] = 'b';
    text[100] = 'x';
    CHECK_INT(regcomp(&expression, "x(.*)(b)((a)*)", REG_EXTENDED), 0);
    CHECK_INT(regexec(&expression, text, 4, m, 0), 0);
    CHECK_INT(m[0].rm_so, 100);
    CHECK_INT(m[0].rm_eo, LENGTH);
    CHECK_INT(m[1].rm_so, 101);
    CHECK_INT(m[1].rm_eo, LENGTH - 7);
    CHECK_INT(m[2].rm_so, LENGTH - 7);
    CHECK_INT(m[3].rm_so, LENGTH - 6);
    CHECK_INT(m[3].rm_eo, LENGTH);
    regfree(&expression);

    /* Random letters give such an expression a new state nearly every time. */
    unsigned random = 1;
    for (int i = 0; i < 200000; ++i) {
        random = random * 1664525 + 1013904223;
        text[i] = "ab"[random >> 31];
    }
    text[200000] = '\0';
    CHECK_INT(regcomp(&expression, "((a|b)*a)((a|b){14})(b*)", REG_EXTENDED), 0);
    regmatch_t all[6];
    CHECK_INT(regexec(&expression, text, 6, all, 0), 0);
    int last = 200000;
    while (text[last - 1] == 'b') --last;
    CHECK_INT(all[0].rm_so, 0);
    CHECK_INT(all[0].rm_eo, 200000);
    int split = 200000 - 15;
    while (text[split] != 'a') --split;
    CHECK_INT(all[1].rm_eo, split + 1);
    CHECK_INT(all[2].rm_eo, split);
    CHECK_INT(all[3].rm_so, split + 1);
    CHECK_INT(all[3].rm_eo, split + 15);
    regfree(&expression);
    free(text);
}

/* Searches with back-references end. */
static void test_back_reference_bound(void)
{
    regex_t expression;
    regmatch_t m[3];
    char text[2001];
    memset(text, 'a', 2000);
    text[2000] = '\0';
    CHECK_INT(regcomp(&expression, "(a*)*(a*)*(a*)*\\1\\2\\3b", REG_EXTENDED), 0);
    CHECK_INT(regexec(&expression, text, 3, m, 0), REG_NOMATCH); /* there is no b */
    text[1999] = 'b';
    unsigned long start = GetTickCount();
    int code = regexec(&expression, text, 3, m, 0);
    CHECK(code == 0 || code == REG_ESPACE);
    CHECK(GetTickCount() - start < 10000);
    regfree(&expression);
}

/* ---- memory that runs out ---- */

static void *(__stdcall *real_allocate)(void *, unsigned long, size_t);
static void *(__stdcall *real_reallocate)(void *, unsigned long, void *, size_t);
static int(__stdcall *real_free)(void *, unsigned long, void *);
static int blocks;

static void *__stdcall allocate(void *heap, unsigned long flags, size_t size)
{
    void *block = script_fail_now() ? NULL : real_allocate(heap, flags, size);
    blocks += block != NULL;
    return block;
}
static void *__stdcall reallocate(void *heap, unsigned long flags, void *block, size_t size)
{
    return script_fail_now() ? NULL : real_reallocate(heap, flags, block, size);
}
static int __stdcall release(void *heap, unsigned long flags, void *block)
{
    blocks -= block != NULL;
    return real_free(heap, flags, block);
}

/* Compiles and searches with every allocation failing in turn, alone or with all after it. */
static void test_failing_memory(void)
{
    static const struct { const char *pattern, *text; int due; } jobs[] = {
        {"((a|[b-d]+)*x{2,3}|foo(bar)?)+", "zzabcdxxfoobarxxx", 0},
        {"(a*)(b|(c))\\1", "aacaab", 0},
        {"(a+)(b+)c{0,50}", "xaabbc", 0},
        {"[[:alpha:", "", REG_EBRACK},
        {"((a)", "", REG_EPAREN},
    };
    unsigned threshold = __bheap_threshold;
    __bheap_threshold = 0; /* every block from the system */
    real_allocate = script_import("HeapAlloc", allocate);
    real_reallocate = script_import("HeapReAlloc", reallocate);
    real_free = script_import("HeapFree", release);
    for (unsigned i = 0; i < 2 * sizeof jobs / sizeof *jobs; ++i) {
        int site = 1, calls;
        do {
            regex_t expression;
            regmatch_t matches[6];
            check_label = jobs[i / 2].pattern;
            blocks = 0;
            script_fail_from(site, i % 2);
            int code = regcomp(&expression, jobs[i / 2].pattern, REG_EXTENDED);
            if (code == 0) {
                code = regexec(&expression, jobs[i / 2].text, 6, matches, 0);
                script_fail_from(0, 0);
                int again = regexec(&expression, jobs[i / 2].text, 6, matches, 0);
                CHECK_INT(again, 0); /* a failure leaves the expression usable */
                regfree(&expression);
                calls = code == 0 ? 0 : site;
            } else {
                calls = script_calls >= site ? site : 0;
            }
            CHECK(code == jobs[i / 2].due || code == REG_ESPACE);
            CHECK_INT(blocks, 0);
            ++site;
        } while (calls && site < 1000);
        CHECK(site > 3);
    }
    script_restore();
    __bheap_threshold = threshold;
    CHECK_INT(__heap_validate(NULL), 1);
    check_label = "";
}

int main(void)
{
    test_nesting();
    test_time();
    test_long_matches();
    test_back_reference_bound();
    test_failing_memory();
    return check_done();
}
