// Every variant of the string kernels against the plain rule, natively: random texts over small
// alphabets, of all short lengths and offsets, between two guard pages, so that a block read too
// far ends the program. The programs under Wine see only the variant that their processor gets.

#include "string/kernels.h"

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>

namespace {

int passed, failed;
const char *variant;

void check(bool ok, const char *what, long got, long due, size_t offset, size_t count) {
    if (ok) {
        ++passed;
        return;
    }
    if (++failed < 50)
        printf("%s %s: is %ld, due %ld (offset %zu, count %zu)\n", variant, what, got, due, offset,
               count);
}

unsigned random_state = 12345;
unsigned random_below(unsigned limit) {
    random_state = random_state * 1664525 + 1013904223;
    return static_cast<unsigned>((static_cast<uint64_t>(random_state) * limit) >> 32);
}

constexpr size_t page = 4096;

// Two pages between guard pages.
struct Arena {
    char *bytes;
    Arena() {
        void *all = mmap(nullptr, 4 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        bytes = static_cast<char *>(all) + page;
        if (all == MAP_FAILED || mprotect(bytes, size(), PROT_READ | PROT_WRITE)) abort();
    }
    static constexpr size_t size() { return 2 * page; }

    // Room for `count` characters: against the end, after the beginning, or around the middle.
    template <typename Char>
    Char *place(size_t count, size_t shift) {
        size_t needed = count * sizeof(Char);
        size_t at = 0;
        switch (random_below(3)) {
        case 0: at = size() - needed; break;
        case 1: at = shift; break;
        default: at = page - needed / 2 + shift; break;
        }
        if (at > size() - needed) at = size() - needed;
        return reinterpret_cast<Char *>(bytes + at);
    }
};

Arena left_arena, right_arena;

template <typename Char>
Char character(unsigned number) {
    // Wide ones that have a byte of 0 or bytes of others.
    static const unsigned alphabet[] = {'a', 'b', 'c', 0x80, 0xFF, 0x61FF, 0x6100, 0xFF61};
    Char c = static_cast<Char>(alphabet[number]);
    return c ? c : Char('d');
}

template <typename Char>
void fill_random(Char *text, size_t count, unsigned letters) {
    for (size_t i = 0; i < count; ++i) text[i] = character<Char>(random_below(letters));
}

int sign(int value) { return (value > 0) - (value < 0); }

template <typename Char>
int order(Char left, Char right) {
    unsigned mask = sizeof(Char) == 1 ? 0xFF : 0xFFFF;
    unsigned a = static_cast<unsigned>(left) & mask, b = static_cast<unsigned>(right) & mask;
    return (a > b) - (a < b);
}

template <typename Char>
Char lower(Char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<Char>(c + 32) : c;
}

template <typename Char>
long index_of(const Char *base, const Char *found) {
    return found ? static_cast<long>(found - base) : -1;
}

template <typename Char>
struct Tests {
    const vexrt::StringKernels<Char> &k;
    vexrt::Kernels const &all;

    void scans(size_t count, unsigned letters) {
        size_t shift = random_below(70);
        Char *text = left_arena.place<Char>(count + 1, shift);
        fill_random(text, count, letters);
        text[count] = 0;
        size_t limit = random_below(static_cast<unsigned>(count) + 2);
        if (random_below(8) == 0) limit = SIZE_MAX - random_below(3);
        long length = static_cast<long>(count);
        check(k.length(text) == count, "length", static_cast<long>(k.length(text)), length, shift,
              count);
        size_t bounded = limit < count ? limit : count;
        check(k.bounded_length(text, limit) == bounded, "bounded_length",
              static_cast<long>(k.bounded_length(text, limit)), static_cast<long>(bounded), shift,
              count);
        for (unsigned letter = 0; letter < 6; ++letter) {
            Char wanted =
                letter < 5 ? character<Char>(letter + (sizeof(Char) > 1 ? 2 : 0)) : Char(0);
            long first = -1, last = -1, in_limit = -1;
            for (long i = length; i >= 0; --i)
                if (text[i] == wanted) {
                    first = i;
                    if (last < 0) last = i;
                    if (static_cast<size_t>(i) < limit) in_limit = i;
                }
            long got = index_of(text, k.find_in_string(text, wanted));
            check(got == first, "find_in_string", got, first, shift, count);
            got = index_of(text, k.find_last_in_string(text, wanted));
            check(got == last, "find_last_in_string", got, last, shift, count);
            if (limit <= count + 1 || in_limit >= 0) {
                got = index_of(text, k.find(text, wanted, limit));
                check(got == in_limit, "find", got, in_limit, shift, count);
            }
        }
    }

