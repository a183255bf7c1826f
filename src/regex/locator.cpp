#include "regex/locator.h"

#include <string.h>

namespace vexrt {

bool Locator::create(const Program &program, const Alphabet &alphabet) {
    program_ = &program;
    alphabet_ = &alphabet;
    size_t largest_key = 2 * program.state_count + 1, decisions = program.state_count / 32 + 1;
    cache_.create(alphabet.size + kind_count, largest_key + kind_count * (largest_key + decisions));
    return sweeper_.create(program);
}

// ---- states ----

CachedState *Locator::find_or_add(const uint32_t *key, size_t size) {
    CachedState *state = cache_.find_or_add(key, size, unknown);
    if (!state) {
        cache_.flush();
        state = cache_.find_or_add(key, size, unknown);
    }
    return state;
}

CachedState *Locator::end_state(const Text &text, const unsigned char *end) {
    Symbol behind = end == text.end ? text.end_symbol : alphabet_->category_of[*end];
    uint32_t key = program_ends | alphabet_->kinds[behind];
    return find_or_add(&key, 1);
}

// Makes it if it is not there. Null without memory; `state` may move.
Locator::Sweep *Locator::sweep_of(CachedState *&state, Kind before) {
    uint32_t known = *sweep_slot(state, before);
    if (known != unknown) return reinterpret_cast<Sweep *>(known);
    const uint32_t *key = cache_.key_of(state);
    auto entries = reinterpret_cast<const ChainEntry *>(key + 1);
    size_t count = (state->key_size - 1) / 2;
    if (!sweeper_.step(entries, count, key[0] & program_ends, before, key[0] & (kind_count - 1)))
        return nullptr;
    const auto &reached = sweeper_.entries();
    const auto &decisions = sweeper_.decisions();
    size_t words = sizeof(Sweep) / sizeof(uint32_t) + 2 * reached.size() + decisions.size();
    uint32_t *room = cache_.allocate(words);
    if (!room) {
        key_.clear();
        for (size_t i = 0; i < state->key_size; ++i)
            if (!key_.push(key[i])) return nullptr;
        cache_.flush();
        state = find_or_add(key_.data(), key_.size());
        room = state ? cache_.allocate(words) : nullptr;
        if (!room) return nullptr;
    }
    auto sweep = reinterpret_cast<Sweep *>(room);
    *sweep = {sweeper_.starts(), static_cast<uint32_t>(reached.size())};
    memcpy(sweep->entries(), reached.data(), reached.size() * sizeof(ChainEntry));
    memcpy(sweep->decisions(), decisions.data(), decisions.size() * sizeof(uint32_t));
    *sweep_slot(state, before) = reinterpret_cast<uint32_t>(sweep);
    return sweep;
}

// The key of the position before, whose byte is `symbol`: of the leaves those that take it.
bool Locator::build_key(Sweep &sweep, Symbol symbol) {
    key_.clear();
    if (!key_.reserve(1 + 2 * sweep.count)) return false;
    (void)key_.push(alphabet_->kinds[symbol]);
    unsigned byte = alphabet_->representatives[symbol];
    int32_t least = INT32_MAX; // of the links shared with those that were left out
    for (uint32_t i = 0; i < sweep.count; ++i) {
        const ChainEntry &entry = sweep.entries()[i];
        if (entry.shared < least) least = entry.shared;
        if (!takes(*program_, program_->strip[entry.leaf], byte)) continue;
        int32_t shared = key_.size() == 1 ? shares_none : least;
        (void)key_.push(entry.leaf);
        (void)key_.push(static_cast<uint32_t>(shared));
        least = INT32_MAX;
    }
    return true;
}

// The transition, entered into the state unless that is gone. 0 without memory.
uint32_t Locator::build(CachedState *&state, Symbol symbol) {
    Sweep *sweep = sweep_of(state, alphabet_->kinds[symbol]);
    if (!sweep || !build_key(*sweep, symbol)) return 0;
    bool starts_here = sweep->starts;
    unsigned flushes = cache_.flush_count();
    CachedState *next = find_or_add(key_.data(), key_.size());
    if (!next) return 0;
    uint32_t transition = reinterpret_cast<uint32_t>(next);
    if (starts_here) transition |= special | starts;
    if (key_.size() == 1) transition |= special;
    if (flushes == cache_.flush_count()) state->slots()[symbol] = transition;
    return transition;
}

// ---- the start ----

void Locator::start_path(const unsigned char *end) {
    path_.clear();
    path_end_ = end;
    path_flushes_ = cache_.flush_count();
}

Outcome Locator::find_start(const Text &text, const unsigned char *end,
                            const unsigned char *&start) {
    CachedState *state = end_state(text, end);
    if (!state) return Outcome::no_memory;
    start_path(end);
    Outcome outcome = Outcome::none;
    for (const unsigned char *at = end;; --at) {
        if (path_.size() < path_limit && !path_.push(state)) return Outcome::no_memory;
        if (at == text.start) {
            Sweep *sweep = sweep_of(state, text.before);
            if (!sweep) return Outcome::no_memory;
            if (!sweep->starts) return outcome;
            start = at;
            return Outcome::found;
        }
        Symbol symbol = alphabet_->category_of[at[-1]];
        uint32_t transition = state->slots()[symbol];
        if (transition & special) {
            if (transition == unknown) transition = build(state, symbol);
            if (!transition) return Outcome::no_memory;
            if (transition & starts) {
                start = at;
                outcome = Outcome::found;
            }
        }
        state = reinterpret_cast<CachedState *>(transition & ~(special | starts));
        if (state->key_size == 1) return outcome;
    }
}

// ---- the subexpressions ----

// The ends of the pieces of a stretch of text, from right to left. When there are too many, every
// second one is given up, and of those to come as well.
class Locator::PieceEnds {
public:
    ~PieceEnds() {
        for (unsigned i = 0; i < count_; ++i) free(ends_[i].key);
    }
    bool add(const unsigned char *at, const uint32_t *key, size_t size) {
        if (++passed_ % stride_ != 0) return true;
        if (count_ == piece_limit) {
            thin_out();
            if (passed_ % stride_ != 0) return true;
        }
        auto copy = static_cast<uint32_t *>(malloc(size * sizeof *key));
        if (!copy) return false;
        memcpy(copy, key, size * sizeof *key);
        ends_[count_++] = {at, copy, size};
        return true;
    }
    unsigned count() const { return count_; }
    const PieceEnd &operator[](unsigned i) const { return ends_[i]; }

private:
    void thin_out() {
        for (unsigned i = 0; i < piece_limit; ++i) {
            if (i % 2 == 0)
                free(ends_[i].key);
            else
                ends_[i / 2] = ends_[i];
        }
        count_ = piece_limit / 2;
        stride_ *= 2;
    }

