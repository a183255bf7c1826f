// Parses a pattern into a tree. Parentheses that are open stand on a stack of frames, so nesting
// costs memory but no recursion.
//
// What POSIX leaves undefined is decided here, and listed in docs/regex.md.

#include "regex/parser.h"

#include "regex/emitter.h"
#include "regex/program.h"

#include <string.h>

namespace vexrt {

namespace {

constexpr uint32_t back_reference_limit = 9;

// A group that is open, or the whole expression: the alternatives before the current one, and the
// sequence that is being read.
struct Frame {
    uint32_t group; // 0: the whole expression
    NodeIndex alternatives, last_alternative;
    NodeIndex sequence;
    bool after_caret; // extended: the last element is ^, which no repetition may follow
};

class Parser {
public:
    Parser(Tree &tree, const char *pattern, size_t length, int flags) : tree_(tree), flags_(flags) {
        reader_.at = reinterpret_cast<const unsigned char *>(pattern);
        reader_.end = reader_.at + length;
    }

    int run() {
        tree_.nodes.clear();
        NodeIndex none;
        if (!add(NodeKind::sequence, 0, none)) return error_; // index 0 is no node
        if (!tree_.group_parents.push(0)) return REG_ESPACE;
        if (!open_frame(0)) return error_;
        while (!error_ && reader_.more()) parse_element();
        if (!error_) finish();
        return error_;
    }

private:
    bool extended() const { return flags_ & REG_EXTENDED; }
    bool fail(int error) {
        if (!error_) error_ = error;
        return false;
    }

    // ---- building ----

    bool add(NodeKind kind, uint32_t value, NodeIndex &index) {
        Node node{};
        node.kind = kind;
        node.value = value;
        index = static_cast<NodeIndex>(tree_.nodes.size());
        return tree_.nodes.push(node) || fail(REG_ESPACE);
    }

    void link(NodeIndex parent, NodeIndex child) {
        Node &node = tree_[parent];
        if (node.last)
            tree_[node.last].next = child;
        else
            node.first = child;
        node.last = child;
    }

    bool append(NodeKind kind, uint32_t value) {
        NodeIndex index;
        if (!add(kind, value, index)) return false;
        measure(tree_, index);
        frame().after_caret = false;
        link(frame().sequence, index);
        return true;
    }

    Frame &frame() { return frames_.last(); }
    bool sequence_empty() { return !tree_[frame().sequence].first; }

    bool open_frame(uint32_t group) {
        Frame opened{};
        opened.group = group;
        if (!add(NodeKind::sequence, 0, opened.sequence)) return false;
        return frames_.push(opened) || fail(REG_ESPACE);
    }

    // The current sequence becomes an alternative, and an empty one the current sequence.
    bool next_alternative() {
        if (sequence_empty()) return fail(REG_EMPTY);
        Frame &current = frame();
        measure(tree_, current.sequence);
        if (current.last_alternative)
            tree_[current.last_alternative].next = current.sequence;
        else
            current.alternatives = current.sequence;
        current.last_alternative = current.sequence;
        current.after_caret = false;
        return add(NodeKind::sequence, 0, current.sequence);
    }

    // What the innermost frame holds.
    bool close_frame(NodeIndex &content) {
        Frame &current = frame();
        content = current.sequence;
        if (current.alternatives) {
            if (!next_alternative() || !add(NodeKind::choice, 0, content)) return false;
            tree_[content].first = frame().alternatives;
            tree_[content].last = frame().last_alternative;
        }
        measure(tree_, content);
        (void)frames_.pop();
        return true;
    }

    void finish() {
        if (frames_.size() > 1) {
            fail(REG_EPAREN);
            return;
        }
        if (sequence_empty()) {
            fail(REG_EMPTY);
            return;
        }
        close_frame(tree_.root);
    }

    // ---- elements ----

