// Kernels that compare.
#pragma once

#include "string/vector.h"

namespace vexrt {
namespace {

// The mask of the bytes that differ.
template <typename Vector>
uint32_t differences(const char *left, const char *right) {
    return Vector::all ^
           Vector::mask(Vector::template equal<char>(Vector::load(left), Vector::load(right)));
}

// The offset of the first byte that differs, or `size`, for less than 16 bytes. The front and the
// end, which may overlap, make up one block.
template <typename Small>
size_t first_difference_in_ends(const char *left, const char *right, size_t size) {
    if (size < 4) {
        size_t at = 0;
        while (at < size && left[at] == right[at]) ++at;
        return at;
    }
    unsigned end = size < 8 ? 4 : 8;
    auto same = end == 4
                    ? Small::template equal<char>(Small::load_two_words(left, left + size - 4),
                                                  Small::load_two_words(right, right + size - 4))
                    : Small::template equal<char>(Small::load_two_halves(left, left + size - 8),
                                                  Small::load_two_halves(right, right + size - 8));
    uint32_t bits = Small::all ^ Small::mask(same);
    if (!bits) return size;
    unsigned at = lowest_bit(bits);
    return at < end ? at : size - 2 * end + at;
}

template <typename Vector>
bool groups_equal(const char *left, const char *right) {
    constexpr size_t width = Vector::width;
    auto same = [&](size_t at) {
        return Vector::template equal<char>(Vector::load(left + at), Vector::load(right + at));
    };
    return Vector::mask(same(0) & same(width) & same(2 * width) & same(3 * width)) == Vector::all;
}

// The offset of the first byte that differs, or `size`. The last block ends with the memory and
// so overlaps the one before it.
template <typename Vector>
size_t first_difference(const char *left, const char *right, size_t size) {
    constexpr size_t width = Vector::width;
    if (size < width) {
        if constexpr (Vector::width > 16)
            return first_difference<typename Vector::Half>(left, right, size);
        else
            return first_difference_in_ends<Vector>(left, right, size);
    }
    size_t at = 0;
    while (size - at > 4 * width && groups_equal<Vector>(left + at, right + at)) at += 4 * width;
    for (; size - at > width; at += width)
        if (uint32_t bits = differences<Vector>(left + at, right + at))
            return at + lowest_bit(bits);
    at = size - width;
    if (uint32_t bits = differences<Vector>(left + at, right + at)) return at + lowest_bit(bits);
    return size;
}

template <typename Vector, typename Char>
int compare(const Char *left, const Char *right, size_t count) {
    size_t size = count * sizeof(Char);
    size_t at = first_difference<Vector>(bytes_of(left), bytes_of(right), size) / sizeof(Char);
    return at < count ? difference(left[at], right[at]) : 0;
}

// What is made of characters before they are compared: nothing, or lower case of A to Z alone.
template <typename Vector>
struct AsTheyAre {
    template <typename Char>
    static auto block_at(const char *from) {
        return Vector::load(from);
    }
    template <typename Char>
    static Char character(Char c) {
        return c;
    }
};

template <typename Vector>
struct LowerCase {
    template <typename Char>
    static auto block_at(const char *from) {
        auto block = Vector::load(from);
        auto from_a = Vector::template greater<Char>(block, Vector::broadcast(Char('A' - 1)));
        auto to_z = Vector::template greater<Char>(Vector::broadcast(Char('Z' + 1)), block);
        return block | (from_a & to_z & Vector::broadcast(Char('a' - 'A')));
    }
    template <typename Char>
    static Char character(Char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<Char>(c + ('a' - 'A')) : c;
    }
};

// Compares two strings character by character; the result, or 0 after `count` equal ones, which
// `ended` then tells from an end.
template <typename Folding, typename Char>
int compare_plainly(const Char *left, const Char *right, size_t count, bool &ended) {
    ended = true;
    for (; count; ++left, ++right, --count) {
        int order = difference(Folding::character(*left), Folding::character(*right));
        if (order || !*left) return order;
    }
    ended = false;
    return 0;
}

// Where two strings differ or both end: nothing left of `equal & left` in that element.
template <typename Vector, typename Folding, typename Char>
auto stops(const char *left, const char *right) {
    auto block = Folding::template block_at<Char>(left);
    auto kept =
        Vector::template equal<Char>(block, Folding::template block_at<Char>(right)) & block;
    return Vector::template equal<Char>(kept, Vector::broadcast(Char(0)));
}

// Two strings walked side by side. A stretch in which neither leaves its page is taken in blocks.
// What is then left before the next page begins is less than a block: it is read as a whole block
// that ends there and goes back over what has been compared; right at the front, where there is
// nothing to go back over, character by character.
template <typename Vector, typename Folding, typename Char>
struct StringPair {
    const char *left, *right;
    size_t remaining;   // bytes that may still be compared
    bool begun = false; // at least a block lies behind

