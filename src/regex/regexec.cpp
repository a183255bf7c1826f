// The search: what must be there, then where the match ends, then where it starts, then its
// subexpressions; each only if it is wanted.

#include "regex/back_reference.h"
#include "regex/search_cache.h"
#include "string/kernels.h"

#include <string.h>

namespace vexrt {

namespace {

using Bytes = const unsigned char *;

struct Request {
    const Program &program;
    Bytes origin;     // what offsets count from
    Bytes start, end; // `end`: null as long as it is not known
    regmatch_t *matches;
    size_t count;
    int flags;
};

void report(const Request &request, Bytes start, Bytes end) {
    size_t i = 0;
    if (request.count > 0)
        request.matches[i++] = {static_cast<regoff_t>(start - request.origin),
                                static_cast<regoff_t>(end - request.origin)};
    for (; i < request.count; ++i) request.matches[i] = {-1, -1};
}

Bytes find_bytes(Bytes start, Bytes end, Bytes wanted, size_t length) {
    while (static_cast<size_t>(end - start) >= length) {
        size_t room = static_cast<size_t>(end - start) - length + 1;
        auto found = static_cast<Bytes>(memchr(start, wanted[0], room));
        if (!found || memcmp(found, wanted, length) == 0) return found;
        start = found + 1;
    }
    return nullptr;
}

// The first place of the must string, or null.
Bytes find_must_string(const Request &request) {
    const Program &program = request.program;
    if (request.end)
        return find_bytes(request.start, request.end, program.must, program.must_length);
    auto found = kernels.narrow.find_string(reinterpret_cast<const char *>(request.start),
                                            reinterpret_cast<const char *>(program.must));
    return reinterpret_cast<Bytes>(found);
}

bool must_has_nul(const Program &program) {
    return memchr(program.must, 0, program.must_length) != nullptr;
}

Kind kind_of(const Alphabet &alphabet, unsigned char byte) {
    return alphabet.kinds[alphabet.category_of[byte]];
}

Text text_of(const Request &request, const Alphabet &alphabet, Bytes from) {
    Text text;
    text.start = from;
    text.end = request.end;
    text.before = request.flags & REG_NOTBOL ? 0 : alphabet.kinds[alphabet.end_of_line];
    if (from > request.start) text.before = kind_of(alphabet, from[-1]);
    text.end_symbol = request.flags & REG_NOTEOL ? alphabet.end_within_line : alphabet.end_of_line;
    return text;
}

int failure_of(Outcome outcome) { return outcome == Outcome::none ? REG_NOMATCH : REG_ESPACE; }

template <typename StateSet>
int search_with(const Request &request, SearchCacheOf<StateSet> &cache, Bytes from) {
    Text text = text_of(request, cache.alphabet, from);
    Bytes start, end;
    Outcome outcome = cache.forward.find_end(text, request.count == 0, end);
    if (outcome != Outcome::found) return failure_of(outcome);
    if (request.count == 0) return 0;
    if (!cache.has_locator) {
        if (!cache.locator.create(request.program, cache.alphabet)) return REG_ESPACE;
        cache.has_locator = true;
    }
    outcome = cache.locator.find_start(text, end, start);
    if (outcome != Outcome::found) return REG_ESPACE;
    size_t groups = request.program.subexpression_count + 1;
    size_t count = request.count < groups ? request.count : groups;
    if (count > 1 &&
        !cache.locator.find_groups(text, start, end, request.origin, request.matches, count))
        return REG_ESPACE;
    request.matches[0] = {static_cast<regoff_t>(start - request.origin),
                          static_cast<regoff_t>(end - request.origin)};
    for (size_t i = count; i < request.count; ++i) request.matches[i] = {-1, -1};
    return 0;
}

template <typename StateSet>
int search_by(const Request &request, Bytes from) {
    auto cache = take_cache<StateSet>(request.program);
    if (!cache) return REG_ESPACE;
    int result = search_with(request, *cache, from);
    put_cache_back(request.program, cache);
    return result;
}

int search_by_trying(const Request &request, Bytes from) {
    Alphabet alphabet;
    alphabet.create(request.program);
    Text text = text_of(request, alphabet, request.start);
    return search_back_references(request.program, text, alphabet, from, request.origin,
                                  request.matches, request.count);
}

int search(Request &request) {
    const Program &program = request.program;
    Bytes from = request.start;
    if (program.must) {
        bool in_range = request.end || !must_has_nul(program);
        Bytes found = in_range ? find_must_string(request) : nullptr;
        if (!found) return REG_NOMATCH;
        if (program.literal) {
            report(request, found, found + program.must_length);
            return 0;
        }
        if (program.must_reach < static_cast<size_t>(found - from))
            from = found - program.must_reach;
    }
    if (!request.end) request.end = from + strlen(reinterpret_cast<const char *>(from));
    if (program.has_back_references) return search_by_trying(request, from);
    return program.state_count <= word_states ? search_by<WordStates>(request, from)
                                              : search_by<ByteStates>(request, from);
}

bool is_valid(const regex_t *expression) {
    if (expression->re_magic != expression_magic) return false;
    const Program *program = expression->re_g;
    return program && program->magic == program_magic && !(program->flags & failed_internally);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" int _regexec(const regex_t *preg, const char *string, size_t nmatch, regmatch_t *pmatch,
                        int eflags) {
    if (!is_valid(preg)) return REG_BADPAT;
    const Program &program = *preg->re_g;
    auto origin = reinterpret_cast<Bytes>(string);
    Request request{program, origin, origin, nullptr, pmatch, nmatch, eflags};
    if (program.compile_flags & REG_NOSUB) request.count = 0;
    if (eflags & REG_STARTEND) {
        if (pmatch[0].rm_eo < pmatch[0].rm_so) return REG_INVARG;
        request.start = origin + pmatch[0].rm_so;
        request.end = origin + pmatch[0].rm_eo;
    }
    return search(request);
}
