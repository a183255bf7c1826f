#include "search/comparator.h"

#include <search.h>
#include <string.h>

namespace vexrt {

namespace {

// The element that compares equal to the key, or the place behind the last one.
char *find(const void *key, char *element, char *end, size_t width, PlainComparator comparator) {
    while (element != end && comparator(key, element) != 0) element += width;
    return element;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

void *_lfind(const void *key, const void *base, size_t *nelp, size_t width,
             int (*compar)(const void *, const void *)) {
    auto *first = static_cast<char *>(const_cast<void *>(base)), *end = first + *nelp * width;
    char *element = find(key, first, end, width, compar);
    return element != end ? element : nullptr;
}

void *_lsearch(const void *key, void *base, size_t *nelp, size_t width,
               int (*compar)(const void *, const void *)) {
    auto *first = static_cast<char *>(base), *end = first + *nelp * width;
    char *element = find(key, first, end, width, compar);
    if (element != end) return element;
    ++*nelp;
    return memmove(end, key, width);
}

} // extern "C"
