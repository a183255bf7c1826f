// The outputs that are memory, and the workers of the functions that format to a buffer.
#pragma once

#include "core/constraint.h"
#include "format/formatter.h"

#include <stdlib.h>

namespace vexrt {

// Text that does not fit is counted and dropped.
template <typename Char>
struct TruncatingOutput : Output<Char> {
    TruncatingOutput(Char *buffer, size_t size) : Output<Char>(buffer, size, drop) {}
    void terminate() { *this->pos_ = 0; } // in the place behind the window

private:
    static bool drop(Output<Char> &output, const Char *text, size_t count) {
        auto &self = static_cast<TruncatingOutput &>(output);
        self.before_ += self.fill(text, count);
        return true;
    }
};

// Text that does not fit is copied as far as it fits, and the output fails.
template <typename Char>
struct ExactOutput : Output<Char> {
    ExactOutput(Char *buffer, size_t size, bool secure)
        : Output<Char>(buffer, size, refuse), secure_(secure) {}

private:
    static bool refuse(Output<Char> &output, const Char *text, size_t count) {
        auto &self = static_cast<ExactOutput &>(output);
        if (self.fill(text, count) == 0) return true;
        if (self.secure_) report_constraint(ERANGE);
        return false;
    }

    bool secure_;
};

// A heap block that doubles. Behind the window there is room for the terminator.
template <typename Char>
class GrowingOutput : public Output<Char> {
public:
    GrowingOutput() : Output<Char>(nullptr, 0, grow) { resize(first_capacity); }
    ~GrowingOutput() { free(this->begin_); }
    explicit operator bool() const { return this->begin_; }

    // The text, terminated, in a block of its size; null when there is no memory.
    Char *release() {
        size_t length = this->used();
        this->begin_[length] = 0;
        if (!resize(length + 1)) return nullptr;
        Char *text = this->begin_;
        this->begin_ = nullptr;
        return text;
    }

private:
    static constexpr size_t first_capacity = 256;

    static bool grow(Output<Char> &output, const Char *text, size_t count) {
        auto &self = static_cast<GrowingOutput &>(output);
        size_t capacity = self.capacity_;
        while (capacity <= self.used() + count) capacity *= 2;
        return self.resize(capacity) && self.put(text, count);
    }

    // The contents stay.
    bool resize(size_t capacity) {
        size_t used = this->used();
        size_t size = capacity <= SIZE_MAX / sizeof(Char) ? capacity * sizeof(Char) : SIZE_MAX;
        auto *block = static_cast<Char *>(realloc(this->begin_, size));
        if (!block) return false;
        capacity_ = capacity;
        this->set_window(block, capacity - 1);
        this->pos_ = block + used;
        return true;
    }

    size_t capacity_ = 0;
};

// ---- workers, each for the narrow and the wide functions ----

// snprintf: `size` includes the terminator, which is always written; 0 leaves the buffer alone.
template <typename Char>
int format_truncated(Char *buffer, size_t size, const Char *format, va_list arguments,
                     bool secure) {
    Char terminator_only;
    if (size == 0) {
        buffer = &terminator_only;
        size = 1;
    }
    TruncatingOutput<Char> output(buffer, size - 1);
    int count = format_to(output, format, arguments, secure);
    output.terminate();
    return count;
}

// swprintf, and sprintf, whose buffer has no end: `size` is for the characters alone; when there
// are as many, the terminator goes behind them all the same. Text that does not fit is not
// terminated.
template <typename Char>
int format_exact(Char *buffer, size_t size, const Char *format, va_list arguments) {
    ExactOutput<Char> output(buffer, size, false);
    int count = format_to(output, format, arguments, false);
    if (count >= 0) buffer[count] = 0;
    return count;
}

// What the bounds-checked members test first. True: the buffer holds an empty string.
template <typename Char>
bool checked_buffer(Char *buffer, size_t size, const Char *format) {
    bool usable = buffer && size != 0 && size <= RSIZE_MAX;
    if (usable) *buffer = 0;
    if (usable && format) return true;
    report_constraint(EINVAL);
    return false;
}

// snprintf_s
template <typename Char>
int format_truncated_s(Char *buffer, size_t size, const Char *format, va_list arguments) {
    if (!checked_buffer(buffer, size, format)) return -1;
    int count = format_truncated(buffer, size, format, arguments, true);
    if (count < 0) *buffer = 0;
    return count;
}

// sprintf_s. Deliberately 0 where snprintf_s returns -1.
template <typename Char>
int format_exact_s(Char *buffer, size_t size, const Char *format, va_list arguments) {
    if (!checked_buffer(buffer, size, format)) return 0;
    ExactOutput<Char> output(buffer, size - 1, true);
    int count = format_to(output, format, arguments, true);
    buffer[count < 0 ? 0 : count] = 0;
    return count < 0 ? 0 : count;
}

// asprintf: on failure `*result` stays as it was.
template <typename Char>
int format_allocated(Char **result, const Char *format, va_list arguments) {
    GrowingOutput<Char> output;
    if (!output) return -1;
    int count = format_to(output, format, arguments, false);
    Char *text = count < 0 ? nullptr : output.release();
    if (!text) return -1;
    *result = text;
    return count;
}

} // namespace vexrt
