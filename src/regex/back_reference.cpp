// What a back-reference matches depends on how its group was matched, so no automaton with a fixed
// set of states does, and ways must be tried one after the other. What is open for a later attempt
// stands on a stack of choices, and the changes to be undone then on a trail.
//
// First, for each start, all ways are tried to find where the longest match ends. A point of the
// program that is reached a second time at the same position, and with the same strings for the
// groups that are referred to, is not tried again. Then, if subexpressions are wanted, the ways
// that end there are tried in the order of the rule (see sweeper.h): at each tracked construct its
// end is chosen first, the farthest one before nearer ones, so the first way that succeeds is the
// best.
//
// Both count their steps, and the search is given up when there are too many.

#include "regex/back_reference.h"

#include "regex/array.h"

#include <string.h>

namespace vexrt {

namespace {

constexpr uint32_t step_limit = 1 << 25, steps_per_byte = 64; // in all: of one search
constexpr uint32_t visited_limit = 1 << 18;
constexpr size_t stack_limit = 1 << 20;
constexpr uint32_t no_place = UINT32_MAX;

// The points that have been tried, as rows of words; all are forgotten at once by a new generation.
class Visited {
public:
    [[nodiscard]] bool create(uint32_t width) {
        width_ = width + 1;
        return resize(1024);
    }
    void forget() {
        ++generation_;
        count_ = 0;
    }
    enum class Insertion { fresh, known, no_room };
    Insertion insert(const uint32_t *row) {
        if (count_ >= capacity_ / 2) {
            if (capacity_ >= visited_limit || !grow()) return Insertion::no_room;
        }
        uint32_t *slot = find(row);
        if (slot[0] == generation_) return Insertion::known;
        slot[0] = generation_;
        memcpy(slot + 1, row, (width_ - 1) * sizeof *row);
        ++count_;
        return Insertion::fresh;
    }

private:
    // The slot that holds the row, or the one where it belongs.
    uint32_t *find(const uint32_t *row) {
        uint32_t hash = 2166136261u;
        for (uint32_t i = 0; i + 1 < width_; ++i) {
            hash = (hash ^ row[i]) * 0x9E3779B1u;
            hash ^= hash >> 15;
        }
        for (uint32_t i = hash;; ++i) {
            uint32_t *slot = words_.data() + (i & (capacity_ - 1)) * width_;
            if (slot[0] != generation_ || memcmp(slot + 1, row, (width_ - 1) * sizeof *row) == 0)
                return slot;
        }
    }
    bool resize(uint32_t capacity) {
        if (!words_.resize(size_t(capacity) * width_)) return false;
        capacity_ = capacity;
        memset(words_.data(), 0, words_.size() * sizeof(uint32_t));
        return true;
    }
    bool grow() {
        Array<uint32_t> old;
        if (!old.resize(words_.size())) return false;
        memcpy(old.data(), words_.data(), words_.size() * sizeof(uint32_t));
        uint32_t old_capacity = capacity_;
        if (!resize(2 * capacity_)) return false;
        for (uint32_t i = 0; i < old_capacity; ++i) {
            const uint32_t *row = old.data() + i * width_;
            if (row[0] == generation_) memcpy(find(row + 1), row, width_ * sizeof *row);
        }
        return true;
    }

    uint32_t width_ = 0, capacity_ = 0, count_ = 0, generation_ = 1;
    Array<uint32_t> words_;
};

class Backtracker {
public:
    Backtracker(const Program &program, const Text &text, const Alphabet &alphabet)
        : program_(program), text_(text), alphabet_(alphabet),
          length_(static_cast<uint32_t>(text.end - text.start)),
          steps_left_(step_limit + uint64_t(steps_per_byte) * length_) {}

    [[nodiscard]] bool create() {
        size_t groups = program_.subexpression_count + 1;
        bool referred[10] = {};
        for (uint32_t i = program_.first_state; i < program_.last_state; ++i)
            if (op_of(program_.strip[i]) == Op::back_reference)
                referred[operand_of(program_.strip[i])] = true;
        for (uint32_t i = 1; i < 10; ++i)
            if (referred[i]) referred_[referred_count_++] = i;
        return groups_.resize(groups) && visited_.create(3 + 3 * referred_count_);
    }

    // REG_NOMATCH, or 0 and the end of the longest match.
    int find_longest(uint32_t start, uint32_t &end) {
        visited_.forget();
        exact_ = false;
        longest_ = no_place;
        int error = run(start, length_);
        end = longest_;
        return error ? error : longest_ == no_place ? REG_NOMATCH : 0;
    }
    int find_groups(uint32_t start, uint32_t end) {
        exact_ = true;
        return run(start, end);
    }

