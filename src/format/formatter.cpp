#include "format/formatter.h"

#include "core/constraint.h"
#include "format/float_field.h"
#include "format/literal.h"
#include "locale/multibyte.h"

#include <stdlib.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

constexpr char null_text[] = "(null)";
constexpr wchar_t wide_null_text[] = L"(null)";

inline const char *null_text_of(char) { return null_text; }
inline const wchar_t *null_text_of(wchar_t) { return wide_null_text; }

constexpr size_t no_limit = 0x7FFFFFFF; // of the length of a text

// The length of a string of which at most `limit` characters may be read.
inline size_t bounded_length(const char *text, size_t limit) {
    auto *end = static_cast<const char *>(memchr(text, '\0', limit));
    return end ? static_cast<size_t>(end - text) : limit;
}
inline size_t bounded_length(const wchar_t *text, size_t limit) {
    size_t length = 0;
    while (length < limit && text[length]) ++length;
    return length;
}

inline size_t whole_length(const char *text) { return strlen(text); }
inline size_t whole_length(const wchar_t *text) { return wcslen(text); }

// The next character of a text, converted: its length, 0 at the end of the text, -1 for an error.
int next_piece(char *piece, const wchar_t *&text, mbstate_t &state) {
    return *text ? encode_character(piece, *text++, state) : 0;
}

int next_piece(wchar_t *piece, const char *&text, mbstate_t &state) {
    int taken = take_character(*piece, text, no_limit, state);
    if (taken < 0) return -1;
    text += taken;
    return *piece != L'\0';
}

// Literal text of a format: how much of it is output as it is, and the length of the '%' behind it,
// 0 at the end of the format.
struct Literal {
    size_t length;
    unsigned marker_length;
};

// Reads a format that is one character after the other.
template <typename Char>
inline Literal scan_plain(const Char *text) {
    // Most literals are short; to guess that is quicker than to find it out.
    for (unsigned length = 0; length < 2; ++length) {
        if (text[length] == '%') return {length, 1};
        if (text[length] == '\0') return {length, 0};
    }
    size_t length = literal_length(text);
    return {length, text[length] == '%'};
}

// Decodes character by character, for a byte of a longer character may look like '%'. A byte that
// cannot be decoded is output and then ends the format.
Literal scan_multibyte(const char *text, mbstate_t &state) {
    size_t length = 0;
    for (;;) {
        wchar_t wc = L'\0';
        int taken = take_character(wc, text + length, no_limit, state);
        if (taken < 0 || wc == L'\0') return {length + (text[length] != '\0'), 0};
        if (wc == L'%') return {length, static_cast<unsigned>(taken)};
        length += static_cast<unsigned>(taken);
    }
}

// The literals of one format, one by one.
class Literals {
public:
    explicit Literals(char) : plain_(byte_is_character(*thread_record().locale)) {}
    explicit Literals(wchar_t) : plain_(true) {}
    Literal next(const char *text) {
        return plain_ ? scan_plain(text) : scan_multibyte(text, state_);
    }
    Literal next(const wchar_t *text) { return scan_plain(text); }

private:
    bool plain_;
    mbstate_t state_ = {};
};

} // namespace

template <typename Char>
int Formatter<Char>::run(const Char *format) {
    if (!format) {
        set_errno(EINVAL);
        return -1;
    }
    Literals literals{Char()};
    for (;;) {
        Literal literal = literals.next(format);
        if (literal.length && !output_.put(format, literal.length)) return -1;
        if (!literal.marker_length) return output_.count();
        format = read_directive(format + literal.length + literal.marker_length);
        // A '%' at the end of the format stands for itself.
        unsigned letter = *format ? code_of(*format++) : '%';
        if (!convert(letter)) return -1;
    }
}

// Returns the place of the conversion letter. The place is not kept in this object: the next
// literal can then be looked at before everything about this conversion has been stored.
template <typename Char>
inline const Char *Formatter<Char>::read_directive(const Char *at) {
    if (!role_of(code_of(*at))) {
        directive_ = {0, 0, -1, 0, true};
        return at;
    }
    DirectiveReader<Char> reader(at, arguments_);
    reader.read(directive_);
    arguments_ = reader.arguments();
    return reader.rest();
}

template <typename Char>
bool Formatter<Char>::convert(unsigned letter) {
    switch (letter) {
    case 'd':
    case 'i': return convert_signed();
    case 'o':
    case 'u':
    case 'x':
    case 'X': return convert_unsigned(letter);
    case 'p':
    case 'P': return convert_pointer(letter);
    case 'c': return is_own_text() ? convert_character() : convert_other_character();
    case 's': return is_own_text() ? convert_string() : convert_other_string();
    case 'n': return store_count();
    case '%': directive_.width = 0; return put_character('%');
    case 'a':
    case 'A':
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G': return convert_floating(letter);
    default: return put_character(letter);
    }
}

