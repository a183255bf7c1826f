#include "regex/analysis.h"

#include <stdlib.h>

namespace vexrt {

namespace {

constexpr unsigned short none = 0xFFFF;

// Refines the classes by one set: each is cut in two where the set divides it.
struct Classes {
    unsigned short of[byte_count] = {};
    bool in_some_set[byte_count] = {};
    ByteSet singled_out{};
    unsigned count = 1;

    void refine(const ByteSet &set) {
        if (set == ByteSet{}) return;
        unsigned short inside[byte_count];
        unsigned members[byte_count] = {}, total[byte_count] = {};
        for (unsigned byte = 0; byte < byte_count; ++byte) {
            ++total[of[byte]];
            if (set.has(byte)) ++members[of[byte]], in_some_set[byte] = true;
        }
        unsigned old_count = count;
        for (unsigned c = 0; c < old_count; ++c) {
            bool divided = members[c] && members[c] < total[c];
            inside[c] = static_cast<unsigned short>(divided ? count++ : c);
        }
        if (count == old_count) return;
        for (unsigned byte = 0; byte < byte_count; ++byte)
            if (set.has(byte)) of[byte] = inside[of[byte]];
    }

    // By the set of one byte.
    void single_out(unsigned byte) {
        if (singled_out.has(byte)) return;
        singled_out.add(byte);
        in_some_set[byte] = true;
        of[byte] = static_cast<unsigned short>(count++);
    }
};

} // namespace

// In the order of the bytes: the bytes of one class, if they are in some set, get the next number.
void find_categories(Program &program) {
    Classes classes;
    for (uint32_t i = 0; i < program.set_count; ++i) classes.refine(program.sets[i]);
    for (uint32_t i = program.first_state; i < program.last_state; ++i)
        if (op_of(program.strip[i]) == Op::byte) classes.single_out(operand_of(program.strip[i]));
    unsigned short numbers[2 * byte_count]; // by class; a byte can have left an empty one
    for (unsigned short &number : numbers) number = none;
    program.category_count = 1;
    for (unsigned byte = 0; byte < byte_count; ++byte) {
        if (!classes.in_some_set[byte]) {
            program.categories[byte] = 0;
            continue;
        }
        unsigned short &number = numbers[classes.of[byte]];
        if (number == none) number = static_cast<unsigned short>(program.category_count++);
        program.categories[byte] = number;
    }
}

namespace {

// A run of literal bytes that stand side by side in every match.
struct Run {
    uint32_t start = 0, length = 0; // `start`: the first byte's place in the strip
    size_t before = 0;              // the most bytes that a match has before it

    void add(uint32_t at, size_t passed) {
        if (length++ == 0) start = at, before = passed;
    }
};

// The longest run. What may be left out or repeated ends a run; what may be left out holds none.
Run longest_run(const Program &program) {
    Run run, best;
    size_t passed = 0;
    auto end_run = [&] {
        if (run.length > best.length) best = run;
        run = Run();
    };
    auto pass = [&](size_t bytes) {
        passed = passed == SIZE_MAX || bytes == SIZE_MAX ? SIZE_MAX : passed + bytes;
    };
    unsigned choices = 0;
    for (uint32_t i = program.first_state + 1; i < program.last_state; ++i) {
        uint32_t word = program.strip[i];
        Op op = op_of(word);
        if (op == Op::choice_open) ++choices;
        if (op == Op::choice_close) --choices;
        if (op == Op::byte && !choices) {
            run.add(i, passed);
            pass(1);
        } else if (op == Op::set && !choices) {
            end_run();
            pass(1);
        } else if (op >= Op::back_reference && op <= Op::choice_close) {
            end_run();
            pass(SIZE_MAX);
            if (op == Op::option_open) i += operand_of(word);
        }
    }
    end_run();
    return best;
}

} // namespace

bool find_must_string(Program &program) {
    Run run = longest_run(program);
    if (run.length == 0) return true;
    auto must = static_cast<unsigned char *>(malloc(run.length + 1));
    if (!must) return false;
    size_t length = 0;
    for (uint32_t i = run.start; length < run.length; ++i)
        if (op_of(program.strip[i]) == Op::byte)
            must[length++] = static_cast<unsigned char>(operand_of(program.strip[i]));
    must[length] = 0;
    program.must = must;
    program.must_length = length;
    program.must_reach = run.before;
    program.literal = length + 2 == program.state_count;
    return true;
}

void find_repetition_depth(Program &program) {
    unsigned depth = 0, deepest = 0;
    for (uint32_t i = program.first_state + 1; op_of(program.strip[i]) != Op::end; ++i) {
        Op op = op_of(program.strip[i]);
        if (op == Op::loop_open && ++depth > deepest) deepest = depth;
        if (op == Op::loop_close) --depth;
    }
    program.repetition_depth = deepest;
    if (depth != 0) program.flags |= failed_internally;
}

// The first thing that matters is the start of a line, and only the text's start is one.
void find_anchor(Program &program) {
    if (program.compile_flags & REG_NEWLINE) return;
    uint32_t first = program.first_state + 1;
    while (op_of(program.strip[first]) == Op::group_open) ++first;
    program.anchored = op_of(program.strip[first]) == Op::line_start;
}

} // namespace vexrt
