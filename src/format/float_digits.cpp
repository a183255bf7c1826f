// Digits come in chunks: the value is brought near to one, its integer part is written, and what is
// left is multiplied up for the next chunk. This is double arithmetic, with its rounding: at most
// 19 decimal digits are generated, and rounding is half up on those digits, not on the exact value.

#include "format/float_digits.h"

#include "math/scale.h"

namespace vexrt {

namespace {

constexpr double powers_of_ten[] = {1e1, 1e2, 1e4, 1e8, 1e16, 1e32, 1e64, 1e128, 1e256};

// value = fraction * 2^exponent, with the fraction in [0.5, 1).
struct Fraction {
    double fraction;
    int exponent;
};

Fraction split(double value) {
    constexpr int half = FloatTraits<double>::bias - 1; // the exponent field of 0.5
    auto [significand, exponent] = parts_of(value);
    uint64_t field = static_cast<uint64_t>(half) << FloatTraits<double>::fraction_bits;
    return {from_bits<double>(field | (significand & fraction_mask<double>)), exponent - half};
}

// Calls `use` with the powers whose product is 10^exponent, the smallest first.
template <typename Use>
void for_each_power(int exponent, Use use) {
    for (const double *power = powers_of_ten; exponent; exponent >>= 1, ++power)
        if (exponent & 1) use(*power);
}

// Brings a value near to [1, 10^8) by a power of ten, a multiple of four, which it returns.
int scale(double &value, int binary_exponent) {
    int exponent = binary_exponent * 30103 / 100000 - 4;
    if (exponent < 0) {
        int power = (3 - exponent) & ~3;
        for_each_power(power, [&](double factor) { value *= factor; });
        return -power;
    }
    exponent &= ~3;
    double divisor = 1;
    for_each_power(exponent, [&](double factor) { divisor *= factor; });
    value /= divisor;
    return exponent;
}

int smaller(int64_t a, int b) { return a < b ? static_cast<int>(a) : b; }

constexpr char hex_digits[] = "0123456789abcdef";
constexpr char upper_hex_digits[] = "0123456789ABCDEF";

} // namespace

// The digits are values of 0 to base - 1 for now.
template <int base, int width>
char *FloatDigits::write_chunk(char *to, uint64_t chunk) {
    auto rest = static_cast<uint32_t>(chunk);
    for (int i = width; i > 0; rest /= base) to[--i] = static_cast<char>(rest % base);
    return to + width;
}

// Keeps the digits before `position` and rounds half up; zeros at the end go, and so do the digits
// that a carry turns to zero. A carry out of the first digit becomes a digit in front of it.
template <int base>
void FloatDigits::round_at(int64_t position, int generated, int carry_exponent) {
    count = smaller(position, generated);
    if (count < 0) return;
    bool up = count < generated && first[count] >= base / 2;
    char dropped = up ? base - 1 : 0;
    while (count > 0 && first[count - 1] == dropped) --count;
    if (!up) return;
    if (count > 0) {
        ++first[count - 1];
    } else {
        *--first = 1;
        count = 1;
        exponent += carry_exponent;
    }
}

void FloatDigits::generate_decimal(double value, char style, int64_t precision) {
    constexpr int chunk_width = 8;
    if (value < 0) value = -value;
    int power = scale(value, split(value).exponent);
    int wanted = smaller((style == 'f' ? power + 10 : 6) + precision, decimal_limit);
    char *end = storage + 1;
    storage[0] = 0;
    while (wanted > 0 && value > 0) {
        auto chunk = static_cast<uint64_t>(static_cast<int64_t>(value));
        wanted -= chunk_width;
        if (wanted > 0) value = (value - static_cast<double>(static_cast<int64_t>(chunk))) * 1e8;
        end = write_chunk<10, chunk_width>(end, chunk);
    }
    first = storage + 1;
    exponent = power + chunk_width - 1;
    for (; first < end && *first == 0; ++first) --exponent;
    int64_t position = precision + (style == 'f' ? exponent + 1 : style == 'e' ? 1 : 0);
    round_at<10>(position, static_cast<int>(end - first), 1);
    for (int i = 0; i < count; ++i) first[i] = static_cast<char>('0' + first[i]);
}

// The fraction lies in [0.5, 1), so the first digit is always 8 to f, and the exponent is that of a
// first digit of four bits.
void FloatDigits::generate_hex(double value, int precision, bool upper) {
    constexpr int chunk_width = 7, digit_bits = 4;
    Fraction parts = split(value);
    double rest = parts.fraction;
    int kept = precision < 0 ? hex_limit : smaller(int64_t{precision} + 1, hex_limit);
    int wanted = kept + 1;
    char *end = storage + 1;
    storage[0] = 0;
    while (wanted > 0 && rest > 0) {
        rest *= 1 << digit_bits * chunk_width;
        auto chunk = static_cast<int64_t>(rest);
        wanted -= chunk_width;
        if (wanted > 0) rest -= static_cast<double>(chunk);
        end = write_chunk<16, chunk_width>(end, static_cast<uint64_t>(chunk));
    }
    first = storage + 1;
    exponent = parts.exponent - digit_bits;
    round_at<16>(kept, static_cast<int>(end - first), digit_bits);
    for (int i = 0; i < count; ++i)
        first[i] = (upper ? upper_hex_digits : hex_digits)[static_cast<int>(first[i])];
}

} // namespace vexrt