// ---- integers ----

// The differences between next_signed and next_unsigned in 'z' and 't' are kept on purpose: a 'z'
// argument is never negative, a 't' argument is extended by its sign even when it is unsigned.
template <typename Char>
uint64_t Formatter<Char>::next_signed() {
    auto extend = [](auto value) { return static_cast<uint64_t>(static_cast<int64_t>(value)); };
    if (!directive_.length) return extend(static_cast<int32_t>(next_word()));
    switch (directive_.length) {
    case 'q':
    case 'j': return va_arg(arguments_, uint64_t);
    case 'b': return extend(static_cast<int8_t>(next_word()));
    case 'h': return extend(static_cast<int16_t>(next_word()));
    case 'z': return next_word();
    default: return extend(static_cast<int32_t>(next_word()));
    }
}

template <typename Char>
uint64_t Formatter<Char>::next_unsigned() {
    if (!directive_.length) return next_word();
    switch (directive_.length) {
    case 'b': return static_cast<uint8_t>(next_word());
    case 'h': return static_cast<uint16_t>(next_word());
    case 'q':
    case 'j':
    case 't': return next_signed();
    default: return next_word();
    }
}

template <typename Char>
bool Formatter<Char>::convert_signed() {
    uint64_t value = next_signed();
    bool negative = static_cast<int64_t>(value) < 0;
    if (negative) value = 0 - value;
    if (directive_.bare && put_bare_number(value, 'd', negative)) return true;
    Field<Char> field{};
    add_sign(field, negative);
    return put_number(field, value, 'd');
}

template <typename Char>
void Formatter<Char>::add_sign(Field<Char> &field, bool negative) const {
    if (negative)
        field.add_prefix('-');
    else if (directive_.flags & flag_plus)
        field.add_prefix('+');
    else if (directive_.flags & flag_space)
        field.add_prefix(' ');
}

template <typename Char>
bool Formatter<Char>::convert_unsigned(unsigned letter) {
    uint64_t value = next_unsigned();
    if (directive_.bare && put_bare_number(value, letter, false)) return true;
    Field<Char> field{};
    bool hexadecimal = letter == 'x' || letter == 'X';
    if (hexadecimal && value && directive_.flags & flag_alternate) {
        field.add_prefix('0');
        field.add_prefix(letter);
    }
    return put_number(field, value, letter);
}

// Always eight columns, whatever width was given.
template <typename Char>
bool Formatter<Char>::convert_pointer(unsigned letter) {
    directive_.width = 8;
    directive_.flags |= flag_zero;
    Field<Char> field{};
    return put_number(field, next_word(), letter == 'p' ? 'x' : 'X');
}

// The commonest case, where a number is nothing but its digits. False: it does not fit the output
// as it is.
template <typename Char>
inline bool Formatter<Char>::put_bare_number(uint64_t magnitude, unsigned letter, bool negative) {
    unsigned count = digit_count(magnitude, letter);
    Char *to = output_.reserve(count + negative);
    if (!to) return false;
    if (negative) *to++ = '-';
    write_digits(to, count, magnitude, letter);
    return true;
}

// Prefix and digits alone. False: they do not fit the output as it is.
template <typename Char>
inline bool Formatter<Char>::put_unpadded(const Field<Char> &field) {
    Char *to = output_.reserve(field.prefix_length + field.body_length);
    if (!to) return false;
    for (unsigned i = 0; i < field.prefix_length; ++i) *to++ = field.prefix[i];
    write_digits(to, field.body_length, field.number, field.number_letter);
    return true;
}

// The digits become the body. Precision and the `0` flag ask for leading zeros. `#` gives an octal
// number a zero in front, but deliberately not to the empty text that zero is at precision 0.
template <typename Char>
bool Formatter<Char>::put_number(Field<Char> &field, uint64_t magnitude, unsigned letter) {
    int precision = directive_.precision;
    unsigned length = 0;
    if (magnitude || precision) {
        length = digit_count(magnitude, letter);
        if (letter == 'o' && magnitude && directive_.flags & flag_alternate) ++length;
    }
    field.number = magnitude;
    field.number_letter = letter;
    unsigned due = 0; // digits, with leading zeros
    if (precision >= 0)
        due = static_cast<unsigned>(precision);
    else if ((directive_.flags & (flag_zero | flag_left)) == flag_zero)
        due = directive_.width > field.prefix_length ? directive_.width - field.prefix_length : 0;
    // A few zeros are written with the digits.
    if (due > length && due <= digit_room) length = due;
    field.body_length = length;
    if (due > length)
        field.leading_zeros = due - length;
    else if (field.prefix_length + length >= directive_.width && put_unpadded(field))
        return true;
    return put_field(output_, field, directive_);
}

