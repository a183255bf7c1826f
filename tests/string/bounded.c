/* options: -fno-builtin */
/* The bounds-checked functions: every constraint, what is stored after a violation, and that the
   handler learns of it. Narrow and wide. */
#ifndef WIDE_PASS
#define WIDE_PASS
#include "check.h"

#include <stdlib.h>

static int handled;
static void handler(const char *message, void *instance, errno_t error)
{
    const char *due = error == EINVAL ? "Invalid argument" : "Range error";
    ++handled;
    CHECK_STR(message, due);
    CHECK(instance == NULL);
}

enum { HUGE = 0x80000000 };
#define NOWHERE 99 /* a null pointer */

#include "bounded.c"
#define WIDE
#include "bounded.c"

static void memory_fill(void)
{
    static const struct {
        rsize_t room, count;
        errno_t due;
        const char *after;
    } cases[] = {
        {4, 3, 0, "zzz456"}, {4, 4, 0, "zzzz56"}, {4, 0, 0, "123456"},
        {4, 5, ERANGE, "zzzz56"}, {4, HUGE, EINVAL, "zzzz56"}, {HUGE, 3, EINVAL, "123456"},
        {0, 0, 0, "123456"}, {0, 1, ERANGE, "123456"},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        char text[] = "123456";
        handled = 0;
        CHECK_INT(memset_s(text, cases[i].room, 'z', cases[i].count), cases[i].due);
        CHECK_STR(text, cases[i].after);
        CHECK_INT(handled, cases[i].due != 0);
    }
    handled = 0;
    CHECK_INT(memset_s(NULL, 4, 'z', 2), EINVAL);
    CHECK_INT(handled, 1);
}

int main(void)
{
    set_constraint_handler_s(handler);
    memory_fill();
    narrow_all();
    wide_all();
    return check_done();
}

#else
#include "string/both.h"

/* A buffer of 16 characters holds "1234", its terminator, and '#' in the rest. The target and the
   source are offsets in it; a source of -1 is the text given. */
static void CASES(fresh)(CHAR *buffer)
{
    static const CHAR start[] = T("1234\0##########");
    memcpy(buffer, start, sizeof start);
}

typedef struct {
    const char *name;
    int target;
    rsize_t room;
    const CHAR *text;
    int source;
    rsize_t count;
    errno_t due;
    const CHAR *after; /* the first eight characters of the buffer */
} CASES(copy_case);

typedef errno_t (*CASES(copier))(CHAR *to, rsize_t room, const CHAR *from, rsize_t count);

static void CASES(run)(const CASES(copy_case) *cases, size_t count, CASES(copier) copier)
{
    for (size_t i = 0; i < count; ++i) {
        CHAR buffer[16];
        const CHAR *from = cases[i].source == NOWHERE ? NULL : buffer + cases[i].source;
        CASES(fresh)(buffer);
        check_label = cases[i].name;
        handled = 0;
        CHECK_INT(copier(cases[i].target == NOWHERE ? NULL : buffer + cases[i].target, cases[i].room,
                         cases[i].text ? cases[i].text : from, cases[i].count),
                  cases[i].due);
        CHECK_MEM(buffer, cases[i].after, 8 * sizeof(CHAR));
        CHECK_INT(handled, cases[i].due != 0);
    }
    check_label = "";
}

static const CASES(copy_case) CASES(memory_cases)[] = {
    {"copy", 0, 3, T("ab"), 0, 2, 0, T("ab34\0###")},
    {"full", 0, 3, T("abc"), 0, 3, 0, T("abc4\0###")},
    {"nothing", 0, 0, T("abc"), 0, 0, 0, T("1234\0###")},
    {"side by side", 0, 2, NULL, 2, 2, 0, T("3434\0###")},
    {"null target", NOWHERE, 3, T("abc"), 0, 3, EINVAL, T("1234\0###")},
    {"null source", 0, 3, NULL, NOWHERE, 2, EINVAL, T("\0\0\0004\0###")},
    {"huge room", 0, HUGE, T("ab"), 0, 2, EINVAL, T("1234\0###")},
    {"huge count", 0, 2, T("ab"), 0, HUGE, EINVAL, T("\0\00034\0###")},
    {"too many", 0, 3, T("abcd"), 0, 4, ERANGE, T("\0\0\0004\0###")},
    {"no room", 0, 0, T("abcd"), 0, 1, ERANGE, T("1234\0###")},
};
static const CASES(copy_case) CASES(overlap_cases)[] = {
    {"source inside", 0, 4, NULL, 2, 3, EINVAL, T("\0\0\0\0\0###")},
    {"target inside", 1, 3, NULL, 0, 2, EINVAL, T("1\0\0\0\0###")},
    {"itself", 0, 4, NULL, 0, 4, EINVAL, T("\0\0\0\0\0###")},
};
static const CASES(copy_case) CASES(moved_cases)[] = {
    {"source inside", 0, 4, NULL, 2, 3, 0, T("34\0004\0###")},
    {"target inside", 1, 3, NULL, 0, 2, 0, T("1124\0###")},
};

