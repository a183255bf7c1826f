/* Compiling: what each grammar takes and refuses, flags, codes and texts, the record's lifetime. */
#include "check.h"

#include <malloc.h>
#include <regex.h>
#include <stdlib.h>

enum { BASIC = 0, EXT = REG_EXTENDED, LIT = REG_NOSPEC };

/* The result of compiling; for those that compile, where the first match in `text` lies. */
static const struct {
    int flags;
    const char *pattern;
    int code;
    const char *text;
    int start, end; /* -1: no match */
} grammar[] = {
    /* Basic: what is special where. */
    {BASIC, "a*", 0, "aab", 0, 2},
    {BASIC, "*a", 0, "x*a", 1, 3},
    {BASIC, "^*a", 0, "*a", 0, 2},
    {BASIC, "\\(*a\\)", 0, "*a", 0, 2},
    {BASIC, "\\(^a\\)", 0, "ba", -1, 0},
    {BASIC, "a^b", 0, "a^b", 0, 3},
    {BASIC, "a$b", 0, "a$b", 0, 3},
    {BASIC, "a$", 0, "aa", 1, 2},
    {BASIC, "\\(a$\\)", 0, "ab", -1, 0},
    {BASIC, "a+b?|{1}", 0, "a+b?|{1}", 0, 8},
    {BASIC, "a\\{2\\}", 0, "aaa", 0, 2},
    {BASIC, "a\\{2,\\}", 0, "baaa", 1, 4},
    {BASIC, "a\\{1,2\\}", 0, "aaa", 0, 2},
    {BASIC, "a\\{0\\}b", 0, "ab", 1, 2},
    {BASIC, "\\.\\*\\[\\\\", 0, "x.*[\\", 1, 5},
    {BASIC, "\\(a\\)\\1", 0, "baa", 1, 3},
    {BASIC, "\\|", 0, "|", 0, 1},
    {BASIC, "a**", REG_BADRPT, 0, 0, 0},
    {BASIC, "a\\{1\\}*", REG_BADRPT, 0, 0, 0},
    {BASIC, "\\{1\\}", REG_BADRPT, 0, 0, 0},
    {BASIC, "\\(\\{1\\}\\)", REG_BADRPT, 0, 0, 0},
    {BASIC, "", REG_EMPTY, 0, 0, 0},
    {BASIC, "\\(\\)", 0, "a", 0, 0},
    {BASIC, "\\(a", REG_EPAREN, 0, 0, 0},
    {BASIC, "a\\)", REG_EPAREN, 0, 0, 0},
    {BASIC, "a\\}", REG_EBRACE, 0, 0, 0},
    {BASIC, "a\\{1", REG_EBRACE, 0, 0, 0},
    {BASIC, "a\\{", REG_EBRACE, 0, 0, 0},
    {BASIC, "a\\{1}", REG_EBRACE, 0, 0, 0},
    {BASIC, "a\\{x\\}", REG_BADBR, 0, 0, 0},
    {BASIC, "a\\{,2\\}", REG_BADBR, 0, 0, 0},
    {BASIC, "\\1", REG_ESUBREG, 0, 0, 0},
    {BASIC, "\\(a\\1\\)", REG_ESUBREG, 0, 0, 0},
    {BASIC, "\\(a\\)\\2", REG_ESUBREG, 0, 0, 0},
    {BASIC, "a\\", REG_EESCAPE, 0, 0, 0},
    /* Extended. */
    {EXT, "a|b", 0, "cb", 1, 2},
    {EXT, "(a|ab)(c|bcd)", 0, "abcd", 0, 4},
    {EXT, "a+b?", 0, "caab", 1, 4},
    {EXT, "a{2,3}", 0, "aaaa", 0, 3},
    {EXT, "a{0,1}b", 0, "aab", 1, 3},
    {EXT, "a{", 0, "a{", 0, 2},
    {EXT, "a{,2}", 0, "a{,2}", 0, 5},
    {EXT, "a{x", 0, "a{x", 0, 3},
    {EXT, "a)", 0, "a)", 0, 2},
    {EXT, "()", 0, "a", 0, 0},
    {EXT, "(a)\\1", 0, "aa", 0, 2},
    {EXT, "\\(\\|\\)\\{\\+\\?\\.\\$\\^", 0, "(|){+?.$^", 0, 9},
    {EXT, "a^b", 0, "a^b", -1, 0},
    {EXT, "a$b", 0, "a$b", -1, 0},
    {EXT, "(^a)", 0, "ab", 0, 1},
    {EXT, "x|^a", 0, "ba", -1, 0},
    {EXT, "(^)*a", 0, "ba", 1, 2},
    {EXT, "$*a", 0, "ba", 1, 2},
    {EXT, "a**", REG_BADRPT, 0, 0, 0},
    {EXT, "a+?", REG_BADRPT, 0, 0, 0},
    {EXT, "a{1}{2}", REG_BADRPT, 0, 0, 0},
    {EXT, "*a", REG_BADRPT, 0, 0, 0},
    {EXT, "(*a)", REG_BADRPT, 0, 0, 0},
    {EXT, "a|*b", REG_BADRPT, 0, 0, 0},
    {EXT, "^*", REG_BADRPT, 0, 0, 0},
    {EXT, "{1}a", REG_BADRPT, 0, 0, 0},
    {EXT, "", REG_EMPTY, 0, 0, 0},
    {EXT, "|a", REG_EMPTY, 0, 0, 0},
    {EXT, "a|", REG_EMPTY, 0, 0, 0},
    {EXT, "a||b", REG_EMPTY, 0, 0, 0},
    {EXT, "(|a)", REG_EMPTY, 0, 0, 0},
    {EXT, "(a", REG_EPAREN, 0, 0, 0},
    {EXT, "a{1", REG_EBRACE, 0, 0, 0},
    {EXT, "a{1a}", REG_BADBR, 0, 0, 0},
    {EXT, "a{2,1}", REG_BADBR, 0, 0, 0},
    {EXT, "a{255}", 0, "a", -1, 0},
    {EXT, "a{256}", REG_BADBR, 0, 0, 0},
    {EXT, "a{1,256}", REG_BADBR, 0, 0, 0},
    {EXT, "a{99999999999}", REG_BADBR, 0, 0, 0},
    {EXT, "((a{1,255}){1,255}){1,255}", REG_ESPACE, 0, 0, 0},
    {EXT, "a\\", REG_EESCAPE, 0, 0, 0},
    {EXT, "(a)|b\\2", REG_ESUBREG, 0, 0, 0},
    /* Brackets. */
    {EXT, "[abc]", 0, "xb", 1, 2},
    {EXT, "[^abc]", 0, "abx", 2, 3},
    {EXT, "[]a]", 0, "]", 0, 1},
    {EXT, "[^]a]", 0, "]ab", 2, 3},
    {EXT, "[a-]", 0, "-", 0, 1},
    {EXT, "[-a]", 0, "-", 0, 1},
    {EXT, "[%--]", 0, "-", 0, 1},
    {EXT, "[--/]", 0, ".", 0, 1},
    {EXT, "[a\\]", 0, "\\", 0, 1},
    {EXT, "[a^]", 0, "^", 0, 1},
    {EXT, "[.*$(]+", 0, "a.*$(", 1, 5},
    {EXT, "[[:digit:][:upper:]]+", 0, "aX9z", 1, 3},
    {EXT, "[^[:alpha:]]", 0, "ab1", 2, 3},
    {EXT, "[[=a=]b]+", 0, "xabc", 1, 3},
    {EXT, "[[.hyphen.]a]+", 0, "b-a", 1, 3},
    {EXT, "[[.space.]-[.tilde.]]", 0, "\ta", 1, 2},
    {EXT, "[[.a.]-c]+", 0, "xabcd", 1, 4},
    {EXT, "[[.].]]", 0, "]", 0, 1},
    {EXT, "[[.NUL.][.DEL.]]", 0, "a\x7f", 1, 2},
    {EXT, "[\x80-\xff]+", 0, "a\xe9\xff", 1, 3},
    {EXT, "[", REG_EBRACK, 0, 0, 0},
    {EXT, "[]", REG_EBRACK, 0, 0, 0},
    {EXT, "[a", REG_EBRACK, 0, 0, 0},
    {EXT, "[a-", REG_EBRACK, 0, 0, 0},
    {EXT, "[[:digit:]", REG_EBRACK, 0, 0, 0},
    {EXT, "[[:digit]", REG_EBRACK, 0, 0, 0},
    {EXT, "[[.a]", REG_EBRACK, 0, 0, 0},
    {EXT, "[[:digits:]]", REG_ECTYPE, 0, 0, 0},
    {EXT, "[[::]]", REG_ECTYPE, 0, 0, 0},
    {EXT, "[[.nothing.]]", REG_ECOLLATE, 0, 0, 0},
    {EXT, "[[=ab=]]", REG_ECOLLATE, 0, 0, 0},
    {EXT, "[b-a]", REG_ERANGE, 0, 0, 0},
    {EXT, "[a-c-e]", REG_ERANGE, 0, 0, 0},
    {EXT, "[a-[:digit:]]", REG_ERANGE, 0, 0, 0},
    {EXT, "[[:digit:]-z]", REG_ERANGE, 0, 0, 0},
    /* Words. */
    {EXT, "[[:<:]]b", 0, "ab b", 3, 4},
    {EXT, "a[[:>:]]", 0, "ab_a a", 3, 4},
    {BASIC, "[[:<:]]ab[[:>:]]", 0, "abc ab", 4, 6},
    {EXT, "[[:<:]]", 0, " _", 1, 1},
    {EXT, "x[[:<:]]", 0, "x x", -1, 0},
    {EXT, "[[:<:]", REG_ECTYPE, 0, 0, 0},
    {EXT, "[a[:<:]]", REG_ECTYPE, 0, 0, 0},
    /* Literal. */
    {LIT, "a*(b)\\[", 0, "xa*(b)\\[", 1, 8},
    {LIT | REG_ICASE, "A*", 0, "xa*", 1, 3},
    {LIT, "", REG_EMPTY, 0, 0, 0},
    {LIT | EXT, "a", REG_INVARG, 0, 0, 0},
    /* Case. */
    {EXT | REG_ICASE, "aBc", 0, "xAbC", 1, 4},
    {EXT | REG_ICASE, "[^a]", 0, "aAb", 2, 3},
    {EXT | REG_ICASE, "[b-y]+", 0, "aBCz", 1, 3},
    {EXT | REG_ICASE, "[[:upper:]]+", 0, "1ab", 1, 3},
    {EXT | REG_ICASE, "(a)\\1", 0, "aA", 0, 2},
    /* Newlines. */
    {EXT, "^b", 0, "a\nb", -1, 0},
    {EXT | REG_NEWLINE, "^b$", 0, "a\nb\nc", 2, 3},
    {EXT, "a.b", 0, "a\nb", 0, 3},
    {EXT | REG_NEWLINE, "a.b", 0, "a\nb", -1, 0},
    {EXT | REG_NEWLINE, "[^x]+", 0, "a\nb", 0, 1},
    {EXT | REG_NEWLINE, "a[\n]b", 0, "a\nb", 0, 3},
};

