// How a sort moves elements that it knows nothing of but their size.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

namespace vexrt {

// Elements that are one machine value: a word, two words, a vector.
template <typename Value>
struct ValueElements {
    using Unaligned __attribute__((aligned(1), may_alias)) = Value;
    static constexpr size_t size = sizeof(Value);

    static Unaligned &at(char *element) { return *reinterpret_cast<Unaligned *>(element); }

    static void swap(char *a, char *b) {
        Value value = at(a);
        at(a) = at(b);
        at(b) = value;
    }

    // a goes to c's place, c to b's, b to a's; b and c may be the same.
    static void rotate(char *a, char *b, char *c) {
        Value value = at(b);
        at(b) = at(c);
        at(c) = at(a);
        at(a) = value;
    }

    // The last element of a range goes to its front, the others up by one.
    static void move_to_front(char *front, char *last) {
        Value value = at(last);
        for (; last != front; last -= size) at(last) = at(last - size);
        at(front) = value;
    }
};

// Elements of any size, moved in pieces of 16 bytes, of a word, of a byte.
struct ByteElements {
    size_t size;

    template <typename Action>
    void for_each_piece(Action action) const {
        using Piece = float __attribute__((vector_size(16)));
        size_t at = 0;
        for (; size - at >= sizeof(Piece); at += sizeof(Piece)) action(ValueElements<Piece>(), at);
        for (; size - at >= sizeof(uint32_t); at += sizeof(uint32_t))
            action(ValueElements<uint32_t>(), at);
        for (; at < size; ++at) action(ValueElements<char>(), at);
    }

    void swap(char *a, char *b) const {
        for_each_piece([=](auto piece, size_t at) { piece.swap(a + at, b + at); });
    }

    void rotate(char *a, char *b, char *c) const {
        for_each_piece([=](auto piece, size_t at) { piece.rotate(a + at, b + at, c + at); });
    }

    // The elements that a buffer holds move as a block; larger ones in slices of the buffer's size.
    void move_to_front(char *front, char *last) const {
        char buffer[256];
        if (size <= sizeof(buffer)) {
            memcpy(buffer, last, size);
            memmove(front + size, front, static_cast<size_t>(last - front));
            memcpy(front, buffer, size);
            return;
        }
        for (size_t at = 0, slice; at < size; at += slice) {
            slice = size - at < sizeof(buffer) ? size - at : sizeof(buffer);
            memcpy(buffer, last + at, slice);
            for (char *to = last + at; to != front + at; to -= size) memcpy(to, to - size, slice);
            memcpy(front + at, buffer, slice);
        }
    }
};

} // namespace vexrt
