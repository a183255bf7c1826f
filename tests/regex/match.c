/* Matching: leftmost, longest, subexpressions by the rule; flags; both engines. */
#include "check.h"

#include <regex.h>
#include <stdlib.h>

/* Subexpressions as "(start,end)" each, "(-)" for none; "none" when nothing matches. */
static const char *result_of(regex_t *expression, const char *text, size_t count, int flags)
{
    static char result[512];
    regmatch_t matches[20];
    char *to = result;
    int code = regexec(expression, text, count, matches, flags);
    if (code == REG_NOMATCH) return "none";
    if (code) return sprintf(result, "code %d", code), result;
    *to = '\0';
    for (size_t i = 0; i < count; ++i) {
        if (matches[i].rm_so < 0) to += sprintf(to, "(-)");
        else to += sprintf(to, "(%d,%d)", matches[i].rm_so, matches[i].rm_eo);
    }
    return result;
}

static const struct {
    const char *pattern, *text, *due;
} cases[] = {
    /* Leftmost, then longest. */
    {"abcd|c", "xabcd", "(1,5)"},
    {"abcd|c", "xabc", "(3,4)"},
    {"a|ab|abc", "abcd", "(0,3)"},
    {"b*", "abb", "(0,0)"},
    {"b+|a", "abb", "(0,1)"},
    {"x*y|xx", "xxx", "(0,2)"},
    {"a.*c|b", "bac", "(0,1)"},
    {".*", "abc", "(0,3)"},
    {"(a+|b+)c", "aabbc", "(2,5)(2,4)"},
    /* The parts: earlier ones first, each as long as it can be. */
    {"(a|ab)(c|bcd)(d*)", "abcd", "(0,4)(0,2)(2,3)(3,4)"},
    {"(a*)(ab)*(b*)", "abb", "(0,3)(0,1)(-)(1,3)"},
    {"(a*)(a*)", "aaa", "(0,3)(0,3)(3,3)"},
    {"a*(a*)", "aaa", "(0,3)(3,3)"},
    {"(a?)((ab)?)", "ab", "(0,2)(0,0)(0,2)(0,2)"},
    {"(a?)((ab)?)(b?)", "ab", "(0,2)(0,1)(1,1)(-)(1,2)"},
    {"(week|wee)(night|knights)", "weeknights", "(0,10)(0,3)(3,10)"},
    {"(.*)(.*)", "ab", "(0,2)(0,2)(2,2)"},
    {"((a)|(ab))((c)|(bc))", "abc", "(0,3)(0,2)(-)(0,2)(2,3)(2,3)(-)"},
    {"(a{1,2})(a{1,2})(a{1,2})", "aaaa", "(0,4)(0,2)(2,3)(3,4)"},
    /* A repeated group reports its last iteration, and of what is in it only that one. */
    {"(a|b)*", "abba", "(0,4)(3,4)"},
    {"((a)|b)*", "ab", "(0,2)(1,2)(-)"},
    {"((a)|(b))*", "ab", "(0,2)(1,2)(-)(1,2)"},
    {"(a|ab|aba)*", "ababa", "(0,5)(2,5)"},
    {"((a*)(b*))*", "abaab", "(0,5)(2,5)(2,4)(4,5)"},
    {"(a*)(b|abc)(c*)", "abc", "(0,3)(0,1)(1,2)(2,3)"},
    {"(ab|a)(bc)?(c)*", "abcc", "(0,4)(0,2)(-)(3,4)"},
    {"((..)|(.))*", "abc", "(0,3)(2,3)(-)(2,3)"},
    {"((..)|(.)){2}", "abc", "(0,3)(2,3)(-)(2,3)"},
    /* Empty iterations: the only one, but none after one that is not empty. */
    {"(a*)*", "b", "(0,0)(0,0)"},
    {"(a*)+", "b", "(0,0)(0,0)"},
    {"(a*)?", "b", "(0,0)(0,0)"},
    {"(a*)*", "aab", "(0,2)(0,2)"},
    {"(a*)+", "aab", "(0,2)(0,2)"},
    {"(a*){2,3}", "aab", "(0,2)(0,2)"},
    {"(a*){3}", "aab", "(0,2)(0,2)"},
    {"(a|b*)*c", "abc", "(0,3)(1,2)"},
    {"()*a", "a", "(0,1)(0,0)"},
    {"(a){0}b", "ab", "(1,2)(-)"},
    {"(^)*a", "ba", "(1,2)(-)"},
    {"(a)?b", "b", "(0,1)(-)"},
    {"(^|a){2}b", "ab", "(0,2)(0,1)"},
    /* Anchors within. */
    {"(^a|b$)+", "ab", "(0,2)(1,2)"},
    {"a($|b)", "ac ab", "(3,5)(4,5)"},
    {"^$", "", "(0,0)"},
    {"^^a$$", "a", "(0,1)"},
    /* Back-references. */
    {"(a*)b\\1", "aabaa", "(0,5)(0,2)"},
    {"(a*)b\\1", "aabaaa", "(0,5)(0,2)"},
    {"(a*)b\\1", "aaba", "(1,4)(1,2)"},
    {"(.)(.)\\2\\1", "xabba", "(1,5)(1,2)(2,3)"},
    {"(a|ab)(.*)\\1", "abab", "(0,4)(0,2)(2,2)"},
    {"(a*)\\1(a*)", "aaaaa", "(0,5)(0,2)(4,5)"},
    {"((a|b)\\2)*", "aabbab", "(0,4)(2,4)(2,3)"},
    {"(a)?\\1b", "b", "none"},
    {"(.*)\\1", "abcabc", "(0,6)(0,3)"},
    {"(a+)(b\\1)*c", "aabaabaac", "(0,9)(0,2)(5,8)"},
};

