#!/usr/bin/env python3
"""Makes the tables of the elementary functions: src/math/data/{exponential,logarithm,sine,...}.h"""

from mpmath import mp, mpf

from approximate import Header, double, fit, leading, pair, quantized, without_low_word

MAKER = "elementary.py"


def exponential():
    count = 128
    h = Header("exponential.h", "e^x: powers 2^(i/128) with what rounding left of them, relative, and\n"
               "polynomials for e^r - 1.", MAKER)
    step = mp.log(2) / count
    h.constant("exp_steps_per_unit", double(1 / step))
    h.comment("ln 2 / 128 in two pieces; a multiple of the first by 18 bits is exact.")
    first = leading(step, 34)
    h.constant("exp_step_high", first)
    h.constant("exp_step_low", double(step - mpf(first)))
    limit = step * mpf("0.55")
    h.comment("(e^r - 1 - r) / r^2 for |r| up to half a step")
    taylor = lambda r: (mp.expm1(r) - r) / r ** 2 if abs(r) > 1e-20 else mpf(1) / 2
    h.array("exp_tail", fit(taylor, -limit, limit, 60, lambda r: r ** 2))
    h.comment("the same to the precision of float")
    h.array("exp_tail_float", fit(taylor, -limit, limit, 37, lambda r: r ** 2))
    h.comment("(e^x - 1 - x - x^2 / 2) / x^3 for |x| < 1/4")
    cubic = lambda x: (mp.expm1(x) - x - x ** 2 / 2) / x ** 3 if abs(x) > 1e-12 else mpf(1) / 6
    h.array("expm1_tail", fit(cubic, -mpf(1) / 4, mpf(1) / 4, 60, lambda x: x ** 2))
    h.comment("(sinh x - x) / x^3 in x^2, |x| < 1")
    def odd(z):
        x = mp.sqrt(z)
        return (mp.sinh(x) - x) / x ** 3
    h.array("sinh_tail", fit(odd, 0, 1, 59, lambda z: z))
    h.blank()
    h.struct("struct ExponentialEntry {\n    double power, rest;\n};")
    rows = []
    for i in range(count):
        exact = mp.power(2, mpf(i) / count)
        power = double(exact)
        rows.append((power, double((exact - mpf(power)) / exact)))
    h.rows("ExponentialEntry", "exponential_table", rows)
    h.write()


# The cells of the logarithm: 128 of equal width in the representation's upper word, laid so that 1 is
# in the middle of one, and the first begins near sqrt(1/2).
LOG_CELL = 1 << 13
LOG_START = 0x3FF00000 - 74 * LOG_CELL - LOG_CELL * 2 // 3


def value_of_upper_word(word):
    exponent = (word >> 20) - 1023
    return (1 + mpf(word & 0xFFFFF) / 2 ** 20) * mpf(2) ** exponent