static errno_t CASES(copy_memory)(CHAR *to, rsize_t room, const CHAR *from, rsize_t count)
{
    return MEM(cpy_s)(to, room, from, count);
}
static errno_t CASES(move_memory)(CHAR *to, rsize_t room, const CHAR *from, rsize_t count)
{
    return MEM(move_s)(to, room, from, count);
}

/* What the four string functions have in common; the target of the appending ones is empty then. */
static const CASES(copy_case) CASES(copy_cases)[] = {
    {"copy", 0, 8, T("ab"), 0, 5, 0, T("ab\0004\0###")},
    {"just fits", 0, 3, T("ab"), 0, 5, 0, T("ab\0004\0###")},
    {"empty", 0, 1, T(""), 0, 5, 0, T("\000234\0###")},
    {"does not fit", 0, 2, T("ab"), 0, 5, ERANGE, T("\000234\0###")},
    {"far too long", 0, 2, T("abcdefghijklmnopqrstuvwxyz"), 0, 50, ERANGE, T("\000234\0###")},
    {"null target", NOWHERE, 8, T("ab"), 0, 5, EINVAL, T("1234\0###")},
    {"null source", 0, 8, NULL, NOWHERE, 5, EINVAL, T("\000234\0###")},
    {"no room", 0, 0, T("ab"), 0, 5, EINVAL, T("1234\0###")},
    {"huge room", 0, HUGE, T("ab"), 0, 5, EINVAL, T("1234\0###")},
    {"source behind", 0, 8, NULL, 3, 5, 0, T("4\00034\0###")},
    {"source just behind", 0, 8, NULL, 1, 5, EINVAL, T("\000234\0###")},
    {"target inside", 2, 8, NULL, 0, 5, EINVAL, T("12\0004\0###")},
};
static const CASES(copy_case) CASES(bounded_copy_cases)[] = {
    {"cut", 0, 8, T("abc"), 0, 2, 0, T("ab\0004\0###")},
    {"cut to fit", 0, 3, T("abcdef"), 0, 2, 0, T("ab\0004\0###")},
    {"cut too late", 0, 3, T("abcdef"), 0, 3, ERANGE, T("\000234\0###")},
    {"nothing", 0, 1, T("abcdef"), 0, 0, 0, T("\000234\0###")},
    {"huge count", 0, 8, T("ab"), 0, HUGE, EINVAL, T("\000234\0###")},
    {"terminator beyond what is read", 0, 8, NULL, 2, 1, 0, T("3\00034\0###")},
    {"terminator on what is read", 0, 8, NULL, 2, 2, EINVAL, T("\000234\0###")},
};
static const CASES(copy_case) CASES(append_cases)[] = {
    {"append", 0, 8, T("ab"), 0, 5, 0, T("1234ab\0#")},
    {"just fits", 0, 7, T("ab"), 0, 5, 0, T("1234ab\0#")},
    {"does not fit", 0, 6, T("ab"), 0, 5, ERANGE, T("\000234\0###")},
    {"unterminated", 0, 4, T("ab"), 0, 5, EINVAL, T("\000234\0###")},
    {"itself", 0, 16, NULL, 0, 5, EINVAL, T("\000234\0###")},
    {"null source", 0, 8, NULL, NOWHERE, 5, EINVAL, T("\000234\0###")},
    {"null target", NOWHERE, 8, T("ab"), 0, 5, EINVAL, T("1234\0###")},
    {"no room", 0, 0, T("ab"), 0, 5, EINVAL, T("1234\0###")},
    {"huge room", 0, HUGE, T("ab"), 0, 5, EINVAL, T("1234\0###")},
    {"to the end", 4, 3, T("ab"), 0, 5, 0, T("1234ab\0#")},
};
static const CASES(copy_case) CASES(bounded_append_cases)[] = {
    {"cut", 0, 7, T("abcd"), 0, 2, 0, T("1234ab\0#")},
    {"cut too late", 0, 7, T("abcd"), 0, 3, ERANGE, T("\000234\0###")},
    {"nothing", 0, 5, T("abcd"), 0, 0, 0, T("1234\0###")},
    {"huge count", 0, 8, T("ab"), 0, HUGE, EINVAL, T("\000234\0###")},
};

