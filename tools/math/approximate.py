"""What the table makers share: approximation by polynomials, rounding, and writing headers.

All arithmetic is mpmath's at 60 digits. Polynomials interpolate at the zeros of a Chebyshev polynomial,
which is within a small factor of the best approximation; the degree is the lowest that meets the bound
asked for.
"""

import math
import os
import struct

from mpmath import mp, mpf, chop

mp.dps = 60

DATA = os.path.join(os.path.dirname(__file__), "../../src/math/data")


def double(x):
    """The double nearest to x."""
    return float(mpf(x))


def quantized(x, bits):
    """x rounded to a multiple of 2^-bits, exactly, as a double."""
    return double(mp.nint(mpf(x) * mpf(2) ** bits) * mpf(2) ** -bits)


def leading(x, bits):
    """x rounded to `bits` significant bits."""
    x = mpf(x)
    if x == 0:
        return 0.0
    exponent = int(mp.floor(mp.log(abs(x), 2))) + 1
    return quantized(x, bits - exponent)


def without_low_word(x):
    """x with the lower 32 bits of its representation cleared."""
    return struct.unpack("<d", b"\0\0\0\0" + struct.pack("<d", x)[4:])[0]


def pair(x):
    """x as a double and the double nearest to the rest."""
    high = double(x)
    return high, double(mpf(x) - mpf(high))


def interpolate(function, low, high, degree):
    """Coefficients, lowest first, of the interpolating polynomial at Chebyshev points."""
    low, high = mpf(low), mpf(high)
    n = degree + 1
    points = [(low + high) / 2 + (high - low) / 2 * mp.cos(mp.pi * (2 * i + 1) / (2 * n)) for i in range(n)]
    divided = [function(x) for x in points]
    for step in range(1, n):
        for i in range(n - 1, step - 1, -1):
            divided[i] = (divided[i] - divided[i - 1]) / (points[i] - points[i - step])
    coefficients = [mpf(0)]
    for i in range(n - 1, -1, -1):  # Newton's form, multiplied out
        shifted = [mpf(0)] + coefficients
        for k, value in enumerate(coefficients):
            shifted[k] -= points[i] * value
        shifted[0] += divided[i]
        coefficients = shifted
    return [chop(c, tol=mpf(10) ** -45) for c in coefficients[:n]]


def worst(function, coefficients, low, high, weight):
    """The largest weighted deviation over a grid."""
    largest = mpf(0)
    for i in range(61):
        x = mpf(low) + (mpf(high) - mpf(low)) * (i + mpf("0.37")) / 62
        value = mpf(0)
        for c in reversed(coefficients):
            value = value * x + c
        largest = max(largest, abs(value - function(x)) * weight(x))
    return largest


def fit(function, low, high, bits, weight=lambda x: mpf(1)):
    """Doubles, highest degree first, of a polynomial whose weighted error is below 2^-bits."""
    for degree in range(1, 40):
        coefficients = interpolate(function, low, high, degree)
        if worst(function, coefficients, low, high, weight) < mpf(2) ** -bits:
            return [double(c) for c in reversed(coefficients)]
    raise ValueError("no polynomial is good enough")


def literal(x):
    if x == 0:
        return "0"
    if math.isinf(x):
        return "__builtin_inf()"
    text = x.hex()
    mantissa, exponent = text.split("p")
    if "." in mantissa:
        mantissa = mantissa.rstrip("0").rstrip(".")
    return mantissa + "p" + exponent.lstrip("+")


class Header:
    """One generated header of src/math/data."""

    def __init__(self, name, purpose, maker):
        self.name = name
        self.lines = [f"// {line}" for line in purpose.split("\n")]
        self.lines += [f"// Made by tools/math/{maker}; do not edit.", "// clang-format off", "#pragma once",
                       "", "namespace vexrt {", ""]

    def comment(self, text):
        self.lines.append(f"// {text}")

    def constant(self, name, value):
        self.lines.append(f"inline constexpr double {name} = {literal(value)};")

    def array(self, name, values):
        self.lines.append(f"inline constexpr double {name}[] = {{")
        for i in range(0, len(values), 4):
            self.lines.append("    " + ", ".join(literal(v) for v in values[i:i + 4]) + ",")
        self.lines.append("};")

    def rows(self, kind, name, rows):
        """Records: each row is one brace-enclosed list."""
        self.lines.append(f"alignas(32) inline constexpr {kind} {name}[{len(rows)}] = {{")
        for row in rows:
            self.lines.append("    {" + ", ".join(
                "{" + ", ".join(literal(v) for v in item) + "}" if isinstance(item, (list, tuple))
                else literal(item) for item in row) + "},")
        self.lines.append("};")

    def struct(self, text):
        self.lines += text.strip("\n").split("\n")

    def blank(self):
        self.lines.append("")

    def write(self):
        with open(os.path.join(DATA, self.name), "w") as file:
            file.write("\n".join(self.lines + ["", "} // namespace vexrt", ""]))
