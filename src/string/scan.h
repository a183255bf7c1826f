// Kernels that look for single characters: length, find, find the last one.
//
// All walk the aligned blocks from the one in which the text begins. After the first few, four
// blocks at a time are tested together; such a group is aligned to its own size, so it lies in one
// page with a byte that must be read.
#pragma once

#include "string/vector.h"

namespace vexrt {
namespace {

// A test yields a block with all ones in the elements sought.
template <typename Vector, typename Char>
struct IsZero {
    typename Vector::Block zero = Vector::broadcast(Char(0));
    auto operator()(typename Vector::Block block) const {
        return Vector::template equal<Char>(block, zero);
    }
};

template <typename Vector, typename Char>
struct IsWanted {
    typename Vector::Block wanted;
    explicit IsWanted(Char c) : wanted(Vector::broadcast(c)) {}
    auto operator()(typename Vector::Block block) const {
        return Vector::template equal<Char>(block, wanted);
    }
};

template <typename Vector, typename Char>
struct IsWantedOrZero {
    IsWanted<Vector, Char> wanted;
    IsZero<Vector, Char> zero;
    explicit IsWantedOrZero(Char c) : wanted(c) {}
    auto operator()(typename Vector::Block block) const { return wanted(block) | zero(block); }
};

template <typename Vector, typename Test>
uint32_t mask_at(const char *block, const Test &test) {
    return Vector::mask(test(Vector::load_aligned(block)));
}

// Whether any of the four blocks at `group` has an element that passes.
template <typename Vector, typename Test>
bool group_has(const char *group, const Test &test) {
    constexpr size_t width = Vector::width;
    auto first = test(Vector::load_aligned(group)) | test(Vector::load_aligned(group + width));
    auto second = test(Vector::load_aligned(group + 2 * width)) |
                  test(Vector::load_aligned(group + 3 * width));
    return Vector::mask(first | second) != 0;
}

// The first element from `from` on that passes; there must be one.
template <typename Vector, typename Test>
const char *scan(const char *from, const Test &test) {
    constexpr size_t width = Vector::width, group = 4 * width;
    const char *block = align_down<width>(from);
    if (uint32_t mask = mask_at<Vector>(block, test) >> (from - block))
        return from + lowest_bit(mask);
    for (block += width; address_of(block) % group; block += width)
        if (uint32_t mask = mask_at<Vector>(block, test)) return block + lowest_bit(mask);
    while (!group_has<Vector>(block, test)) block += group;
    for (;; block += width)
        if (uint32_t mask = mask_at<Vector>(block, test)) return block + lowest_bit(mask);
}

// The first element in the `size` bytes at `from` that passes, or null. `size` may reach beyond
// the memory when an element before that passes.
template <typename Vector, typename Test>
const char *scan_bounded(const char *from, size_t size, const Test &test) {
    constexpr size_t width = Vector::width, group = 4 * width;
    if (size == 0) return nullptr;
    const char *block = align_down<width>(from);
    if (uint32_t mask = mask_at<Vector>(block, test) >> (from - block)) {
        unsigned offset = lowest_bit(mask);
        return offset < size ? from + offset : nullptr;
    }
    size_t passed = width - static_cast<size_t>(from - block); // bytes of `size` behind `block`
    auto found = [&](uint32_t mask) {
        size_t offset = passed + lowest_bit(mask);
        return offset < size ? from + offset : nullptr;
    };
    for (; passed < size && address_of(from + passed) % group; passed += width)
        if (uint32_t mask = mask_at<Vector>(from + passed, test)) return found(mask);
    while (passed < size && !group_has<Vector>(from + passed, test)) {
        if (size - passed <= group) return nullptr;
        passed += group;
    }
    for (; passed < size; passed += width)
        if (uint32_t mask = mask_at<Vector>(from + passed, test)) return found(mask);
    return nullptr;
}

template <typename Vector, typename Char>
size_t length(const Char *string) {
    if (splits_characters(string)) {
        const Char *end = string;
        while (*end) ++end;
        return static_cast<size_t>(end - string);
    }
    const char *from = bytes_of(string);
    return static_cast<size_t>(scan<Vector>(from, IsZero<Vector, Char>()) - from) / sizeof(Char);
}

// More characters than fit the address space mean as many as there are.
template <typename Char>
size_t size_of(size_t count) {
    return count > SIZE_MAX / sizeof(Char) ? SIZE_MAX : count * sizeof(Char);
}

template <typename Vector, typename Char>
Char *find(const Char *characters, Char wanted, size_t count) {
    if (splits_characters(characters)) {
        for (; count; ++characters, --count)
            if (*characters == wanted) return const_cast<Char *>(characters);
        return nullptr;
    }
    return character_at<Char>(scan_bounded<Vector>(bytes_of(characters), size_of<Char>(count),
                                                   IsWanted<Vector, Char>(wanted)));
}

template <typename Vector, typename Char>
size_t bounded_length(const Char *string, size_t limit) {
    const Char *end = find<Vector, Char>(string, 0, limit);
    return end ? static_cast<size_t>(end - string) : limit;
}

template <typename Vector, typename Char>
Char *find_in_string(const Char *string, Char wanted) {
    const Char *found = string;
    if (splits_characters(string))
        while (*found && *found != wanted) ++found;
    else
        found = character_at<Char>(
            scan<Vector>(bytes_of(string), IsWantedOrZero<Vector, Char>(wanted)));
    return *found == wanted ? const_cast<Char *>(found) : nullptr;
}

// The last match so far is kept as a block and the matches in it, and looked at when the end has
// been found.
template <typename Vector, typename Char>
struct LastMatch {
    IsWanted<Vector, Char> is_wanted;
    IsZero<Vector, Char> is_zero;
    const char *block = nullptr;
    uint32_t matches = 0;

    explicit LastMatch(Char wanted) : is_wanted(wanted) {}

    // Takes in the block at `at` without the bytes that `valid` leaves out; true at the end.
    bool take(const char *at, uint32_t valid) {
        auto bytes = Vector::load_aligned(at);
        uint32_t found = Vector::mask(is_wanted(bytes)) & valid;
        uint32_t end = Vector::mask(is_zero(bytes)) & valid;
        if (end) found &= end ^ (end - 1); // up to the terminator, which may itself be wanted
        if (found) {
            block = at;
            matches = found;
        }
        return end != 0;
    }

    Char *result() const {
        if (!block) return nullptr;
        return character_at<Char>(block + highest_bit(matches) / sizeof(Char) * sizeof(Char));
    }
};

template <typename Vector, typename Char>
Char *find_last_in_string(const Char *string, Char wanted) {
    if (splits_characters(string)) {
        const Char *last = nullptr;
        for (;; ++string) {
            if (*string == wanted) last = string;
            if (!*string) return const_cast<Char *>(last);
        }
    }
    constexpr size_t width = Vector::width, group = 4 * width;
    const IsWantedOrZero<Vector, Char> interesting(wanted);
    LastMatch<Vector, Char> last(wanted);
    const char *block = align_down<width>(bytes_of(string));
    uint32_t valid = ~uint32_t(0) << (bytes_of(string) - block);
    bool ended = last.take(block, valid);
    for (block += width; !ended && address_of(block) % group; block += width)
        ended = last.take(block, ~uint32_t(0));
    while (!ended) {
        while (!group_has<Vector>(block, interesting)) block += group;
        for (const char *end = block + group; !ended && block < end; block += width)
            ended = last.take(block, ~uint32_t(0));
    }
    return last.result();
}

} // namespace
} // namespace vexrt
