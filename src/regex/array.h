// A growing array of plain elements. Growth that fails leaves it as it was.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

namespace vexrt {

template <typename Element>
class Array {
public:
    Array() = default;
    Array(const Array &) = delete;
    Array &operator=(const Array &) = delete;
    ~Array() { free(elements_); }

    size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    Element &operator[](size_t i) { return elements_[i]; }
    const Element &operator[](size_t i) const { return elements_[i]; }
    Element &last() { return elements_[size_ - 1]; }
    Element *data() { return elements_; }
    const Element *data() const { return elements_; }

    [[nodiscard]] bool reserve(size_t capacity) {
        if (capacity <= capacity_) return true;
        if (capacity > SIZE_MAX / 2 / element_size) return false;
        void *moved = realloc(elements_, capacity * element_size);
        if (!moved) return false;
        elements_ = static_cast<Element *>(moved);
        capacity_ = capacity;
        return true;
    }
    [[nodiscard]] bool push(const Element &element) {
        if (size_ == capacity_) {
            Element copy = element; // it may be one of this array's
            if (!reserve(capacity_ ? 2 * capacity_ : 16)) return false;
            elements_[size_++] = copy;
            return true;
        }
        elements_[size_++] = element;
        return true;
    }
    // New elements are not set.
    [[nodiscard]] bool resize(size_t size) {
        if (!reserve(size)) return false;
        size_ = size;
        return true;
    }
    Element pop() { return elements_[--size_]; }
    void clear() { size_ = 0; }

    // Hands the elements over, to be freed with free().
    Element *release() {
        Element *elements = elements_;
        elements_ = nullptr;
        size_ = capacity_ = 0;
        return elements;
    }

private:
    static constexpr size_t element_size = sizeof(Element[1]);
    Element *elements_ = nullptr;
    size_t size_ = 0, capacity_ = 0;
};

} // namespace vexrt
