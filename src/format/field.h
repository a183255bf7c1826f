// The field that a conversion makes, and how it is put together.
#pragma once

#include "format/digits.h"
#include "format/directive.h"
#include "format/output.h"

#include <stdint.h>

namespace vexrt {

// A field is written as: blanks, prefix, leading zeros, body, middle zeros, tail, trailing zeros,
// blanks. The body is a text, behind which the tail stands in memory, or the digits of a number.
template <typename Char>
struct Field {
    const Char *body; // null: digits
    unsigned body_length, tail_length;
    unsigned prefix_length;
    unsigned leading_zeros, middle_zeros, trailing_zeros;
    uint64_t number;
    unsigned number_letter; // the conversion that the digits are for
    Char prefix[4];

    void add_prefix(unsigned c) { prefix[prefix_length++] = static_cast<Char>(c); }
    uint64_t length() const {
        return uint64_t{prefix_length} + leading_zeros + body_length + middle_zeros + tail_length +
               trailing_zeros;
    }
};

// Padding goes out in pieces of these.
constexpr unsigned chunk_length = 32;

template <typename Char>
struct Chunk {
    Char of[chunk_length];
    explicit constexpr Chunk(char c) : of{} {
        for (Char &place : of) place = static_cast<Char>(c);
    }
};
template <typename Char>
constexpr Chunk<Char> blanks(' ');
template <typename Char>
constexpr Chunk<Char> zeros('0');

// Memory that is known to have room.
template <typename Char>
struct Place {
    Char *to;

    bool put(const Char *text, size_t count) {
        copy_text(to, text, count);
        to += count;
        return true;
    }
    bool put_digits(const Field<Char> &field) {
        write_digits(to, field.body_length, field.number, field.number_letter);
        to += field.body_length;
        return true;
    }
};

// An output, which may fail.
template <typename Char>
struct Checked {
    Output<Char> &output;

    bool put(const Char *text, size_t count) { return output.put(text, count); }
    bool put_digits(const Field<Char> &field) {
        Char digits[digit_room];
        write_digits(digits, field.body_length, field.number, field.number_letter);
        return put(digits, field.body_length);
    }
};

template <typename Char, typename Writer>
inline bool write_run(Writer &writer, const Chunk<Char> &chunk, unsigned count) {
    for (; count > chunk_length; count -= chunk_length)
        if (!writer.put(chunk.of, chunk_length)) return false;
    return !count || writer.put(chunk.of, count);
}

template <typename Char, typename Writer>
inline bool write_field(Writer writer, const Field<Char> &field, unsigned before, unsigned after) {
    bool ok = write_run(writer, blanks<Char>, before) &&
              (!field.prefix_length || writer.put(field.prefix, field.prefix_length)) &&
              write_run(writer, zeros<Char>, field.leading_zeros) &&
              (field.body ? writer.put(field.body, field.body_length) : writer.put_digits(field));
    if (field.middle_zeros | field.tail_length | field.trailing_zeros)
        ok = ok && write_run(writer, zeros<Char>, field.middle_zeros) &&
             writer.put(field.body + field.body_length, field.tail_length) &&
             write_run(writer, zeros<Char>, field.trailing_zeros);
    return ok && write_run(writer, blanks<Char>, after);
}

template <typename Char>
bool put_field(Output<Char> &output, const Field<Char> &field, const Directive &directive) {
    uint64_t length = field.length();
    unsigned padding =
        length < directive.width ? directive.width - static_cast<unsigned>(length) : 0;
    bool left = directive.flags & flag_left;
    unsigned before = left ? 0 : padding, after = left ? padding : 0;
    if (Char *to = output.reserve(length + padding))
        return write_field(Place<Char>{to}, field, before, after);
    return write_field(Checked<Char>{output}, field, before, after);
}

} // namespace vexrt