static void test_grammar(void)
{
    for (unsigned i = 0; i < sizeof grammar / sizeof *grammar; ++i) {
        regex_t expression;
        regmatch_t match = {-1, 0};
        check_label = grammar[i].pattern;
        CHECK_INT(regcomp(&expression, grammar[i].pattern, grammar[i].flags), grammar[i].code);
        if (grammar[i].code) {
            CHECK_INT(expression.re_magic, 0);
            continue;
        }
        CHECK_INT(expression.re_magic, 0xF265);
        int due = grammar[i].start < 0 ? REG_NOMATCH : 0;
        CHECK_INT(regexec(&expression, grammar[i].text, 1, &match, 0), due);
        CHECK_INT(match.rm_so, grammar[i].start);
        if (!due) CHECK_INT(match.rm_eo, grammar[i].end);
        regfree(&expression);
    }
    check_label = "";
}

static void test_collating_names(void)
{
    static const char *names[] = {
        "NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL", "backspace", "tab", "newline",
        "vertical-tab", "form-feed", "carriage-return", "SO", "SI", "DLE", "DC1", "DC2", "DC3",
        "DC4", "NAK", "SYN", "ETB", "CAN", "EM", "SUB", "ESC", "IS4", "IS3", "IS2", "IS1", "space",
        "exclamation-mark", "quotation-mark", "number-sign", "dollar-sign", "percent-sign",
        "ampersand", "apostrophe", "left-parenthesis", "right-parenthesis", "asterisk", "plus-sign",
        "comma", "hyphen", "period", "slash", "zero", "one", "two", "three", "four", "five", "six",
        "seven", "eight", "nine", "colon", "semicolon", "less-than-sign", "equals-sign",
        "greater-than-sign", "question-mark", "commercial-at"};
    static const struct { const char *name; int code; } others[] = {
        {"alert", 7}, {"BS", 8}, {"HT", 9}, {"LF", 10}, {"VT", 11}, {"FF", 12}, {"CR", 13},
        {"FS", 28}, {"GS", 29}, {"RS", 30}, {"US", 31}, {"hyphen-minus", 45}, {"full-stop", 46},
        {"solidus", 47}, {"left-square-bracket", 91}, {"backslash", 92}, {"reverse-solidus", 92},
        {"right-square-bracket", 93}, {"circumflex", 94}, {"circumflex-accent", 94},
        {"underscore", 95}, {"low-line", 95}, {"grave-accent", 96}, {"left-brace", 123},
        {"left-curly-bracket", 123}, {"vertical-line", 124}, {"right-brace", 125},
        {"right-curly-bracket", 125}, {"tilde", 126}, {"DEL", 127}};
    unsigned count = sizeof names / sizeof *names;
    CHECK_INT(count + sizeof others / sizeof *others, 95);
    for (unsigned i = 0; i < 95; ++i) {
        const char *name = i < count ? names[i] : others[i - count].name;
        int code = i < count ? (int)i : others[i - count].code;
        char pattern[64], text[256];
        regex_t expression;
        regmatch_t match = {0, 256};
        sprintf(pattern, "[[.%s.]]", name);
        check_label = pattern;
        for (int c = 0; c < 256; ++c) text[c] = (char)c;
        CHECK_INT(regcomp(&expression, pattern, REG_EXTENDED), 0);
        CHECK_INT(regexec(&expression, text, 1, &match, REG_STARTEND), 0);
        CHECK_INT(match.rm_so, code);
        match.rm_so = code + 1;
        match.rm_eo = 256;
        CHECK_INT(regexec(&expression, text, 1, &match, REG_STARTEND), REG_NOMATCH);
        regfree(&expression);
    }
    check_label = "";
}