    void spans(size_t count) {
        Char set[40];
        unsigned members = random_below(7);
        fill_random(set, members, 8);
        if (random_below(3) == 0)
            for (; members < 36; ++members) set[members] = static_cast<Char>('A' + members);
        set[members] = 0;
        Char *text = left_arena.place<Char>(count + 1, random_below(70));
        unsigned quota = random_below(20) ? 8 : 1;
        for (size_t i = 0; i < count; ++i)
            text[i] = members && random_below(60) ? set[random_below(members)]
                                                  : character<Char>(random_below(quota));
        text[count] = 0;
        for (int inside = 1; inside >= 0; --inside) {
            if (!inside) fill_random(text, count, random_below(8) + 1);
            size_t limit =
                random_below(3) ? SIZE_MAX : random_below(static_cast<unsigned>(count) + 2);
            size_t due = 0;
            for (; due < limit && text[due]; ++due) {
                bool member = false;
                for (unsigned m = 0; m < members; ++m) member |= set[m] == text[due];
                if (member != (inside != 0)) break;
            }
            size_t got = inside ? k.span_in(text, set, limit) : k.span_outside(text, set, limit);
            check(got == due, inside ? "span_in" : "span_outside", static_cast<long>(got),
                  static_cast<long>(due), members, count);
        }
    }

    void comparisons(size_t count) {
        Char *left = left_arena.place<Char>(count + 1, random_below(70));
        Char *right = right_arena.place<Char>(count + 1, random_below(70));
        fill_random(left, count, 8);
        left[count] = 0;
        memcpy(right, left, (count + 1) * sizeof(Char));
        // The strings differ in up to two places, in the case of letters (or what is beside them),
        // or one ends early.
        if (random_below(2))
            for (size_t i = 0; i < count; ++i) {
                right[i] = static_cast<Char>("@AZ["[random_below(4)]);
                left[i] = static_cast<Char>(
                    right[i] + (lower(right[i]) != right[i] || !random_below(40)) * 32);
            }
        for (unsigned changes = random_below(3); changes && count; --changes)
            right[random_below(static_cast<unsigned>(count))] = character<Char>(random_below(8));
        if (count && random_below(4) == 0) left[random_below(static_cast<unsigned>(count))] = 0;
        size_t limit = random_below(static_cast<unsigned>(count) + 3);
        if (random_below(4) == 0) limit = SIZE_MAX;
        int memory = 0, strings = 0, bounded = 0, folded = 0;
        for (size_t i = 0; i < count && !memory; ++i) memory = order(left[i], right[i]);
        for (size_t i = 0;; ++i) {
            strings = order(left[i], right[i]);
            if (i < limit) bounded = strings;
            if (strings || !left[i]) break;
        }
        for (size_t i = 0; i < limit && !folded && (!i || left[i - 1]); ++i)
            folded = order(lower(left[i]), lower(right[i]));
        int got = sign(k.compare_ignoring_case(left, right, limit));
        check(got == folded, "compare_ignoring_case", got, folded, limit, count);
        got = sign(k.compare(left, right, count));
        check(got == memory, "compare", got, memory, 0, count);
        got = sign(k.compare_strings(left, right));
        check(got == strings, "compare_strings", got, strings, 0, count);
        got = sign(k.compare_strings_bounded(left, right, limit));
        check(got == bounded, "compare_strings_bounded", got, bounded, limit, count);
    }

    void substrings(size_t count) {
        unsigned letters = random_below(3) + 1;
        Char *haystack = left_arena.place<Char>(count + 1, random_below(70));
        fill_random(haystack, count, letters);
        haystack[count] = 0;
        unsigned length = random_below(random_below(4) ? 12 : 200);
        Char *needle = right_arena.place<Char>(length + 1, random_below(70));
        if (random_below(2) && length < count)
            memcpy(needle, haystack + random_below(static_cast<unsigned>(count - length)),
                   length * sizeof(Char));
        else
            fill_random(needle, length, letters);
        if (length && random_below(3) == 0) needle[length - 1] = 'b';
        needle[length] = 0;
        long due = -1;
        for (size_t at = 0; due < 0 && at + length <= count; ++at)
            if (memcmp(haystack + at, needle, length * sizeof(Char)) == 0)
                due = static_cast<long>(at);
        long got = index_of(haystack, k.find_string(haystack, needle));
        check(got == due, "find_string", got, due, length, count);
    }

    // What lies around the target must stay as it was.
    void fills(size_t count) {
        constexpr size_t margin = 64;
        Char *area = left_arena.place<Char>(count + 2 * margin, random_below(70));
        Char *to = area + margin;
        fill_random(area, count + 2 * margin, 8);
        static Char due[4 * page];
        memcpy(due, area, (count + 2 * margin) * sizeof(Char));
        Char value = character<Char>(5);
        for (size_t i = 0; i < count; ++i) due[margin + i] = value;
        k.fill(to, value, count);
        bool same = memcmp(due, area, (count + 2 * margin) * sizeof(Char)) == 0;
        check(same, "fill", same, 1, 0, count);
    }

