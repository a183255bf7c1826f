#include "stdio/mode_string.h"

namespace vexrt {

namespace {

struct Encoding {
    const char *name;
    uint32_t flag;
};
constexpr Encoding encodings_known[] = {
    {"UNICODE", SF_CCS_UNICODE}, {"UTF-16LE", SF_CCS_UTF16LE}, {"UTF-8", SF_CCS_UTF8}};

template <typename Char>
class ModeParser {
public:
    ModeParser(const Char *mode, uint32_t flags) : at_(mode), flags_(flags) {}

    bool parse(bool encodings) {
        if ((flags_ & SF_UMODE) && *at_ == 'u' && (at_[1] == 'a' || at_[1] == 'w')) ++at_;
        if (!parse_access()) return false;
        parse_extras();
        if (take('x')) flags_ |= SF_EXCL;
        if (encodings && take(',') && !parse_encoding()) return false;
        return *at_ == 0;
    }

    uint32_t flags() const { return flags_; }

private:
    bool take(char c) {
        if (*at_ != static_cast<Char>(c)) return false;
        ++at_;
        return true;
    }

    bool parse_access() {
        switch (*at_++) {
        case 'r': flags_ |= SF_READ; return true;
        case 'w': flags_ |= SF_WRITE | SF_TRUNC | SF_CREATE; return true;
        case 'a': flags_ |= SF_WRITE | SF_APPEND | SF_CREATE; return true;
        default: return false;
        }
    }

    // b and + in any order, each once; a repeated one is left and makes the mode invalid.
    void parse_extras() {
        bool binary = false, update = false;
        for (;;) {
            if (!binary && take('b'))
                binary = true;
            else if (!update && take('+'))
                update = true;
            else
                break;
        }
        if (binary) flags_ |= SF_BINARY;
        if (update) flags_ |= SF_READ | SF_WRITE;
    }

    void skip_spaces() {
        while (take(' ')) {
        }
    }

    static Char upper(Char c) {
        return c >= 'a' && c <= 'z' ? static_cast<Char>(c - 'a' + 'A') : c;
    }

    bool take_word(const char *word) {
        const Char *at = at_;
        for (; *word; ++word, ++at)
            if (upper(*at) != static_cast<Char>(*word)) return false;
        at_ = at;
        return true;
    }

    bool parse_encoding() {
        skip_spaces();
        if (!take_word("CCS")) return false;
        skip_spaces();
        if (!take('=')) return false;
        skip_spaces();
        for (const Encoding &encoding : encodings_known) {
            if (!take_word(encoding.name)) continue;
            flags_ |= encoding.flag;
            skip_spaces();
            return true;
        }
        return false;
    }

    const Char *at_;
    uint32_t flags_;
};

} // namespace

template <typename Char>
bool parse_mode(const Char *mode, bool encodings, uint32_t &flags) {
    ModeParser<Char> parser(mode, flags);
    bool valid = parser.parse(encodings);
    if (valid) flags = parser.flags();
    return valid;
}

template bool parse_mode(const char *, bool, uint32_t &);
template bool parse_mode(const wchar_t *, bool, uint32_t &);

} // namespace vexrt