static void test_pattern_end(void)
{
    static const char pattern[] = "a\0b|c";
    regex_t expression;
    regmatch_t match = {0, 5};
    expression.re_endp = pattern + 3;
    CHECK_INT(regcomp(&expression, pattern, REG_EXTENDED | REG_PEND), 0);
    CHECK_INT(regexec(&expression, "xa\0bc", 1, &match, REG_STARTEND), 0);
    CHECK_INT(match.rm_so, 1);
    CHECK_INT(match.rm_eo, 4);
    CHECK_INT(regexec(&expression, "xa", 1, &match, 0), REG_NOMATCH);
    regfree(&expression);
    expression.re_endp = pattern - 1;
    CHECK_INT(regcomp(&expression, pattern, REG_PEND), REG_INVARG);
    regfree(&expression); /* nothing to do */
    expression.re_endp = pattern;
    CHECK_INT(regcomp(&expression, pattern, REG_PEND), REG_EMPTY);
}

static void test_error_texts(void)
{
    static const char *texts[] = {"No error", "Regexec() failed to match", "Invalid regular expression",
        "Invalid collating element", "Invalid character class", "Trailing backslash (\\)",
        "Invalid backreference number", "Brackets ([ ]) not balanced", "Parentheses not balanced",
        "Braces not balanced", "Invalid repetition count(s)", "Invalid character range",
        "Out of memory", "Repetition-operator operand invalid", "Empty (sub)expression",
        "Internal error", "Invalid argument to regex routine"};
    char buffer[64];
    for (int code = -1; code <= 17; ++code) {
        const char *due = code < 0 || code > 16 ? "*** unknown regexp error code ***" : texts[code];
        CHECK_INT(regerror(code, NULL, buffer, sizeof buffer), strlen(due) + 1);
        CHECK_STR(buffer, due);
    }
    CHECK_INT(regerror(REG_ESPACE, NULL, NULL, 0), 14);
    memset(buffer, 'x', sizeof buffer);
    CHECK_INT(regerror(REG_ESPACE, NULL, buffer, 4), 14);
    CHECK_MEM(buffer, "Out\0x", 5);
    CHECK_INT(regerror(REG_ESPACE, NULL, buffer, 14), 14);
    CHECK_STR(buffer, "Out of memory");
}

