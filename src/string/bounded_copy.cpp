// The bounds-checked copies and joins of strings (K.3.7.1.3, K.3.7.1.4, K.3.7.2, K.3.9.2.1,
// K.3.9.2.2). After a violation the target is an empty string, if there is one with a size that can
// be.
//
// All four are one append: a copy is one to an empty string, and the unbounded ones take as many
// characters as there are. An unterminated target is EINVAL, a text that does not fit ERANGE, an
// overlap of the characters read with those written EINVAL.

#include "core/constraint.h"
#include "string/kernels.h"
#include "string/overlap.h"

#include <stdint.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

enum class Mode { copy, append };

template <typename Char>
errno_t append_checked(Char *to, size_t room, const Char *from, size_t limit, Mode mode) {
    size_t used = mode == Mode::append ? string_kernels<Char>().bounded_length(to, room) : 0;
    room -= used;
    if (room == 0) return EINVAL;
    size_t count = string_kernels<Char>().bounded_length(from, limit < room ? limit : room);
    if (count == room) return ERANGE;
    // With a limit the terminator need not be there to be read.
    size_t read = count < limit ? count + 1 : count;
    if (overlaps(to + used, count + 1, from, read)) return EINVAL;
    kernels.move(to + used, from, count * sizeof(Char));
    to[used + count] = 0;
    return 0;
}

// `limit` of RSIZE_MAX is no limit: the room is never more.
template <typename Char>
errno_t join(Char *to, size_t room, const Char *from, size_t limit, Mode mode) {
    if (!to || room == 0 || room > RSIZE_MAX) return report_constraint(EINVAL);
    bool valid = from && limit <= RSIZE_MAX;
    errno_t code = valid ? append_checked(to, room, from, limit, mode) : EINVAL;
    if (code == 0) return 0;
    to[0] = 0;
    return report_constraint(code);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

errno_t strcpy_s(char *__restrict s1, rsize_t s1max, const char *__restrict s2) {
    return join(s1, s1max, s2, RSIZE_MAX, Mode::copy);
}
errno_t wcscpy_s(wchar_t *__restrict s1, rsize_t s1max, const wchar_t *__restrict s2) {
    return join(s1, s1max, s2, RSIZE_MAX, Mode::copy);
}

errno_t strncpy_s(char *__restrict s1, rsize_t s1max, const char *__restrict s2, rsize_t n) {
    return join(s1, s1max, s2, n, Mode::copy);
}
errno_t wcsncpy_s(wchar_t *__restrict s1, rsize_t s1max, const wchar_t *__restrict s2, rsize_t n) {
    return join(s1, s1max, s2, n, Mode::copy);
}

errno_t strcat_s(char *__restrict s1, rsize_t s1max, const char *__restrict s2) {
    return join(s1, s1max, s2, RSIZE_MAX, Mode::append);
}
errno_t wcscat_s(wchar_t *__restrict s1, rsize_t s1max, const wchar_t *__restrict s2) {
    return join(s1, s1max, s2, RSIZE_MAX, Mode::append);
}

errno_t strncat_s(char *__restrict s1, rsize_t s1max, const char *__restrict s2, rsize_t n) {
    return join(s1, s1max, s2, n, Mode::append);
}
errno_t wcsncat_s(wchar_t *__restrict s1, rsize_t s1max, const wchar_t *__restrict s2, rsize_t n) {
    return join(s1, s1max, s2, n, Mode::append);
}

} // extern "C"