    void report(const unsigned char *origin, regmatch_t *matches, size_t count) {
        regoff_t shift = static_cast<regoff_t>(text_.start - origin);
        for (size_t i = 1; i < count; ++i) {
            Group &group = groups_[i];
            size_t parent = program_.parents[i];
            if (parent && (!groups_[parent].opened || groups_[parent].opened > group.opened))
                group.opened = 0;
            matches[i].rm_so = group.opened ? static_cast<regoff_t>(group.start) + shift : -1;
            matches[i].rm_eo = group.opened ? static_cast<regoff_t>(group.end) + shift : -1;
        }
    }

private:
    // `opened`: the number of the last opening, 0 when there was none. The others: places.
    struct Group {
        uint32_t open, start, end, opened;
    };
    // A construct or an iteration that has started. `end`: where it must end, or no_place; `limit`:
    // where the innermost one must of those for which that is known.
    struct Frame {
        uint32_t parent, start, end, limit;
        bool nonempty, copies; // copies: the content of an option or of repeat instructions
    };
    // What a choice goes on with: at its state, or by choosing an end: of the construct that opens
    // there, or of an iteration.
    enum class Retry : uint8_t { go, construct, first_iteration, further_iteration };
    struct Choice {
        Retry retry;
        uint32_t state, position, frame, end;
        size_t trail, frames;
    };
    struct Change {
        uint32_t group;
        Group old;
    };

    // ---- the machine ----

    int run(uint32_t start, uint32_t end) {
        for (size_t i = 0; i < groups_.size(); ++i) groups_[i] = {no_place, no_place, no_place, 0};
        frames_.clear();
        choices_.clear();
        trail_.clear();
        openings_ = 0;
        state_ = program_.first_state + 1;
        position_ = start;
        frame_ = 0;
        if (!frames_.push({0, start, end, end, false, false})) return REG_ESPACE;
        for (bool goes_on = true; goes_on;) {
            if (steps_left_-- == 0) return REG_ESPACE;
            uint32_t word = program_.strip[state_];
            if (op_of(word) == Op::end) {
                if (ends_here(end)) return 0;
                goes_on = retry();
            } else {
                goes_on = perform(word) || retry();
            }
        }
        if (given_up_) return REG_ESPACE;
        return exact_ ? REG_ASSERT : 0; // where there is a match, one of the ways succeeds
    }

    // Notes that the program has been run to its end; true when nothing better can come.
    bool ends_here(uint32_t end) {
        if (exact_) return position_ == end;
        if (longest_ == no_place || position_ > longest_) longest_ = position_;
        return longest_ == length_;
    }

    bool give_up() {
        given_up_ = true;
        return false;
    }

    // Goes back to the last choice. False when there is none.
    bool retry() {
        while (!given_up_ && !choices_.empty()) {
            Choice choice = choices_.last();
            while (trail_.size() > choice.trail) {
                Change change = trail_.pop();
                groups_[change.group] = change.old;
            }
            if (!frames_.resize(choice.frames)) return give_up(); // fewer: it cannot fail
            state_ = choice.state;
            position_ = choice.position;
            frame_ = choice.frame;
            if (choice.retry == Retry::go) {
                (void)choices_.pop();
                return true;
            }
            uint32_t nearest = position_ + (choice.retry == Retry::further_iteration);
            if (choice.end < nearest) {
                (void)choices_.pop();
                continue;
            }
            --choices_.last().end;
            if (choice.end == 0) (void)choices_.pop();
            if (push_frame(choice.end) && enter(choice.retry)) return true;
        }
        return false;
    }

    bool push_choice(Retry retry, uint32_t state, uint32_t frame, uint32_t end = 0) {
        if (choices_.size() >= stack_limit) return give_up();
        Choice choice{retry, state, position_, frame, end, trail_.size(), frames_.size()};
        return choices_.push(choice) || give_up();
    }

    bool push_frame(uint32_t end, bool nonempty = false, bool copies = false) {
        uint32_t limit = end == no_place ? frames_[frame_].limit : end;
        if (frames_.size() >= stack_limit) return give_up();
        copies |= op_of(program_.strip[state_]) == Op::repeat_open;
        if (!frames_.push({frame_, position_, end, limit, nonempty, copies})) return give_up();
        frame_ = static_cast<uint32_t>(frames_.size() - 1);
        return true;
    }

