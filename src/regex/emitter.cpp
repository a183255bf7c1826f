// Turns the tree into the program's strip. What is still to be emitted stands on a stack of tasks,
// so neither nesting nor repetition costs recursion.
//
//   x*       option( loop( x ) )
//   x{2,4}   x x option( x option( x ) )
//   x{2,}    x loop( x )
//
// The copies of x{n,m} whose length matters to what follows stand between repeat instructions. If x
// can match the empty string anywhere, all copies but the first are optional and reluctant: then an
// empty copy never comes after one that is not, and replaces what it captured. Such copies stand
// between repeat instructions in any case, which show whether what came before was empty.

#include "regex/emitter.h"

#include "regex/program.h"

namespace vexrt {

namespace {

constexpr uint32_t saturated = UINT32_MAX / 2;

uint32_t add(uint32_t a, uint32_t b) { return a + b < saturated ? a + b : saturated; }
uint32_t multiply(uint32_t a, uint32_t b) {
    uint64_t product = uint64_t(a) * b;
    return product < saturated ? static_cast<uint32_t>(product) : saturated;
}

// ---- measures ----

void measure_sequence(Tree &tree, Node &sequence) {
    sequence.fixed = sequence.nullable = true;
    NodeIndex last_variable = 0;
    for (NodeIndex i = sequence.first; i; i = tree[i].next) {
        const Node &child = tree[i];
        sequence.length = add(sequence.length, child.length);
        sequence.words = add(sequence.words, child.words);
        sequence.nullable &= child.nullable;
        if (!child.fixed) last_variable = i;
    }
    if (!last_variable) return;
    sequence.fixed = false;
    for (NodeIndex i = sequence.first; i != last_variable; i = tree[i].next)
        tree[i].tracked = !tree[i].fixed;
}

void measure_choice(Tree &tree, Node &choice) {
    choice.fixed = true;
    choice.length = tree[choice.first].length;
    for (NodeIndex i = choice.first; i; i = tree[i].next) {
        const Node &child = tree[i];
        choice.words = add(choice.words, add(child.words, 2));
        choice.fixed &= child.fixed && child.length == choice.length;
        choice.nullable |= child.nullable;
    }
}

unsigned mandatory_copies(const Node &repeat, const Node &child) {
    return child.nullable && repeat.least > 1 ? 1 : repeat.least;
}

void measure_repeat(Tree &tree, Node &repeat) {
    const Node &child = tree[repeat.first];
    bool endless = repeat.most == no_limit;
    repeat.fixed = child.fixed && (repeat.least == repeat.most || child.length == 0);
    repeat.length = multiply(child.length, repeat.least);
    repeat.nullable = child.nullable || repeat.least == 0;
    uint32_t copies = endless ? (repeat.least ? repeat.least : 1u) : repeat.most;
    repeat.words = add(multiply(add(child.words, 2), copies), 4);
}

} // namespace

void measure(Tree &tree, NodeIndex index) {
    Node &node = tree[index];
    node.length = node.words = 0;
    node.nullable = false;
    switch (node.kind) {
    case NodeKind::byte:
    case NodeKind::set:
        node.fixed = true;
        node.length = node.words = 1;
        break;
    case NodeKind::assertion:
        node.fixed = true;
        node.words = 1;
        break;
    case NodeKind::back_reference:
        node.fixed = false;
        node.words = 1;
        break;
    case NodeKind::group: {
        const Node &content = tree[node.first];
        node.fixed = content.fixed;
        node.length = content.length;
        node.nullable = content.nullable;
        node.words = add(content.words, 2);
        break;
    }
    case NodeKind::sequence: measure_sequence(tree, node); break;
    case NodeKind::choice: measure_choice(tree, node); break;
    case NodeKind::repeat: measure_repeat(tree, node); break;
    }
}

namespace {

class Emitter {
public:
    Emitter(Tree &tree, Array<uint32_t> &strip) : tree_(tree), strip_(strip) {}

    bool run() {
        visit(tree_.root, false);
        while (ok_ && !tasks_.empty()) perform(tasks_.pop());
        return ok_;
    }

private:
    enum class Action : uint8_t {
        visit,       // emit a node
        word,        // emit an instruction
        close,       // the same, and give it and its partner their distance
        alternative, // the alternative before is complete: go on with this node, or end the choice
        copies,      // `count` copies of the repeat node's child, and more to follow
        options,     // `count` optional copies, one in the other
    };
    struct Task {
        Action action;
        bool flag; // visit: tracked; copies: others follow; options: reluctant
        uint16_t count;
        uint32_t operand, bits;
    };
    // A choice that is not complete. Its exits are a list through their operands.
    struct Choice {
        uint32_t opening, current, last_exit;
    };

    void later(Action action, uint32_t operand, bool flag = false, unsigned count = 0,
               uint32_t bits = 0) {
        ok_ &= tasks_.push({action, flag, static_cast<uint16_t>(count), operand, bits});
    }
    void visit(NodeIndex index, bool tracked) { later(Action::visit, index, tracked); }

    uint32_t here() const { return static_cast<uint32_t>(strip_.size()); }
    void emit(uint32_t word) { ok_ = ok_ && strip_.push(word); }
    void emit(Op op, uint32_t operand) { emit(instruction(op, operand)); }