    // Between margins that must stay as they were.
    void copies(size_t count) {
        constexpr size_t margin = 64;
        Char *from = left_arena.place<Char>(count + 1, random_below(70));
        fill_random(from, count, 8);
        from[count] = 0;
        Char *area = right_arena.place<Char>(count + 1 + 2 * margin, random_below(70));
        Char *to = area + margin;
        fill_random(area, count + 1 + 2 * margin, 8);
        static Char due[4 * page];
        size_t whole = (count + 1 + 2 * margin) * sizeof(Char);
        size_t limit = random_below(static_cast<unsigned>(count) + 3);
        if (random_below(4) == 0) limit = SIZE_MAX - random_below(3);
        size_t length = count < limit ? count : limit;
        memcpy(due, area, whole);
        memcpy(due + margin, from, (length < limit ? length + 1 : length) * sizeof(Char));
        size_t got = k.copy_string_bounded(to, from, limit);
        check(got == length && memcmp(due, area, whole) == 0, "copy_string_bounded",
              static_cast<long>(got), static_cast<long>(length), limit, count);
        memcpy(due + margin, from, (count + 1) * sizeof(Char));
        bool same = k.copy_string(to, from) == to && memcmp(due, area, whole) == 0;
        check(same, "copy_string", same, 1, 0, count);
        // Moved down in place.
        size_t shift = random_below(static_cast<unsigned>(count) + 1);
        memcpy(due, from + shift, (count - shift + 1) * sizeof(Char));
        k.copy_string(from, from + shift);
        same = memcmp(due, from, (count - shift + 1) * sizeof(Char)) == 0;
        check(same, "copy_string down", same, 1, shift, count);
    }

    void moves(size_t size) {
        static char due[4 * page];
        char *area = left_arena.bytes;
        unsigned span = static_cast<unsigned>(left_arena.size() - size);
        size_t from = random_below(span + 1);
        size_t to = random_below(2) ? random_below(span + 1) : from + random_below(300) - 150;
        if (to > span) to = span;
        for (size_t i = 0; i < left_arena.size(); ++i)
            area[i] = static_cast<char>(random_below(256));
        memcpy(due, area, left_arena.size());
        memmove(due + to, due + from, size);
        void *result = all.move(area + to, area + from, size);
        bool same = result == area + to && memcmp(due, area, left_arena.size()) == 0;
        check(same, "move", static_cast<long>(from), static_cast<long>(to), 0, size);
    }
};

size_t some_length(unsigned round) {
    if (round < 600) return round % 300;
    return random_below(random_below(2) ? 80 : 3000);
}

template <typename Char>
void run(const char *name, const vexrt::Kernels &all, const vexrt::StringKernels<Char> &kernels) {
    variant = name;
    Tests<Char> tests{kernels, all};
    for (unsigned round = 0; round < 20000; ++round) {
        size_t length = some_length(round);
        tests.scans(length, round % 4 ? 8 : 1);
        tests.spans(length);
        tests.comparisons(length);
        tests.substrings(length);
        tests.fills(length);
        tests.copies(length);
        if (round % 8 == 0) tests.moves(length);
    }
}

// The time may not grow with the product of the lengths: 200,000 characters that match the whole
// of a needle of 20,000 but for its last (or first) character would take minutes.
template <typename Char>
void hard_haystacks(const vexrt::StringKernels<Char> &kernels) {
    constexpr size_t length = 2000000, needle_length = 200000;
    static Char haystack[length + 1], needle[needle_length + 1];
    for (Char &c : haystack) c = 'a';
    for (Char &c : needle) c = 'a';
    haystack[length] = needle[needle_length] = 0;
    static const size_t odd_places[] = {0, 1, needle_length / 2, needle_length - 1};
    for (size_t odd : odd_places) {
        needle[odd] = 'b';
        long got = index_of(haystack, kernels.find_string(haystack, needle));
        check(got == -1, "hard haystack", got, -1, odd, needle_length);
        haystack[length - needle_length + odd] = 'b';
        got = index_of(haystack, kernels.find_string(haystack, needle));
        check(got == length - needle_length, "hard haystack", got, length - needle_length, odd,
              needle_length);
        haystack[length - needle_length + odd] = needle[odd] = 'a';
    }
}

// Sizes at which the caches are passed by, apart and overlapping either way.
void large_moves(const vexrt::Kernels &all) {
    constexpr size_t largest = (8u << 20) + 1000;
    static char area[3 * largest], due[3 * largest];
    static const size_t targets[] = {3, largest - 1000, largest + 2, largest + 50, 2 * largest - 1};
    for (size_t to : targets)
        for (size_t size = largest - 1; size >= largest - 2000; size -= 333) {
            size_t from = largest + 1;
            for (size_t i = 0; i < sizeof area; ++i) area[i] = static_cast<char>(i * 31 >> 5);
            memcpy(due, area, sizeof area);
            memmove(due + to, due + from, size);
            all.move(area + to, area + from, size);
            bool same = memcmp(area, due, sizeof area) == 0;
            check(same, "large move", same, 1, to, size);
        }
}

void run_all(const char *name, const vexrt::Kernels &all) {
    run<char>(name, all, all.narrow);
    run<wchar_t>(name, all, all.wide);
    large_moves(all);
    hard_haystacks(all.narrow);
    hard_haystacks(all.wide);
}

} // namespace

int main() {
    run_all("sse2", vexrt::kernels);
    vexrt::kernels = vexrt::avx2_kernels;
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx2")) run_all("avx2", vexrt::avx2_kernels);
    printf("%d passed, %d failed\n", passed, failed);
    return failed != 0;
}