// ---- floating-point numbers ----

// A NaN never has a sign.
template <typename Char>
bool Formatter<Char>::convert_floating(unsigned letter) {
    double value = va_arg(arguments_, double);
    Char room[float_room];
    Field<Char> field{};
    if (value == value) add_sign(field, __builtin_signbit(value));
    make_float_field(field, room, value, letter, directive_);
    return put_field(output_, field, directive_);
}

// ---- text of the engine's own kind ----

// `l` asks for wide text, which is the wide engine's own.
template <typename Char>
bool Formatter<Char>::is_own_text() const {
    return (directive_.length == 'l') == (sizeof(Char) == sizeof(wchar_t));
}

template <typename Char>
bool Formatter<Char>::convert_string() {
    auto *text = next_pointer<const Char>();
    if (!text) {
        if (secure_) return violation();
        text = null_text_of(Char());
    }
    size_t limit = static_cast<size_t>(directive_.precision);
    return put_text(text,
                    directive_.precision < 0 ? whole_length(text) : bounded_length(text, limit));
}

template <typename Char>
bool Formatter<Char>::convert_character() {
    return put_character(next_word());
}

template <typename Char>
bool Formatter<Char>::store_count() {
    if (secure_) return violation();
    store_integer(next_pointer<void>(), directive_.length,
                  static_cast<uint64_t>(int64_t{output_.count()}));
    return true;
}

// ---- text that is converted ----

template <typename Char>
bool Formatter<Char>::convert_other_character() {
    const Other text[2] = {static_cast<Other>(next_word()), 0};
    return transcode(text, no_limit);
}

template <typename Char>
bool Formatter<Char>::convert_other_string() {
    auto *text = next_pointer<const Other>();
    if (!text) {
        if (secure_) return violation();
        text = null_text_of(Other());
    }
    return transcode(text, directive_.precision < 0 ? no_limit : directive_.precision);
}

// Converts through a buffer that holds the whole field when that is padded on the left. When text
// to be padded on the right does not fit the buffer, the parts go out unpadded, and so does the
// last.
template <typename Char>
bool Formatter<Char>::transcode(const Other *text, size_t limit) {
    constexpr size_t local_size = 64;
    Char local[local_size];
    size_t size = size_t{directive_.width} + multibyte_limit;
    if (directive_.flags & flag_left || size <= local_size)
        return transcode_through(local, local_size, text, limit);
    if (size > SIZE_MAX / sizeof(Char)) {
        set_errno(ENOMEM);
        return false;
    }
    auto *buffer = static_cast<Char *>(malloc(size * sizeof(Char)));
    if (!buffer) return false;
    bool ok = transcode_through(buffer, size, text, limit);
    free(buffer);
    return ok;
}

// A character is never split by the limit. What came before an error is still output.
template <typename Char>
bool Formatter<Char>::transcode_through(Char *buffer, size_t size, const Other *text,
                                        size_t limit) {
    mbstate_t state = {};
    Char piece[multibyte_limit];
    size_t used = 0;
    int length = 0;
    while (limit && (length = next_piece(piece, text, state)) > 0) {
        auto count = static_cast<size_t>(length);
        if (count > limit) break;
        if (count > size - used) {
            directive_.width = 0;
            if (!put_text(buffer, used)) return false;
            used = 0;
        }
        memcpy(buffer + used, piece, count * sizeof(Char));
        used += count;
        limit -= count;
    }
    return put_text(buffer, used) && length >= 0;
}

// ---- output ----

template <typename Char>
bool Formatter<Char>::put_text(const Char *text, size_t length) {
    if (length >= directive_.width) return output_.put(text, length);
    Field<Char> field{};
    field.body = text;
    field.body_length = length;
    return put_field(output_, field, directive_);
}

template <typename Char>
bool Formatter<Char>::put_character(unsigned c) {
    auto character = static_cast<Char>(c);
    return put_text(&character, 1);
}

// The handler sees all that was output before.
template <typename Char>
bool Formatter<Char>::violation() {
    if (output_.settle()) report_constraint(EINVAL);
    return false;
}

template class Formatter<char>;
template class Formatter<wchar_t>;

} // namespace vexrt
