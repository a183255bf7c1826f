// qsort: an introspective sort. Quicksort with a partition into less, equal and greater; the pivot
// is a median of three or of nine; ranges of up to 32 elements are sorted by insertion, and a range
// on which the budget of work has run out by heap sort.
//
// Which elements are compared, and in which order elements end up that compare equal, is part of
// the interface. How elements are moved is chosen once a call by their size.

#include "core/constraint.h"
#include "search/comparator.h"
#include "search/elements.h"

#include <stdint.h>
#include <stdlib.h>

namespace vexrt {

namespace {

constexpr size_t insertion_limit = 32; // elements
constexpr size_t median_of_nine_distance = 40;

template <typename Elements>
class Sort {
public:
    Sort(Elements elements, Comparator comparator, void *context)
        : elements_(elements), comparator_(comparator), context_(context) {}

    // Recurses on the smaller part only, so the depth is at most the logarithm of `count`.
    void run(char *first, size_t count, size_t budget) const {
        while (count > insertion_limit && budget > 0) {
            char *end = first + count * size();
            Run equal = partition(first, end);
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
    // Elements that all compare equal to the pivot.
    struct Run {
        char *first, *end;
    };

    size_t size() const { return elements_.size; }
    int compare(const char *left, const char *right) const {
        return comparator_(left, right, context_);
    }
    void swap(char *a, char *b) const { elements_.swap(a, b); }

    bool swap_if_less(char *b, char *a) const {
        if (compare(b, a) >= 0) return false;
        swap(b, a);
        return true;
    }

    // Sorts three elements; without a second exchange the first two are in order already.
    void sort_three(char *a, char *b, char *c) const {
        swap_if_less(b, a);
        if (swap_if_less(c, b)) swap_if_less(b, a);
    }

    char *choose_pivot(char *first, char *end) const {
        size_t distance = static_cast<size_t>(end - first) / size() - 1;
        char *mid = first + (distance + 1) / 2 * size(), *last = end - size();
        if (distance > median_of_nine_distance) {
            size_t step = (distance / 8 + 1) * size();
            sort_three(first, first + step, first + 2 * step);
            sort_three(mid - step, mid, mid + step);
            sort_three(last - 2 * step, last - step, last);
            sort_three(first + step, mid, last - step);
        } else {
            sort_three(first, mid, last);
        }
        return mid;
    }

    Run partition(char *first, char *end) const {
        char *pivot = choose_pivot(first, end);
        Run run = {pivot, pivot + size()};
        while (run.first > first && compare(run.first - size(), pivot) == 0) run.first -= size();
        while (run.end < end && compare(run.end, pivot) == 0) run.end += size();
        // Behind the run, up to `upper`, lie greater elements; before it, from `lower` on, lesser.
        char *lower = run.first, *upper = run.end;
        for (;;) {
            upper = pass_greater(run, upper, end);
            lower = pass_less(run, lower, first);
            if (lower == first && upper == end) return run;
            if (lower == first) { // the run moves up by one
                if (run.end == upper)
                    swap(run.first, upper);
                else
                    elements_.rotate(run.first, upper, run.end);
                run.first += size();
                run.end += size();
                upper += size();
            } else if (upper == end) { // the run moves down by one
                lower -= size();
                run.first -= size();
                run.end -= size();
                if (run.first == lower)
                    swap(lower, run.end);
                else
                    elements_.rotate(run.end, lower, run.first);
            } else {
                lower -= size();
                swap(upper, lower);
                upper += size();
            }
        }
    }

    char *pass_greater(Run &run, char *upper, char *end) const {
        for (; upper < end; upper += size()) {
            int order = compare(upper, run.first);
            if (order < 0) break;
            if (order > 0) continue;
            if (run.end != upper) swap(run.end, upper);
            run.end += size();
        }
        return upper;
    }

    char *pass_less(Run &run, char *lower, char *first) const {
        for (; lower > first; lower -= size()) {
            char *element = lower - size();
            int order = compare(element, run.first);
            if (order > 0) break;
            if (order < 0) continue;
            run.first -= size();
            if (run.first != element) swap(run.first, element);
        }
        return lower;
    }

    void insertion_sort(char *first, size_t count) const {
        if (count == 0) return;
        char *end = first + count * size();
        for (char *next = first + size(); next < end; next += size()) {
            char *place = next;
            if (compare(next, first) < 0)
                place = first;
            else
                while (compare(next, place - size()) < 0) place -= size();
            if (place != next) elements_.move_to_front(place, next);
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

    Elements elements_;
    Comparator comparator_;
    void *context_;
};

template <typename Elements>
void sort(Elements elements, void *base, size_t count, Comparator comparator, void *context) {
    Sort<Elements>(elements, comparator, context).run(static_cast<char *>(base), count, count);
}

// Elements of no size are all the same object: there is nothing to order.
void sort_by_size(void *base, size_t count, size_t size, Comparator comparator, void *context) {
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
    sort_by_size(base, nmemb, size, with_context(compar), nullptr);
}

errno_t qsort_s(void *base, rsize_t nmemb, rsize_t size,
                int (*compar)(const void *x, const void *y, void *context), void *context) {
    if (nmemb > RSIZE_MAX || (nmemb != 0 && (!base || !compar)) || size > RSIZE_MAX)
        return report_constraint(EINVAL);
    sort_by_size(base, nmemb, size, compar, context);
    return 0;
}

} // extern "C"
