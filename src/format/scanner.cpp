#include "format/scanner.h"

#include "core/constraint.h"
#include "format/text_to_integer.h"
#include "locale/multibyte.h"

#include <stdlib.h>
#include <wchar.h>

namespace vexrt {

namespace {

constexpr unsigned no_width = 0x7FFFFFFF;

// How many elements of a format make its next character.
inline int character_length(const char *at) {
    mbstate_t state = {};
    int length = decode_character(nullptr, at, multibyte_limit, state);
    return length > 0 ? length : 1;
}
inline int character_length(const wchar_t *) { return 1; }

// What becomes of a number with a sign: the value, or ERANGE and the limit.
uint64_t limit_unsigned(uint64_t magnitude, bool negative, bool fits) {
    if (fits) return negative ? 0 - magnitude : magnitude;
    set_errno(ERANGE);
    return UINT64_MAX;
}
uint64_t limit_signed(uint64_t magnitude, bool negative, bool fits) {
    const uint64_t limit = (1ull << 63) - !negative;
    if (!fits || magnitude > limit) {
        set_errno(ERANGE);
        magnitude = limit;
    }
    return negative ? 0 - magnitude : magnitude;
}

int base_of(unsigned letter) {
    switch (letter) {
    case 'd':
    case 'u': return 10;
    case 'i': return 0;
    case 'o': return 8;
    default: return 16;
    }
}

} // namespace

// ---- the format ----

template <typename Char>
void Scanner<Char>::skip_white_space() {
    int c;
    do c = input_.get();
    while (is_white(c));
    input_.unget(c);
}

// One character of the format, element by element.
template <typename Char>
bool Scanner<Char>::match_literal(const Char *&at) {
    int length = code_of(*at) < 0x80 ? 1 : character_length(at);
    if (length == 1 && is_white(static_cast<int>(code_of(*at)))) {
        skip_white_space();
        ++at;
        return true;
    }
    for (; length > 0; --length, ++at) {
        int c = input_.get();
        if (c == static_cast<int>(code_of(*at))) continue;
        input_.unget(c);
        return false;
    }
    return true;
}

template <typename Char>
const Char *Scanner<Char>::read_directive(const Char *at) {
    suppress_ = skip_character(at, '*');
    width_ = read_number(at);
    length_ = read_length(at);
    letter_ = code_of(*at);
    if (letter_) ++at;
    remaining_ = width_ ? width_ : no_width;
    assigned_ = false;
    return at;
}

template <typename Char>
int Scanner<Char>::run(const Char *format) {
    int assigned = 0;
    while (*format) {
        if (*format != '%') {
            if (!match_literal(format)) break;
            continue;
        }
        format = read_directive(format + 1);
        Outcome outcome = convert(format);
        if (outcome == violation) return -1;
        if (outcome != success) return assigned > 0 ? assigned : outcome;
        assigned += assigned_;
    }
    return assigned;
}

template <typename Char>
typename Scanner<Char>::Outcome Scanner<Char>::convert(const Char *&at) {
    if (letter_ != 'c' && letter_ != 'n' && letter_ != '[') skip_white_space();
    switch (letter_) {
    case 'd':
    case 'i':
    case 'o':
    case 'u':
    case 'x':
    case 'X':
    case 'p': return scan_integer();
    case 'a':
    case 'A':
    case 'e':
    case 'E':
    case 'f':
    case 'F':
    case 'g':
    case 'G': return scan_float();
    case 's': return scan_text(true, [this](int c) { return !is_white(c); });
    case 'c':
        if (width_ == 0) remaining_ = 1;
        return scan_text(false, [](int) { return true; });
    case '[': {
        ScanSet<Char> set;
        if (!set.read(at)) return matching_failure;
        return scan_text(true, [&set](int c) { return set.contains(c); });
    }
    case 'n': return store_count();
    case '%': return scan_percent();
    default: return matching_failure;
    }
}

template <typename Char>
typename Scanner<Char>::Outcome Scanner<Char>::scan_percent() {
    int c = input_.get();
    if (c == '%') return success;
    input_.unget(c);
    return c < 0 ? input_failure : matching_failure;
}

template <typename Char>
typename Scanner<Char>::Outcome Scanner<Char>::store_count() {
    if (suppress_) return success;
    void *to = va_arg(arguments_, void *);
    if (secure_ && !to) {
        report_constraint(EINVAL);
        return violation;
    }
    store_integer(to, length_, static_cast<uint64_t>(input_.consumed()));
    return success;
}

// ---- integers ----

// The digits of a number in a base of at most 16; `value` is what fits.
template <typename Char>
bool Scanner<Char>::collect_digits(int &c, unsigned base, uint64_t &value) {
    constexpr uint32_t one_word = 0x0FFFFFFF; // another digit fits 32 bits
    uint32_t low = 0;
    unsigned digit = digit_value(c);
    for (; digit < base && low <= one_word; digit = digit_value(c = next()))
        low = low * base + digit;
    value = low;
    bool fits = true;
    for (; digit < base; digit = digit_value(c = next()))
        fits = fits && append_digit(value, base, digit);
    return fits;
}

template <typename Char>
typename Scanner<Char>::Outcome Scanner<Char>::scan_integer() {
    int c = next();
    if (c < 0) return input_failure;
    bool negative = c == '-';
    if (negative || c == '+') c = next();
    auto base = static_cast<unsigned>(base_of(letter_));
    bool seen = c == '0';
    if (seen) {
        c = next();
        if ((c | 0x20) == 'x' && (base == 0 || base == 16)) {
            base = 16;
            seen = false;
            c = next();
        } else if (base == 0) {
            base = 8;
        }
    } else if (base == 0) {
        base = 10;
    }
    seen |= digit_value(c) < base;
    uint64_t value;
    bool fits = collect_digits(c, base, value);
    put_back(c);
    if (!seen) return matching_failure;
    if (suppress_) return success;
    bool is_signed = letter_ == 'd' || letter_ == 'i';
    value = is_signed ? limit_signed(value, negative, fits) : limit_unsigned(value, negative, fits);
    store_integer(va_arg(arguments_, void *), letter_ == 'p' ? 'l' : length_, value);
    assigned_ = true;
    return success;
}

// ---- text ----

// The bounds-checked members take a size behind the pointer, in elements.
template <typename Char>
typename Scanner<Char>::Outcome Scanner<Char>::open_target(bool terminated) {
    narrow_target_ = nullptr;
    wide_target_ = nullptr;
    room_ = SIZE_MAX;
    if (suppress_) return success;
    void *to = va_arg(arguments_, void *);
    if (length_ == 'l')
        wide_target_ = static_cast<wchar_t *>(to);
    else
        narrow_target_ = static_cast<char *>(to);
    if (!secure_) return success;
    room_ = va_arg(arguments_, size_t);
    if (to && room_ != 0 && room_ <= RSIZE_MAX) {
        room_ -= terminated;
        return success;
    }
    report_constraint(EINVAL);
    return violation;
}

template <typename Char>
typename Scanner<Char>::Outcome Scanner<Char>::put(unsigned unit) {
    if (room_ == 0) {
        report_constraint(ERANGE);
        return violation;
    }
    --room_;
    if (narrow_target_)
        *narrow_target_++ = static_cast<char>(unit);
    else if (wide_target_)
        *wide_target_++ = static_cast<wchar_t>(unit);
    return success;
}

// Decodes a character that begins with `c`. A sequence that no number of bytes completes, and one
// with a byte that the field does not accept, is put back.
template <>
template <typename Accept>
Scanner<char>::Outcome Scanner<char>::put_converted(int c, mbstate_t &state, Accept accept) {
    constexpr unsigned longest = 8;
    char bytes[longest];
    unsigned count = 0;
    while (c >= 0 && accept(c) && count < longest) {
        bytes[count++] = static_cast<char>(c);
        wchar_t wc;
        int used = take_character(wc, bytes, count, state);
        if (used > 0) return put(wc);
        c = used == incomplete_sequence ? input_.get() : -1;
    }
    input_.unget(c);
    while (count > 0) input_.unget(static_cast<unsigned char>(bytes[--count]));
    set_errno(EILSEQ);
    return matching_failure;
}

template <>
template <typename Accept>
Scanner<wchar_t>::Outcome Scanner<wchar_t>::put_converted(int c, mbstate_t &state, Accept) {
    char bytes[multibyte_limit];
    int length = encode_character(bytes, static_cast<wchar_t>(c), state);
    if (length < 0) {
        input_.unget(c);
        return matching_failure;
    }
    for (int i = 0; i < length; ++i)
        if (put(static_cast<unsigned char>(bytes[i])) == violation) return violation;
    return success;
}

template <typename Char>
template <typename Accept>
typename Scanner<Char>::Outcome Scanner<Char>::scan_text(bool terminated, Accept accept) {
    if (open_target(terminated) == violation) return violation;
    char *narrow_start = narrow_target_;
    wchar_t *wide_start = wide_target_;
    const bool own = (length_ == 'l') == (sizeof(Char) == sizeof(wchar_t));
    mbstate_t state = {};
    bool read = false;
    for (int c; (c = next()) >= 0; read = true) {
        if (!accept(c)) {
            put_back(c);
            break;
        }
        Outcome outcome =
            own ? put(code_of(static_cast<Char>(c))) : put_converted(c, state, accept);
        if (outcome == success) continue;
        if (outcome == matching_failure) break;
        if (terminated && narrow_start) *narrow_start = '\0';
        if (terminated && wide_start) *wide_start = L'\0';
        return violation;
    }
    // Deliberately not a matching failure, not even for a set that the first character is not in.
    if (!read) return input_failure;
    if (terminated && narrow_target_) *narrow_target_ = '\0';
    if (terminated && wide_target_) *wide_target_ = L'\0';
    assigned_ = !suppress_;
    return success;
}

template class Scanner<char>;
template class Scanner<wchar_t>;

// ---- strings ----

template <typename Char>
int scan_string(const Char *text, const Char *format, va_list arguments, bool secure) {
    if (!text || !format) return refuse_argument(secure);
    StringInput<Char> input(text);
    return scan_from(input, format, arguments, secure);
}

template int scan_string(const char *, const char *, va_list, bool);
template int scan_string(const wchar_t *, const wchar_t *, va_list, bool);

} // namespace vexrt
