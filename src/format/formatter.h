// The formatted output engine, narrow and wide.
//
// It copies the literal text of a format to an output and, for each '%', reads the directive,
// fetches the argument and puts a field into the output. All state is in the Formatter and the
// output; no stream or buffer is known here. The two engines differ in how they read literals (the
// narrow one decodes multibyte characters, except where a byte is a character) and in which of %s
// and %ls they copy and which they convert.
//
// A field is described by counts (field.h) and written in one go. Where it fits the output, nothing
// is checked in between, and digits are written where they belong; else piece by piece. Numbers
// without padding go without a field.
#pragma once

#include "format/field.h"
#include "format/output.h"

#include <_mbstate.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

namespace vexrt {

// The text that the engine for `Char` converts: wide text in the narrow engine and the reverse.
template <typename Char>
struct OtherText;
template <>
struct OtherText<char> {
    using Type = wchar_t;
};
template <>
struct OtherText<wchar_t> {
    using Type = char;
};

template <typename Char>
class Formatter {
public:
    Formatter(Output<Char> &output, va_list arguments, bool secure)
        : output_(output), arguments_(arguments), secure_(secure) {}

    // The number of characters, or -1.
    int run(const Char *format);

private:
    using Other = typename OtherText<Char>::Type;

    const Char *read_directive(const Char *at);
    bool convert(unsigned letter);

    uint32_t next_word() { return va_arg(arguments_, uint32_t); }
    uint64_t next_signed();
    uint64_t next_unsigned();
    template <typename T>
    T *next_pointer() {
        return va_arg(arguments_, T *);
    }

    bool convert_signed();
    bool convert_floating(unsigned letter);
    void add_sign(Field<Char> &field, bool negative) const;
    bool convert_unsigned(unsigned letter);
    bool convert_pointer(unsigned letter);
    bool is_own_text() const;
    bool convert_string();
    bool convert_character();
    bool convert_other_string();
    bool convert_other_character();
    bool put_character(unsigned c);
    bool store_count();

    bool put_bare_number(uint64_t magnitude, unsigned letter, bool negative);
    bool put_unpadded(const Field<Char> &field);
    bool put_number(Field<Char> &field, uint64_t magnitude, unsigned letter);
    bool transcode(const Other *text, size_t limit);
    bool transcode_through(Char *buffer, size_t size, const Other *text, size_t limit);

    bool put_text(const Char *text, size_t length);
    bool violation();

    Output<Char> &output_;
    va_list arguments_;
    bool secure_;
    Directive directive_;
};

template <typename Char>
int format_to(Output<Char> &output, const Char *format, va_list arguments, bool secure) {
    return Formatter<Char>(output, arguments, secure).run(format);
}

extern template class Formatter<char>;
extern template class Formatter<wchar_t>;

} // namespace vexrt