static void test_cases(void)
{
    for (unsigned i = 0; i < sizeof cases / sizeof *cases; ++i) {
        regex_t expression;
        char large[256];
        check_label = cases[i].pattern;
        CHECK_INT(regcomp(&expression, cases[i].pattern, REG_EXTENDED), 0);
        CHECK_STR(result_of(&expression, cases[i].text, expression.re_nsub + 1, 0), cases[i].due);
        regfree(&expression);
        /* The same in a program of more than 32 states. */
        sprintf(large, strchr(cases[i].pattern, '|') ? "%s|Z{40}" : "%sZ{0,40}", cases[i].pattern);
        CHECK_INT(regcomp(&expression, large, REG_EXTENDED), 0);
        CHECK_STR(result_of(&expression, cases[i].text, expression.re_nsub + 1, 0), cases[i].due);
        regfree(&expression);
    }
    check_label = "";
}

/* Programs around the size at which the engine changes. */
static void test_engines(void)
{
    for (int letters = 20; letters < 45; ++letters) {
        char pattern[64] = "(a|b)*", text[64];
        regex_t expression;
        memset(pattern + 6, 'x', (size_t)letters);
        pattern[6 + letters] = '\0';
        sprintf(text, "aab%s", pattern + 6);
        CHECK_INT(regcomp(&expression, pattern, REG_EXTENDED), 0);
        char due[64];
        sprintf(due, "(0,%d)(2,3)", letters + 3);
        CHECK_STR(result_of(&expression, text, 2, 0), due);
        text[letters + 2] = '\0';
        CHECK_STR(result_of(&expression, text, 2, 0), "none");
        regfree(&expression);
    }
}

static void test_flags(void)
{
    regex_t line, whole, sub;
    regmatch_t matches[3];
    CHECK_INT(regcomp(&line, "^a|b$", REG_EXTENDED), 0);
    CHECK_STR(result_of(&line, "ab", 1, 0), "(0,1)");
    CHECK_STR(result_of(&line, "ab", 1, REG_NOTBOL), "(1,2)");
    CHECK_STR(result_of(&line, "ab", 1, REG_NOTBOL | REG_NOTEOL), "none");
    CHECK_STR(result_of(&line, "ab", 1, 0x1000), "(0,1)");
    CHECK_STR(result_of(&line, "ab", 1, ~7), "(0,1)");
    regfree(&line);

    CHECK_INT(regcomp(&line, "^b", REG_EXTENDED | REG_NEWLINE), 0);
    CHECK_STR(result_of(&line, "b\nb", 1, REG_NOTBOL), "(2,3)");
    regfree(&line);

    /* What is not wanted is not written. */
    CHECK_INT(regcomp(&sub, "(a)(b)", REG_EXTENDED | REG_NOSUB), 0);
    matches[0] = (regmatch_t){77, 78};
    CHECK_INT(regexec(&sub, "ab", 3, matches, 0), 0);
    CHECK_INT(matches[0].rm_so, 77);
    CHECK_INT(regexec(&sub, "ba", 3, matches, 0), REG_NOMATCH);
    CHECK_INT(regexec(&sub, "ab", 3, NULL, 0), 0);
    regfree(&sub);

    CHECK_INT(regcomp(&whole, "(a)b", REG_EXTENDED), 0);
    CHECK_INT(regexec(&whole, "ab", 0, NULL, 0), 0);
    CHECK_STR(result_of(&whole, "ab", 4, 0), "(0,2)(0,1)(-)(-)");
    matches[0] = (regmatch_t){77, 78};
    CHECK_INT(regexec(&whole, "b", 3, matches, 0), REG_NOMATCH);
    CHECK_INT(matches[0].rm_so, 77);
    regfree(&whole);
}

