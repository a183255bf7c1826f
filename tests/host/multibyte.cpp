// The modes of the multibyte decoder and encoder that no program reaches in the "C" locale, and the
// formatted output engine in such locales, natively: the locale record and the operating system's
// conversions are this test's own.

#include "core/constraint.h"
#include "format/formatter.h"
#include "locale/multibyte.h"

#include <stdio.h>
#include <string.h>

namespace vexrt {

DWORD thread_record_slot = TLS_OUT_OF_INDEXES;
LocaleRecord c_locale;
static ThreadRecord record;
ThreadRecord &create_thread_record() { return record; }
errno_t report_constraint(errno_t code) { return code; }

} // namespace vexrt

using namespace vexrt;

namespace {

// Code page 932 as far as it is needed: lead bytes from 0x81 on, and one character, 0x81 'A'.
constexpr UINT double_byte_page = 932;

} // namespace

extern "C" {

BOOL __stdcall IsDBCSLeadByteEx(UINT page, BYTE byte) {
    return page == double_byte_page && byte >= 0x81 && byte <= 0x9F;
}

int __stdcall MultiByteToWideChar(UINT, DWORD flags, const char *s, int size, wchar_t *to, int room) {
    if (flags != 9 || room != (to != nullptr)) return 0;
    auto byte = static_cast<unsigned char>(*s);
    wchar_t wc = size == 2 && s[1] == 'A' ? 0x3001 : size == 1 && byte < 0x80 ? byte : 0;
    if (wc && to) *to = wc;
    return wc != 0;
}

int __stdcall WideCharToMultiByte(UINT, DWORD flags, const wchar_t *s, int size, char *to, int room,
                                  const char *, BOOL *replaced) {
    if (flags || size != 1 || room != 3) return 0;
    *replaced = *s != 0x3001 && *s >= 0x80;
    if (*s != 0x3001) return *to = *replaced ? '?' : static_cast<char>(*s), 1;
    to[0] = '\x81';
    to[1] = 'A';
    return 2;
}

} // extern "C"