static errno_t CASES(copy)(CHAR *to, rsize_t room, const CHAR *from, rsize_t count)
{
    return STR(cpy_s)(to, room, from);
}
static errno_t CASES(copy_bounded)(CHAR *to, rsize_t room, const CHAR *from, rsize_t count)
{
    return STR(ncpy_s)(to, room, from, count);
}
static errno_t CASES(append)(CHAR *to, rsize_t room, const CHAR *from, rsize_t count)
{
    return STR(cat_s)(to, room, from);
}
static errno_t CASES(append_bounded)(CHAR *to, rsize_t room, const CHAR *from, rsize_t count)
{
    return STR(ncat_s)(to, room, from, count);
}

/* ---- Tokens ---- */

static void CASES(tokens)(void)
{
    CHAR text[] = T(",,ab,;c"), *position = NULL;
    rsize_t size = COUNT(text);
    handled = 0;
    CHECK_TEXT(STR(tok_s)(text, &size, T(","), &position), T("ab"));
    CHECK_INT(size, 3);
    CHECK(position == text + 5);
    CHECK_TEXT(STR(tok_s)(NULL, &size, T(";"), &position), T("c"));
    CHECK_INT(size, 1);
    CHECK(STR(tok_s)(NULL, &size, T(";"), &position) == NULL);
    CHECK(STR(tok_s)(NULL, &size, T(";"), &position) == NULL);
    CHECK_INT(size, 1);
    CHECK_INT(handled, 0);
}

static void CASES(bad_tokens)(void)
{
    static const struct {
        const char *name;
        int text, size, delimiters, place, position;
        rsize_t room;
        int found;
    } cases[] = {
        {"first", 1, 1, 1, 1, 0, 8, 1},
        {"null size", 1, 0, 1, 1, 0, 8, 0},
        {"null delimiters", 1, 1, 0, 1, 0, 8, 0},
        {"null place", 1, 1, 1, 0, 0, 8, 0},
        {"no string and no position", 0, 1, 1, 1, 0, 8, 0},
        {"position", 0, 1, 1, 1, 1, 8, 1},
        {"huge size", 1, 1, 1, 1, 0, HUGE, 0},
        {"no size", 1, 1, 1, 1, 0, 0, 0},
        {"ends among the delimiters", 1, 1, 1, 1, 0, 2, 0},
        {"ends in the token", 1, 1, 1, 1, 0, 4, 0},
        {"ends behind the token's end", 1, 1, 1, 1, 0, 5, 1},
    };
    for (size_t i = 0; i < COUNT(cases); ++i) {
        CHAR text[] = T(",,ab,;c"), *start = cases[i].position ? text : NULL, *position = start;
        rsize_t size = cases[i].room;
        CHAR *got;
        check_label = cases[i].name;
        handled = 0;
        got = STR(tok_s)(cases[i].text ? text : NULL, cases[i].size ? &size : NULL,
                         cases[i].delimiters ? T(",") : NULL, cases[i].place ? &position : NULL);
        CHECK(got == (cases[i].found ? text + 2 : NULL));
        CHECK_INT(handled, !cases[i].found);
        if (cases[i].found) continue;
        CHECK_TEXT(text, T(",,ab,;c"));
        CHECK(position == start);
        CHECK_INT(size, cases[i].room);
    }
    check_label = "";
}

static void CASES(lengths)(void)
{
    handled = 0;
    CHECK_INT(STR(nlen_s)(NULL, 5), 0);
    CHECK_INT(STR(nlen_s)(T("abc"), 5), 3);
    CHECK_INT(STR(nlen_s)(T("abc"), 3), 3);
    CHECK_INT(STR(nlen_s)(T("abc"), 2), 2);
    CHECK_INT(STR(nlen_s)(T("abc"), 0), 0);
    CHECK_INT(STR(nlen_s)(T("abc"), (size_t)-1), 3);
    CHECK_INT(handled, 0);
}

static void CASES(all)(void)
{
#define RUN(cases, copier) CASES(run)(CASES(cases), COUNT(CASES(cases)), CASES(copier))
    RUN(memory_cases, copy_memory);
    RUN(overlap_cases, copy_memory);
    RUN(memory_cases, move_memory);
    RUN(moved_cases, move_memory);
    RUN(copy_cases, copy);
    RUN(copy_cases, copy_bounded);
    RUN(bounded_copy_cases, copy_bounded);
    RUN(append_cases, append);
    RUN(append_cases, append_bounded);
    RUN(bounded_append_cases, append_bounded);
    CASES(tokens)();
    CASES(bad_tokens)();
    CASES(lengths)();
}
#endif
