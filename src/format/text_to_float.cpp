// strtod and its relatives. What a prefix means is settled first, then the digits are collected
// into words, then the words become a number.

#include "format/text_to_float.h"

#include "core/thread_record.h"
#include "format/decimal_to_binary.h"
#include "format/directive.h"
#include "format/text_to_integer.h"
#include "locale/locale_record.h"
#include "math/scale.h"

#include <stdlib.h>
#include <wchar.h>

namespace vexrt {

namespace {

// ---- what kind of number a text starts with ----

enum class Prefix { none, decimal, hexadecimal, infinity, nan };

// The end of `text` when it starts with the letters of `word` in any case, else null.
template <typename Char>
const Char *match_word(const Char *text, const char *word) {
    for (; *word; ++word, ++text)
        if ((*text | 0x20) != *word) return nullptr;
    return text;
}

// Behind the parentheses that may follow "nan"; null when they are not closed.
template <typename Char>
const Char *skip_nan_payload(const Char *at) {
    if (*at != '(') return at;
    do ++at;
    while (digit_value(*at) < 36 || *at == '_');
    return *at == ')' ? at + 1 : nullptr;
}

// "inf" or "infinity"; deliberately null when what begins with "infi" is not the whole word.
template <typename Char>
const Char *match_infinity(const Char *at) {
    const Char *rest = match_word(at, "inf");
    return rest && (*rest | 0x20) == 'i' ? match_word(rest, "inity") : rest;
}

// Moves `at` to the digits, or behind a word.
template <typename Char>
Prefix parse_prefix(const Char *&at) {
    const Char *end;
    switch (*at) {
    case 'n':
    case 'N':
        end = match_word(at, "nan");
        if (!end || !(end = skip_nan_payload(end))) return Prefix::none;
        at = end;
        return Prefix::nan;
    case 'i':
    case 'I':
        if (!(end = match_infinity(at))) return Prefix::none;
        at = end;
        return Prefix::infinity;
    case '0':
        if ((at[1] | 0x20) != 'x') return Prefix::decimal;
        at += 2;
        return Prefix::hexadecimal;
    default: return Prefix::decimal;
    }
}

// ---- digits ----

struct Decimal {
    static constexpr unsigned base = 10, digits_per_word = 9, word_limit = 1000000000;
    static constexpr char exponent_letter = 'e';
    template <typename Char>
    static unsigned value_of(Char c) {
        return static_cast<unsigned>(c) - '0';
    }
};

struct Hexadecimal {
    static constexpr unsigned base = 16, digits_per_word = 7, word_limit = 1 << 28;
    static constexpr char exponent_letter = 'p';
    template <typename Char>
    static unsigned value_of(Char c) {
        return digit_value(c);
    }
};

constexpr int exponent_limit = 100000000; // further digits of an exponent are ignored

// The decimal point, one unit of narrow or wide text.
inline unsigned decimal_point() {
    return static_cast<unsigned char>(*thread_record().locale->conventions.decimal_point);
}

// Reads digits, a point and an exponent. The number is `significand` * base^`scale`, and for a
// hexadecimal one times 2^`exponent`.
template <typename Char, typename Base, unsigned words>
class Collector {
public:
    Significand significand = {};
    long long scale = 0;
    int exponent = 0;

    // False when there is no digit.
    bool collect(const Char *&at) {
        const Char *start = at;
        while (*at == '0') ++at;
        collect_digits(at);
        if (room == 0) drop_integer_digits(at);
        bool seen = at != start;
        if (code_of(*at) == decimal_point()) {
            const Char *fraction = ++at;
            collect_fraction(at);
            seen |= at != fraction;
        }
        flush_word();
        return seen && collect_exponent(at);
    }

private:
    static constexpr unsigned limit = words * Base::digits_per_word;
    unsigned room = limit; // digits that can still be kept
    uint32_t word = 0;
    uint32_t weight = 1; // base to the number of digits in `word`

    void flush_word() {
        significand.multiply_add(weight, word);
        word = 0;
        weight = 1;
    }

    void collect_digits(const Char *&at) {
        for (unsigned digit; room && (digit = Base::value_of(*at)) < Base::base; ++at, --room) {
            word = word * Base::base + digit;
            weight *= Base::base;
            if (weight == Base::word_limit) flush_word();
        }
    }

    void drop_integer_digits(const Char *&at) {
        const Char *start = at;
        unsigned digit = Base::value_of(*at);
        if (digit >= Base::base) return;
        if (digit >= Base::base / 2) significand.multiply_add(1, 1);
        do ++at;
        while (Base::value_of(*at) < Base::base);
        scale += at - start;
    }

    void collect_fraction(const Char *&at) {
        const Char *start = at;
        if (room == limit)
            while (*at == '0') ++at;
        collect_digits(at);
        scale -= at - start;
        while (Base::value_of(*at) < Base::base) ++at;
    }

