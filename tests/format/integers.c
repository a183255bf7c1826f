/* Integer conversions with random directives and values, against the rule spelt out one character at
   a time. */
#include "check.h"

#include <stdlib.h>

static int (*volatile narrow)(char *, size_t, const char *, ...) = snprintf;
static int (*volatile wide)(wchar_t *, size_t, const wchar_t *, ...) = snwprintf;

static unsigned random_state = 12345;
static unsigned random_below(unsigned limit)
{
    random_state = random_state * 1103515245u + 12345u;
    return (random_state >> 8) % limit;
}

/* All magnitudes are equally likely. */
static unsigned long long random_value(void)
{
    unsigned long long bits = 0;
    for (int i = 0; i < 4; ++i) bits = bits << 16 | random_below(65536);
    return bits >> random_below(64);
}

struct directive {
    int left, plus, blank, alternate, zero;
    int width;     /* 0: none */
    int precision; /* -1: none */
    char letter;
};

static char *append(char *to, char c, int count)
{
    while (count-- > 0) *to++ = c;
    return to;
}

/* What is due for a value whose sign, if it has one, is already known. */
static int due_text(char *to, const struct directive *d, unsigned long long magnitude, int negative)
{
    const char *digit_set = d->letter == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
    unsigned base = d->letter == 'o' ? 8 : d->letter == 'x' || d->letter == 'X' ? 16 : 10;
    char prefix[3] = "", digits[32], *start = to;
    int count = 0, zeros = 0, padding;
    unsigned long long rest;
    if (d->letter == 'd') strcpy(prefix, negative ? "-" : d->plus ? "+" : d->blank ? " " : "");
    if (base == 16 && d->alternate && magnitude) sprintf(prefix, "0%c", d->letter);
    if (magnitude == 0 && d->precision != 0) digits[count++] = '0';
    for (rest = magnitude; rest; rest /= base) digits[count++] = digit_set[rest % base];
    if (base == 8 && d->alternate && count && digits[count - 1] != '0') digits[count++] = '0';
    if (count < d->precision) zeros = d->precision - count;
    else if (d->precision < 0 && d->zero && !d->left)
        zeros = d->width - (int)strlen(prefix) - count;
    if (zeros < 0) zeros = 0;
    padding = d->width - (int)strlen(prefix) - zeros - count;
    if (!d->left) to = append(to, ' ', padding);
    to = append(to, prefix[0], prefix[0] != 0);
    to = append(to, prefix[1], prefix[0] && prefix[1]);
    to = append(to, '0', zeros);
    while (count) *to++ = digits[--count];
    if (d->left) to = append(to, ' ', padding);
    *to = 0;
    return (int)(to - start);
}

static void make_format(char *to, const struct directive *d, const char *length)
{
    *to++ = '%';
    if (d->zero) *to++ = '0';
    if (d->left) *to++ = '-';
    if (d->plus) *to++ = '+';
    if (d->blank) *to++ = ' ';
    if (d->alternate) *to++ = '#';
    if (d->width) to += sprintf(to, "%d", d->width);
    if (d->precision >= 0) to += sprintf(to, ".%d", d->precision);
    sprintf(to, "%s%c", length, d->letter);
}

static struct directive random_directive(void)
{
    struct directive d = {0};
    if (random_below(3)) {
        d.left = !random_below(4);
        d.plus = !random_below(4);
        d.blank = !random_below(4);
        d.alternate = !random_below(4);
        d.zero = !random_below(3);
        if (random_below(2)) d.width = (int)random_below(50);
    }
    d.precision = random_below(3) ? -1 : (int)random_below(40);
    d.letter = "duxXo"[random_below(5)];
    return d;
}

static void check_one(int is_long)
{
    struct directive d = random_directive();
    unsigned long long value = random_below(20) ? random_value() : 0;
    char format[40], due[100], got[100];
    wchar_t wide_format[40], wide_got[100];
    int negative, length, i, same;
    if (random_below(2)) value = 0 - value;
    if (!is_long) value = d.letter == 'd' ? (unsigned long long)(int)value : (unsigned)value;
    negative = d.letter == 'd' && (long long)value < 0;
    make_format(format, &d, is_long ? "ll" : "");
    for (i = 0; (wide_format[i] = (wchar_t)format[i]); ++i) {}
    length = due_text(due, &d, negative ? 0 - value : value, negative);
    check_label = format;
    if (is_long) {
        CHECK_INT(narrow(got, sizeof got, format, value), length);
        CHECK_INT(wide(wide_got, 100, wide_format, value), length);
    } else {
        CHECK_INT(narrow(got, sizeof got, format, (unsigned)value), length);
        CHECK_INT(wide(wide_got, 100, wide_format, (unsigned)value), length);
    }
    CHECK_STR(got, due);
    for (same = 0; same <= length && wide_got[same] == (unsigned char)due[same]; ++same) {}
    CHECK_INT(same, length + 1);
    /* Cut anywhere, the text is the same as far as it goes. */
    i = (int)random_below((unsigned)length + 2);
    memset(got, '~', sizeof got);
    if (is_long) narrow(got, (size_t)i, format, value);
    else narrow(got, (size_t)i, format, (unsigned)value);
    if (i) {
        CHECK_MEM(got, due, (size_t)(i - 1 < length ? i - 1 : length));
        CHECK_INT(got[i - 1 < length ? i - 1 : length], 0);
    }
    CHECK_INT(got[i], '~');
    check_label = "";
}

int main(void)
{
    for (int i = 0; i < 20000 && check_failed < 20; ++i) check_one(i % 2);
    return check_done();
}
