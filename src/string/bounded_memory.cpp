// The bounds-checked memory functions (K.3.7.1.1, K.3.7.1.2, K.3.7.4.1, K.3.9.2.1.3,
// K.3.9.2.1.4). After a violation the whole target is zeroed (memset_s: filled), if there is one
// of a size that can be.

#include "core/constraint.h"
#include "string/kernels.h"
#include "string/overlap.h"

#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

enum class Overlap { allowed, violation };

// `Char` is the unit of the sizes.
template <typename Char>
errno_t violation(Char *to, Char value, size_t room, errno_t code) {
    if (to && room <= RSIZE_MAX) string_kernels<Char>().fill(to, value, room);
    return report_constraint(code);
}

template <typename Char>
errno_t move_checked(Char *to, size_t room, const Char *from, size_t count, Overlap overlap) {
    errno_t code = 0;
    if (!to || !from || room > RSIZE_MAX || count > RSIZE_MAX)
        code = EINVAL;
    else if (count > room)
        code = ERANGE;
    else if (overlap == Overlap::violation && overlaps(to, count, from, count))
        code = EINVAL;
    if (code) return violation(to, Char(0), room, code);
    kernels.move(to, from, count * sizeof(Char));
    return 0;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

errno_t memcpy_s(void *__restrict s1, rsize_t s1max, const void *__restrict s2, rsize_t n) {
    return move_checked(static_cast<char *>(s1), s1max, static_cast<const char *>(s2), n,
                        Overlap::violation);
}

errno_t memmove_s(void *s1, rsize_t s1max, const void *s2, rsize_t n) {
    return move_checked(static_cast<char *>(s1), s1max, static_cast<const char *>(s2), n,
                        Overlap::allowed);
}

errno_t wmemcpy_s(wchar_t *__restrict s1, rsize_t s1max, const wchar_t *__restrict s2, rsize_t n) {
    return move_checked(s1, s1max, s2, n, Overlap::violation);
}

errno_t wmemmove_s(wchar_t *s1, rsize_t s1max, const wchar_t *s2, rsize_t n) {
    return move_checked(s1, s1max, s2, n, Overlap::allowed);
}

errno_t memset_s(void *s, rsize_t smax, int c, rsize_t n) {
    char *to = static_cast<char *>(s), value = static_cast<char>(c);
    if (!to || smax > RSIZE_MAX || n > RSIZE_MAX) return violation(to, value, smax, EINVAL);
    if (n > smax) return violation(to, value, smax, ERANGE);
    kernels.narrow.fill(to, value, n);
    return 0;
}

} // extern "C"