    void parse_element() {
        unsigned char c = *reader_.at++;
        if (flags_ & REG_NOSPEC) {
            literal(c);
            return;
        }
        switch (c) {
        case '\\': parse_escape(); break;
        case '[': parse_brackets(); break;
        case '.': parse_any(); break;
        case '*': parse_star(); break;
        case '^': parse_caret(); break;
        case '$': parse_dollar(); break;
        default:
            if (!extended() || !parse_extended(c)) literal(c);
        }
    }

    // True when `c` has a meaning of its own in extended expressions only.
    bool parse_extended(unsigned char c) {
        switch (c) {
        case '(': open_group(); return true;
        case ')':
            if (frames_.size() == 1) return false; // without a partner it stands for itself
            close_group();
            return true;
        case '|': next_alternative(); return true;
        case '+': repeat(1, no_limit); return true;
        case '?': repeat(0, 1); return true;
        case '{':
            if (!reader_.more() || !is_digit(*reader_.at)) return false;
            parse_interval();
            return true;
        default: return false;
        }
    }

    void parse_escape() {
        if (!reader_.more()) {
            fail(REG_EESCAPE);
            return;
        }
        unsigned char c = *reader_.at++;
        if (c >= '1' && c <= '9')
            back_reference(c - '0');
        else if (extended())
            literal(c);
        else
            parse_basic_escape(c);
    }

    void parse_basic_escape(unsigned char c) {
        switch (c) {
        case '(': open_group(); break;
        case ')':
            if (frames_.size() == 1)
                fail(REG_EPAREN);
            else
                close_group();
            break;
        case '{': parse_interval(); break;
        case '}': fail(REG_EBRACE); break;
        default: literal(c);
        }
    }

    void literal(unsigned char c) {
        if (flags_ & REG_ICASE) {
            ByteSet both{};
            both.add(c);
            fold_case(both);
            ByteSet single{};
            single.add(c);
            if (!(both == single)) {
                append_set(both);
                return;
            }
        }
        append(NodeKind::byte, c);
    }

    bool add_set(const ByteSet &set, uint32_t &index) {
        index = static_cast<uint32_t>(tree_.sets.size());
        if (index && tree_.sets.last() == set) {
            --index;
            return true;
        }
        return tree_.sets.push(set) || fail(REG_ESPACE);
    }

    void append_set(const ByteSet &set) {
        uint32_t index;
        if (add_set(set, index)) append(NodeKind::set, index);
    }

    void parse_any() {
        ByteSet all{};
        all.invert();
        if (flags_ & REG_NEWLINE) all.remove('\n');
        append_set(all);
    }

    void parse_brackets() {
        static const char word_start[] = "[:<:]]", word_end[] = "[:>:]]";
        if (reader_.end - reader_.at >= 6) {
            bool starts = memcmp(reader_.at, word_start, 6) == 0;
            if (starts || memcmp(reader_.at, word_end, 6) == 0) {
                reader_.at += 6;
                assertion(starts ? Op::word_start : Op::word_end);
                return;
            }
        }
        ByteSet set{};
        if (int error = parse_bracket(reader_, set, flags_))
            fail(error);
        else
            append_set(set);
    }

    // The bytes that an assertion looks at are told apart, so that their categories differ.
    void assertion(Op op) {
        ByteSet seen{};
        if (op == Op::word_start || op == Op::word_end) {
            static const char digits[] = "[:alnum:]_]";
            Reader word{reinterpret_cast<const unsigned char *>(digits), nullptr};
            word.end = word.at + sizeof digits - 1;
            parse_bracket(word, seen, 0);
        } else if (flags_ & REG_NEWLINE) {
            seen.add('\n');
        }
        uint32_t unused;
        tree_.has_assertions = true;
        if (seen == ByteSet{} || add_set(seen, unused))
            append(NodeKind::assertion, instruction(op));
    }

    // In a basic expression ^ is an anchor at the start of the expression or of a group, and $ at
    // the end.
    void parse_caret() {
        if (!extended() && !sequence_empty()) {
            literal('^');
            return;
        }
        assertion(Op::line_start);
        if (!error_) frame().after_caret = true;
    }

