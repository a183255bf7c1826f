#!/usr/bin/env python3
"""Makes the tables of the gamma and error functions: src/math/data/{gamma,error_function}.h

They are cut into intervals of equal width, each with a polynomial in the distance from its middle. The
first coefficient stands as a sum of two.
"""

from mpmath import mp, mpf

from approximate import Header, double, fit, interpolate, pair, worst

MAKER = "special.py"


def piece(function, middle, half, degree, bits):
    """[c0 high, c0 low, c1, c2, ...] around the middle; nothing if the degree is too low."""
    shifted = lambda t: function(middle + t)
    coefficients = interpolate(shifted, -half, half, degree)
    if worst(shifted, coefficients, -half, half, lambda t: 1 / abs(shifted(t))) > mpf(2) ** -bits:
        return None
    return list(pair(coefficients[0])) + [double(c) for c in coefficients[1:]]


def pieces(h, name, function, start, width, count, bits):
    """One array, with the lowest degree that serves all of its pieces."""
    width = mpf(width)
    middles = [mpf(start) + width * (i + mpf(1) / 2) for i in range(count)]
    degree, rows = 5, []
    while len(rows) < count:
        row = piece(function, middles[len(rows)], width / 2, degree, bits)
        if row:
            rows.append(row)
        else:
            degree, rows = degree + 1, []
    h.comment(f"from {start} in steps of {mp.nstr(width, 5)}")
    h.lines.append(f"inline constexpr double {name}_pieces[{count}][{degree + 2}] = {{")
    for row in rows:
        h.lines.append("    {" + ", ".join(float(v).hex() for v in row) + "},")
    h.lines.append("};")


def gamma():
    h = Header("gamma.h", "Gamma functions: polynomials between the integers, and Stirling's series.", MAKER)
    h.comment("The gamma function of 1 + x")
    pieces(h, "gamma", lambda x: mp.gamma(1 + x), 0, "0.25", 40, 60)
    h.blank()
    h.comment("log gamma(1 + x) / (x (x - 1)), which has no zero")
    def regular(x):
        if abs(x) < mpf(10) ** -25:
            return mp.euler
        if abs(x - 1) < mpf(10) ** -25:
            return 1 - mp.euler
        return mp.loggamma(1 + x).real / (x * (x - 1))
    pieces(h, "log_gamma_middle", regular, "-0.5", "0.25", 10, 59)
    h.blank()
    h.comment("log gamma(1 + x)")
    pieces(h, "log_gamma", lambda x: mp.loggamma(1 + x).real, 2, "0.25", 32, 59)
    h.blank()
    h.comment("log gamma(x) - (x - 1/2) log x + x - log(2 pi) / 2 = p(1 / x^2) / x from 10 on")
    def series(w):
        if w < mpf(10) ** -12:
            return mpf(1) / 12 - w / 360
        x = 1 / mp.sqrt(w)
        mp.dps = 90
        value = (mp.loggamma(x).real - (x - mpf(1) / 2) * mp.log(x) + x - mp.log(2 * mp.pi) / 2) * x
        mp.dps = 60
        return value
    h.array("stirling_series", fit(series, 0, mpf("0.0101"), 57))
    high, low = pair(mp.log(2 * mp.pi) / 2)
    h.constant("half_log_of_two_pi_high", high)
    h.constant("half_log_of_two_pi_low", low)
    high, low = pair(mp.log(mp.pi))
    h.constant("log_of_pi_high", high)
    h.constant("log_of_pi_low", low)
    h.comment("(sin(pi x) - pi x) / x^3 in x^2 for |x| up to 1/4, (cos(pi x) - 1) / x^2 likewise")
    def sine(z):
        x = mp.sqrt(z)
        return -mp.pi ** 3 / 6 if z < mpf(10) ** -24 else (mp.sin(mp.pi * x) - mp.pi * x) / x ** 3
    def cosine(z):
        return -mp.pi ** 2 / 2 if z < mpf(10) ** -24 else (mp.cos(mp.pi * mp.sqrt(z)) - 1) / z
    limit = mpf(1) / 16
    h.array("sine_of_pi_tail", fit(sine, 0, limit, 58))
    h.array("cosine_of_pi_tail", fit(cosine, 0, limit, 58))
    h.write()


def error_function():
    h = Header("error_function.h", "The error function and its complement.", MAKER)
    h.comment("erf(x) / x - 2 / sqrt(pi) = x^2 p(x^2) for |x| up to 1/4")
    def small(z):
        if z < mpf(10) ** -24:
            return -2 / (3 * mp.sqrt(mp.pi))
        x = mp.sqrt(z)
        return (mp.erf(x) / x - 2 / mp.sqrt(mp.pi)) / z
    h.array("erf_tail", fit(small, 0, mpf("0.0626"), 60, lambda z: z))
    high, low = pair(2 / mp.sqrt(mp.pi))
    h.constant("two_over_root_pi_high", high)
    h.constant("two_over_root_pi_low", low)
    h.blank()
    h.comment("erf(x)")
    pieces(h, "erf", mp.erf, "0.25", "0.25", 23, 59)
    h.blank()
    h.comment("erfc(x)")
    pieces(h, "erfc", mp.erfc, "0.25", "0.25", 3, 59)
    h.blank()
    h.comment("e^(x^2) erfc(x) at x = 1 / t, as a function of t from 1/28 to 1, over t")
    def scaled(t):
        x = 1 / t
        return mp.exp(x * x) * mp.erfc(x) / t
    pieces(h, "scaled_erfc", scaled, 0, "0.0625", 16, 58)
    h.write()


gamma()
error_function()
