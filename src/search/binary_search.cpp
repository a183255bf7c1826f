#include "core/constraint.h"
#include "search/comparator.h"

#include <stdlib.h>

namespace vexrt {

namespace {

// A conditional move would wait for the comparison; a branch lets the processor fetch the next
// element meanwhile.
inline void stay_a_branch() { __asm__ volatile(""); }

void *search(const void *key, const void *base, size_t count, size_t size, Comparator comparator,
             void *context) {
    const char *first = static_cast<const char *>(base);
    while (count) {
        const char *mid = first + count / 2 * size;
        int order = comparator(key, mid, context);
        if (order == 0) return const_cast<char *>(mid);
        if (order > 0) {
            first = mid + size;
            --count;
            stay_a_branch();
        }
        count /= 2;
    }
    return nullptr;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

void *bsearch(const void *key, const void *base, size_t nmemb, size_t size,
              int (*compar)(const void *, const void *)) {
    return search(key, base, nmemb, size, with_context(compar), nullptr);
}

void *bsearch_s(const void *key, const void *base, rsize_t nmemb, rsize_t size,
                int (*compar)(const void *k, const void *y, void *context), void *context) {
    if (nmemb > RSIZE_MAX || size > RSIZE_MAX || (nmemb != 0 && (!key || !base || !compar))) {
        report_constraint(EINVAL);
        return nullptr;
    }
    return search(key, base, nmemb, size, compar, context);
}

} // extern "C"
