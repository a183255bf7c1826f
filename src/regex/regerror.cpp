#include <regex.h>
#include <string.h>

namespace {

constexpr const char *texts[] = {
    "No error",
    "Regexec() failed to match",
    "Invalid regular expression",
    "Invalid collating element",
    "Invalid character class",
    "Trailing backslash (\\)",
    "Invalid backreference number",
    "Brackets ([ ]) not balanced",
    "Parentheses not balanced",
    "Braces not balanced",
    "Invalid repetition count(s)",
    "Invalid character range",
    "Out of memory",
    "Repetition-operator operand invalid",
    "Empty (sub)expression",
    "Internal error",
    "Invalid argument to regex routine",
};
constexpr int text_count = sizeof texts / sizeof *texts;

} // namespace

extern "C" size_t _regerror(int code, const regex_t *, char *buf, size_t size) {
    const char *text =
        code >= 0 && code < text_count ? texts[code] : "*** unknown regexp error code ***";
    size_t length = strlen(text);
    if (size > 0) {
        size_t stored = length < size ? length : size - 1;
        memcpy(buf, text, stored);
        buf[stored] = '\0';
    }
    return length + 1;
}
