/* options: -fno-builtin */
/*
 * Texts of every short length against a guard page, at its beginning and at its end: nothing is
 * read or written beyond. Narrow, wide, and wide at odd addresses.
 */
#ifndef WIDE_PASS
#define WIDE_PASS
#include "check.h"
#include "guard.h"

#include <stdint.h>

static char *left_page, *right_page;
static int sign(int value) { return (value > 0) - (value < 0); }

#include "edges.c"
#define WIDE
#include "edges.c"

int main(void)
{
    char label[64];
    left_page = guard_pages(1);
    right_page = guard_pages(1);
    CHECK(left_page && right_page);
    if (!left_page || !right_page) return check_done();
    check_label = label;
    for (int length = 0; length < 300; ++length)
        for (int place = 0; place < 4; ++place) {
            sprintf(label, "length %d, place %d", length, place);
            narrow_edge(length, place & 1, place & 2, 0);
            wide_edge(length, place & 1, place & 2, 0);
            wide_edge(length, place & 1, place & 2, 1);
        }
    check_label = "";
    return check_done();
}

#else
#include "string/both.h"

/* At the beginning or the end of a page; `odd` leaves one byte free there. */
static CHAR *CASES(place)(char *page, size_t count, int at_end, int odd)
{
    size_t size = count * sizeof(CHAR);
    return (CHAR *)(at_end ? page + GUARD_PAGE - size - odd : page + odd);
}

static void CASES(readers)(CHAR *left, CHAR *right, size_t length)
{
    CHAR x[] = T("x");
    CHECK_INT(STR(len)(left), length);
    CHECK_INT(STR(nlen_s)(left, length), length);
    CHECK_INT(STR(nlen_s)(left, SIZE_MAX), length);
    CHECK(STR(chr)(left, 'x') == NULL);
    CHECK(STR(chr)(left, 0) == left + length);
    CHECK(STR(rchr)(left, 'x') == NULL);
    CHECK(MEM(chr)(left, 'x', length) == NULL);
    CHECK(STR(pbrk)(left, T("xyz")) == NULL);
    CHECK_INT(STR(spn)(left, T("abcdefg")), length);
    CHECK_INT(STR(cspn)(left, T("xyz")), length);
    CHECK(STR(str)(left, T("abx")) == NULL);
    CHECK(STR(str)(left, right) == left);
    CHECK(STR(str)(left, x) == NULL);
    CHECK_INT(STR(cmp)(left, right), 0);
    CHECK_INT(STR(ncmp)(left, right, SIZE_MAX), 0);
    CHECK_INT(MEM(cmp)(left, right, length + 1), 0);
    CHECK_INT(EXT(icmp)(left, right), 0);
    if (length == 0) return;
    right[length - 1] = 'x';
    CHECK_INT(sign(STR(cmp)(left, right)), -1);
    CHECK_INT(sign(STR(ncmp)(right, left, length)), 1);
    CHECK_INT(STR(ncmp)(left, right, length - 1), 0);
    CHECK_INT(sign(MEM(cmp)(left, right, length)), -1);
    CHECK(STR(chr)(right, 'x') == right + length - 1);
    CHECK(STR(rchr)(right, 'x') == right + length - 1);
    CHECK(MEM(chr)(right, 'x', SIZE_MAX) == right + length - 1);
    CHECK_INT(STR(cspn)(right, x), length - 1);
    CHECK(STR(str)(right, x) == right + length - 1);
    CHECK(STR(str)(left, right) == NULL);
}

static void CASES(writers)(CHAR *from, CHAR *to, size_t length)
{
    size_t size = (length + 1) * sizeof(CHAR);
    memset(to, '#', size);
    CHECK(STR(cpy)(to, from) == to && memcmp(to, from, size) == 0);
    memset(to, '#', size);
    CHECK(STR(ncpy)(to, from, length + 1) == to && memcmp(to, from, size) == 0);
    to[0] = 0;
    CHECK(STR(cat)(to, from) == to && memcmp(to, from, size) == 0);
    to[0] = 0;
    CHECK(STR(ncat)(to, from, length) == to && memcmp(to, from, size) == 0);
    memset(to, '#', size);
    CHECK(STR(cpy_s)(to, length + 1, from) == 0 && memcmp(to, from, size) == 0);
    to[0] = 0;
    CHECK(STR(cat_s)(to, length + 1, from) == 0 && memcmp(to, from, size) == 0);
    memset(to, '#', size);
    CHECK(MEM(cpy_s)(to, length + 1, from, length + 1) == 0 && memcmp(to, from, size) == 0);
    CHECK(EXT(set)(to, 'q') == to);
    CHECK_INT(STR(spn)(to, T("q")), length);
    CHECK(to[length] == 0);
}

static void CASES(edge)(int length, int left_at_end, int right_at_end, int odd)
{
    size_t count = (size_t)length + 1;
    CHAR *left = CASES(place)(left_page, count, left_at_end, odd);
    CHAR *right = CASES(place)(right_page, count, right_at_end, odd);
    for (int i = 0; i < length; ++i) left[i] = right[i] = (CHAR)("abcdefg"[i % 7]);
    left[length] = right[length] = 0;
    CASES(readers)(left, right, (size_t)length);
    CASES(writers)(left, right, (size_t)length);
}
#endif