    bool pop_frame() {
        const Frame &frame = frames_[frame_];
        if (frame.end != no_place && frame.end != position_) return false;
        if (frame.nonempty && frame.start == position_) return false;
        frame_ = frame.parent;
        return true;
    }

    bool perform(uint32_t word) {
        uint32_t operand = operand_of(word);
        switch (Op op = op_of(word)) {
        case Op::byte:
        case Op::set:
            if (position_ >= frames_[frame_].limit ||
                !takes(program_, word, text_.start[position_]))
                return false;
            ++position_;
            break;
        case Op::back_reference:
            if (!take_again(groups_[operand])) return false;
            break;
        case Op::group_open:
        case Op::option_open:
        case Op::repeat_open:
        case Op::choice_open:
        case Op::loop_open: return begin(Retry::construct, is_tracked(word));
        case Op::group_close: return close_group(operand);
        case Op::option_close:
        case Op::repeat_close:
        case Op::choice_close: return close_construct(op);
        case Op::loop_close: return close_iteration(word);
        case Op::choice_next: return enter(Retry::construct);
        case Op::choice_exit: state_ += operand; return true;
        default:
            if (!holds(op, kind_before(), kind_behind())) return false;
        }
        ++state_;
        return true;
    }

    Kind kind_before() const {
        return position_ ? kind_of(text_.start[position_ - 1]) : text_.before;
    }
    Kind kind_behind() const {
        return position_ < length_ ? kind_of(text_.start[position_])
                                   : alphabet_.kinds[text_.end_symbol];
    }
    Kind kind_of(unsigned char byte) const { return alphabet_.kinds[alphabet_.category_of[byte]]; }

    bool take_again(const Group &group) {
        if (group.end == no_place) return false;
        uint32_t size = group.end - group.start;
        if (size > frames_[frame_].limit - position_) return false;
        const unsigned char *here = text_.start + position_, *there = text_.start + group.start;
        auto compare = program_.compile_flags & REG_ICASE ? _memicmp : memcmp;
        if (compare(here, there, size) != 0) return false;
        position_ += size;
        return true;
    }

    // ---- constructs ----

    // Where the ways are tried in order, the end of what is tracked is chosen before it is entered:
    // by a retry, which comes at once.
    bool begin(Retry what, bool tracked) {
        if (exact_ && tracked) {
            (void)push_choice(what, state_, frame_, farthest_end(what));
            return false;
        }
        return push_frame(no_place, what == Retry::further_iteration) && enter(what);
    }

    // No end of a construct lies behind that of those around it; and where it only repeats one
    // leaf, not behind the run of bytes that this takes.
    uint32_t farthest_end(Retry what) const {
        uint32_t limit = frames_[frame_].limit, leaf = state_;
        if (what != Retry::construct) return limit;
        if (op_of(program_.strip[leaf]) == Op::group_open) ++leaf;
        if (op_of(program_.strip[leaf]) == Op::option_open) ++leaf;
        if (op_of(program_.strip[leaf]) != Op::loop_open) return limit;
        uint32_t word = program_.strip[++leaf];
        if (!is_leaf(op_of(word)) || !only_closes(leaf + 1)) return limit;
        uint32_t end = position_;
        while (end < limit && takes(program_, word, text_.start[end])) ++end;
        return end;
    }
    // The loop's close is there, and the closes of what else opens at `state_` follow.
    bool only_closes(uint32_t at) const {
        if (op_of(program_.strip[at++]) != Op::loop_close) return false;
        bool group = op_of(program_.strip[state_]) == Op::group_open;
        bool option = op_of(program_.strip[state_ + group]) == Op::option_open;
        if (option && op_of(program_.strip[at++]) != Op::option_close) return false;
        return !group || op_of(program_.strip[at]) == Op::group_close;
    }

    bool enter(Retry what) {
        uint32_t word = program_.strip[state_], operand = operand_of(word);
        switch (op_of(word)) {
        case Op::group_open:
            if (!change_group(operand)) return false;
            groups_[operand].open = position_;
            groups_[operand].opened = ++openings_;
            break;
        case Op::option_open:
            if (follows_empty_copy(word)) {
                state_ += operand;
                return true;
            }
            if (!push_choice(Retry::go, state_ + operand, frame_)) return false;
            if (!push_frame(no_place, word & reluctant_bit, true)) return false;
            break;
        case Op::choice_open:
        case Op::choice_next:
            if (operand && !push_choice(Retry::go, state_ + operand, frame_)) return false;
            break;
        case Op::loop_open:
            if (what == Retry::construct)
                return begin(Retry::first_iteration, word & iteration_tracked_bit);
            break;
        default: break;
        }
        ++state_;
        return true;
    }