    void parse_dollar() {
        if (extended() || !reader_.more() || reader_.sees('\\', ')'))
            assertion(Op::line_end);
        else
            literal('$');
    }

    void back_reference(uint32_t number) {
        static_assert(back_reference_limit < 10);
        if (number >= tree_.group_parents.size()) {
            fail(REG_ESUBREG);
            return;
        }
        for (size_t i = 1; i < frames_.size(); ++i) {
            if (frames_[i].group == number) { // still open
                fail(REG_ESUBREG);
                return;
            }
            if (frames_[i].group > number) break;
        }
        tree_.has_back_references = true;
        append(NodeKind::back_reference, number);
    }

    // ---- groups ----

    void open_group() {
        uint32_t number = static_cast<uint32_t>(tree_.group_parents.size());
        if (tree_.group_parents.push(frame().group))
            open_frame(number);
        else
            fail(REG_ESPACE);
    }

    void close_group() {
        uint32_t number = frame().group;
        NodeIndex content, group;
        if (!close_frame(content) || !add(NodeKind::group, number, group)) return;
        tree_[group].first = tree_[group].last = content;
        measure(tree_, group);
        frame().after_caret = false;
        link(frame().sequence, group);
    }

    // ---- repetition ----

    static bool is_digit(unsigned char c) { return c >= '0' && c <= '9'; }

    void parse_star() {
        if (!extended() && (sequence_empty() || frame().after_caret))
            literal('*');
        else
            repeat(0, no_limit);
    }

    bool parse_count(unsigned &count) {
        count = 0;
        const unsigned char *start = reader_.at;
        for (; reader_.more() && is_digit(*reader_.at); ++reader_.at)
            if (count <= repetition_limit) count = 10 * count + (*reader_.at - '0');
        return (reader_.at > start && count <= repetition_limit) || fail(REG_BADBR);
    }

    bool eat_interval_end() { return extended() ? reader_.eat('}') : reader_.eat('\\', '}'); }

    bool interval_ends_somewhere() const {
        for (Reader rest = reader_; rest.more(); ++rest.at)
            if (extended() ? rest.sees('}') : rest.sees('\\', '}')) return true;
        return false;
    }

    void parse_interval() {
        unsigned least, most;
        if (!reader_.more()) {
            fail(REG_EBRACE);
            return;
        }
        if (!parse_count(least)) return;
        most = least;
        if (reader_.eat(',')) {
            most = no_limit;
            if (reader_.more() && is_digit(*reader_.at) && !parse_count(most)) return;
        }
        if (!eat_interval_end())
            fail(interval_ends_somewhere() ? REG_BADBR : REG_EBRACE);
        else if (most < least)
            fail(REG_BADBR);
        else
            repeat(least, most);
    }

    bool sees_repetition() const {
        if (reader_.sees('*')) return true;
        if (!extended()) return reader_.sees('\\', '{');
        return reader_.sees('+') || reader_.sees('?') ||
               (reader_.sees('{') && reader_.end - reader_.at >= 2 && is_digit(reader_.at[1]));
    }

    // The last element becomes a repetition of itself. One operator an element: what several in a
    // row would mean is undefined.
    void repeat(unsigned least, unsigned most) {
        if (sequence_empty() || frame().after_caret || sees_repetition()) {
            fail(REG_BADRPT);
            return;
        }
        NodeIndex element = tree_[frame().sequence].last, moved;
        if (!add(NodeKind::byte, 0, moved)) return;
        tree_[moved] = tree_[element];
        Node repeated{};
        repeated.kind = NodeKind::repeat;
        repeated.least = static_cast<uint16_t>(least);
        repeated.most = static_cast<uint16_t>(most);
        repeated.first = repeated.last = moved;
        tree_[element] = repeated;
        measure(tree_, element);
    }

    Tree &tree_;
    int flags_;
    Reader reader_{};
    Array<Frame> frames_;
    int error_ = 0;
};

} // namespace

int parse(Tree &tree, const char *pattern, size_t length, int flags) {
    return Parser(tree, pattern, length, flags).run();
}

} // namespace vexrt