    PieceEnd ends_[piece_limit];
    unsigned count_ = 0;
    size_t passed_ = 0, stride_ = 1;
};

// Finds the states of the positions above `low`, down from `high`: those of the leftmost piece are
// in the path afterwards, the ends of all but the rightmost one in `ends`.
bool Locator::find_path(const Text &text, const unsigned char *low, const PieceEnd &high,
                        PieceEnds &ends) {
    cache_.flush(); // so that what fitted in once will do so again
    CachedState *state = find_or_add(high.key, high.key_size);
    if (!state) return false;
    start_path(high.at);
    for (const unsigned char *at = high.at;;) {
        if (!sweep_of(state, kind_before(text, at))) return false;
        if (path_.size() == path_limit || !path_valid()) {
            if (at != high.at && !ends.add(at, cache_.key_of(state), state->key_size)) return false;
            start_path(at);
        }
        if (!path_.push(state)) return false;
        if (--at == low) return true;
        Symbol symbol = alphabet_->category_of[*at];
        uint32_t transition = state->slots()[symbol];
        if (transition == unknown) transition = build(state, symbol);
        if (!transition) return false;
        state = reinterpret_cast<CachedState *>(transition & ~(special | starts));
    }
}

// Walks the positions above `low` up to `high`. The recursion is bounded: every level has fewer
// pieces by a factor.
bool Locator::walk_piece(const Text &text, const unsigned char *low, const PieceEnd &high) {
    PieceEnds ends;
    if (!find_path(text, low, high, ends)) return false;
    const unsigned char *walked = path_end_;
    walk(text);
    for (unsigned i = ends.count(); i-- > 0;) {
        if (ends[i].at == walked) continue;
        if (!walk_piece(text, walked, ends[i])) return false;
        walked = ends[i].at;
    }
    return walked == high.at || walk_piece(text, walked, high);
}

const uint32_t *Locator::decisions_at(const Text &text) const {
    CachedState *state = path_[static_cast<size_t>(path_end_ - walk_at_)];
    uint32_t sweep = *sweep_slot(state, kind_before(text, walk_at_));
    return reinterpret_cast<Sweep *>(sweep)->decisions();
}

void Locator::open_group(uint32_t number) {
    if (number >= records_.size()) return;
    records_[number].start = walk_at_;
    records_[number].opened = ++openings_;
}

// Walks on until the path ends or the program does.
void Locator::walk(const Text &text) {
    const uint32_t *decisions = decisions_at(text);
    auto decided = [&] { return Sweeper::decided(decisions, walk_state_); };
    for (;; ++walk_state_) {
        uint32_t word = program_->strip[walk_state_], operand = operand_of(word);
        switch (op_of(word)) {
        case Op::byte:
        case Op::set:
            if (++walk_at_ > path_end_) {
                ++walk_state_;
                return;
            }
            decisions = decisions_at(text);
            break;
        case Op::group_open: open_group(operand); break;
        case Op::group_close:
            if (operand < records_.size()) records_[operand].end = walk_at_;
            break;
        case Op::choice_open:
        case Op::choice_next:
            if (!decided()) walk_state_ += operand - 1;
            break;
        case Op::choice_exit: walk_state_ += operand; break;
        case Op::option_open:
            if (!decided()) walk_state_ += operand;
            break;
        case Op::loop_close:
            if (decided()) walk_state_ -= operand;
            break;
        case Op::end: return;
        default: break;
        }
    }
}

// A subexpression counts if it was opened after the one around it was, for the last time.
void Locator::report(const unsigned char *origin, regmatch_t *matches, size_t count) {
    for (size_t i = 1; i < count; ++i) {
        Record &record = records_[i];
        size_t parent = program_->parents[i];
        bool counts =
            record.opened &&
            (!parent || (records_[parent].opened && records_[parent].opened < record.opened));
        if (!counts) record.opened = 0;
        matches[i].rm_so = counts ? static_cast<regoff_t>(record.start - origin) : -1;
        matches[i].rm_eo = counts ? static_cast<regoff_t>(record.end - origin) : -1;
    }
}

bool Locator::find_groups(const Text &text, const unsigned char *start, const unsigned char *end,
                          const unsigned char *origin, regmatch_t *matches, size_t count) {
    if (!records_.resize(count)) return false;
    for (size_t i = 0; i < count; ++i) records_[i] = {nullptr, nullptr, 0};
    walk_at_ = start;
    walk_state_ = program_->first_state + 1;
    openings_ = 0;
    if (path_valid() && static_cast<size_t>(end - start) < path_.size()) {
        walk(text);
    } else {
        CachedState *state = end_state(text, end);
        if (!state) return false;
        Array<uint32_t> key;
        for (size_t i = 0; i < state->key_size; ++i)
            if (!key.push(cache_.key_of(state)[i])) return false;
        if (!walk_piece(text, start - 1, {end, key.data(), key.size()})) return false;
    }
    report(origin, matches, count);
    return true;
}

} // namespace vexrt