    // Behind an empty copy of a repeated element come no others.
    bool follows_empty_copy(uint32_t word) const {
        const Frame &around = frames_[frames_[frame_].parent];
        return (word & reluctant_bit) && around.copies && around.start == position_;
    }

    bool change_group(uint32_t number) {
        return trail_.push({number, groups_[number]}) || give_up();
    }

    bool close_group(uint32_t number) {
        if (!change_group(number)) return false;
        groups_[number].start = groups_[number].open;
        groups_[number].end = position_;
        return close_construct(Op::group_close);
    }

    bool close_construct(Op op) {
        // An option that was taken has a frame of its own within the option's.
        if (frames_[frame_].copies && op == Op::option_close && !pop_frame()) return false;
        if (!pop_frame() || (op != Op::group_close && !is_first_visit())) return false;
        ++state_;
        return true;
    }

    // A loop whose end is chosen goes on until it is there. Otherwise a further iteration is tried
    // first; at most one of the two reaches the end of what is around the loop.
    bool close_iteration(uint32_t word) {
        bool empty = frames_[frame_].start == position_;
        if (!pop_frame() || !is_first_visit()) return false;
        const Frame &loop = frames_[frame_];
        if (empty || position_ == loop.limit || loop.end == position_) {
            ++state_;
            return pop_frame();
        }
        if (loop.end == no_place && !push_choice(Retry::go, state_ + 1, loop.parent)) return false;
        state_ -= operand_of(word);
        return begin(Retry::further_iteration, word & iteration_tracked_bit);
    }

    // Which of the constructs around are empty so far, and which of these must not stay so.
    uint32_t empty_frames() const {
        uint32_t word = 1;
        for (uint32_t i = frame_; i != 0 && frames_[i].start == position_; i = frames_[i].parent)
            word = word * 5 + 1 + frames_[i].nonempty;
        return word;
    }

    // Whether this point has not been reached yet with the same strings to be referred to. Where
    // the ways are tried in order, it can have been reached with another end to be met.
    bool is_first_visit() {
        if (exact_) return true;
        uint32_t row[3 + 3 * 9];
        row[0] = state_;
        row[1] = position_;
        row[2] = empty_frames();
        uint32_t size = 3;
        for (uint32_t i = 0; i < referred_count_; ++i) {
            const Group &group = groups_[referred_[i]];
            row[size++] = group.open;
            row[size++] = group.start;
            row[size++] = group.end;
        }
        switch (visited_.insert(row)) {
        case Visited::Insertion::fresh: return true;
        case Visited::Insertion::known: return false;
        default: return give_up();
        }
    }

    const Program &program_;
    const Text &text_;
    const Alphabet &alphabet_;
    uint32_t length_;
    uint32_t referred_[9], referred_count_ = 0;
    Array<Group> groups_;
    Array<Frame> frames_;
    Array<Choice> choices_;
    Array<Change> trail_;
    Visited visited_;
    bool exact_ = false, given_up_ = false;
    uint64_t steps_left_;
    uint32_t longest_ = no_place, openings_ = 0;
    uint32_t state_ = 0, position_ = 0, frame_ = 0;
};

} // namespace

int search_back_references(const Program &program, const Text &text, const Alphabet &alphabet,
                           const unsigned char *from, const unsigned char *origin,
                           regmatch_t *matches, size_t count) {
    Backtracker tries(program, text, alphabet);
    if (!tries.create()) return REG_ESPACE;
    uint32_t length = static_cast<uint32_t>(text.end - text.start), end = 0;
    uint32_t start = static_cast<uint32_t>(from - text.start);
    int error;
    while ((error = tries.find_longest(start, end)) == REG_NOMATCH && !program.anchored &&
           start < length)
        ++start;
    if (error || count == 0) return error;
    size_t groups = program.subexpression_count + 1;
    size_t reported = count < groups ? count : groups;
    if (reported > 1) {
        if ((error = tries.find_groups(start, end)) != 0) return error;
        tries.report(origin, matches, reported);
    }
    regoff_t shift = static_cast<regoff_t>(text.start - origin);
    matches[0] = {static_cast<regoff_t>(start) + shift, static_cast<regoff_t>(end) + shift};
    for (size_t i = reported; i < count; ++i) matches[i] = {-1, -1};
    return 0;
}

} // namespace vexrt
