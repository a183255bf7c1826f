// Expressions as trees, and a matcher written from the definition: slow, and nothing else.
#pragma once

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

struct Tree {
    enum Kind { letter, any, not_a, line_start, line_end, join, either, repeat, group,
                back_reference } kind;
    char byte;
    int id;          // below 64
    int number;      // of a group, or of the one that is referred to
    int least, most; // of a repetition; most -1: no limit
    Tree *left, *right;
};

struct Offsets {
    int at[10][2];
};

// Whether it can be empty anywhere.
inline bool nullable(const Tree *tree) {
    switch (tree->kind) {
    case Tree::join: return nullable(tree->left) && nullable(tree->right);
    case Tree::either: return nullable(tree->left) || nullable(tree->right);
    case Tree::repeat: return tree->least == 0 || nullable(tree->left);
    case Tree::group: return nullable(tree->left);
    default: return false;
    }
}

class Definition {
public:
    Definition(const char *text, bool newline, bool not_bol, bool not_eol)
        : text_(text), length_(static_cast<int>(strlen(text))), newline_(newline),
          not_bol_(not_bol), not_eol_(not_eol) {
        memset(known_, 0, sizeof known_);
    }

    // The leftmost match, the longest of those, its parts as long as possible, earlier ones first.
    bool match(const Tree *tree, Offsets &offsets) {
        for (int start = 0; start <= length_; ++start) {
            for (int end = length_; end >= start; --end) {
                if (!can(tree, start, end)) continue;
                for (auto &pair : offsets.at) pair[0] = pair[1] = -1;
                offsets.at[0][0] = start;
                offsets.at[0][1] = end;
                assign(tree, start, end, offsets);
                return true;
            }
        }
        return false;
    }

private:
    bool takes(const Tree *tree, char c) const {
        if (tree->kind == Tree::letter) return c == tree->byte;
        if (newline_ && c == '\n') return false;
        return tree->kind == Tree::any || c != 'a';
    }
    bool line_starts(int at) const {
        return at == 0 ? !not_bol_ : newline_ && text_[at - 1] == '\n';
    }
    bool line_ends(int at) const {
        return at == length_ ? !not_eol_ : newline_ && text_[at] == '\n';
    }

    // Whether the tree can match exactly this stretch.
    bool can(const Tree *tree, int from, int to) {
        char &known = known_[tree->id][from][to];
        if (!known) known = find_out(tree, from, to) ? 1 : 2;
        return known == 1;
    }
    bool find_out(const Tree *tree, int from, int to) {
        switch (tree->kind) {
        case Tree::letter:
        case Tree::any:
        case Tree::not_a: return to == from + 1 && takes(tree, text_[from]);
        case Tree::line_start: return from == to && line_starts(from);
        case Tree::line_end: return from == to && line_ends(from);
        case Tree::join:
            for (int middle = from; middle <= to; ++middle)
                if (can(tree->left, from, middle) && can(tree->right, middle, to)) return true;
            return false;
        case Tree::either: return can(tree->left, from, to) || can(tree->right, from, to);
        case Tree::repeat: return can_repeat(tree, tree->least, tree->most, from, to);
        case Tree::group: return can(tree->left, from, to);
        case Tree::back_reference: abort(); // see Trials
        }
        return false;
    }
    // An iteration matches the empty string only if the least number makes that necessary; never, if
    // the content can be empty anywhere: then one iteration is as good as several.
    bool can_repeat(const Tree *tree, int least, int most, int from, int to) {
        if (least > 1 && nullable(tree->left)) least = 1;
        if (least <= 0 && from == to) return true;
        if (most == 0) return false;
        for (int middle = least > 0 ? from : from + 1; middle <= to; ++middle)
            if (can(tree->left, from, middle) &&
                can_repeat(tree, least - 1, most < 0 ? most : most - 1, middle, to))
                return true;
        return false;
    }

    void assign(const Tree *tree, int from, int to, Offsets &offsets) {
        switch (tree->kind) {
        case Tree::join:
            for (int middle = to; middle >= from; --middle) {
                if (!can(tree->left, from, middle) || !can(tree->right, middle, to)) continue;
                assign(tree->left, from, middle, offsets);
                assign(tree->right, middle, to, offsets);
                return;
            }
            return;
        case Tree::either:
            assign(can(tree->left, from, to) ? tree->left : tree->right, from, to, offsets);
            return;
        case Tree::repeat:
            if (from < to || tree->least > 0)
                assign_repeat(tree, tree->least, tree->most, from, to, offsets);
            else if (tree->most != 0 && can(tree->left, from, to))
                iterate(tree, from, to, offsets);
            return;
        case Tree::group:
            offsets.at[tree->number][0] = from;
            offsets.at[tree->number][1] = to;
            assign(tree->left, from, to, offsets);
            return;
        default: return;
        }
    }
    void assign_repeat(const Tree *tree, int least, int most, int from, int to, Offsets &offsets) {
        if (least > 1 && nullable(tree->left)) least = 1;
        if (most == 0 || (from == to && least <= 0)) return;
        for (int middle = to; middle >= from; --middle) {
            int rest = most < 0 ? most : most - 1;
            if (!can(tree->left, from, middle) || !can_repeat(tree, least - 1, rest, middle, to))
                continue;
            iterate(tree, from, middle, offsets);
            assign_repeat(tree, least - 1, rest, middle, to, offsets);
            return;
        }
    }
    // What the last iteration matched counts, and only that.
    void iterate(const Tree *tree, int from, int to, Offsets &offsets) {
        forget(tree->left, offsets);
        assign(tree->left, from, to, offsets);
    }
    static void forget(const Tree *tree, Offsets &offsets) {
        if (!tree) return;
        if (tree->kind == Tree::group) offsets.at[tree->number][0] = offsets.at[tree->number][1] = -1;
        forget(tree->left, offsets);
        forget(tree->right, offsets);
    }

