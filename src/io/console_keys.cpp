// The extended codes of the PC keyboard. A key's scan code and the strongest modifier that is held
// choose one. Where the keyboard conventionally gives a character there is no code: the event has
// the character, or the combination is ignored.
//
// The conventions: a letter, digit or sign with Alt is 0 and the key's own scan code, except for
// the row of digits, whose codes with Alt are 78 to 83. Function keys count up from 3B, 54, 5E and
// 68 in the four states. The keys of the numeric pad give their scan codes plain, digits with
// Shift, and codes of their own with Ctrl. F11 and F12 came later and have E0 codes; so have the
// grey keys, which the system calls enhanced.

#include "io/console_keys.h"

#include <stdint.h>

namespace vexrt {

namespace {

enum Modifier : unsigned { plain, shift, ctrl, alt, modifier_count };

Modifier modifier_of(DWORD state) {
    if (state & (LEFT_ALT_PRESSED | RIGHT_ALT_PRESSED)) return alt;
    if (state & (LEFT_CTRL_PRESSED | RIGHT_CTRL_PRESSED)) return ctrl;
    return state & SHIFT_PRESSED ? shift : plain;
}

// A code is its first byte and its second, in this order: 0xE085.
using Code = uint16_t;

struct OrdinaryKeys {
    static constexpr unsigned count = 256;
    Code codes[count][modifier_count]; // 0: none

    constexpr void set(unsigned scan, Modifier modifier, unsigned code) {
        codes[scan][modifier] = static_cast<Code>(code);
    }
    // Consecutive codes for consecutive keys.
    constexpr void set_run(unsigned first, unsigned last, Modifier modifier, unsigned code) {
        for (unsigned scan = first; scan <= last; ++scan) set(scan, modifier, code++);
    }
    // With Alt, 0 and the scan code.
    constexpr void set_own_with_alt(unsigned first, unsigned last) {
        set_run(first, last, alt, first);
    }
};

constexpr void add_typewriter_keys(OrdinaryKeys &keys) {
    keys.set_own_with_alt(0x01, 0x01);   // Escape
    keys.set_run(0x02, 0x0D, alt, 0x78); // 1 to 0, minus, equals
    keys.set(0x03, ctrl, 0x03);          // Ctrl-2 stands for the null character
    keys.set_own_with_alt(0x0E, 0x0E);   // Backspace
    keys.set(0x0F, shift, 0x0F);         // Tab
    keys.set(0x0F, ctrl, 0x94);
    keys.set(0x0F, alt, 0x0F);
    keys.set_own_with_alt(0x10, 0x1C); // Q to P, brackets, Enter
    keys.set_own_with_alt(0x1E, 0x29); // A to L, semicolon, quote, grave
    keys.set_own_with_alt(0x2B, 0x35); // backslash, Z to M, comma, full stop, slash
}

constexpr void add_function_keys(OrdinaryKeys &keys) {
    constexpr unsigned first_codes[modifier_count] = {0x3B, 0x54, 0x5E, 0x68};
    constexpr unsigned later_codes[modifier_count] = {0xE085, 0xE087, 0xE089, 0xE08B};
    for (unsigned m = plain; m < modifier_count; ++m) {
        keys.set_run(0x3B, 0x44, static_cast<Modifier>(m), first_codes[m]); // F1 to F10
        keys.set_run(0x57, 0x58, static_cast<Modifier>(m), later_codes[m]); // F11, F12
    }
}

// With Alt the digits of the pad enter the code of a character, and give nothing themselves.
constexpr void add_numeric_pad(OrdinaryKeys &keys) {
    constexpr unsigned first = 0x47, minus = 0x4A, plus = 0x4E, last = 0x53;
    constexpr Code with_ctrl[last - first + 1] = {0x77, 0x8D, 0x84, 0x8E, 0x73, 0x8F, 0x74,
                                                  0x90, 0x75, 0x91, 0x76, 0x92, 0x93};
    keys.set(0x37, ctrl, 0x96); // asterisk
    keys.set_own_with_alt(0x37, 0x37);
    for (unsigned scan = first; scan <= last; ++scan) {
        bool sign = scan == minus || scan == plus;
        keys.set(scan, sign ? alt : plain, scan);
        keys.set(scan, ctrl, with_ctrl[scan - first]);
    }
}

constexpr OrdinaryKeys make_ordinary_keys() {
    OrdinaryKeys keys{};
    add_typewriter_keys(keys);
    add_function_keys(keys);
    add_numeric_pad(keys);
    return keys;
}

constexpr OrdinaryKeys ordinary_keys = make_ordinary_keys();

struct EnhancedKey {
    unsigned char scan;
    Code codes[modifier_count];
};

constexpr EnhancedKey enhanced_keys[] = {
    {0x1C, {0x0D00, 0x0D00, 0x0A00, 0x00A6}}, // Enter of the pad
    {0x35, {0x2F00, 0x3F00, 0x0095, 0x00A4}}, // slash of the pad
    {0x47, {0xE047, 0xE047, 0xE077, 0x0097}}, // Home
    {0x48, {0xE048, 0xE048, 0xE08D, 0x0098}}, // up
    {0x49, {0xE049, 0xE049, 0xE086, 0x0099}}, // Page Up
    {0x4B, {0xE04B, 0xE04B, 0xE073, 0x009B}}, // left
    {0x4D, {0xE04D, 0xE04D, 0xE074, 0x009D}}, // right
    {0x4F, {0xE04F, 0xE04F, 0xE075, 0x009F}}, // End
    {0x50, {0xE050, 0xE050, 0xE091, 0x00A0}}, // down
    {0x51, {0xE051, 0xE051, 0xE076, 0x00A1}}, // Page Down
    {0x52, {0xE052, 0xE052, 0xE092, 0x00A2}}, // Insert
    {0x53, {0xE053, 0xE053, 0xE093, 0x00A3}}, // Delete
};

// 0: none.
Code find_code(unsigned scan, DWORD state) {
    Modifier modifier = modifier_of(state);
    if (!(state & ENHANCED_KEY))
        return scan < OrdinaryKeys::count ? ordinary_keys.codes[scan][modifier] : Code{};
    for (const EnhancedKey &key : enhanced_keys)
        if (key.scan == scan) return key.codes[modifier];
    return 0;
}

} // namespace

KeyCode find_key_code(const KEY_EVENT_RECORD &event) {
    Code code = find_code(event.wVirtualScanCode, event.dwControlKeyState);
    return {static_cast<unsigned char>(code >> 8), static_cast<unsigned char>(code), code != 0};
}

} // namespace vexrt
