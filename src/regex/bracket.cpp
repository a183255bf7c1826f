// Bracket expressions: [abc], [^a-z], [[:alpha:]], [[=a=]], [[.hyphen.]-z].

#include "regex/parser.h"

#include <ctype.h>
#include <regex.h>
#include <string.h>

namespace vexrt {

namespace {

struct CollatingName {
    const char *name;
    unsigned char code;
};

// The names of the portable character set.
constexpr CollatingName collating_names[] = {
    {"NUL", 0},
    {"SOH", 1},
    {"STX", 2},
    {"ETX", 3},
    {"EOT", 4},
    {"ENQ", 5},
    {"ACK", 6},
    {"BEL", 7},
    {"alert", 7},
    {"BS", 8},
    {"backspace", 8},
    {"HT", 9},
    {"tab", 9},
    {"LF", 10},
    {"newline", 10},
    {"VT", 11},
    {"vertical-tab", 11},
    {"FF", 12},
    {"form-feed", 12},
    {"CR", 13},
    {"carriage-return", 13},
    {"SO", 14},
    {"SI", 15},
    {"DLE", 16},
    {"DC1", 17},
    {"DC2", 18},
    {"DC3", 19},
    {"DC4", 20},
    {"NAK", 21},
    {"SYN", 22},
    {"ETB", 23},
    {"CAN", 24},
    {"EM", 25},
    {"SUB", 26},
    {"ESC", 27},
    {"IS4", 28},
    {"FS", 28},
    {"IS3", 29},
    {"GS", 29},
    {"IS2", 30},
    {"RS", 30},
    {"IS1", 31},
    {"US", 31},
    {"space", ' '},
    {"exclamation-mark", '!'},
    {"quotation-mark", '"'},
    {"number-sign", '#'},
    {"dollar-sign", '$'},
    {"percent-sign", '%'},
    {"ampersand", '&'},
    {"apostrophe", '\''},
    {"left-parenthesis", '('},
    {"right-parenthesis", ')'},
    {"asterisk", '*'},
    {"plus-sign", '+'},
    {"comma", ','},
    {"hyphen", '-'},
    {"hyphen-minus", '-'},
    {"period", '.'},
    {"full-stop", '.'},
    {"slash", '/'},
    {"solidus", '/'},
    {"zero", '0'},
    {"one", '1'},
    {"two", '2'},
    {"three", '3'},
    {"four", '4'},
    {"five", '5'},
    {"six", '6'},
    {"seven", '7'},
    {"eight", '8'},
    {"nine", '9'},
    {"colon", ':'},
    {"semicolon", ';'},
    {"less-than-sign", '<'},
    {"equals-sign", '='},
    {"greater-than-sign", '>'},
    {"question-mark", '?'},
    {"commercial-at", '@'},
    {"left-square-bracket", '['},
    {"backslash", '\\'},
    {"reverse-solidus", '\\'},
    {"right-square-bracket", ']'},
    {"circumflex", '^'},
    {"circumflex-accent", '^'},
    {"underscore", '_'},
    {"low-line", '_'},
    {"grave-accent", '`'},
    {"left-brace", '{'},
    {"left-curly-bracket", '{'},
    {"vertical-line", '|'},
    {"right-brace", '}'},
    {"right-curly-bracket", '}'},
    {"tilde", '~'},
    {"DEL", 127},
};
static_assert(sizeof collating_names / sizeof *collating_names == 95);

struct ClassName {
    const char *name;
    int (*test)(int c);
};

constexpr ClassName class_names[] = {
    {"alnum", isalnum}, {"alpha", isalpha}, {"blank", isblank}, {"cntrl", iscntrl},
    {"digit", isdigit}, {"graph", isgraph}, {"lower", islower}, {"print", isprint},
    {"punct", ispunct}, {"space", isspace}, {"upper", isupper}, {"xdigit", isxdigit},
};

struct Name {
    const unsigned char *start;
    size_t length;

    bool is(const char *name) const {
        return strlen(name) == length && memcmp(name, start, length) == 0;
    }
};

class BracketParser {
public:
    BracketParser(Reader &reader, ByteSet &set) : reader_(reader), set_(set) {}

    int run() {
        bool first = true;
        for (; !error_; first = false) {
            if (!reader_.more()) return REG_EBRACK;
            if (!first && reader_.eat(']')) return 0;
            parse_member();
        }
        return error_;
    }

private:
    bool fail(int error) {
        error_ = error;
        return false;
    }

    // A class, an equivalence class, a character or a range.
    void parse_member() {
        unsigned char low, high;
        Name name;
        if (reader_.eat('[', ':')) {
            if (read_name(':', name)) add_class(name);
        } else if (reader_.eat('[', '=')) {
            if (read_name('=', name) && collating_element(name, low)) add(low, low);
        } else if (read_element(low)) {
            if (!starts_range())
                add(low, low);
            else if (++reader_.at, read_element(high))
                add(low, high);
        }
        if (!error_ && starts_range()) fail(REG_ERANGE); // [a-c-e], [[:digit:]-z]
    }

    // A hyphen is a range's unless it is the last character.
    bool starts_range() const {
        return reader_.sees('-') && reader_.end - reader_.at >= 2 && reader_.at[1] != ']';
    }

    void add(unsigned char low, unsigned char high) {
        if (low > high) {
            fail(REG_ERANGE);
            return;
        }
        for (unsigned c = low; c <= high; ++c) set_.add(c);
    }

    void add_class(const Name &name) {
        for (const ClassName &known : class_names) {
            if (!name.is(known.name)) continue;
            for (int c = 0; c < 256; ++c)
                if (known.test(c)) set_.add(static_cast<unsigned>(c));
            return;
        }
        fail(REG_ECTYPE);
    }

    // One end of a range: a character, or a collating element.
    bool read_element(unsigned char &element) {
        Name name;
        if (reader_.eat('[', '.')) return read_name('.', name) && collating_element(name, element);
        if (reader_.sees('[', ':') || reader_.sees('[', '=')) return fail(REG_ERANGE);
        if (!reader_.more()) return fail(REG_EBRACK);
        element = *reader_.at++;
        return true;
    }

    // What stands before the kind's character and a bracket.
    bool read_name(char kind, Name &name) {
        name.start = reader_.at;
        while (!reader_.sees(kind, ']')) {
            if (!reader_.more()) return fail(REG_EBRACK);
            ++reader_.at;
        }
        name.length = static_cast<size_t>(reader_.at - name.start);
        reader_.at += 2;
        return true;
    }

    bool collating_element(const Name &name, unsigned char &element) {
        if (name.length == 1) {
            element = *name.start;
            return true;
        }
        for (const CollatingName &known : collating_names) {
            if (!name.is(known.name)) continue;
            element = known.code;
            return true;
        }
        return fail(REG_ECOLLATE);
    }

    Reader &reader_;
    ByteSet &set_;
    int error_ = 0;
};

} // namespace

void fold_case(ByteSet &set) {
    ByteSet letters = set;
    for (unsigned c = 0; c < 256; ++c) {
        if (!letters.has(c)) continue;
        set.add(static_cast<unsigned char>(tolower(static_cast<int>(c))));
        set.add(static_cast<unsigned char>(toupper(static_cast<int>(c))));
    }
}

int parse_bracket(Reader &reader, ByteSet &set, int flags) {
    bool inverted = reader.eat('^');
    if (int error = BracketParser(reader, set).run()) return error;
    if (flags & REG_ICASE) fold_case(set);
    if (inverted) {
        set.invert();
        if (flags & REG_NEWLINE) set.remove('\n');
    }
    return 0;
}

} // namespace vexrt
