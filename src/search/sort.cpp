// qsort: an introspective sort. Quicksort with a partition into less, equal and greater; the pivot
// is a median of three or of nine; ranges of up to 32 elements are sorted by insertion, and a range
// on which the budget of work has run out by heap sort.
//
// Which elements are compared, and in which order elements end up that compare equal, is part of
// the interface. How elements are moved is chosen once a call by their size.

#include "core/constraint.h"
#include "search/partition.h"

#include <stdint.h>
#include <stdlib.h>

namespace vexrt {

namespace {

constexpr size_t insertion_limit = 32; // elements
constexpr size_t median_of_nine_distance = 40;

template <typename Elements, typename Context>
class Sort {
public:
    Sort(Elements elements, Comparator comparator, Context context)
        : sortable_{elements, comparator, context} {}

    // Recurses on the smaller part only, so the depth is at most the logarithm of `count`.
    void run(char *first, size_t count, size_t budget) const {
        while (count > insertion_limit && budget > 0) {
            char *end = first + count * size();
            char *pivot = choose_pivot(first, end);
            EqualRun equal = Partition<Elements, Context>(sortable_, first, end, pivot).run();
            budget = budget / 2 + budget / 2 / 2;
            size_t less = static_cast<size_t>(equal.first - first) / size();
            size_t greater = static_cast<size_t>(end - equal.end) / size();
            if (less < greater) {
                run(first, less, budget);
                first = equal.end;
                count = greater;
            } else {
                run(equal.end, greater, budget);
                count = less;
            }
        }
        if (count > insertion_limit)
            heap_sort(first, count);
        else
            insertion_sort(first, count);
    }

private:
    size_t size() const { return sortable_.size(); }
    int compare(const char *left, const char *right) const {
        return sortable_.compare(left, right);
    }
    void swap(char *a, char *b) const { sortable_.swap(a, b); }

    char *choose_pivot(char *first, char *end) const {
        size_t distance = static_cast<size_t>(end - first) / size() - 1;
        char *mid = first + (distance + 1) / 2 * size(), *last = end - size();
        if (distance > median_of_nine_distance) {
            size_t step = (distance / 8 + 1) * size();
            sortable_.sort_three(first, first + step, first + 2 * step);
            sortable_.sort_three(mid - step, mid, mid + step);
            sortable_.sort_three(last - 2 * step, last - step, last);
            sortable_.sort_three(first + step, mid, last - step);
        } else {
            sortable_.sort_three(first, mid, last);
        }
        return mid;
    }

    // An element not less than the first one stops behind it at the latest; a comparator that
    // contradicts itself must not lead out of the range.
    void insertion_sort(char *first, size_t count) const {
        if (count == 0) return;
        const Sortable<Elements, Context> sortable = sortable_;
        char *const end = first + count * sortable.size();
        for (char *next = first + sortable.size(); next != end; next += sortable.size()) {
            char *place = next;
            if (sortable.compare(next, first) < 0)
                place = first;
            else
                while (place != first && sortable.compare(next, place - sortable.size()) < 0)
                    place -= sortable.size();
            if (place != next) sortable.elements.move_to_front(place, next);
        }
    }

    void heap_sort(char *first, size_t count) const {
        for (size_t parent = count / 2; parent > 0; --parent) sift(first, parent - 1, count);
        for (; count > 1; --count) {
            swap(first, first + (count - 1) * size());
            sift(first, 0, count - 1);
        }
    }

    // The value at `top` goes down to a leaf along the larger children and then up again to its
    // place.
    void sift(char *first, size_t top, size_t count) const {
        size_t hole = top;
        for (size_t child; (child = 2 * hole + 1) < count; hole = child) {
            char *left = first + child * size();
            if (child + 1 < count && compare(left, left + size()) <= 0) ++child;
            swap(first + hole * size(), first + child * size());
        }
        while (hole > top) {
            size_t parent = (hole - 1) / 2;
            char *value = first + hole * size(), *above = first + parent * size();
            if (compare(value, above) <= 0) break;
            swap(value, above);
            hole = parent;
        }
    }

    Sortable<Elements, Context> sortable_;
};

template <typename Elements, typename Context>
void sort(Elements elements, void *base, size_t count, Comparator comparator, Context context) {
    Sort<Elements, Context>(elements, comparator, context)
        .run(static_cast<char *>(base), count, count);
}

// Elements of no size are all the same object: there is nothing to order.
template <typename Context>
void sort_by_size(void *base, size_t count, size_t size, Comparator comparator, Context context) {
    using Vector = float __attribute__((vector_size(16)));
    switch (size) {
    case 0: return;
    case 4: return sort(ValueElements<uint32_t>(), base, count, comparator, context);
    case 8: return sort(ValueElements<double>(), base, count, comparator, context);
    case 16: return sort(ValueElements<Vector>(), base, count, comparator, context);
    default: return sort(ByteElements{size}, base, count, comparator, context);
    }
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

void qsort(void *base, size_t nmemb, size_t size, int (*compar)(const void *, const void *)) {
    sort_by_size(base, nmemb, size, with_context(compar), NoContext());
}

errno_t qsort_s(void *base, rsize_t nmemb, rsize_t size,
                int (*compar)(const void *x, const void *y, void *context), void *context) {
    if (nmemb > RSIZE_MAX || (nmemb != 0 && (!base || !compar)) || size > RSIZE_MAX)
        return report_constraint(EINVAL);
    sort_by_size(base, nmemb, size, compar, context);
    return 0;
}

} // extern "C"
