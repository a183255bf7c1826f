// The functions that convert strings between multibyte and wide form.

#include "core/constraint.h"
#include "core/errno.h"
#include "locale/multibyte.h"
#include "locale/own_state.h"
#include "locale/plain_run.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

using namespace vexrt;

namespace {

constexpr size_t failed = static_cast<size_t>(-1);
constexpr size_t no_limit = 0x7FFFFFFF; // of the bytes that may be read

// Decodes at most `limit` characters into `to` (null: counts them). Returns their number, or
// `failed`. `from` is then behind the last one; null when the terminator was decoded, which is not
// counted.
size_t convert_string(wchar_t *to, const char *&from, size_t limit, mbstate_t &state) {
    const Plain plain = plain_characters(state);
    for (size_t count = 0; count < limit; ++count) {
        if (plain != Plain::none) {
            size_t run = widen_run(to ? to + count : nullptr, from, limit - count, plain);
            from += run;
            count += run;
            if (count == limit) break;
        }
        int taken = decode_character(to ? to + count : nullptr, from, no_limit, state);
        if (taken < 0) return failed;
        if (taken == 0) {
            from = nullptr;
            return count;
        }
        from += taken;
    }
    return limit;
}

// Encodes into `to` (null: counts the bytes) what fits `room` as whole characters. Returns the
// number of bytes, or `failed`. `from` is then at the first character that is not encoded; null
// when the terminator was, which is not counted.
size_t convert_string(char *to, const wchar_t *&from, size_t room, mbstate_t &state) {
    char bytes[multibyte_limit];
    const Plain plain = plain_characters(state);
    for (size_t used = 0; used < room;) {
        if (plain != Plain::none) {
            size_t run = narrow_run(to ? to + used : nullptr, from, room - used, plain);
            from += run;
            used += run;
            if (used == room) break;
        }
        bool in_place = to && room - used >= multibyte_limit;
        mbstate_t before = state;
        int length = encode_character(in_place ? to + used : bytes, *from, state);
        if (length < 0) return failed;
        auto size = static_cast<size_t>(length);
        if (size > room - used) {
            state = before;
            return used;
        }
        if (to && !in_place) memcpy(to + used, bytes, size);
        if (*from == L'\0') {
            from = nullptr;
            return used;
        }
        used += size;
        ++from;
    }
    return room;
}

// The arguments that all bounds-checked members have.
template <typename Char>
bool valid_destination(const Char *to, rsize_t size, rsize_t length) {
    return to ? size != 0 && size <= RSIZE_MAX && length <= RSIZE_MAX : size == 0;
}

template <typename Char>
errno_t refuse_string(size_t *retval, Char *to, rsize_t size, errno_t code) {
    if (retval) *retval = failed;
    if (to && size != 0 && size <= RSIZE_MAX) *to = 0;
    return report_constraint(code);
}

// What follows the conversion in a bounds-checked member. The text is cut only where `length` asks
// for it.
template <typename Char>
errno_t finish(size_t *retval, Char *to, rsize_t size, rsize_t length, size_t converted,
               bool terminated) {
    if (to && converted != failed && !terminated) {
        if (length >= size) return refuse_string(retval, to, size, ERANGE);
        to[converted] = 0;
    }
    *retval = converted;
    if (converted != failed) return 0;
    if (to) *to = 0;
    return EILSEQ;
}

rsize_t smaller(rsize_t a, rsize_t b) { return a < b ? a : b; }

template <typename To, typename From>
errno_t convert_string_s(size_t *retval, To *to, rsize_t size, const From **from, rsize_t length,
                         mbstate_t *state) {
    if (!retval || !from || !*from || !state || !valid_destination(to, size, length))
        return refuse_string(retval, to, size, EINVAL);
    const From *rest = *from;
    size_t converted = convert_string(to, rest, to ? smaller(length, size) : SIZE_MAX, *state);
    if (to) *from = rest;
    return finish(retval, to, size, length, converted, !rest);
}

} // namespace

extern "C" {

size_t mbsrtowcs(wchar_t *to, const char **from, size_t length, mbstate_t *given) {
    mbstate_t *state = state_or_own(given, StateOf::mbsrtowcs);
    if (!state) return failed;
    const char *counted = *from;
    return to ? convert_string(to, *from, length, *state)
              : convert_string(static_cast<wchar_t *>(nullptr), counted, SIZE_MAX, *state);
}

// Deliberately limited to `length` characters even when it only counts.
size_t mbstowcs(wchar_t *to, const char *from, size_t length) {
    mbstate_t state = {};
    return convert_string(to, from, length, state);
}

size_t wcsrtombs(char *to, const wchar_t **from, size_t length, mbstate_t *given) {
    mbstate_t *state = state_or_own(given, StateOf::wcsrtombs);
    if (!state) return failed;
    const wchar_t *counted = *from;
    return to ? convert_string(to, *from, length, *state)
              : convert_string(static_cast<char *>(nullptr), counted, SIZE_MAX, *state);
}

// Deliberately cuts the last character in the middle when only a part of it fits, and counts no
// further than `length`.
size_t wcstombs(char *to, const wchar_t *from, size_t length) {
    mbstate_t state = {};
    size_t used = convert_string(to, from, length, state);
    if (used == failed || !from || used == length) return used;
    char bytes[multibyte_limit];
    encode_character(bytes, *from, state);
    if (to) memcpy(to + used, bytes, length - used);
    return length;
}

errno_t mbstowcs_s(size_t *retval, wchar_t *to, rsize_t size, const char *from, rsize_t length) {
    mbstate_t state = {};
    return convert_string_s(retval, to, size, &from, length, &state);
}

errno_t mbsrtowcs_s(size_t *retval, wchar_t *to, rsize_t size, const char **from, rsize_t length,
                    mbstate_t *state) {
    return convert_string_s(retval, to, size, from, length, state);
}

errno_t wcstombs_s(size_t *retval, char *to, rsize_t size, const wchar_t *from, rsize_t length) {
    mbstate_t state = {};
    return convert_string_s(retval, to, size, &from, length, &state);
}

errno_t wcsrtombs_s(size_t *retval, char *to, rsize_t size, const wchar_t **from, rsize_t length,
                    mbstate_t *state) {
    return convert_string_s(retval, to, size, from, length, state);
}

} // extern "C"
