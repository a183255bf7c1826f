// Regular expressions against the definition and against other implementations, natively and under
// the sanitizers.
//
//   regex exhaustive SIZE    every expression of up to SIZE parts over two letters, on every text of
//                            up to five letters, against the definition
//   regex random COUNT SEED  random expressions and texts, against the definition, the host's C
//                            library and TRE
//   regex back COUNT SEED    the same with back-references, against the definition only: both others
//                            run out of stack
//   regex garbage COUNT SEED random bytes as patterns: only that nothing breaks
//
// Each expression is run on both engines: a second time behind an option that is never taken and
// makes its program too large for one word.
//
// Where another implementation differs and the definition agrees with this one, the other is at
// fault; how often is printed, and every kind is listed in docs/regex.md. A difference in where the
// whole match lies is a failure unless its cause is known.

#include "regex_tree.h"

#include <ctype.h>
#include <regex.h>

extern "C" int match_host(const char *, const char *, int, int, int, int, int, int (*)[2]);
extern "C" int match_tre(const char *, const char *, int, int, int, int, int, int (*)[2]);

// The library's own, which is not among what is built here.
extern "C" int _memicmp(const void *left, const void *right, size_t size) {
    auto a = static_cast<const unsigned char *>(left), b = static_cast<const unsigned char *>(right);
    for (; size && tolower(*a) == tolower(*b); --size) ++a, ++b;
    return size != 0;
}

