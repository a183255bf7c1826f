// Quicksort's partition into less, equal and greater.
//
// The pivot and what compares equal to it form a run in the middle. Upwards from the run, elements
// that are less are stopped at; downwards from it, those that are greater; the first of the one
// kind is exchanged with the first of the other, the second with the second, and so on. An element
// equal to the pivot joins the run when everything between the run and it is in place. When one
// side has no more, the run itself moves by one for each element stopped at on the other.
//
// Which way a comparison goes cannot be foretold, so there is no branch on it: elements stopped at
// are collected, some dozens at a time, and then exchanged.
#pragma once

#include "search/comparator.h"
#include "search/elements.h"

#include <stdint.h>

namespace vexrt {
namespace {

// The third argument of a comparator that takes two: a constant costs less than a variable.
struct NoContext {
    operator void *() const { return nullptr; }
};

// What is sorted: how elements are moved and how they are compared.
template <typename Elements, typename Context>
struct Sortable {
    Elements elements;
    Comparator comparator;
    Context context;

    size_t size() const { return elements.size; }
    int compare(const char *left, const char *right) const {
        return comparator(left, right, context);
    }
    void swap(char *a, char *b) const { elements.swap(a, b); }

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
};

// Elements that all compare equal to the pivot.
struct EqualRun {
    char *first, *end;
};

template <typename Elements, typename Context>
class Partition {
public:
    Partition(const Sortable<Elements, Context> &sortable, char *first, char *end, char *pivot)
        : sortable_(sortable), first_(first), end_(end), run_{pivot, pivot + size()} {
        while (run_.first > first && sortable.compare(run_.first - size(), pivot) == 0)
            run_.first -= size();
        while (run_.end < end && sortable.compare(run_.end, pivot) == 0) run_.end += size();
        lower_ = run_.first;
        upper_ = run_.end;
    }

    EqualRun run() {
        for (;;) {
            collect_less();
            collect_greater();
            if (less_.empty() && greater_.empty()) return run_;
            if (greater_.empty())
                move_run_up(less_.take());
            else if (less_.empty())
                move_run_down(greater_.take());
            else
                exchange();
        }
    }

private:
    size_t size() const { return sortable_.size(); }

    // Elements stopped at, in the order in which they were met.
    struct Stops {
        static constexpr unsigned capacity = 64;
        char *places[capacity];
        unsigned next = 0, count = 0;
        bool at_equal = false; // the element behind them is equal to the pivot

        bool empty() const { return next == count; }
        char *take() { return places[next++]; }
    };

    // How many of the bytes left are scanned at once: no more elements than there may be stops. An
    // array of elements too large for the product has fewer than that.
    size_t scanned(size_t left) const {
        constexpr size_t largest = SIZE_MAX / Stops::capacity;
        size_t most = size() > largest ? SIZE_MAX : Stops::capacity * size();
        return left < most ? left : most;
    }

    // Elements from the run up to `upper_` have been compared: they are greater or among the stops.
    void collect_less() {
        while (less_.empty()) {
            if (less_.at_equal) extend_run_up();
            if (upper_ == end_) return;
            scan_up();
        }
    }

    void scan_up() {
        const Sortable<Elements, Context> sortable = sortable_;
        const char *const pivot = run_.first;
        char *at = upper_, *const end = at + scanned(static_cast<size_t>(end_ - at));
        unsigned count = 0;
        less_.next = 0;
        for (; at != end; at += sortable.size()) {
            int order = sortable.compare(at, pivot);
            less_.places[count] = at;
            count += order < 0;
            if (order == 0) {
                less_.at_equal = true;
                break;
            }
        }
        less_.count = count;
        upper_ = at;
    }

    void extend_run_up() {
        if (run_.end != upper_) sortable_.swap(run_.end, upper_);
        run_.end += size();
        upper_ += size();
        less_.at_equal = false;
    }

    // Elements from `lower_` to the run have been compared: they are less or among the stops.
    void collect_greater() {
        while (greater_.empty()) {
            if (greater_.at_equal) extend_run_down();
            if (lower_ == first_) return;
            scan_down();
        }
    }

    void scan_down() {
        const Sortable<Elements, Context> sortable = sortable_;
        const char *const pivot = run_.first;
        char *at = lower_, *const first = at - scanned(static_cast<size_t>(at - first_));
        unsigned count = 0;
        greater_.next = 0;
        for (; at != first; at -= sortable.size()) {
            char *element = at - sortable.size();
            int order = sortable.compare(element, pivot);
            greater_.places[count] = element;
            count += order > 0;
            if (order == 0) {
                greater_.at_equal = true;
                break;
            }
        }
        greater_.count = count;
        lower_ = at;
    }

    void extend_run_down() {
        lower_ -= size();
        run_.first -= size();
        if (run_.first != lower_) sortable_.swap(run_.first, lower_);
        greater_.at_equal = false;
    }

    void exchange() {
        while (!less_.empty() && !greater_.empty()) sortable_.swap(less_.take(), greater_.take());
    }

    // A lesser element comes in below the run, the first greater one takes its place.
    void move_run_up(char *less) {
        sortable_.elements.rotate(run_.first, less, run_.end);
        run_.first += size();
        run_.end += size();
    }

    void move_run_down(char *greater) {
        run_.first -= size();
        run_.end -= size();
        sortable_.elements.rotate(run_.end, greater, run_.first);
    }

    const Sortable<Elements, Context> &sortable_;
    char *first_, *end_;
    EqualRun run_;
    char *lower_, *upper_;
    Stops less_, greater_;
};

} // namespace
} // namespace vexrt
