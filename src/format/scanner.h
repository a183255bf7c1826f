// The formatted input engine, narrow and wide.
//
// It walks the format, reads fields from an input and stores them through the arguments. A number
// is first collected as text in a buffer of fixed size and then converted by the functions that
// convert strings; nothing is allocated, and no field is too long. The engines differ in what %s,
// %c and %[ do: the narrow one stores bytes and decodes for %ls, the wide one stores wide
// characters for %ls and encodes without the l.
#pragma once

#include "core/thread_record.h"
#include "format/input.h"
#include "locale/locale_record.h"

#include <_mbstate.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>
#include <wctype.h>

namespace vexrt {

// The text of a number; what does not fit is dropped.
template <unsigned size>
class FieldText {
public:
    void add(int c) {
        if (length_ < size - 1) text_[length_++] = static_cast<char>(c);
    }
    const char *terminated() {
        text_[length_] = '\0';
        return text_;
    }

private:
    char text_[size];
    unsigned length_ = 0;
};

// The characters between the brackets of %[.
template <typename Char>
class ScanSet {
public:
    // Reads a set behind its '['; `at` is then behind the ']'. False when there is none.
    bool read(const Char *&at);
    bool contains(int c) const;

private:
    template <typename Visit>
    bool visit_ranges(Visit visit) const;

    const Char *first_, *last_; // the last is excluded
    bool negated_;
    uint32_t low_[8]; // a bit for each of the first 256 codes
};

template <typename Char>
class Scanner {
public:
    Scanner(Input<Char> &input, va_list arguments, bool secure)
        : input_(input), arguments_(arguments), secure_(secure),
          classes_(thread_record().locale->classes) {}

    // The number of fields assigned, or -1.
    int run(const Char *format);

private:
    // What a conversion comes to. A violation ends the call with -1 whatever was assigned before.
    enum Outcome { violation = -2, input_failure = -1, matching_failure = 0, success = 1 };

    bool match_literal(const Char *&at);
    const Char *read_directive(const Char *at);
    Outcome convert(const Char *&at);

    int next() {
        if (remaining_ == 0) return -1;
        int c = input_.get();
        remaining_ -= c >= 0;
        return c;
    }
    void put_back(int c) {
        input_.unget(c);
        remaining_ += c >= 0;
    }
    bool is_white(int c) const; // -1 is not
    void skip_white_space();

    bool collect_digits(int &c, unsigned base, uint64_t &value);
    Outcome scan_integer();
    Outcome scan_float();
    template <typename Text>
    bool collect_word(Text &text, int &c, const char *word);
    template <typename Text>
    bool collect_special(Text &text, int &c);
    template <typename Text>
    bool collect_number(Text &text, int &c, int &power);
    bool read_exponent(int &c, int &exponent);

    template <typename Accept>
    Outcome scan_text(bool terminated, Accept accept);
    template <typename Accept>
    Outcome put_converted(int c, mbstate_t &state, Accept accept);
    Outcome open_target(bool terminated);
    Outcome put(unsigned unit);

    Outcome scan_percent();
    Outcome store_count();

    Input<Char> &input_;
    va_list arguments_;
    bool secure_;
    const unsigned short *classes_; // of the narrow characters of the thread's locale

    // The directive.
    bool suppress_;
    unsigned width_; // 0: none
    unsigned length_;
    unsigned letter_;
    bool assigned_;
    unsigned remaining_; // characters that the field may still read

    // Where the characters of %s, %c and %[ go: null when they go nowhere.
    char *narrow_target_;
    wchar_t *wide_target_;
    size_t room_;
};

template <typename Char>
int scan_from(Input<Char> &input, const Char *format, va_list arguments, bool secure) {
    return Scanner<Char>(input, arguments, secure).run(format);
}

template <>
inline bool Scanner<char>::is_white(int c) const {
    return classes_[c] & class_white_space;
}
template <>
inline bool Scanner<wchar_t>::is_white(int c) const {
    return c >= 0 && iswspace(static_cast<wint_t>(c));
}

extern template class Scanner<char>;
extern template class Scanner<wchar_t>;

// The checks and the call of the functions that read a string.
template <typename Char>
int scan_string(const Char *text, const Char *format, va_list arguments, bool secure);

} // namespace vexrt
