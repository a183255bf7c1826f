// What stands between '%' and the conversion letter.
#pragma once

#include <stdarg.h>
#include <stdint.h>

namespace vexrt {

enum Flag : uint16_t {
    flag_space = 0x01,
    flag_plus = 0x02,
    flag_left = 0x04,
    flag_alternate = 0x08,
    flag_zero = 0x10,
};

struct Directive {
    unsigned flags;
    unsigned width;
    int precision;   // -1: none was given
    unsigned length; // the length letter; 'b' for hh, 'q' for ll and I64; 0: none
    bool bare;       // no flags, width or precision
};

inline unsigned code_of(char c) { return static_cast<unsigned char>(c); }
inline unsigned code_of(wchar_t c) { return c; }

// What a character of a directive is: a flag (its bit), or another one that may stand in front of
// the conversion letter.
constexpr unsigned other_modifier = 0x80;

struct Roles {
    uint8_t of[128];
    constexpr Roles() : of{} {
        for (const char *c = "*.123456789hlIjtzL"; *c; ++c)
            of[static_cast<int>(*c)] = other_modifier;
        of[' '] = flag_space;
        of['+'] = flag_plus;
        of['-'] = flag_left;
        of['#'] = flag_alternate;
        of['0'] = flag_zero;
    }
};
inline constexpr Roles roles;

inline unsigned role_of(unsigned c) { return c < 128 ? roles.of[c] : 0; }

// ---- what both engines read ----

template <typename Char>
inline bool skip_character(const Char *&at, char c) {
    if (*at != static_cast<Char>(c)) return false;
    ++at;
    return true;
}

// A number that is spelt out. What is too large becomes the limit.
template <typename Char>
unsigned read_number(const Char *&at) {
    constexpr unsigned limit = 0x7FFFFFFF;
    unsigned number = 0;
    for (unsigned digit; (digit = code_of(*at) - '0') < 10; ++at)
        number = number > (limit - digit) / 10 ? limit : number * 10 + digit;
    return number;
}

template <typename Char>
unsigned read_length(const Char *&at) {
    unsigned c = code_of(*at);
    switch (c) {
    case 'h': ++at; return skip_character(at, 'h') ? 'b' : 'h';
    case 'l': ++at; return skip_character(at, 'l') ? 'q' : 'l';
    case 'j':
    case 't':
    case 'z':
    case 'L': ++at; return c;
    case 'I':
        if (at[1] != '6' || at[2] != '4') return 0;
        at += 3;
        return 'q';
    default: return 0;
    }
}

// Stores an integer in the width that a length asks for.
inline void store_integer(void *to, unsigned length, uint64_t value) {
    switch (length) {
    case 'b': *static_cast<uint8_t *>(to) = static_cast<uint8_t>(value); break;
    case 'h': *static_cast<uint16_t *>(to) = static_cast<uint16_t>(value); break;
    case 'q':
    case 'j': *static_cast<uint64_t *>(to) = value; break;
    default: *static_cast<uint32_t *>(to) = static_cast<uint32_t>(value);
    }
}

// ---- the directives of the output engine ----

template <typename Char>
class DirectiveReader {
public:
    DirectiveReader(const Char *at, va_list arguments) : at_(at), arguments_(arguments) {}

    // Fills it in place: a copy made at once would wait for the parts just written.
    void read(Directive &directive) {
        directive = {0, 0, -1, 0, false};
        const Char *start = at_;
        for (unsigned flag; (flag = role_of(code_of(*at_)) & ~other_modifier); ++at_)
            directive.flags |= flag;
        read_width(directive);
        read_precision(directive);
        directive.bare = at_ == start;
        directive.length = read_length(at_);
    }

    const Char *rest() const { return at_; }
    va_list arguments() const { return arguments_; }

private:
    void read_width(Directive &directive) {
        if (!skip('*')) {
            directive.width = read_number(at_);
            return;
        }
        int width = va_arg(arguments_, int);
        if (width < 0) directive.flags |= flag_left;
        directive.width = width < 0 ? 0u - static_cast<unsigned>(width) : width;
    }

    void read_precision(Directive &directive) {
        if (!skip('.')) return;
        int precision = skip('*') ? va_arg(arguments_, int) : static_cast<int>(read_number(at_));
        directive.precision = precision < 0 ? -1 : precision;
    }

    bool skip(char c) { return skip_character(at_, c); }

    const Char *at_;
    va_list arguments_;
};

} // namespace vexrt
