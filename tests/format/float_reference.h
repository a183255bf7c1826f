/*
 * float_reference.h - floating-point conversions step by step, one digit and one character at a time,
 * to check the library's against. No width, no flags but #; the precision is -1 when there is none.
 */
#ifndef FLOAT_REFERENCE_H
#define FLOAT_REFERENCE_H

#include <stdint.h>
#include <stdio.h>
#include <string.h>

struct reference {
    char digits[64]; /* place 0 takes a carry; values, not characters */
    int first, count, exponent;
};

/* |value| = fraction * 2^exponent with the fraction in [0.5, 1) */
static double reference_split(double value, int *exponent)
{
    *exponent = 0;
    while (value >= 1) value /= 2, ++*exponent;
    while (value < 0.5) value *= 2, --*exponent;
    return value;
}

/* Round half up at `place`, in a base, and drop the digits that have become worthless. */
static void reference_round(struct reference *r, int place, int generated, int base, int carry)
{
    int up;
    if (place > generated) place = generated;
    r->count = place;
    if (place < 0) return;
    up = place < generated && r->digits[r->first + place] >= base / 2;
    while (r->count > 0 && r->digits[r->first + r->count - 1] == (up ? base - 1 : 0)) --r->count;
    if (!up) return;
    if (r->count == 0) {
        r->digits[--r->first] = 0;
        r->count = 1;
        r->exponent += carry;
    }
    ++r->digits[r->first + r->count - 1];
}

static void reference_decimal(struct reference *r, double x, char letter, int precision)
{
    static const double tens[] = {1e1, 1e2, 1e4, 1e8, 1e16, 1e32, 1e64, 1e128, 1e256};
    int e, t, n, wanted, generated = 0, i;
    volatile double value = x, power = 1;
    reference_split(x, &e);
    t = e * 30103 / 100000 - 4;
    if (t < 0) {
        n = (3 - t) / 4 * 4;
        t = -n;
        for (i = 0; i < 9; ++i)
            if (n >> i & 1) value = value * tens[i];
    } else if (t > 0) {
        t = t / 4 * 4;
        for (i = 0; i < 9; ++i)
            if (t >> i & 1) power = power * tens[i];
        value = value / power;
    }
    wanted = (letter == 'f' ? t + 10 : 6) + precision;
    if (wanted > 19) wanted = 19;
    while (wanted > 0 && value > 0) {
        long long low = (long long)value;
        wanted -= 8;
        if (wanted > 0) {
            value = value - (double)low;
            value = value * 100000000;
        }
        for (i = 8; i > 0; --i) {
            r->digits[generated + i] = (char)(low % 10);
            low /= 10;
        }
        generated += 8;
    }
    r->first = 1;
    r->exponent = t + 7;
    while (generated > 0 && r->digits[r->first] == 0) ++r->first, --generated, --r->exponent;
    n = precision + (letter == 'f' ? r->exponent + 1 : letter == 'e' ? 1 : 0);
    reference_round(r, n, generated, 10, 1);
}

static void reference_hex(struct reference *r, double x, int precision)
{
    int kept = precision >= 0 && precision + 1 < 33 ? precision + 1 : 33, generated = 0, wanted = kept + 1, i;
    volatile double value = reference_split(x, &r->exponent);
    r->exponent -= 4;
    while (wanted > 0 && value > 0) {
        long long low;
        value = value * 268435456;
        low = (long long)value;
        wanted -= 7;
        if (wanted > 0) value = value - (double)low;
        for (i = 7; i > 0; --i) {
            r->digits[generated + i] = (char)(low & 15);
            low >>= 4;
        }
        generated += 7;
    }
    r->first = 1;
    reference_round(r, kept, generated, 16, 4);
}

/* The text of a conversion `letter` of e, f, g, a, into `to`; the value is finite. */
static void reference_format(char *to, char letter, int alternative, int precision, double value)
{
    struct reference r = {{0}, 1, 0, 0};
    int negative = __builtin_signbit(value), i, k, left;
    if (negative) {
        *to++ = '-';
        value = -value;
    }
    if (letter == 'a') {
        memcpy(to, "0x", 2);
        to += 2;
        if (value > 0) reference_hex(&r, value, precision);
        if (precision < 0) precision = r.count > 0 ? r.count - 1 : 0;
    } else {
        if (precision < 0) precision = 6;
        if (precision == 0 && letter == 'g') precision = 1;
        if (value > 0) reference_decimal(&r, value, letter, precision);
    }
    for (i = 0; i < r.count; ++i)
        r.digits[r.first + i] = "0123456789abcdef"[(int)r.digits[r.first + i]];
    if (r.count < 1) {
        r.count = 1;
        r.digits[r.first] = '0';
    }
    if (letter == 'g') {
        if (r.exponent < -4 || r.exponent >= precision) {
            if (precision > r.count && !alternative) precision = r.count;
            precision = precision > 0 ? precision - 1 : 0;
            letter = 'e';
        } else {
            if (!alternative && r.count < precision) precision = r.count;
            precision -= r.exponent + 1;
            if (precision < 0) precision = 0;
        }
    }
    if (letter == 'e' || letter == 'a') {
        *to++ = r.digits[r.first];
        if (precision > 0 || alternative) *to++ = '.';
        for (i = 1; i <= precision; ++i) *to++ = i < r.count ? r.digits[r.first + i] : '0';
        if (letter == 'e') sprintf(to, "e%c%02d", r.exponent < 0 ? '-' : '+', r.exponent < 0 ? -r.exponent : r.exponent);
        else sprintf(to, "p%+d", r.exponent);
        return;
    }
    k = r.exponent + 1; /* integer digits */
    if (k < 1) *to++ = '0';
    for (i = 0; i < k; ++i) *to++ = i < r.count ? r.digits[r.first + i] : '0';
    if (precision > 0 || alternative) *to++ = '.';
    for (left = precision, i = k; left > 0; --left, ++i)
        *to++ = i >= 0 && i < r.count ? r.digits[r.first + i] : '0';
    *to = '\0';
}

#endif