def logarithm():
    h = Header("logarithm.h", "Logarithms: 128 cells of z with 1/c in 11 bits and its logarithm to three\n"
               "bases, and polynomials for log(1 + r).", MAKER)
    h.lines.append(f"inline constexpr unsigned log_first_upper_word = 0x{LOG_START:X};")
    bases = [("natural", mp.e), ("binary", mpf(2)), ("decimal", mpf(10))]
    cells, widest = [], mpf(0)
    for i in range(128):
        low = value_of_upper_word(LOG_START + i * LOG_CELL)
        high = value_of_upper_word(LOG_START + (i + 1) * LOG_CELL)
        inverse = mpf(1) if low < 1 < high else mpf(quantized(2 / (low + high), 10))
        widest = max(widest, abs(low * inverse - 1), abs(high * inverse - 1))
        cells.append(inverse)
    limit = widest * mpf("1.01")
    cubic = lambda r: (mp.log1p(r) - r + r ** 2 / 2) / r ** 3 if abs(r) > 1e-12 else mpf(1) / 3
    h.comment("(log(1 + r) - r + r^2 / 2) / r^3, relative to r; and closer, for powers; and for float")
    h.array("log_tail", fit(cubic, -limit, limit, 61, lambda r: r ** 2))
    h.array("log_tail_extended", fit(cubic, -limit, limit, 72, lambda r: r ** 2))
    h.array("log_tail_float", fit(cubic, -limit, limit, 38, lambda r: r ** 2))
    h.blank()
    h.struct("""
// A logarithm base b. Multiples of `two.high` by 11 bits are exact and add to the cells' first
// pieces exactly. `scale` is 1 / ln b, its first piece of 21 bits.
struct LogarithmCell {
    double inverse, high, low;
};
struct LogarithmBase {
    double two_high, two_low, scale_high, scale_low;
    LogarithmCell cells[128];
};
""")
    for name, base in bases:
        log = lambda x: mp.log(x) / mp.log(base)
        two = quantized(log(2), 42)
        scale = log(mp.e)
        scale_high = without_low_word(double(scale))
        h.lines.append(f"alignas(32) inline constexpr LogarithmBase {name}_logarithm = {{")
        h.lines.append("    " + ", ".join(str(v) for v in [
            two.hex(), double(log(2) - mpf(two)).hex(), scale_high.hex(),
            double(scale - mpf(scale_high)).hex()]) + ", {")
        for inverse in cells:
            exact = -log(inverse)
            high = quantized(exact, 42)
            h.lines.append("    {" + ", ".join(float(v).hex() for v in
                           [double(inverse), high, double(exact - mpf(high))]) + "},")
        h.lines.append("}};")
    h.write()


def sine():
    h = Header("sine.h", "Sines and cosines of multiples of pi/64, the polynomials between them, pi/64 in\n"
               "pieces, and the bits of 2/pi for large arguments.", MAKER)
    step = mp.pi / 64
    h.constant("sine_steps_per_unit", double(1 / step))
    h.comment("pi/64; multiples of the first two pieces by 24 bits are exact")
    first = leading(step, 29)
    second = leading(step - mpf(first), 29)
    h.array("sine_step", [first, second, double(step - mpf(first) - mpf(second))])
    h.comment("pi/64 as a sum of two, and for float: a multiple of the first by 20 bits is exact")
    h.array("sine_step_pair", list(pair(step)))
    short = leading(step, 33)
    h.array("sine_step_float", [short, double(step - mpf(short))])
    limit = step * mpf("0.51")
    small = lambda z: mpf(z) < mpf(10) ** -24
    def sin_tail(z):
        x = mp.sqrt(z)
        return mpf(-1) / 6 if small(z) else (mp.sin(x) - x) / x ** 3
    def cos_tail(z):
        return mpf(-1) / 2 if small(z) else (mp.cos(mp.sqrt(z)) - 1) / z
    h.comment("(sin r - r) / r^3 and (cos r - 1) / r^2 in r^2; and for float")
    h.array("sin_tail", fit(sin_tail, 0, limit ** 2, 62, lambda z: z))
    h.array("cos_tail", fit(cos_tail, 0, limit ** 2, 62, lambda z: z))
    h.array("sin_tail_float", fit(sin_tail, 0, limit ** 2, 32, lambda z: z))
    h.array("cos_tail_float", fit(cos_tail, 0, limit ** 2, 36, lambda z: z))
    h.blank()
    h.struct("""
// The sine of a multiple as a sum of two, and its cosine likewise, the first piece of 21 bits.
struct SineEntry {
    double sine, sine_rest, cosine, cosine_rest;
};
""")
    rows = []
    for i in range(128):
        s, c = mp.sin(i * step), mp.cos(i * step)
        if i % 64 == 0:
            s = mpf(0)
        if i % 64 == 32:
            c = mpf(0)
        sine_high, sine_low = pair(s)
        cosine_high = without_low_word(double(c))
        rows.append((sine_high, sine_low, cosine_high, double(c - mpf(cosine_high))))
    h.rows("SineEntry", "sine_table", rows)
    h.blank()
    h.comment("The bits of 64/pi, highest first; the first weighs 2^63.")
    words = 40
    mp.dps = 420
    bits = int(mp.floor(64 / mp.pi * mpf(2) ** (32 * (words - 1))))
    mp.dps = 60
    h.lines.append("inline constexpr unsigned steps_per_unit_bits[] = {")
    values = [0] + [(bits >> (32 * (words - 1 - i))) & 0xFFFFFFFF for i in range(words)]
    for i in range(0, words + 1, 8):
        h.lines.append("    " + ", ".join(f"0x{v:08X}" for v in values[i:i + 8]) + ",")
    h.lines.append("};")
    h.write()