/* The magic words guard the record. */
static void test_validity(void)
{
    regex_t expression, stale;
    regmatch_t match;
    CHECK_INT(regcomp(&expression, "(a)((b)c)", REG_EXTENDED), 0);
    CHECK_INT(expression.re_nsub, 3);
    CHECK_INT(*(int *)expression.re_g, 0xD245);
    stale = expression;
    stale.re_magic = 0;
    CHECK_INT(regexec(&stale, "abc", 1, &match, 0), REG_BADPAT);
    regfree(&stale); /* leaves it alone */
    CHECK_INT(regexec(&expression, "abc", 1, &match, 0), 0);
    *(int *)expression.re_g = 1;
    CHECK_INT(regexec(&expression, "abc", 1, &match, 0), REG_BADPAT);
    regfree(&expression);
    CHECK_INT(expression.re_magic, 0xF265);
    *(int *)expression.re_g = 0xD245;
    regfree(&expression);
    CHECK_INT(expression.re_magic, 0);
    CHECK_INT(regexec(&expression, "abc", 1, &match, 0), REG_BADPAT);
    regfree(&expression);
    CHECK_INT(__heap_validate(NULL), 1);
}

int main(void)
{
    test_grammar();
    test_collating_names();
    test_pattern_end();
    test_error_texts();
    test_validity();
    return check_done();
}