namespace {

long passed, failed, host_faults, host_whole_faults, tre_faults, tre_whole_faults;

struct Case {
    char pattern[512];
    const char *text;
    bool extended, newline, not_bol, not_eol;
    int groups;
};

unsigned long long random_state;
unsigned random_below(unsigned limit) {
    random_state = random_state * 6364136223846793005u + 1442695040888963407u;
    return static_cast<unsigned>(((random_state >> 33) * limit) >> 31);
}

Tree *make(const Tree &tree) {
    auto made = static_cast<Tree *>(malloc(sizeof(Tree)));
    if (!made) abort();
    *made = tree;
    return made;
}

// ---- trees as patterns ----

struct Printer {
    char *to;
    bool extended;
    void put(char c) { *to++ = c; }
    void special(char c) {
        if (!extended) put('\\');
        put(c);
    }
    void print(const Tree *tree) {
        switch (tree->kind) {
        case Tree::letter: put(tree->byte); break;
        case Tree::any: put('.'); break;
        case Tree::not_a: to += sprintf(to, "[^a]"); break;
        case Tree::line_start: put('^'); break;
        case Tree::line_end: put('$'); break;
        case Tree::join:
            print(tree->left);
            print(tree->right);
            break;
        case Tree::either:
            print(tree->left);
            put('|');
            print(tree->right);
            break;
        case Tree::group:
            special('(');
            print(tree->left);
            special(')');
            break;
        case Tree::back_reference: to += sprintf(to, "\\%d", tree->number); break;
        case Tree::repeat: print_repeat(tree);
        }
    }
    void print_repeat(const Tree *tree) {
        print(tree->left);
        if (tree->least == 0 && tree->most < 0) return put('*');
        if (extended && tree->least == 1 && tree->most < 0) return put('+');
        if (extended && tree->least == 0 && tree->most == 1) return put('?');
        special('{');
        to += sprintf(to, "%d", tree->least);
        if (tree->most < 0) put(',');
        else if (tree->most != tree->least) to += sprintf(to, ",%d", tree->most);
        special('}');
    }
};

int number_nodes(Tree *tree, int next) {
    if (!tree) return next;
    tree->id = next;
    return number_nodes(tree->right, number_nodes(tree->left, next + 1));
}

int number_groups(Tree *tree, int next) {
    if (!tree) return next;
    if (tree->kind == Tree::group) tree->number = next++;
    next = number_groups(tree->left, next);
    return number_groups(tree->right, next);
}

// ---- comparing ----

void show(const char *what, const Offsets &offsets, bool matched, int groups) {
    printf("  %s:", what);
    if (!matched) printf(" none");
    for (int i = 0; matched && i <= groups; ++i) printf(" (%d,%d)", offsets.at[i][0], offsets.at[i][1]);
    printf("\n");
}

bool same(const Offsets &a, bool a_matched, const Offsets &b, bool b_matched, int groups) {
    if (a_matched != b_matched) return false;
    return !a_matched || memcmp(a.at, b.at, sizeof a.at[0] * static_cast<size_t>(groups + 1)) == 0;
}

// -1: it does not compile. `skip`: the subexpressions to leave out at the front.
int match_ours(const Case &c, const char *pattern, int skip, Offsets &offsets) {
    regex_t expression;
    regmatch_t matches[11];
    int flags = (c.extended ? REG_EXTENDED : 0) | (c.newline ? REG_NEWLINE : 0);
    if (_regcomp(&expression, pattern, flags)) return -1;
    int searching = (c.not_bol ? REG_NOTBOL : 0) | (c.not_eol ? REG_NOTEOL : 0);
    int result = _regexec(&expression, c.text, 11, matches, searching);
    regmatch_t whole;
    int again = _regexec(&expression, c.text, 1, &whole, searching);
    if (again != result || (!result && (whole.rm_so != matches[0].rm_so || whole.rm_eo != matches[0].rm_eo)))
        result = 99;
    if (_regexec(&expression, c.text, 0, nullptr, searching) != again) result = 98;
    _regfree(&expression);
    for (int i = 0; i < 10 && !result; ++i) {
        const regmatch_t &from = matches[i == 0 ? 0 : i + skip > 10 ? 10 : i + skip];
        offsets.at[i][0] = from.rm_so;
        offsets.at[i][1] = from.rm_eo;
    }
    return result;
}

void check(const Case &c, const char *engine, const Offsets &due, bool due_matched, const Offsets &got,
           int result) {
    if (result <= 1 && result >= 0 && same(due, due_matched, got, result == 0, c.groups)) {
        ++passed;
        return;
    }
    if (++failed > 20) return;
    printf("%s: %s %s on \"%s\"%s%s%s: result %d\n", engine, c.extended ? "extended" : "basic", c.pattern,
           c.text, c.newline ? " newline" : "", c.not_bol ? " notbol" : "", c.not_eol ? " noteol" : "",
           result);
    show("due", due, due_matched, c.groups);
    show("got", got, result == 0, c.groups);
}

void check_peer(const Case &c, int (*match)(const char *, const char *, int, int, int, int, int, int (*)[2]),
                const Offsets &due, bool due_matched, long &faults, long &whole_faults) {
    Offsets theirs;
    int result = match(c.pattern, c.text, c.extended, 0, c.newline, c.not_bol, c.not_eol, theirs.at);
    if (result < 0) return;
    if (!same(due, due_matched, theirs, result == 0, 0)) ++whole_faults;
    else if (!same(due, due_matched, theirs, result == 0, c.groups)) ++faults;
}

// Whether an interval holds a repetition. The host's library can take exponential time then.
bool has_repeat(const Tree *tree) {
    return tree && (tree->kind == Tree::repeat || has_repeat(tree->left) || has_repeat(tree->right));
}
bool has_deep_interval(const Tree *tree) {
    if (!tree) return false;
    bool interval = tree->kind == Tree::repeat && (tree->least > 1 || tree->most > 1);
    return (interval && has_repeat(tree->left)) || has_deep_interval(tree->left) ||
           has_deep_interval(tree->right);
}

void run(Case &c, Tree *tree, const char *text, bool peers) {
    c.text = text;
    Offsets due, got;
    bool matched = Definition(text, c.newline, c.not_bol, c.not_eol).match(tree, due);
    check(c, "one-word engine", due, matched, got, match_ours(c, c.pattern, 0, got));
    char large[600];
    sprintf(large, c.extended ? "(%s)z{0,20}" : "\\(%s\\)z\\{0,20\\}", c.pattern);
    if (c.groups < 10) check(c, "large engine", due, matched, got, match_ours(c, large, 1, got));
    if (!peers) return;
    if (!has_deep_interval(tree))
        check_peer(c, match_host, due, matched, host_faults, host_whole_faults);
    check_peer(c, match_tre, due, matched, tre_faults, tre_whole_faults);
}

// ---- every tree of a size ----

constexpr int size_limit = 10;
Tree *lists[size_limit][400000];
int counts[size_limit];

Tree *add(int size, Tree::Kind kind, Tree *left, Tree *right, int least = 0, int most = 0) {
    if (counts[size] == 400000) abort();
    Tree *tree = make({kind, 'a', 0, 0, least, most, left, right});
    return lists[size][counts[size]++] = tree;
}

void list_trees(int size) {
    if (size == 1) {
        add(1, Tree::letter, nullptr, nullptr);
        add(1, Tree::letter, nullptr, nullptr)->byte = 'b';
    }
    for (int i = 0; size > 1 && i < counts[size - 1]; ++i) {
        Tree *child = lists[size - 1][i];
        add(size, Tree::group, child, nullptr);
        if (child->kind != Tree::letter && child->kind != Tree::group) continue;
        add(size, Tree::repeat, child, nullptr, 0, -1);
        add(size, Tree::repeat, child, nullptr, 0, 1);
        add(size, Tree::repeat, child, nullptr, 1, 2);
        add(size, Tree::repeat, child, nullptr, 2, -1);
    }
    for (int left = 1; left < size - 1; ++left)
        for (int i = 0; i < counts[left]; ++i)
            for (int j = 0; j < counts[size - 1 - left]; ++j) {
                Tree *a = lists[left][i], *b = lists[size - 1 - left][j];
                if (a->kind != Tree::either) add(size, Tree::either, a, b);
                if (a->kind != Tree::either && a->kind != Tree::join && b->kind != Tree::either)
                    add(size, Tree::join, a, b);
            }
}

Tree *copy(const Tree *tree) {
    if (!tree) return nullptr;
    return make({tree->kind, tree->byte, 0, 0, tree->least, tree->most, copy(tree->left), copy(tree->right)});
}

void release(Tree *tree) {
    if (!tree) return;
    release(tree->left);
    release(tree->right);
    free(tree);
}

void run_exhaustive(int size) {
    char texts[64][8];
    int text_count = 0;
    for (int length = 0; length <= 5; ++length)
        for (int bits = 0; bits < 1 << length; ++bits) {
            for (int i = 0; i < length; ++i) texts[text_count][i] = bits >> i & 1 ? 'b' : 'a';
            texts[text_count++][length] = '\0';
        }
    for (int s = 1; s <= size; ++s) {
        list_trees(s);
        for (int i = 0; i < counts[s]; ++i) {
            Tree *tree = copy(lists[s][i]);
            Case c{};
            c.extended = true;
            c.groups = number_groups(tree, 1) - 1;
            number_nodes(tree, 0);
            Printer printer{c.pattern, true};
            printer.print(tree);
            for (int t = 0; t < text_count; ++t) run(c, tree, texts[t], false);
            release(tree);
        }
        printf("size %d: %d expressions\n", s, counts[s]);
    }
}

// ---- random trees ----

bool grow_extended;

Tree *node(Tree::Kind kind, Tree *left = nullptr, Tree *right = nullptr) {
    return make({kind, 'a', 0, 0, 0, 0, left, right});
}

Tree *random_either(int depth);

Tree *random_piece(int depth) {
    Tree *piece;
    unsigned choice = random_below(12);
    if (choice < 4 && depth > 0) piece = node(Tree::group, random_either(depth - 1));
    else if (choice == 4) piece = node(Tree::any);
    else if (choice == 5) piece = node(Tree::not_a);
    else if (choice == 6 && grow_extended) return node(random_below(2) ? Tree::line_start : Tree::line_end);
    else {
        piece = node(Tree::letter);
        piece->byte = static_cast<char>('a' + random_below(2));
    }
    if (random_below(2)) return piece;
    static const int ranges[][2] = {{0, -1}, {0, -1}, {1, -1}, {0, 1}, {2, 2}, {1, 3}, {0, 2}, {2, -1}, {0, 0}};
    const int *range = ranges[random_below(sizeof ranges / sizeof *ranges)];
    piece = node(Tree::repeat, piece);
    piece->least = range[0];
    piece->most = range[1];
    return piece;
}

Tree *random_join(int depth) {
    Tree *tree = random_piece(depth);
    return random_below(5) < 3 ? node(Tree::join, tree, random_join(depth)) : tree;
}

Tree *random_either(int depth) {
    Tree *tree = random_join(depth);
    return grow_extended && random_below(4) == 0 ? node(Tree::either, tree, random_either(depth)) : tree;
}

void write_text(char *to, unsigned length, const char *letters) {
    auto count = static_cast<unsigned>(strlen(letters));
    for (unsigned i = 0; i < length; ++i) to[i] = letters[random_below(count)];
    to[length] = '\0';
}

void run_random(long count) {
    while (count > 0) {
        grow_extended = random_below(4) != 0;
        Tree *tree = random_either(3);
        Case c{};
        c.extended = grow_extended;
        c.newline = random_below(4) == 0;
        c.not_bol = random_below(8) == 0;
        c.not_eol = random_below(8) == 0;
        c.groups = number_groups(tree, 1) - 1;
        if (number_nodes(tree, 0) > 30 || c.groups > 9) {
            release(tree);
            continue;
        }
        Printer printer{c.pattern, c.extended};
        printer.print(tree);
        for (int i = 0; i < 8 && count > 0; ++i, --count) {
            char text[16];
            write_text(text, random_below(10), "aaabbb\nc");
            run(c, tree, text, true);
        }
        release(tree);
    }
}

// ---- back-references ----

bool refers_back(const Tree *tree) {
    return tree && (tree->kind == Tree::back_reference || refers_back(tree->left) ||
                    refers_back(tree->right));
}
bool has_anchor(const Tree *tree) {
    return tree && (tree->kind == Tree::line_start || tree->kind == Tree::line_end ||
                    has_anchor(tree->left) || has_anchor(tree->right));
}

// Letters become references to a group that is closed before them.
void refer_back(Tree *tree, bool (&closed)[10]) {
    if (!tree) return;
    int number = 1 + static_cast<int>(random_below(9));
    if (tree->kind == Tree::letter && closed[number]) {
        tree->kind = Tree::back_reference;
        tree->number = number;
    }
    refer_back(tree->left, closed);
    refer_back(tree->right, closed);
    if (tree->kind == Tree::group) closed[tree->number] = true;
}

void run_back_references(long count) {
    long too_slow = 0;
    while (count > 0) {
        grow_extended = random_below(4) != 0;
        Tree *tree = random_either(2);
        Case c{};
        c.extended = grow_extended;
        c.groups = number_groups(tree, 1) - 1;
        bool closed[10] = {};
        if (c.groups <= 9)
            for (int i = 0; i < 3; ++i) refer_back(tree, (memset(closed, 0, sizeof closed), closed));
        if (number_nodes(tree, 0) > 20 || !refers_back(tree) || has_anchor(tree)) {
            release(tree);
            continue;
        }
        Printer printer{c.pattern, c.extended};
        printer.print(tree);
        for (int i = 0; i < 8 && count > 0; ++i, --count) {
            char text[16];
            write_text(text, random_below(9), "aab");
            c.text = text;
            Offsets due, got;
            int matched = Trials(text).match(tree, due);
            int result = match_ours(c, c.pattern, 0, got);
            if (matched < 0) ++too_slow;
            else check(c, "back-references", due, matched, got, result);
        }
        release(tree);
    }
    if (too_slow) printf("%ld not tried to their end\n", too_slow);
}

// ---- garbage ----

void run_garbage(long count) {
    static const char bytes[] = "ab\\()[]{}*+?|^$.,:-=<>0123459\n\xE9";
    for (; count > 0; --count) {
        unsigned char pattern[24], text[24];
        unsigned length = random_below(sizeof pattern);
        for (unsigned i = 0; i < length; ++i)
            pattern[i] = random_below(20) ? static_cast<unsigned char>(bytes[random_below(sizeof bytes)])
                                          : static_cast<unsigned char>(random_below(256));
        for (unsigned char &c : text) c = static_cast<unsigned char>(bytes[random_below(sizeof bytes)]);
        // Exactly as many bytes as there are, so that the sanitizer sees any other that is read.
        char *exact = static_cast<char *>(malloc(length + 1u));
        memcpy(exact, pattern, length);
        regex_t expression;
        expression.re_endp = exact + length;
        if (_regcomp(&expression, exact, REG_PEND | static_cast<int>(random_below(16))) == 0) {
            unsigned text_length = random_below(sizeof text + 1);
            char *exact_text = static_cast<char *>(malloc(text_length + 1u));
            memcpy(exact_text, text, text_length);
            regmatch_t matches[12];
            matches[0] = {0, static_cast<regoff_t>(text_length)};
            int result = _regexec(&expression, exact_text, 12, matches,
                                  REG_STARTEND | static_cast<int>(random_below(4)));
            if (result != 0 && result != REG_NOMATCH) {
                ++failed;
                printf("result %d: %.*s\n", result, static_cast<int>(length), exact);
            }
            for (size_t i = 0; result == 0 && i <= expression.re_nsub && i < 12; ++i) {
                const regmatch_t &m = matches[i];
                bool fine = (m.rm_so == -1 && m.rm_eo == -1) ||
                            (m.rm_so >= matches[0].rm_so && m.rm_so <= m.rm_eo && m.rm_eo <= matches[0].rm_eo);
                if (fine) ++passed;
                else if (++failed < 20) printf("offsets: %.*s\n", static_cast<int>(length), exact);
            }
            free(exact_text);
            _regfree(&expression);
        } else {
            ++passed;
        }
        free(exact);
    }
}

} // namespace

int main(int argc, char **argv) {
    long number = argc > 2 ? atol(argv[2]) : 0;
    random_state = argc > 3 ? strtoul(argv[3], nullptr, 10) : 1;
    if (argc > 2 && !strcmp(argv[1], "exhaustive")) run_exhaustive(static_cast<int>(number));
    else if (argc > 2 && !strcmp(argv[1], "random")) run_random(number);
    else if (argc > 2 && !strcmp(argv[1], "back")) run_back_references(number);
    else if (argc > 2 && !strcmp(argv[1], "garbage")) run_garbage(number);
    else return 2;
    if (host_faults + host_whole_faults + tre_faults + tre_whole_faults)
        printf("differing from the definition: host %ld matches, %ld subexpressions; TRE %ld, %ld\n",
               host_whole_faults, host_faults, tre_whole_faults, tre_faults);
    printf("%ld passed, %ld failed\n", passed, failed);
    return failed != 0;
}