def arctangent():
    h = Header("arctangent.h", "Inverse trigonometric functions: arc tangents of 16 points an octave from 2^-6 to\n"
               "2^6, and polynomials.", MAKER)
    h.comment("(atan q - q) / q^3 in q^2 for |q| up to 2^-6, and for float")
    def tail(z):
        q = mp.sqrt(z)
        return mpf(-1) / 3 if z < mpf(10) ** -24 else (mp.atan(q) - q) / q ** 3
    limit = mpf(2) ** -12 * mpf("1.02")
    h.array("atan_tail", fit(tail, 0, limit, 62, lambda z: z))
    h.array("atan_tail_float", fit(tail, 0, limit, 34, lambda z: z))
    h.comment("(asin x - x) / x^3 in x^2 for |x| up to 1/2, and for float")
    def arcsine(z):
        x = mp.sqrt(z)
        return mpf(1) / 6 if z < mpf(10) ** -24 else (mp.asin(x) - x) / x ** 3
    h.array("asin_tail", fit(arcsine, 0, mpf("0.2501"), 60, lambda z: z))
    h.array("asin_tail_float", fit(arcsine, 0, mpf("0.2501"), 33, lambda z: z))
    for name, value in [("half_pi", mp.pi / 2), ("whole_pi", mp.pi)]:
        high, low = pair(value)
        h.constant(name + "_high", high)
        h.constant(name + "_low", low)
    h.blank()
    h.struct("""
// The point is `sine` / `cosine`, of which one is 1: the last one is infinite.
struct ArcTangentEntry {
    double cosine, sine, angle, angle_rest;
};
""")
    rows = [(1.0, 0.0, 0.0, 0.0)]
    for octave in range(-6, 6):
        for i in range(16):
            point = mpf(2) ** octave * (1 + (i + mpf("0.5")) / 16)
            rows.append((1.0, double(point)) + pair(mp.atan(point)))
    rows.append((0.0, 1.0) + pair(mp.pi / 2))
    h.rows("ArcTangentEntry", "arctangent_table", rows)
    h.write()


def inverse_hyperbolic():
    h = Header("inverse_hyperbolic.h", "Inverse hyperbolic functions of small arguments.", MAKER)
    small = mpf(10) ** -24
    def sine(z):
        x = mp.sqrt(z)
        return mpf(-1) / 6 if z < small else (mp.asinh(x) - x) / x ** 3
    def tangent(z):
        x = mp.sqrt(z)
        return mpf(1) / 3 if z < small else (mp.atanh(x) - x) / x ** 3
    def cosine(t):
        return mpf(-1) / 12 if t < small else (mp.acosh(1 + t) / mp.sqrt(2 * t) - 1) / t
    h.comment("(asinh x - x) / x^3 and (atanh x - x) / x^3 in x^2 for |x| up to 1/2")
    h.array("asinh_tail", fit(sine, 0, mpf("0.25"), 58, lambda z: z))
    h.array("atanh_tail", fit(tangent, 0, mpf("0.25"), 58, lambda z: z))
    h.comment("(acosh(1 + t) / sqrt(2 t) - 1) / t for t up to 1/2")
    h.array("acosh_tail", fit(cosine, 0, mpf("0.5"), 58, lambda t: t))
    h.write()


def cube_root():
    h = Header("cube_root.h", "m^(-1/3) for m from 1 to 2, and the cube roots of 1/2 and 1/4.", MAKER)
    h.array("inverse_cube_root", fit(lambda m: mp.power(m, -mpf(1) / 3), 1, 2, 14))
    h.array("inverse_cube_root_of_power", [1.0, double(mp.power(2, -mpf(1) / 3)), double(mp.power(4, -mpf(1) / 3))])
    h.write()


exponential()
logarithm()
sine()
arctangent()
inverse_hyperbolic()
cube_root()