    const char *text_;
    int length_;
    char known_[64][12][12];
    bool newline_, not_bol_, not_eol_;
};

// The same with back-references: every way to match a stretch is tried, the best ones first, as a
// list of goals.
class Trials {
public:
    explicit Trials(const char *text) : text_(text), length_(static_cast<int>(strlen(text))) {}

    // -1: it takes too long.
    int match(const Tree *tree, Offsets &offsets) {
        for (int start = 0; start <= length_; ++start) {
            for (int end = length_; end >= start; --end) {
                for (auto &pair : values_.at) pair[0] = pair[1] = -1;
                reported_ = values_;
                Goal whole{node, tree, end, 0, 0, false, nullptr};
                if (!solve(&whole, start)) continue;
                offsets = found_;
                offsets.at[0][0] = start;
                offsets.at[0][1] = end;
                return steps_ > limit ? -1 : 1;
            }
        }
        return steps_ > limit ? -1 : 0;
    }

private:
    static constexpr long limit = 200000;
    enum What { node, close, further };
    struct Goal {
        What what;
        const Tree *tree;
        int to, least, most; // close: `to` is where the group starts
        bool first;
        const Goal *next;
    };

    bool solve(const Goal *goal, int at) {
        if (++steps_ > limit) return false;
        if (!goal) {
            found_ = reported_;
            return true;
        }
        const Tree *tree = goal->tree;
        if (goal->what == close) return solve_close(*goal, at);
        if (goal->what == further) return solve_repeat(*goal, at);
        switch (tree->kind) {
        case Tree::join:
            for (int middle = goal->to; middle >= at; --middle) {
                Goal right{node, tree->right, goal->to, 0, 0, false, goal->next};
                Goal left{node, tree->left, middle, 0, 0, false, &right};
                if (solve(&left, at)) return true;
            }
            return false;
        case Tree::either: {
            Goal left{node, tree->left, goal->to, 0, 0, false, goal->next};
            Goal right{node, tree->right, goal->to, 0, 0, false, goal->next};
            return solve(&left, at) || solve(&right, at);
        }
        case Tree::group: {
            Goal closing{close, tree, at, 0, 0, false, goal->next};
            Goal content{node, tree->left, goal->to, 0, 0, false, &closing};
            return solve(&content, at);
        }
        case Tree::repeat: {
            Goal first{further, tree, goal->to, tree->least, tree->most, true, goal->next};
            return solve(&first, at);
        }
        case Tree::back_reference: {
            const int *value = values_.at[tree->number];
            int size = value[1] - value[0];
            return value[0] >= 0 && goal->to - at == size &&
                   memcmp(text_ + value[0], text_ + at, static_cast<size_t>(size)) == 0 &&
                   solve(goal->next, goal->to);
        }
        default:
            return goal->to == at + 1 && takes(*tree, text_[at]) && solve(goal->next, goal->to);
        }
    }
    static bool takes(const Tree &tree, char c) {
        return tree.kind == Tree::letter ? c == tree.byte : tree.kind == Tree::any || c != 'a';
    }

    bool solve_close(const Goal &goal, int at) {
        Offsets values = values_, reported = reported_;
        int *value = values_.at[goal.tree->number], *report = reported_.at[goal.tree->number];
        report[0] = value[0] = goal.to;
        report[1] = value[1] = at;
        if (solve(goal.next, at)) return true;
        values_ = values;
        reported_ = reported;
        return false;
    }

    bool solve_repeat(const Goal &goal, int at) {
        const Tree *content = goal.tree->left;
        int least = goal.least > 1 && nullable(content) ? 1 : goal.least;
        bool may_be_empty = least > 0 || (goal.first && at == goal.to);
        Offsets reported = reported_;
        for (int middle = goal.to; goal.most != 0 && middle >= at + !may_be_empty; --middle) {
            int most = goal.most < 0 ? goal.most : goal.most - 1;
            // None follows an empty one that is not one of several that are necessary.
            if (middle == at && least <= 1 && (goal.most < 0 || nullable(content))) most = 0;
            Goal rest{further, goal.tree, goal.to, least - 1, most, false, goal.next};
            Goal iteration{node, content, middle, 0, 0, false, &rest};
            forget(content);
            if (solve(&iteration, at)) return true;
            reported_ = reported;
        }
        return least <= 0 && at == goal.to && solve(goal.next, at);
    }
    void forget(const Tree *tree) {
        if (!tree) return;
        if (tree->kind == Tree::group)
            reported_.at[tree->number][0] = reported_.at[tree->number][1] = -1;
        forget(tree->left);
        forget(tree->right);
    }

    const char *text_;
    int length_;
    long steps_ = 0;
    Offsets values_, reported_, found_;
};
