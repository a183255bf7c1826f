// Lays digits out as %e, %f, %g and %a want them. Runs of zeros are only counted.

#include "format/float_field.h"

#include "core/thread_record.h"
#include "format/float_digits.h"
#include "locale/locale_record.h"

namespace vexrt {

namespace {

template <typename Char>
class Layout {
public:
    Layout(Field<Char> &field, Char *room, const FloatDigits &digits, bool alternate)
        : field_(field), start_(room), end_(room), digits_(digits), alternate_(alternate) {
        field.body = room;
        if (digits.count < 1) {
            digits_.first = digits_.storage;
            digits_.storage[0] = '0';
            digits_.count = 1;
        } else {
            digits_.first = digits_.storage + (digits.first - digits.storage);
        }
    }

    void exponent_style(int64_t precision, unsigned letter, int least_digits) {
        precision_ = precision;
        put_digits(0, 1);
        put_point();
        int64_t further = put_digits(1, precision_);
        end_body();
        field_.middle_zeros = count_of(precision_ - further);
        put(letter);
        put_exponent(least_digits);
        end_tail();
    }

    void fixed_style(int64_t precision) {
        precision_ = precision;
        int integer_digits = digits_.exponent + 1;
        if (integer_digits < 1) return below_one(-integer_digits);
        if (digits_.count < integer_digits) return all_before_point(integer_digits);
        put_digits(0, integer_digits);
        put_point();
        int64_t further = put_digits(integer_digits, precision_);
        end_body();
        field_.middle_zeros = count_of(precision_ - further);
    }

private:
    void below_one(int64_t zeros) {
        put('0');
        put_point();
        end_body();
        if (zeros > precision_) zeros = precision_;
        field_.middle_zeros = count_of(zeros);
        int64_t shown = put_digits(0, precision_ - zeros);
        end_tail();
        field_.trailing_zeros = count_of(precision_ - zeros - shown);
    }

    void all_before_point(int integer_digits) {
        put_digits(0, digits_.count);
        end_body();
        field_.middle_zeros = count_of(integer_digits - digits_.count);
        put_point();
        end_tail();
        field_.trailing_zeros = count_of(precision_);
    }

    void put(unsigned c) { *end_++ = static_cast<Char>(c); }

    void put_point() {
        if (precision_ < 1 && !alternate_) return;
        put(static_cast<unsigned char>(*thread_record().locale->conventions.decimal_point));
    }

    // Up to `limit` digits from the one at `from` on; returns how many there were.
    int64_t put_digits(int from, int64_t limit) {
        int64_t available = digits_.count - from;
        int64_t shown = available < limit ? available : limit;
        for (int64_t i = 0; i < shown; ++i)
            put(static_cast<unsigned char>(digits_.first[from + i]));
        return shown < 0 ? 0 : shown;
    }

    void put_exponent(int least_digits) {
        put(digits_.exponent < 0 ? '-' : '+');
        auto magnitude =
            static_cast<uint32_t>(digits_.exponent < 0 ? -digits_.exponent : digits_.exponent);
        unsigned length = decimal_digit_count(magnitude);
        if (length < static_cast<unsigned>(least_digits))
            length = static_cast<unsigned>(least_digits);
        end_ += length;
        write_decimal(end_, length, magnitude);
    }

    void end_body() { field_.body_length = static_cast<unsigned>(end_ - start_); }
    void end_tail() {
        field_.tail_length = static_cast<unsigned>(end_ - start_) - field_.body_length;
    }
    static unsigned count_of(int64_t zeros) { return zeros > 0 ? static_cast<unsigned>(zeros) : 0; }

    Field<Char> &field_;
    Char *start_, *end_;
    FloatDigits digits_;
    int64_t precision_ = 0;
    bool alternate_;
};

// %g: the shorter of the two styles, without zeros at the end unless `#` asks for them.
template <typename Char>
void general_style(Layout<Char> &layout, const FloatDigits &digits, int64_t precision, bool upper,
                   bool alternate) {
    int count = digits.count < 1 ? 1 : digits.count;
    int exponent = digits.exponent;
    bool with_exponent = exponent < -4 || exponent >= precision;
    if (precision > count && !alternate) precision = count;
    precision -= with_exponent ? 1 : exponent + 1;
    if (precision < 0) precision = 0;
    if (with_exponent) return layout.exponent_style(precision, upper ? 'E' : 'e', 2);
    layout.fixed_style(precision);
}

template <typename Char>
void make_special(Field<Char> &field, Char *room, const char *text) {
    field.body = room;
    for (field.body_length = 0; text[field.body_length]; ++field.body_length)
        room[field.body_length] = static_cast<Char>(text[field.body_length]);
}

} // namespace

template <typename Char>
void make_float_field(Field<Char> &field, Char (&room)[float_room], double value, unsigned letter,
                      const Directive &directive) {
    bool upper = letter < 'a';
    auto style = static_cast<char>(letter | 0x20);
    if (value != value) return make_special(field, room, upper ? "NAN" : "nan");
    if (__builtin_isinf(value)) return make_special(field, room, upper ? "INF" : "inf");

    int precision = directive.precision;
    if (style == 'a') {
        field.add_prefix('0');
        field.add_prefix(upper ? 'X' : 'x');
    } else if (precision < 0) {
        precision = 6;
    } else if (precision == 0 && style == 'g') {
        precision = 1;
    }
    FloatDigits digits;
    digits.count = digits.exponent = 0;
    if (value != 0) {
        if (style == 'a')
            digits.generate_hex(value, precision, upper);
        else
            digits.generate_decimal(value, style, precision);
    }
    bool alternate = directive.flags & flag_alternate;
    Layout<Char> layout(field, room, digits, alternate);
    switch (style) {
    case 'a':
        if (precision < 0) precision = digits.count < 1 ? 0 : digits.count - 1;
        layout.exponent_style(precision, upper ? 'P' : 'p', 1);
        break;
    case 'e': layout.exponent_style(precision, upper ? 'E' : 'e', 2); break;
    case 'f': layout.fixed_style(precision); break;
    default: general_style(layout, digits, precision, upper, alternate);
    }
    if ((directive.flags & (flag_zero | flag_left)) == flag_zero &&
        field.length() < directive.width)
        field.leading_zeros = directive.width - static_cast<unsigned>(field.length());
}

template void make_float_field(Field<char> &, char (&)[float_room], double, unsigned,
                               const Directive &);
template void make_float_field(Field<wchar_t> &, wchar_t (&)[float_room], double, unsigned,
                               const Directive &);

} // namespace vexrt
