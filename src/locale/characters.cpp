// The functions that convert one character between multibyte and wide form.

#include "core/constraint.h"
#include "core/errno.h"
#include "locale/multibyte.h"
#include "locale/own_state.h"

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <uchar.h>
#include <wchar.h>

using namespace vexrt;

namespace {

constexpr size_t failed = static_cast<size_t>(-1);

// A null `s` stands for an empty string.
size_t decode_restartable(wchar_t *to, const char *s, size_t n, mbstate_t *given,
                          StateOf function) {
    mbstate_t *state = state_or_own(given, function);
    if (!state) return failed;
    if (!s) return static_cast<size_t>(decode_character(nullptr, "", n, *state));
    return static_cast<size_t>(decode_character(to, s, n, *state));
}

size_t encode_restartable(char *s, wchar_t wc, mbstate_t *given, StateOf function) {
    mbstate_t *state = state_or_own(given, function);
    char unused[multibyte_limit];
    if (!state) return failed;
    return static_cast<size_t>(s ? encode_character(s, wc, *state)
                                 : encode_character(unused, L'\0', *state));
}

// Resets the state; nonzero when the encoding has states.
int reset(mbstate_t &state) { return decode_character(nullptr, nullptr, 0, state); }

constexpr bool is_high_surrogate(unsigned unit) { return unit >> 10 == 0xD800 >> 10; }
constexpr bool is_low_surrogate(unsigned unit) { return unit >> 10 == 0xDC00 >> 10; }

size_t invalid_character() {
    set_errno(EILSEQ);
    return failed;
}

// Sets the result of a violation.
errno_t refuse_character(size_t *retval, char *s, rsize_t size, errno_t code) {
    if (retval) *retval = failed;
    if (s && size != 0 && size <= RSIZE_MAX) *s = '\0';
    return report_constraint(code);
}

} // namespace

extern "C" {

// ---- with a state ----

int mbsinit(const mbstate_t *state) { return !state || state->__state == 0; }

size_t mbrlen(const char *s, size_t n, mbstate_t *state) {
    state = state_or_own(state, StateOf::mbrlen);
    return state ? static_cast<size_t>(decode_character(nullptr, s, n, *state)) : failed;
}

size_t mbrtowc(wchar_t *to, const char *s, size_t n, mbstate_t *state) {
    return decode_restartable(to, s, n, state, StateOf::mbrtowc);
}

size_t mbrtoc16(char16_t *to, const char *s, size_t n, mbstate_t *state) {
    return decode_restartable(reinterpret_cast<wchar_t *>(to), s, n, state, StateOf::mbrtoc16);
}

// Both halves of a surrogate pair are taken in one call.
size_t mbrtoc32(char32_t *to, const char *s, size_t n, mbstate_t *given) {
    mbstate_t *state = state_or_own(given, StateOf::mbrtoc32);
    if (!state) return failed;
    wchar_t high = 0, low = 0;
    size_t taken = decode_restartable(&high, s, n, state, StateOf::mbrtoc32);
    if (static_cast<int>(taken) < 0 || !s) return taken;
    char32_t c = high;
    if (is_high_surrogate(high) && taken < n) {
        int more = decode_character(&low, s + taken, n - taken, *state);
        if (more <= 0 || !is_low_surrogate(low)) return invalid_character();
        taken += static_cast<size_t>(more);
        c = 0x10000 + ((high & 0x3FFu) << 10) + (low & 0x3FFu);
    } else if (is_high_surrogate(high) || is_low_surrogate(high)) {
        return invalid_character();
    }
    if (to) *to = c;
    return taken;
}

size_t wcrtomb(char *s, wchar_t wc, mbstate_t *state) {
    return encode_restartable(s, wc, state, StateOf::wcrtomb);
}

size_t c16rtomb(char *s, char16_t c, mbstate_t *state) {
    return encode_restartable(s, c, state, StateOf::c16rtomb);
}

// A surrogate pair would need more bytes than a character has.
size_t c32rtomb(char *s, char32_t c, mbstate_t *state) {
    if (s && c > 0xFFFF) return invalid_character();
    return encode_restartable(s, static_cast<wchar_t>(c), state, StateOf::c32rtomb);
}

errno_t wcrtomb_s(size_t *retval, char *s, rsize_t size, wchar_t wc, mbstate_t *state) {
    if (!retval || !state || (s ? size == 0 || size > RSIZE_MAX : size != 0))
        return refuse_character(retval, s, size, EINVAL);
    char bytes[multibyte_limit];
    int length = encode_character(bytes, s ? wc : L'\0', *state);
    if (length < 0) {
        *retval = failed;
        return EILSEQ;
    }
    auto count = static_cast<size_t>(length);
    if (s && count > size) return refuse_character(retval, s, size, ERANGE);
    if (s) memcpy(s, bytes, count);
    *retval = count;
    return 0;
}

// ---- without ----

int mblen(const char *s, size_t n) {
    mbstate_t state = {};
    int length = decode_character(nullptr, s, n, state);
    return length < 0 ? -1 : length;
}

int mbtowc(wchar_t *to, const char *s, size_t n) {
    mbstate_t *state = state_or_own(nullptr, StateOf::mbtowc);
    if (!state) return -1;
    int length = decode_character(to, s, n < multibyte_limit ? n : multibyte_limit, *state);
    return length < 0 ? -1 : length;
}

int wctomb(char *s, wchar_t wc) {
    mbstate_t *state = state_or_own(nullptr, StateOf::wctomb);
    if (!state) return -1;
    return s ? encode_character(s, wc, *state) : reset(*state);
}

errno_t wctomb_s(int *status, char *s, rsize_t size, wchar_t wc) {
    if (!status || (s ? size > RSIZE_MAX : size != 0)) return report_constraint(EINVAL);
    mbstate_t *state = state_or_own(nullptr, StateOf::wctomb_s);
    if (!state) return ENOMEM;
    if (!s) {
        *status = reset(*state);
        return 0;
    }
    char bytes[multibyte_limit];
    int length = encode_character(bytes, wc, *state);
    if (length >= 0 && static_cast<size_t>(length) > size) return report_constraint(ERANGE);
    *status = length;
    if (length < 0) return EILSEQ;
    memcpy(s, bytes, static_cast<size_t>(length));
    return 0;
}

wint_t btowc(int c) {
    auto byte = static_cast<char>(c);
    wchar_t wc = 0;
    mbstate_t state = {};
    return c == EOF || decode_character(&wc, &byte, 1, state) < 0 ? WEOF : wc;
}

int wctob(wint_t wc) {
    char bytes[multibyte_limit];
    mbstate_t state = {};
    if (wc == WEOF || encode_character(bytes, wc, state) != 1) return EOF;
    return static_cast<unsigned char>(bytes[0]);
}

} // extern "C"
