// Floating-point fields of the input engine.
//
// The text is rewritten as it is read: zeros in front are dropped, at most 36 significant digits
// are kept, and where digits were dropped in front of the point, or zeros behind it, a power of the
// base makes up for them. So every field fits a small buffer and keeps its value.

#include "core/thread_record.h"
#include "format/digits.h"
#include "format/scanner.h"
#include "format/text_to_float.h"
#include "format/text_to_integer.h"

namespace vexrt {

namespace {

constexpr int digit_limit = 36;
constexpr int exponent_limit = 100000000; // further digits do not change the result

template <typename Text>
void add_exponent(Text &text, int exponent) {
    text.add('p');
    text.add(exponent < 0 ? '-' : '+');
    auto magnitude = static_cast<uint32_t>(exponent < 0 ? -exponent : exponent);
    char digits[digit_room] = {};
    unsigned count = decimal_digit_count(magnitude);
    write_decimal(digits + count, count, magnitude);
    for (unsigned i = 0; i < count; ++i) text.add(digits[i]);
}

inline int saturated(int count) { return count < exponent_limit ? count : exponent_limit; }

} // namespace

// `c` is the character to begin with, and then the one behind the word.
template <typename Char>
template <typename Text>
bool Scanner<Char>::collect_word(Text &text, int &c, const char *word) {
    for (; *word; ++word, c = next()) {
        if ((c | 0x20) != *word) return false;
        text.add(c);
    }
    return true;
}

// "inf", "infinity", "nan", or "nan" with letters, digits and underscores in parentheses.
template <typename Char>
template <typename Text>
bool Scanner<Char>::collect_special(Text &text, int &c) {
    if ((c | 0x20) == 'i')
        return collect_word(text, c, "inf") &&
               ((c | 0x20) != 'i' || collect_word(text, c, "inity"));
    if (!collect_word(text, c, "nan")) return false;
    if (c != '(') return true;
    do c = next();
    while (digit_value(c) != no_digit || c == '_');
    if (c != ')') return false;
    c = next();
    return true;
}

template <typename Char>
bool Scanner<Char>::read_exponent(int &c, int &exponent) {
    c = next();
    bool negative = c == '-';
    if (negative || c == '+') c = next();
    bool seen = false;
    for (unsigned digit; (digit = digit_value(c)) < 10; c = next(), seen = true)
        if (exponent < exponent_limit) exponent = exponent * 10 + static_cast<int>(digit);
    if (negative) exponent = -exponent;
    return seen;
}

// `power` receives the power of ten that the text is to be multiplied by. False when there is no
// digit, or none behind an exponent's letter.
template <typename Char>
template <typename Text>
bool Scanner<Char>::collect_number(Text &text, int &c, int &power) {
    bool hex = false, seen = c == '0';
    if (seen) {
        text.add(c);
        c = next();
        hex = (c | 0x20) == 'x';
        if (hex) {
            text.add(c);
            c = next();
            seen = false;
        }
    }
    const unsigned base = hex ? 16 : 10;
    for (; c == '0'; c = next()) seen = true;
    int kept = 0, dropped = 0, exponent = 0;
    for (; digit_value(c) < base; c = next(), seen = true) {
        if (kept++ < digit_limit)
            text.add(c);
        else
            dropped = saturated(dropped + 1);
    }
    if (c == static_cast<unsigned char>(*thread_record().locale->conventions.decimal_point)) {
        text.add(c);
        c = next();
        if (kept == 0)
            for (; c == '0'; c = next(), seen = true) dropped = -saturated(1 - dropped);
        for (; digit_value(c) < base; c = next(), seen = true)
            if (kept++ < digit_limit) text.add(c);
    }
    if (!seen) return false;
    if ((c | 0x20) == (hex ? 'p' : 'e') && !read_exponent(c, exponent)) return false;
    if (hex)
        add_exponent(text, exponent + 4 * dropped);
    else
        power = exponent + dropped;
    return true;
}

template <typename Char>
typename Scanner<Char>::Outcome Scanner<Char>::scan_float() {
    FieldText<64> text;
    int power = 0, c = next();
    if (c < 0) return input_failure;
    if (c == '+' || c == '-') {
        text.add(c);
        c = next();
    }
    bool word = (c | 0x20) == 'i' || (c | 0x20) == 'n';
    bool complete = word ? collect_special(text, c) : collect_number(text, c, power);
    put_back(c);
    if (!complete) return matching_failure;
    if (suppress_) return success;
    const char *end;
    auto number = parse_float<double>(text.terminated(), end, power);
    void *to = va_arg(arguments_, void *);
    if (length_ == 'l' || length_ == 'L')
        *static_cast<double *>(to) = number;
    else
        *static_cast<float *>(to) = static_cast<float>(number);
    assigned_ = true;
    return success;
}

template bool Scanner<char>::read_exponent(int &, int &);
template bool Scanner<wchar_t>::read_exponent(int &, int &);
template Scanner<char>::Outcome Scanner<char>::scan_float();
template Scanner<wchar_t>::Outcome Scanner<wchar_t>::scan_float();

} // namespace vexrt
