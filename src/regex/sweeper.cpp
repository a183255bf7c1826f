#include "regex/sweeper.h"

#include <string.h>

namespace vexrt {

bool Sweeper::create(const Program &program) {
    program_ = &program;
    size_t count = program.state_count;
    if (!enclosing_.resize(count) || !way_at_.resize(count) || !frames_.reserve(count) ||
        !decisions_.resize((count + 31) / 32) || !find_constructs())
        return false;
    for (size_t i = 0; i < count; ++i) way_at_[i] = no_way;
    return true;
}

bool Sweeper::find_constructs() {
    uint32_t innermost = 0;
    constructs_.clear();
    if (!constructs_.push({0, program_->last_state, 0})) return false;
    auto enter_construct = [&](uint32_t close) {
        uint32_t depth = constructs_[innermost].depth + 1;
        if (!constructs_.push({innermost, close, depth})) return false;
        innermost = static_cast<uint32_t>(constructs_.size() - 1);
        if (depth > deepest_) deepest_ = depth;
        return true;
    };
    // From right to left, as everything here: a close is met first.
    for (uint32_t i = program_->last_state; --i > program_->first_state;) {
        uint32_t word = program_->strip[i];
        switch (op_of(word)) {
        case Op::byte:
        case Op::set: enclosing_[i] = innermost; break;
        case Op::loop_close:
            has_loops_ = true;
            if (is_tracked(word) && !enter_construct(i)) return false;
            if ((word & iteration_tracked_bit) && !enter_construct(i)) return false;
            break;
        case Op::loop_open:
            if (word & iteration_tracked_bit) innermost = constructs_[innermost].parent;
            if (is_tracked(word)) innermost = constructs_[innermost].parent;
            break;
        case Op::group_close:
        case Op::option_close:
        case Op::choice_close:
        case Op::repeat_close:
            if (is_tracked(word) && !enter_construct(i)) return false;
            break;
        case Op::group_open:
        case Op::option_open:
        case Op::choice_open:
        case Op::repeat_open:
            if (is_tracked(word)) innermost = constructs_[innermost].parent;
            break;
        default: break;
        }
    }
    return true;
}

// Sets the ways before the leaves of the list.
bool Sweeper::load(const ChainEntry *entries, size_t count) {
    if (!shared_.resize(count) || !link_.resize(count)) return false;
    for (size_t i = 0; i < count; ++i) {
        int32_t shared = shared_[i] = entries[i].shared;
        int32_t link = static_cast<int32_t>(i) - 1;
        while (link >= 0 && shared_[static_cast<size_t>(link)] >= shared)
            link = link_[static_cast<size_t>(link)];
        link_[i] = link;
        uint32_t depth = constructs_[enclosing_[entries[i].leaf]].depth;
        bool same_chain = shared >= 0 && static_cast<uint32_t>(shared) == depth;
        way_at_[entries[i].leaf] = {same_chain ? link : static_cast<int32_t>(i), depth};
    }
    return true;
}

bool Sweeper::step(const ChainEntry *entries, size_t count, bool at_end, Kind before, Kind after) {
    if (!load(entries, count)) return false;
    reached_.clear();
    memset(decisions_.data(), 0, decisions_.size() * sizeof(uint32_t));
    Way end = at_end ? Way{0, 0} : no_way;
    if (has_loops_) sweep<false>(end, before, after);
    if (!reached_.reserve(program_->state_count)) return false;
    sweep<true>(end, before, after);
    starts_ = way_.alive();
    for (size_t i = 0; i < count; ++i) way_at_[entries[i].leaf] = no_way;
    return list_reached();
}

// The innermost construct's end no longer counts: the way goes on outside.
void Sweeper::leave_construct() {
    --depth_;
    if (!way_.alive() || way_.old <= depth_) return;
    way_.old = depth_;
    if (way_.entry > 0 && shared_[static_cast<size_t>(way_.entry)] >= static_cast<int32_t>(depth_))
        way_.entry = link_[static_cast<size_t>(way_.entry)];
}

void Sweeper::push_frame() { (void)frames_.push({way_, no_way, passes_, false}); }

template <bool deciding>
void Sweeper::sweep(Way at_end, Kind before, Kind after) {
    way_ = at_end;
    passes_ = false;
    depth_ = 0;
    frames_.clear();
    for (uint32_t i = program_->last_state; --i > program_->first_state;) {
        uint32_t word = program_->strip[i];
        switch (Op op = op_of(word)) {
        case Op::byte:
        case Op::set:
            if (deciding && way_.alive()) (void)reached_.push({i, way_});
            way_ = way_at_[i];
            passes_ = false;
            break;
        case Op::group_close:
        case Op::repeat_close: enter(word); break;
        case Op::group_open:
        case Op::repeat_open: leave(word); break;
        case Op::loop_close:
        case Op::loop_open: sweep_loop<deciding>(i, word); break;
        case Op::option_close:
        case Op::option_open: sweep_option<deciding>(i, word); break;
        case Op::choice_close:
        case Op::choice_exit:
        case Op::choice_next:
        case Op::choice_open: sweep_choice<deciding>(i, word); break;
        default:
            if (!holds(op, before, after)) {
                way_ = no_way;
                passes_ = false;
            }
        }
    }
}

template <bool deciding>
void Sweeper::sweep_loop(uint32_t state, uint32_t word) {
    bool iteration_tracked = word & iteration_tracked_bit;
    if (op_of(word) == Op::loop_close) {
        push_frame();
        enter(word);
        if (!deciding) {
            way_ = no_way;
            passes_ = true;
        } else if (way_at_[state] > way_) {
            way_ = way_at_[state];
            decide(state);
        }
        depth_ += iteration_tracked;
        return;
    }
    if (iteration_tracked) leave_construct();
    if (!deciding) way_at_[state + operand_of(word)] = way_;
    leave(word);
    Frame frame = frames_.pop();
    if (deciding || !passes_) return;
    if (frame.behind > way_) way_ = frame.behind;
    passes_ = frame.passes_behind;
}

// Nothing is as good as an empty content only if the option is reluctant.
template <bool deciding>
void Sweeper::sweep_option(uint32_t state, uint32_t word) {
    if (op_of(word) == Op::option_close) {
        push_frame();
        enter(word);
        return;
    }
    Frame frame = frames_.pop();
    bool reluctant = word & reluctant_bit;
    if (frame.behind > way_ || (reluctant && frame.behind == way_))
        way_ = frame.behind;
    else if (deciding)
        decide(state);
    passes_ |= frame.passes_behind;
    leave(word);
}

template <bool deciding>
void Sweeper::sweep_choice(uint32_t state, uint32_t word) {
    Op op = op_of(word);
    if (op == Op::choice_close) {
        push_frame();
        enter(word);
        return;
    }
    Frame &frame = frames_.last();
    if (op == Op::choice_exit) {
        way_ = frame.behind;
        passes_ = frame.passes_behind;
        return;
    }
    if (way_.alive() && !(frame.best > way_)) {
        frame.best = way_;
        if (deciding) decide(state);
    }
    frame.best_passes |= passes_;
    if (op == Op::choice_next) return;
    way_ = frame.best;
    passes_ = frame.best_passes;
    (void)frames_.pop();
    leave(word);
}

// ---- the next list ----

// Sorts stably, in time linear in the number of the elements and of the keys.
template <typename KeyOf>
void Sweeper::sort_by(uint32_t limit, KeyOf key_of) {
    for (uint32_t i = 0; i <= limit; ++i) counts_[i] = 0;
    for (size_t i = 0; i < reached_.size(); ++i) ++counts_[key_of(reached_[i])];
    uint32_t start = 0;
    for (uint32_t i = 0; i <= limit; ++i) {
        uint32_t count = counts_[i];
        counts_[i] = start;
        start += count;
    }
    for (size_t i = 0; i < reached_.size(); ++i)
        sorted_[counts_[key_of(reached_[i])]++] = reached_[i];
    memcpy(reached_.data(), sorted_.data(), reached_.size() * sizeof(Reached));
}

// By their ways, and those of the same way from left to right; they come from right to left.
void Sweeper::sort_reached() {
    size_t count = reached_.size();
    for (size_t i = 0; i < count / 2; ++i) {
        Reached swapped = reached_[i];
        reached_[i] = reached_[count - 1 - i];
        reached_[count - 1 - i] = swapped;
    }
    if (count < 16) {
        for (size_t i = 1; i < count; ++i) {
            Reached moved = reached_[i];
            size_t at = i;
            for (; at > 0 && reached_[at - 1].way > moved.way; --at)
                reached_[at] = reached_[at - 1];
            reached_[at] = moved;
        }
        return;
    }
    sort_by(deepest_, [](const Reached &reached) { return reached.way.old; });
    sort_by(static_cast<uint32_t>(shared_.size()),
            [](const Reached &reached) { return static_cast<uint32_t>(reached.way.entry); });
}

// Of two leaves with the same way: it goes through the same new ends as far as the constructs
// around the leaves are the same. Such a construct has one new end a step, and so is left here once
// a step at most.
int32_t Sweeper::shared_links(const Reached &left, const Reached &right) const {
    uint32_t construct = enclosing_[left.leaf];
    while (constructs_[construct].depth > left.way.old && constructs_[construct].close < right.leaf)
        construct = constructs_[construct].parent;
    return static_cast<int32_t>(constructs_[construct].depth);
}

bool Sweeper::list_reached() {
    size_t largest = deepest_ > shared_.size() ? deepest_ : shared_.size();
    if (!counts_.resize(largest + 1) || !sorted_.resize(reached_.size()) ||
        !entries_.resize(reached_.size()))
        return false;
    sort_reached();
    for (size_t i = 0; i < reached_.size(); ++i) {
        entries_[i] = {reached_[i].leaf, shares_none};
        if (i == 0) continue;
        const Reached &left = reached_[i - 1], &right = reached_[i];
        if (left.way == right.way) {
            entries_[i].shared = shared_links(left, right);
            continue;
        }
        // What the old chains have in common, as far as they are part of these.
        int32_t least =
            static_cast<int32_t>(left.way.old < right.way.old ? left.way.old : right.way.old);
        for (int32_t e = left.way.entry + 1; e <= right.way.entry; ++e)
            if (shared_[static_cast<size_t>(e)] < least) least = shared_[static_cast<size_t>(e)];
        entries_[i].shared = least;
    }
    return true;
}

} // namespace vexrt
