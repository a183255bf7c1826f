#include "regex/forward.h"

#include <string.h>

namespace vexrt {

template <typename StateSet>
bool Forward<StateSet>::create(const Program &program, const Alphabet &alphabet) {
    program_ = &program;
    alphabet_ = &alphabet;
    cache_.create(alphabet.size, 2 * program.state_count + 1);
    for (CachedState *&state : initial_) state = nullptr;
    return seen_.create(program.state_count) && pending_.resize(program.state_count) &&
           key_.reserve(2 * program.state_count + 1);
}

template <typename StateSet>
CachedState *Forward<StateSet>::initial_state(Kind before) {
    CachedState *&state = initial_[before];
    if (state) return state;
    key_.clear();
    (void)key_.push(before | searching);
    return state = add_built();
}

// The state of the key that has been built; when there is no room, all others go.
template <typename StateSet>
CachedState *Forward<StateSet>::add_built() {
    if (CachedState *state = cache_.find_or_add(key_.data(), key_.size(), unknown)) return state;
    cache_.flush();
    for (CachedState *&state : initial_) state = nullptr;
    return cache_.find_or_add(key_.data(), key_.size(), unknown);
}

// Runs what stands between two bytes from `first` on, and collects the leaves that take the symbol.
// True when the end of the program is reached.
template <typename StateSet>
bool Forward<StateSet>::run_from(uint32_t first, Kind before, Symbol symbol) {
    bool at_end = false, text_ended = alphabet_->is_end(symbol);
    Kind after = alphabet_->kinds[symbol];
    unsigned byte = text_ended ? 0 : alphabet_->representatives[symbol];
    visit(first);
    while (pending_count_) {
        uint32_t state = pending_[--pending_count_], word = program_->strip[state];
        uint32_t operand = operand_of(word);
        switch (op_of(word)) {
        case Op::end: at_end = true; break;
        case Op::byte:
        case Op::set:
            if (!text_ended && takes(*program_, word, byte)) (void)key_.push(state);
            break;
        case Op::line_start:
        case Op::line_end:
        case Op::word_start:
        case Op::word_end:
            if (holds(op_of(word), before, after)) visit(state + 1);
            break;
        case Op::choice_open:
        case Op::choice_next:
            if (operand) visit(state + operand);
            visit(state + 1);
            break;
        case Op::choice_exit: visit(state + operand); break;
        case Op::option_open:
            visit(state + operand);
            visit(state + 1);
            break;
        case Op::loop_close:
            visit(state - operand);
            visit(state + 1);
            break;
        default: visit(state + 1);
        }
    }
    return at_end;
}

// Builds the key of what follows. True when there is a match before the symbol.
template <typename StateSet>
bool Forward<StateSet>::step(const uint32_t *key, size_t size, Symbol symbol) {
    Kind before = key[0] & (kind_count - 1);
    bool go_on = key[0] & searching, found = false;
    seen_.clear();
    key_.clear();
    (void)key_.push(0);
    for (size_t i = 1; i < size && !found; ++i) {
        size_t start = key_.size();
        for (; key[i] != boundary; ++i) found |= run_from(key[i] + 1, before, symbol);
        if (key_.size() > start) (void)key_.push(boundary);
    }
    if (!found && go_on) {
        size_t start = key_.size();
        found = run_from(program_->first_state + 1, before, symbol);
        if (key_.size() > start) (void)key_.push(boundary);
    }
    key_[0] = alphabet_->kinds[symbol];
    if (go_on && !found && !program_->anchored) key_[0] |= searching;
    return found;
}

// The transition, entered into its state unless that is gone. 0 without memory.
template <typename StateSet>
uint32_t Forward<StateSet>::build(CachedState *state, Symbol symbol) {
    unsigned flushes = cache_.flush_count();
    bool found = step(cache_.key_of(state), state->key_size, symbol);
    CachedState *next = add_built();
    if (!next) return 0;
    uint32_t transition = reinterpret_cast<uint32_t>(next);
    if (found) transition |= special | matched;
    if (is_dead(next) || is_resting(next)) transition |= special;
    if (flushes == cache_.flush_count()) state->slots()[symbol] = transition;
    return transition;
}

// Transitions that have been made before do not say that they lead to rest, so all states go.
template <typename StateSet>
void Forward<StateSet>::find_leaving_bytes() {
    cache_.flush();
    for (CachedState *&state : initial_) state = nullptr;
    CachedState *state = initial_state(0);
    bool leaves[byte_count + 1]; // by symbol
    unsigned flushes = cache_.flush_count();
    for (Symbol symbol = 0; state && symbol < alphabet_->end_of_line; ++symbol) {
        uint32_t transition = build(state, symbol);
        if (!transition || flushes != cache_.flush_count()) return;
        leaves[symbol] = transition != reinterpret_cast<uint32_t>(state);
        state->slots()[symbol] = unknown;
    }
    leaving_count_ = 0;
    for (unsigned byte = 0; byte < byte_count; ++byte) {
        leaves_[byte] = leaves[alphabet_->category_of[byte]];
        if (!leaves_[byte]) continue;
        ++leaving_count_;
        last_leaving_ = static_cast<unsigned char>(byte);
    }
    leaving_known_ = state != nullptr;
}

// The first byte that leaves the resting state.
template <typename StateSet>
const unsigned char *Forward<StateSet>::rest(const unsigned char *at,
                                             const unsigned char *end) const {
    if (leaving_count_ <= 1) {
        size_t size = static_cast<size_t>(end - at);
        auto found = leaving_count_ ? memchr(at, last_leaving_, size) : nullptr;
        return found ? static_cast<const unsigned char *>(found) : end;
    }
    while (end - at >= 8 && !(leaves_[at[0]] | leaves_[at[1]] | leaves_[at[2]] | leaves_[at[3]] |
                              leaves_[at[4]] | leaves_[at[5]] | leaves_[at[6]] | leaves_[at[7]]))
        at += 8;
    while (at < end && !leaves_[*at]) ++at;
    return at;
}

template <typename StateSet>
Outcome Forward<StateSet>::find_end(const Text &text, bool any_end, const unsigned char *&end) {
    Outcome outcome = Outcome::none;
    if (!leaving_known_ && text.end - text.start >= long_text && !program_->has_assertions)
        find_leaving_bytes();
    CachedState *state = initial_state(text.before);
    if (!state) return Outcome::no_memory;
    for (const unsigned char *at = text.start;; ++at) {
        if (is_resting(state)) at = rest(at, text.end);
        Symbol symbol = text.end_symbol;
        for (; at < text.end; ++at) {
            symbol = alphabet_->category_of[*at];
            uint32_t transition = state->slots()[symbol];
            if (transition & special) break;
            state = reinterpret_cast<CachedState *>(transition);
        }
        if (at == text.end) symbol = text.end_symbol;
        uint32_t transition = state->slots()[symbol];
        if (transition == unknown) transition = build(state, symbol);
        if (!transition) return Outcome::no_memory;
        if (transition & matched) {
            outcome = Outcome::found;
            end = at;
            if (any_end) return outcome;
        }
        state = state_of(transition);
        if (at == text.end || is_dead(state)) return outcome;
    }
}

template class Forward<WordStates>;
template class Forward<ByteStates>;

} // namespace vexrt
