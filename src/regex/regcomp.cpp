#include "regex/analysis.h"
#include "regex/emitter.h"
#include "regex/parser.h"

#include <string.h>

namespace vexrt {

namespace {

constexpr int debugging_flag = 64;

int pattern_length(const regex_t *expression, const char *pattern, int flags, size_t &length) {
    if ((flags & REG_EXTENDED) && (flags & REG_NOSPEC)) return REG_INVARG;
    if (!(flags & REG_PEND)) {
        length = strlen(pattern);
        return 0;
    }
    if (expression->re_endp < pattern) return REG_INVARG;
    length = static_cast<size_t>(expression->re_endp - pattern);
    return 0;
}

// The strip of the whole program: the tree's between two end instructions.
int make_strip(Tree &tree, Array<uint32_t> &strip) {
    if (tree[tree.root].words > strip_limit) return REG_ESPACE;
    bool made = strip.push(instruction(Op::end)) && emit_tree(tree, strip) &&
                strip.push(instruction(Op::end));
    return made ? 0 : REG_ESPACE;
}

int trim(Program &program) {
    void *trimmed = realloc(program.strip, program.state_count * sizeof *program.strip);
    if (!trimmed) return REG_ESPACE;
    program.strip = static_cast<uint32_t *>(trimmed);
    return 0;
}

int analyse(Program &program) {
    find_categories(program);
    if (int error = trim(program)) return error;
    find_anchor(program);
    if (!find_must_string(program)) return REG_ESPACE;
    find_repetition_depth(program);
    return program.flags & failed_internally ? REG_ASSERT : 0;
}

int compile(Program &program, const char *pattern, size_t length) {
    Tree tree;
    Array<uint32_t> strip;
    if (!strip.reserve(length / 2 * 3 + 1)) return REG_ESPACE;
    if (int error = parse(tree, pattern, length, program.compile_flags)) return error;
    if (int error = make_strip(tree, strip)) return error;
    program.state_count = static_cast<uint32_t>(strip.size());
    program.last_state = program.state_count - 1;
    program.strip = strip.release();
    program.set_count = static_cast<uint32_t>(tree.sets.size());
    program.sets = tree.sets.release();
    program.subexpression_count = tree.group_parents.size() - 1;
    program.parents = tree.group_parents.release();
    program.has_assertions = tree.has_assertions;
    program.has_back_references = tree.has_back_references;
    return analyse(program);
}

void release(Program *program) {
    release_cache(program->cache);
    free(program->strip);
    free(program->sets);
    free(program->must);
    free(program->parents);
    free(program);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" int _regcomp(regex_t *preg, const char *pattern, int cflags) {
    size_t length;
    int error = pattern_length(preg, pattern, cflags, length);
    preg->re_magic = 0;
    preg->re_g = nullptr;
    if (error) return error;
    auto program = static_cast<Program *>(calloc(1, sizeof(Program)));
    if (!program) return REG_ESPACE;
    program->magic = program_magic;
    program->compile_flags = cflags & ~debugging_flag;
    program->set_size = byte_count;
    error = compile(*program, pattern, length);
    preg->re_magic = expression_magic;
    preg->re_nsub = program->subexpression_count;
    preg->re_g = program;
    if (error) _regfree(preg);
    return error;
}

extern "C" void _regfree(regex_t *preg) {
    if (preg->re_magic != expression_magic) return;
    Program *program = preg->re_g;
    if (!program || program->magic != program_magic) return;
    preg->re_magic = 0;
    preg->re_g = nullptr;
    program->magic = 0;
    release(program);
}
