// Decoder and encoder of multibyte characters, in four modes.
//
// The state can ask for raw two-byte units. Otherwise the first word of the locale's decode block
// decides: 0 is UTF-8 of up to three bytes, 1 is the locale's code page, and anything else is the
// first of up to sixteen state tables (the encode block has its own sixteen). A state table says
// for each byte what to do with the value under construction and with the input:
//
//   entry_replace   the low byte of the value becomes the low byte of the entry
//   entry_shift     the value moves left by a byte
//   entry_take      decoding: the byte is consumed; encoding: the character is done
//   entry_emit      decoding: the character is done; encoding: a byte goes out
//   entry_next      the next state
//
// and 0 is an invalid sequence.

#include "locale/multibyte.h"

#include "core/errno.h"
#include "platform/kernel32.h"

#include <stdint.h>
#include <string.h>

namespace vexrt {

namespace {

enum : unsigned short {
    entry_replace = 0x8000,
    entry_take = 0x4000,
    entry_emit = 0x2000,
    entry_shift = 0x1000,
    entry_next = 0x0F00,
    entry_byte = 0x00FF,
};

// A table whose states neither take nor emit would turn for ever.
constexpr unsigned step_limit = 4080;

int invalid() {
    set_errno(EILSEQ);
    return invalid_sequence;
}

uintptr_t mode_word(const LocaleRecord &locale) {
    return reinterpret_cast<uintptr_t>(locale.decode[0]);
}
constexpr uintptr_t mode_utf8 = 0, mode_code_page = 1;

// ---- raw two-byte mode ----

int decode_raw(wchar_t *to, const unsigned char *s, size_t n) {
    if (n == 0) return incomplete_sequence;
    if (s[0] != 0 && n == 1) return invalid();
    if (to) *to = s[0] ? static_cast<wchar_t>(s[0] | s[1] << 8) : L'\0';
    return s[0] ? 2 : 0;
}

int encode_raw(char *to, wchar_t wc) {
    to[0] = static_cast<char>(wc & 0xFF);
    to[1] = static_cast<char>(wc >> 8);
    return 2;
}

// ---- UTF-8 ----

// Starts a character: its value so far and the number of bytes to come, or -1.
int start_utf8(unsigned char byte, unsigned &value) {
    if (byte < 0x80) return value = byte, 0;
    if (byte >> 5 == 0x6) return value = byte & 0x1F, 1;
    if (byte >> 4 == 0xE) return value = byte & 0x0F, 2;
    return -1;
}

int decode_utf8(wchar_t *to, const unsigned char *s, size_t n, mbstate_t &state) {
    unsigned value = state.__value & 0xFFFF;
    int pending = state.__state;
    for (size_t used = 0;;) {
        if (used == n) {
            state.__value = value;
            state.__state = static_cast<unsigned short>(pending);
            return incomplete_sequence;
        }
        unsigned char byte = s[used++];
        if (pending == 0) {
            pending = start_utf8(byte, value);
            if (pending < 0) return invalid();
        } else {
            if (byte >> 6 != 0x2) return invalid();
            value = (value << 6 | (byte & 0x3F)) & 0xFFFF;
            --pending;
        }
        if (pending == 0) {
            if (to) *to = static_cast<wchar_t>(value);
            state.__state = 0;
            return value ? static_cast<int>(used) : 0;
        }
    }
}

char continuation(unsigned bits) { return static_cast<char>(0x80 | (bits & 0x3F)); }

int encode_utf8(char *to, unsigned wc) {
    if (wc < 0x80) {
        to[0] = static_cast<char>(wc);
        return 1;
    }
    if (wc < 0x800) {
        to[0] = static_cast<char>(0xC0 | wc >> 6);
        to[1] = continuation(wc);
        return 2;
    }
    to[0] = static_cast<char>(0xE0 | wc >> 12);
    to[1] = continuation(wc >> 6);
    to[2] = continuation(wc);
    return 3;
}

// ---- the locale's code page ----

// The result is the number of wide characters, 1 even for a character of two bytes.
int decode_code_page(wchar_t *to, const char *s, size_t n, UINT code_page) {
    if (n == 0) return incomplete_sequence;
    if (auto byte = static_cast<unsigned char>(*s); byte < 0x80) {
        if (to) *to = byte;
        return byte != 0;
    }
    int size = n > 1 && IsDBCSLeadByteEx(code_page, static_cast<BYTE>(*s)) ? 2 : 1;
    int made = MultiByteToWideChar(code_page, MB_PRECOMPOSED | MB_ERR_INVALID_CHARS, s, size, to,
                                   to ? 1 : 0);
    return made ? made : invalid();
}

int encode_code_page(char *to, wchar_t wc, UINT code_page) {
    if (wc < 0x80) {
        *to = static_cast<char>(wc);
        return 1;
    }
    BOOL replaced = false;
    int size = WideCharToMultiByte(code_page, 0, &wc, 1, to, multibyte_limit, nullptr, &replaced);
    return size == 0 || replaced ? invalid() : size;
}

// ---- state tables ----

// What both directions do with an entry: the next state and the value.
void apply(unsigned short entry, mbstate_t &state, unsigned &value) {
    state.__state = (entry & entry_next) >> 8;
    if (entry & entry_replace) value = (value & 0xFF00) | (entry & entry_byte);
    if (entry & entry_shift) value = value << 8 & 0xFFFF;
}

// Null when the state has no table.
StateTable table_of(const StateTable *tables, const mbstate_t &state) {
    return state.__state < state_table_count ? tables[state.__state] : nullptr;
}

int decode_by_tables(wchar_t *to, const unsigned char *s, size_t n, mbstate_t &state,
                     const StateTable *tables) {
    mbstate_t next = state;
    unsigned value = state.__value & 0xFFFF;
    size_t used = 0;
    for (unsigned idle_steps = 0; used < n && idle_steps < step_limit; ++idle_steps) {
        StateTable table = table_of(tables, next);
        unsigned short entry = table ? table[s[used]] : 0;
        if (entry == 0) return invalid();
        apply(entry, next, value);
        if (entry & entry_take && s[used] != 0) {
            ++used;
            idle_steps = 0;
        }
        if (entry & entry_emit) {
            state = {value, next.__flags, next.__state};
            if (to) *to = static_cast<wchar_t>(value);
            return value ? static_cast<int>(used) : 0;
        }
    }
    if (used < n) return invalid();
    state = {value, next.__flags, next.__state};
    return incomplete_sequence;
}

int encode_by_tables(char *to, wchar_t wc, mbstate_t &state, const StateTable *tables) {
    mbstate_t next = state;
    unsigned value = wc;
    size_t size = 0;
    for (unsigned idle_steps = 0; size < multibyte_limit && idle_steps < step_limit; ++idle_steps) {
        StateTable table = table_of(tables, next);
        unsigned short entry = table ? table[value & 0xFF] : 0;
        if (entry == 0) return invalid();
        apply(entry, next, value);
        bool done = entry & entry_take;
        if (entry & entry_emit) {
            unsigned byte = entry & entry_byte ? entry & entry_byte : value & 0xFF;
            to[size++] = static_cast<char>(byte);
            idle_steps = 0;
            done = done || byte == 0;
        }
        if (done) {
            state = next;
            return static_cast<int>(size);
        }
    }
    return invalid();
}

constexpr StateEntries each_byte_is_a_character() {
    StateEntries table{};
    for (unsigned byte = 0; byte < 256; ++byte)
        table.of[byte] =
            static_cast<unsigned short>(entry_replace | entry_take | entry_emit | byte);
    return table;
}

} // namespace

constexpr StateEntries c_state_table = each_byte_is_a_character();

int decode_by_mode(wchar_t *to, const char *s, size_t n, mbstate_t &state) {
    const LocaleRecord &locale = *thread_record().locale;
    auto *bytes = reinterpret_cast<const unsigned char *>(s);
    const bool raw = state.__flags & raw_two_bytes;
    uintptr_t mode = mode_word(locale);
    if (!s) {
        state = {0, state.__flags, 0};
        return !raw && mode > mode_code_page ? locale.decode[0][0] & entry_next : 0;
    }
    if (raw) return decode_raw(to, bytes, n);
    switch (mode) {
    case mode_utf8: return decode_utf8(to, bytes, n, state);
    case mode_code_page: return decode_code_page(to, s, n, locale.code_page);
    default: return decode_by_tables(to, bytes, n, state, locale.decode);
    }
}

int take_character_by_mode(wchar_t &to, const char *s, size_t n, mbstate_t &state) {
    if (n == 0) return incomplete_sequence;
    if (state.__flags & raw_two_bytes) {
        if (n < 2) return incomplete_sequence;
        memcpy(&to, s, 2);
        return 2;
    }
    const LocaleRecord &locale = *thread_record().locale;
    auto first = static_cast<BYTE>(*s);
    bool two_bytes = mode_word(locale) == mode_code_page && first >= 0x80 &&
                     IsDBCSLeadByteEx(locale.code_page, first);
    if (two_bytes && n < 2) return incomplete_sequence;
    mbstate_t trial = state;
    int used = decode_by_mode(&to, s, n, trial);
    if (used < 0) return used;
    state = trial;
    if (two_bytes) return 2;
    return used ? used : static_cast<int>(static_cast<const char *>(memchr(s, '\0', n)) - s) + 1;
}

int encode_by_mode(char *to, wchar_t wc, mbstate_t &state) {
    const LocaleRecord &locale = *thread_record().locale;
    if (state.__flags & raw_two_bytes) return encode_raw(to, wc);
    switch (mode_word(locale)) {
    case mode_utf8: return encode_utf8(to, wc);
    case mode_code_page: return encode_code_page(to, wc, locale.code_page);
    default: return encode_by_tables(to, wc, state, locale.encode);
    }
}

} // namespace vexrt
