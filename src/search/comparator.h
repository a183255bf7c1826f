// The comparators of the sorting and searching functions.
#pragma once

namespace vexrt {

using PlainComparator = int (*)(const void *, const void *);
using Comparator = int (*)(const void *, const void *, void *);

// The caller removes the arguments, so a comparator of two never notices the third.
inline Comparator with_context(PlainComparator comparator) {
    return reinterpret_cast<Comparator>(reinterpret_cast<void *>(comparator));
}

} // namespace vexrt