namespace {

int passed, failed;

void check(long got, long due, const char *what, int line) {
    if (got == due) {
        ++passed;
        return;
    }
    ++failed;
    printf("line %d: %s is %ld, due %ld\n", line, what, got, due);
}
#define CHECK(got, due) check(got, due, #got, __LINE__)

LocaleRecord locale;

void use_locale(StateTable first, UINT code_page = 0) {
    locale = {};
    locale.decode[0] = first;
    locale.code_page = code_page;
    record.locale = &locale;
}

wchar_t wc;
mbstate_t state;

int decode(const char *s, size_t n) {
    wc = 0x5555;
    record.error_number = 0;
    return decode_character(&wc, s, n, state);
}

char bytes[8];

int encode(unsigned c) {
    memset(bytes, '~', sizeof bytes);
    record.error_number = 0;
    return encode_character(bytes, static_cast<wchar_t>(c), state);
}

void test_utf8() {
    use_locale(nullptr);
    state = {};
    for (unsigned c = 0; c < 65536; ++c) {
        int length = encode(c), due = c < 0x80 ? 1 : c < 0x800 ? 2 : 3;
        if (length != due || decode(bytes, 8) != (c ? length : 0) || wc != c) CHECK(c, -1L);
        ++passed;
    }
    CHECK(encode(0x20AC), 3);
    CHECK(memcmp(bytes, "\xE2\x82\xAC~", 4), 0);
    CHECK(decode("\xE2", 1), -2);
    CHECK(state.__state, 2);
    CHECK(decode("\x82", 1), -2);
    CHECK(wc, 0x5555);
    CHECK(decode("\xAC", 1), 1);
    CHECK(wc, 0x20AC);
    CHECK(state.__state, 0);
    CHECK(decode("", 0), -2);
    CHECK(decode("\xC1\x81", 2), 2); // overlong forms are accepted
    CHECK(wc, 'A');
    CHECK(decode("\xC0\x80", 2), 0);
    static const char *const invalid[] = {"\xF0\x9F\x98\x80", "\x80", "\xFF", "\xC3(", "\xE2\x82("};
    for (const char *text : invalid) {
        state = {};
        CHECK(decode(text, 4), -1);
        CHECK(record.error_number, EILSEQ);
    }
    state = {0, 0, 1};
    CHECK(decode(nullptr, 0), 0);
    CHECK(state.__state, 0);
}

void test_code_page() {
    use_locale(reinterpret_cast<StateTable>(1), double_byte_page);
    state = {};
    CHECK(decode("", 0), -2);
    CHECK(decode("\0a", 2), 0);
    CHECK(decode("a", 1), 1);
    CHECK(wc, 'a');
    CHECK(decode("\x81" "A", 2), 1); // the wide characters, not the bytes
    CHECK(wc, 0x3001);
    CHECK(decode_character(nullptr, "\x81" "A", 2, state), 1);
    CHECK(decode("\x81" "A", 1), -1);
    CHECK(record.error_number, EILSEQ);
    CHECK(decode("\x81z", 2), -1);
    CHECK(encode(0x3001), 2);
    CHECK(memcmp(bytes, "\x81" "A~", 3), 0);
    CHECK(encode(0x20AC), -1);
    CHECK(record.error_number, EILSEQ);
}

// An encoding with two states: byte 1 shifts to state 1, byte 2 back; in state 1 a character has two
// bytes, high one first.
StateEntries tables[2];
StateEntries second_byte;

void make_tables() {
    for (unsigned byte = 3; byte < 256; ++byte) {
        tables[0].of[byte] = static_cast<unsigned short>(0xE000 | byte);
        tables[1].of[byte] = static_cast<unsigned short>(0xD200 | byte); // take, shift, to state 2
        second_byte.of[byte] = static_cast<unsigned short>(0xE100 | byte);
    }
    tables[0].of[0] = 0xE000;
    tables[0].of[1] = 0x4100;
    tables[1].of[2] = 0x4000;
    tables[1].of[1] = 0x0100; // turns for ever
}

void test_tables() {
    make_tables();
    use_locale(tables[0].of);
    locale.decode[1] = tables[1].of;
    locale.decode[2] = second_byte.of;
    state = {};
    CHECK(decode("a", 1), 1);
    CHECK(decode("\1\x20\xAC\2b", 5), 3);
    CHECK(wc, 0x20AC);
    CHECK(state.__state, 1);
    CHECK(decode("\x30\x41\2b", 4), 2);
    CHECK(wc, 0x3041);
    CHECK(decode("\x30", 1), -2);
    CHECK(state.__state, 2);
    CHECK(decode("\x42\2b", 3), 1);
    CHECK(wc, 0x3042);
    CHECK(decode("\1", 1), -1);
    CHECK(decode("\2b", 2), 2);
    CHECK(wc & 0xFF, 'b');
    CHECK(decode("\2", 1), -1);
    CHECK(decode(nullptr, 0), 0);
    CHECK(decode("", 1), 0);
    state.__state = 3;
    CHECK(decode("a", 1), -1);
    state.__state = 16;
    CHECK(decode("a", 1), -1);
    // The encoder's tables: each byte follows from the low byte of the value.
    locale.encode[0] = tables[0].of;
    state = {};
    CHECK(encode(0x20AC), 1);
    CHECK(memcmp(bytes, "\xAC~", 2), 0);
    CHECK(encode(2), -1);
}

// ---- formats ----

struct Buffer : Output<char> {
    Buffer(char *to, size_t size) : Output<char>(to, size, refuse) {}
    static bool refuse(Output<char> &, const char *, size_t count) { return count == 0; }
};

char text[64];

int format(const char *form, ...) {
    va_list list;
    va_start(list, form);
    memset(text, 0, sizeof text);
    Buffer buffer(text, sizeof text - 1);
    int count = format_to<char>(buffer, form, list, false);
    va_end(list);
    return count;
}

#define CHECK_FORMAT(due, ...)                                                                     \
    do {                                                                                           \
        CHECK(format(__VA_ARGS__), sizeof(due) - 1);                                               \
        CHECK(strcmp(text, due), 0);                                                               \
    } while (0)

void test_formats() {
    use_locale(nullptr);
    CHECK_FORMAT("a\xC3\xA9 7 \xE2\x82\xAC", "a\xC3\xA9 %d \xE2\x82\xAC", 7);
    CHECK_FORMAT("a\xFF", "a\xFF%d b", 7); // an undecodable byte ends the output behind itself
    CHECK_FORMAT("a7", "a\xC0\xA5" "d", 7); // an overlong '%'
    CHECK_FORMAT("\xE2\x82\xAC|", "%ls|", L"\x20AC");
    CHECK_FORMAT("|", "%.2ls|", L"\x20AC"); // no character is split
    CHECK_FORMAT("a|", "%.3ls|", L"a\x20AC");
    CHECK_FORMAT("  \xE2\x82\xAC|", "%5lc|", 0x20AC);
    use_locale(reinterpret_cast<StateTable>(1), double_byte_page);
    CHECK_FORMAT("x\x81" "A7", "x\x81" "A%d", 7);
    CHECK_FORMAT("ab\x90", "ab\x90z%d", 7);
    CHECK(format("%5ls|", L"ab\x20AC"), -1);
    CHECK(strcmp(text, "   ab"), 0); // what was converted before the error is there
}

} // namespace

int main() {
    test_utf8();
    test_code_page();
    test_tables();
    test_formats();
    printf("%d passed, %d failed\n", passed, failed);
    return failed != 0;
}