    void perform(const Task &task) {
        switch (task.action) {
        case Action::visit: emit_node(task.operand, task.flag); break;
        case Action::word: emit(task.operand); break;
        case Action::close: close(task.operand); break;
        case Action::alternative: next_alternative(task.operand); break;
        case Action::copies: emit_copies(task); break;
        case Action::options: emit_options(task); break;
        }
    }

    void open(Op opening, Op closing, uint32_t bits) {
        ok_ &= opened_.push(here());
        emit(opening, bits);
        later(Action::close, instruction(closing, bits));
    }
    void close(uint32_t word) {
        uint32_t partner = opened_.pop(), distance = here() - partner;
        emit(word | distance);
        strip_[partner] |= distance;
    }

    void emit_node(NodeIndex index, bool tracked) {
        const Node &node = tree_[index];
        uint32_t bits = tracked ? tracked_bit : 0;
        switch (node.kind) {
        case NodeKind::byte: emit(Op::byte, node.value); break;
        case NodeKind::set: emit(Op::set, node.value); break;
        case NodeKind::assertion: emit(node.value); break;
        case NodeKind::back_reference: emit(Op::back_reference, node.value); break;
        case NodeKind::group:
            emit(Op::group_open, node.value | bits);
            later(Action::word, instruction(Op::group_close, node.value | bits));
            visit(node.first, false);
            break;
        case NodeKind::sequence: emit_sequence(node); break;
        case NodeKind::choice: emit_choice(node, bits); break;
        case NodeKind::repeat: emit_repeat(index, bits); break;
        }
    }

    // The tasks are pushed in order, then turned round, since the last one pushed is done first.
    void emit_sequence(const Node &sequence) {
        size_t start = tasks_.size();
        for (NodeIndex i = sequence.first; i && ok_; i = tree_[i].next) visit(i, tree_[i].tracked);
        for (size_t end = tasks_.size(); start + 1 < end; ++start) {
            Task swapped = tasks_[start];
            tasks_[start] = tasks_[--end];
            tasks_[end] = swapped;
        }
    }

    void emit_choice(const Node &choice, uint32_t bits) {
        ok_ &= choices_.push({here(), here(), 0});
        emit(Op::choice_open, bits);
        later(Action::alternative, tree_[choice.first].next);
        visit(choice.first, false);
    }

    void next_alternative(NodeIndex index) {
        Choice &choice = choices_.last();
        if (!index) {
            close_choice(choices_.pop());
            return;
        }
        emit(Op::choice_exit, choice.last_exit);
        choice.last_exit = here() - 1;
        strip_[choice.current] |= here() - choice.current;
        choice.current = here();
        emit(Op::choice_next, 0);
        later(Action::alternative, tree_[index].next);
        visit(index, false);
    }

    void close_choice(const Choice &choice) {
        for (uint32_t exit = choice.last_exit; exit;) {
            uint32_t before = operand_of(strip_[exit]);
            strip_[exit] = instruction(Op::choice_exit, here() - exit);
            exit = before;
        }
        emit(Op::choice_close, strip_[choice.opening] & tracked_bit);
    }

    // ---- repetition ----

    void emit_repeat(NodeIndex index, uint32_t bits) {
        const Node &repeat = tree_[index];
        if (repeat.most == 0) return;
        unsigned least = mandatory_copies(repeat, tree_[repeat.first]);
        bool endless = repeat.most == no_limit;
        if (least == 0 && endless) {
            open(Op::option_open, Op::option_close, bits);
            emit_loop(repeat.first, 0);
        } else if (least == 0) {
            later(Action::options, index, false, repeat.most, bits);
        } else if (least == 1 && endless) {
            emit_loop(repeat.first, bits);
        } else {
            if (bits || tree_[repeat.first].nullable) {
                emit(Op::repeat_open, bits);
                later(Action::word, instruction(Op::repeat_close, bits));
            }
            unsigned optional = endless ? 0 : repeat.most - least;
            if (optional) later(Action::options, index, true, optional);
            later(Action::copies, index, optional != 0, least);
        }
    }

    void emit_loop(NodeIndex child, uint32_t bits) {
        bool variable = !tree_[child].fixed;
        open(Op::loop_open, Op::loop_close, bits | (variable ? iteration_tracked_bit : 0));
        visit(child, false);
    }

    void emit_copies(const Task &task) {
        const Node &repeat = tree_[task.operand];
        bool last = task.count == 1, variable = !tree_[repeat.first].fixed;
        if (last && repeat.most == no_limit) {
            emit_loop(repeat.first, 0);
            return;
        }
        if (!last) later(Action::copies, task.operand, task.flag, task.count - 1u);
        visit(repeat.first, variable && (!last || task.flag));
    }

    void emit_options(const Task &task) {
        const Node &repeat = tree_[task.operand];
        bool last = task.count == 1;
        open(Op::option_open, Op::option_close, task.bits | (task.flag ? reluctant_bit : 0));
        if (!last) later(Action::options, task.operand, true, task.count - 1u);
        visit(repeat.first, !last && !tree_[repeat.first].fixed);
    }

    Tree &tree_;
    Array<uint32_t> &strip_;
    Array<Task> tasks_;
    Array<uint32_t> opened_; // where the instructions stand whose partners are to come
    Array<Choice> choices_;
    bool ok_ = true;
};

} // namespace

bool emit_tree(Tree &tree, Array<uint32_t> &strip) { return Emitter(tree, strip).run(); }

} // namespace vexrt