static int in_range(const char *pattern, const char *text, int start, int end, int flags, regmatch_t *matches)
{
    regex_t expression;
    if (regcomp(&expression, pattern, REG_EXTENDED)) return -1;
    matches[0] = (regmatch_t){start, end};
    int code = regexec(&expression, text, 2, matches, REG_STARTEND | flags);
    regfree(&expression);
    return code;
}

static void test_ranges(void)
{
    regmatch_t m[2];
    static const char text[] = "xab\0ab\nc";
    CHECK_INT(in_range("a(b)", text, 0, 8, 0, m), 0);
    CHECK_INT(m[0].rm_so, 1);
    CHECK_INT(in_range("a(b)", text, 2, 8, 0, m), 0);
    CHECK_INT(m[0].rm_so, 4);
    CHECK_INT(m[1].rm_so, 5);
    CHECK_INT(m[1].rm_eo, 6);
    CHECK_INT(in_range("a(b)", text, 2, 5, 0, m), REG_NOMATCH);
    CHECK_INT(in_range("b", text, 2, 2, 0, m), REG_NOMATCH);
    CHECK_INT(in_range("b*", text, 2, 2, 0, m), 0);
    CHECK_INT(m[0].rm_eo, 2);
    CHECK_INT(in_range("b", text, 3, 2, 0, m), REG_INVARG);
    CHECK_INT(in_range("^b", text, 2, 8, 0, m), 0);
    CHECK_INT(in_range("^b", text, 2, 8, REG_NOTBOL, m), REG_NOMATCH);
    CHECK_INT(in_range("a$", text, 0, 2, 0, m), 0);
    CHECK_INT(in_range("a$", text, 0, 2, REG_NOTEOL, m), REG_NOMATCH);
    CHECK_INT(in_range("b.a", text, 0, 8, 0, m), 0); /* a NUL is a character */
    CHECK_INT(in_range("b[^x](a)", text, 0, 8, 0, m), 0);
    CHECK_INT(m[0].rm_so, 2);
    CHECK_INT(in_range("(a)b.\\1b", text, 0, 8, 0, m), 0);
    CHECK_INT(m[0].rm_eo, 6);
    CHECK_INT(in_range("[[:<:]]b", text, 2, 8, 0, m), 0); /* what is outside is not looked at */
    CHECK_INT(m[0].rm_so, 2);
}

/* The must string decides, wherever it stands. */
static void test_must_string(void)
{
    static const struct { const char *pattern, *text, *due; } must[] = {
        {"needle", "hay needle hay", "(4,10)"},
        {"needle", "hay needl", "none"},
        {"n(e+)dle", "x neeedle", "(2,9)"},
        {"[a-z]+needle[0-9]", "xx needle1 xneedle2", "(11,19)"},
        {"..needle", "nneedle needle", "(6,14)"},
        {"(ab)+cd", "abcd", "(0,4)"},
        {"(ab)+cd", "ababcd", "(0,6)"},
        {"(ab)?cd", "cd", "(0,2)"},
        {"(ab|cd)ef", "cdef", "(0,4)"},
        {"a(b{3})c", "abbbc", "(0,5)"},
        {"^needle", "xneedle needle", "none"},
        {"[[:<:]]needle", "xneedle needle", "(8,14)"},
    };
    for (unsigned i = 0; i < sizeof must / sizeof *must; ++i) {
        regex_t expression;
        check_label = must[i].pattern;
        CHECK_INT(regcomp(&expression, must[i].pattern, REG_EXTENDED), 0);
        CHECK_STR(result_of(&expression, must[i].text, 1, 0), must[i].due);
        regfree(&expression);
    }
    check_label = "";
}

int main(void)
{
    test_cases();
    test_engines();
    test_flags();
    test_ranges();
    test_must_string();
    return check_done();
}