    static constexpr size_t width = Vector::width, group = 4 * width;

    // Bytes up to the nearer page end.
    size_t room() const {
        size_t left_offset = address_of(left) % page_size;
        size_t right_offset = address_of(right) % page_size;
        return page_size - (left_offset > right_offset ? left_offset : right_offset);
    }

    void advance(size_t size) {
        left += size;
        right += size;
        remaining -= size;
    }

    int result_at(ptrdiff_t offset) const {
        return difference(Folding::character(*character_at<Char>(left + offset)),
                          Folding::character(*character_at<Char>(right + offset)));
    }

    // Blocks within this page pair. True when the comparison is over, with its result.
    bool compare_page(size_t &room, int &result) {
        for (; room >= width; room -= width) {
            while (room >= group && remaining > group && !group_stops()) {
                advance(group);
                room -= group;
                begun = true;
            }
            if (room < width) break;
            if (uint32_t mask = Vector::mask(stops<Vector, Folding, Char>(left, right))) {
                unsigned offset = lowest_bit(mask);
                result = offset < remaining ? result_at(offset) : 0;
                return true;
            }
            if (remaining <= width) {
                result = 0;
                return true;
            }
            advance(width);
            begun = true;
        }
        return false;
    }

    bool group_stops() const {
        auto first = stops<Vector, Folding, Char>(left, right) |
                     stops<Vector, Folding, Char>(left + width, right + width);
        auto second = stops<Vector, Folding, Char>(left + 2 * width, right + 2 * width) |
                      stops<Vector, Folding, Char>(left + 3 * width, right + 3 * width);
        return Vector::mask(first | second) != 0;
    }

    // The less than `width` bytes before a page ends.
    bool compare_edge(size_t room, int &result) {
        size_t size = room < remaining ? room : remaining;
        if (!begun) {
            bool ended;
            result = compare_plainly<Folding>(character_at<Char>(left), character_at<Char>(right),
                                              size / sizeof(Char), ended);
            if (ended) return true;
        } else {
            ptrdiff_t back = static_cast<ptrdiff_t>(width - room);
            if (uint32_t mask =
                    Vector::mask(stops<Vector, Folding, Char>(left - back, right - back))) {
                ptrdiff_t offset = static_cast<ptrdiff_t>(lowest_bit(mask)) - back;
                result = offset < static_cast<ptrdiff_t>(size) ? result_at(offset) : 0;
                return true;
            }
        }
        advance(size);
        result = 0;
        return remaining == 0;
    }
};

template <typename Vector, typename Folding, typename Char>
__attribute__((always_inline)) inline int compare_up_to(const Char *left, const Char *right,
                                                        size_t limit) {
    if (splits_characters(left) || splits_characters(right)) {
        bool ended;
        return compare_plainly<Folding>(left, right, limit, ended);
    }
    if (limit == 0) return 0;
    size_t bytes = limit > SIZE_MAX / sizeof(Char) ? SIZE_MAX - 1 : limit * sizeof(Char);
    StringPair<Vector, Folding, Char> pair{bytes_of(left), bytes_of(right), bytes};
    for (int result;;) {
        size_t room = pair.room();
        if (pair.compare_page(room, result)) return result;
        if (room && pair.compare_edge(room, result)) return result;
    }
}

template <typename Vector, typename Char>
int compare_strings_bounded(const Char *left, const Char *right, size_t limit) {
    return compare_up_to<Vector, AsTheyAre<Vector>>(left, right, limit);
}

template <typename Vector, typename Char>
int compare_strings(const Char *left, const Char *right) {
    return compare_up_to<Vector, AsTheyAre<Vector>>(left, right, SIZE_MAX);
}

template <typename Vector, typename Char>
int compare_ignoring_case(const Char *left, const Char *right, size_t limit) {
    return compare_up_to<Vector, LowerCase<Vector>>(left, right, limit);
}

} // namespace
} // namespace vexrt
