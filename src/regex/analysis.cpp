#include "regex/analysis.h"

#include <stdlib.h>

namespace vexrt {

namespace {

constexpr unsigned short none = 0xFFFF;

// The bytes in classes: those that no set so far divides. The literal bytes, which are classes of
// their own, are left out.
struct Classes {
    ByteSet members[byte_count];
    unsigned count = 1;

    explicit Classes(const ByteSet &literals) {
        members[0] = literals;
        members[0].invert();
    }

    void refine(const ByteSet &set) {
        for (unsigned c = 0, old_count = count; c < old_count; ++c) {
            ByteSet inside = members[c], outside = members[c];
            inside.keep(set);
            outside.remove(set);
            if (inside.empty() || outside.empty()) continue;
            members[c] = outside;
            members[count++] = inside;
        }
    }

    void number(unsigned short (&class_of)[byte_count]) const {
        for (unsigned c = 0; c < count; ++c)
            for (unsigned word = 0; word < 8; ++word)
                for (uint32_t bits = members[c].words[word]; bits; bits &= bits - 1)
                    class_of[32 * word + static_cast<unsigned>(__builtin_ctz(bits))] =
                        static_cast<unsigned short>(c);
    }
};

} // namespace

// In the order of the bytes: the bytes of one class, if they are in some set, get the next number.
void find_categories(Program &program) {
    ByteSet literals{};
    for (uint32_t i = program.first_state; i < program.last_state; ++i)
        if (op_of(program.strip[i]) == Op::byte) literals.add(operand_of(program.strip[i]));
    ByteSet in_some_set = literals;
    Classes classes(literals);
    for (uint32_t i = 0; i < program.set_count; ++i) {
        classes.refine(program.sets[i]);
        in_some_set.add(program.sets[i]);
    }
    unsigned short class_of[byte_count], numbers[byte_count];
    classes.number(class_of);
    for (unsigned short &number : numbers) number = none;
    unsigned short next = 1;
    for (unsigned byte = 0; byte < byte_count; ++byte) {
        if (literals.has(byte)) {
            program.categories[byte] = next++;
        } else if (!in_some_set.has(byte)) {
            program.categories[byte] = 0;
        } else {
            unsigned short &number = numbers[class_of[byte]];
            if (number == none) number = next++;
            program.categories[byte] = number;
        }
    }
    program.category_count = next;
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