    // Deliberately false, as if no digit had been seen, for an exponent without digits.
    bool collect_exponent(const Char *&at) {
        if ((*at | 0x20) != Base::exponent_letter) return true;
        ++at;
        bool negative = take_sign(at);
        const Char *start = at;
        for (unsigned digit; (digit = Decimal::value_of(*at)) < 10; ++at)
            if (exponent < exponent_limit) exponent = exponent * 10 + static_cast<int>(digit);
        if (negative) exponent = -exponent;
        return at != start;
    }
};

// ---- numbers ----

// Brings an exponent into the range of int, far beyond every number's.
inline int saturate(long long exponent) {
    constexpr int far = 1 << 30;
    return exponent > far ? far : exponent < -far ? -far : static_cast<int>(exponent);
}

template <typename Float>
Float evaluate_decimal(const Significand &significand, long long power) {
    auto number = decimal_to_binary<Float>(significand, saturate(power));
    bool lost =
        number == 0 ? !significand.is_zero() : number == static_cast<Float>(__builtin_inf());
    if (lost) set_errno(ERANGE);
    return number;
}

// The significand is rounded to the type, then scaled: deliberately, bits that a subnormal result
// has no room for are cut off, and neither that nor overflow is an error.
template <typename Float>
Float evaluate_hexadecimal(const Significand &significand, long long power) {
    if (significand.is_zero()) return 0;
    constexpr int fraction_bits = FloatTraits<Float>::fraction_bits;
    Normalised number = normalise(significand);
    constexpr int dropped = 63 - fraction_bits;
    constexpr uint64_t half = 1ull << (dropped - 1);
    uint64_t mantissa = number.bits >> dropped;
    uint64_t rest = number.bits & (half | (half - 1));
    mantissa += rest > half || (rest == half && (number.inexact || mantissa & 1));
    // The mantissa as a number from 1 to 2: its leading bit carries into the exponent.
    auto field = static_cast<Bits<Float>>(FloatTraits<Float>::bias - 1) << fraction_bits;
    auto result = from_bits<Float>(field + static_cast<Bits<Float>>(mantissa));
    scale_truncating(result, saturate(power) + number.exponent + 63);
    return result;
}

template <typename Float>
constexpr unsigned words_kept = sizeof(Float) == sizeof(double) ? 3 : 1;

// The number without its sign; `at` is null when there is none.
template <typename Float, typename Char>
Float parse_magnitude(const Char *&at, int power) {
    switch (parse_prefix(at)) {
    case Prefix::infinity: return static_cast<Float>(__builtin_inf());
    case Prefix::nan: return static_cast<Float>(__builtin_nan(""));
    case Prefix::decimal: {
        Collector<Char, Decimal, words_kept<Float>> digits;
        if (!digits.collect(at)) at = nullptr;
        return evaluate_decimal<Float>(digits.significand, digits.scale + digits.exponent + power);
    }
    case Prefix::hexadecimal: {
        Collector<Char, Hexadecimal, words_kept<Float>> digits;
        if (!digits.collect(at)) at = nullptr;
        return evaluate_hexadecimal<Float>(digits.significand, digits.scale * 4 + digits.exponent);
    }
    case Prefix::none: break;
    }
    at = nullptr;
    return 0;
}

} // namespace

template <typename Float, typename Char>
Float parse_float(const Char *text, const Char *&end, int power) {
    const Char *at = text;
    while (is_white_space(*at)) ++at;
    bool negative = take_sign(at);
    auto magnitude = parse_magnitude<Float>(at, power);
    end = at ? at : text;
    return negative && !__builtin_isnan(magnitude) ? -magnitude : magnitude;
}

template double parse_float<double>(const char *, const char *&, int);

namespace {

template <typename Float, typename Char>
Float to_float(const Char *text, Char **end_pointer, int power) {
    const Char *end;
    auto number = parse_float<Float>(text, end, power);
    if (end_pointer) *end_pointer = const_cast<Char *>(end);
    return number;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

double __stod(const char *s, char **end, int power) { return to_float<double>(s, end, power); }
float __stof(const char *s, char **end, int power) { return to_float<float>(s, end, power); }
long double __stold(const char *s, char **end, int power) {
    return to_float<double>(s, end, power);
}

double __wstod(const wchar_t *s, wchar_t **end, int power) {
    return to_float<double>(s, end, power);
}
float __wstof(const wchar_t *s, wchar_t **end, int power) { return to_float<float>(s, end, power); }
long double __wstold(const wchar_t *s, wchar_t **end, int power) {
    return to_float<double>(s, end, power);
}

double strtod(const char *s, char **end) { return __stod(s, end, 0); }
float strtof(const char *s, char **end) { return __stof(s, end, 0); }
long double strtold(const char *s, char **end) { return __stold(s, end, 0); }
double atof(const char *s) { return __stod(s, nullptr, 0); }

double wcstod(const wchar_t *s, wchar_t **end) { return __wstod(s, end, 0); }
float wcstof(const wchar_t *s, wchar_t **end) { return __wstof(s, end, 0); }
long double wcstold(const wchar_t *s, wchar_t **end) { return __wstold(s, end, 0); }
double _wtof(const wchar_t *s) { return __wstod(s, nullptr, 0); }

} // extern "C"
