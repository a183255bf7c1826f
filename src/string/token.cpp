// Strings cut into tokens in place.

#include "core/constraint.h"
#include "core/thread_record.h"
#include "string/kernels.h"

#include <stdint.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

enum class TokenEnd { delimiter, string, limit };

// A token, null when there is none, and where the search for the next one begins.
template <typename Char>
struct Token {
    Char *start, *resume;
    TokenEnd end;
};

// Looks only at characters below `limit`, and changes nothing when they do not hold an end. The
// delimiter behind the token becomes its terminator.
template <typename Char>
Token<Char> next_token(Char *text, const Char *delimiters, size_t limit) {
    const StringKernels<Char> &characters = string_kernels<Char>();
    size_t skipped = characters.span_in(text, delimiters, limit);
    text += skipped;
    limit -= skipped;
    if (limit == 0) return {nullptr, text, TokenEnd::limit};
    if (!*text) return {nullptr, text, TokenEnd::string};
    size_t length = characters.span_outside(text, delimiters, limit);
    if (length == limit) return {nullptr, text, TokenEnd::limit};
    Char *end = text + length;
    if (!*end) return {text, end, TokenEnd::string};
    *end = 0;
    return {text, end + 1, TokenEnd::delimiter};
}

// Once the string has ended the position is null, and the string is not looked at again.
template <typename Char>
Char *tokenize(Char *text, const Char *delimiters, Char *&position) {
    if (!text) text = position;
    if (!text) return nullptr;
    Token<Char> token = next_token(text, delimiters, SIZE_MAX);
    position = token.end == TokenEnd::string ? nullptr : token.resume;
    return token.start;
}

// K.3.7.3.1: the size counts down with the position. After a violation neither has changed.
template <typename Char>
Char *tokenize_checked(Char *text, rsize_t *size, const Char *delimiters, Char **position) {
    errno_t code = EINVAL;
    if (size && delimiters && position && (text || *position) && *size <= RSIZE_MAX) {
        if (!text) text = *position;
        Token<Char> token = next_token(text, delimiters, *size);
        if (token.end != TokenEnd::limit) {
            *size -= static_cast<size_t>(token.resume - text);
            *position = token.resume;
            return token.start;
        }
        code = ERANGE;
    }
    report_constraint(code);
    return nullptr;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

char *strtok(char *__restrict s1, const char *__restrict s2) {
    return tokenize(s1, s2, thread_record().strtok_resume);
}

wchar_t *_wcstok_ms(wchar_t *__restrict s1, const wchar_t *__restrict s2) {
    return tokenize(s1, s2, thread_record().wcstok_resume);
}

wchar_t *wcstok(wchar_t *__restrict s1, const wchar_t *__restrict s2, wchar_t **__restrict ptr) {
    return tokenize(s1, s2, *ptr);
}

char *strtok_s(char *__restrict s1, rsize_t *__restrict s1max, const char *__restrict s2,
               char **__restrict ptr) {
    return tokenize_checked(s1, s1max, s2, ptr);
}

wchar_t *wcstok_s(wchar_t *__restrict s1, rsize_t *__restrict s1max, const wchar_t *__restrict s2,
                  wchar_t **__restrict ptr) {
    return tokenize_checked(s1, s1max, s2, ptr);
}

} // extern "C"
