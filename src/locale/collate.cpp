// Collation. Narrow text is compared by a table that gives each byte its rank among the sort keys
// of all bytes; bytes of rank 0 have no key and do not count. Wide text is compared by the system.
// The "C" locale has neither and goes by codes.

#include "core/thread_record.h"
#include "heap/heap.h"
#include "locale/locale_record.h"
#include "platform/kernel32.h"

#include <stdint.h>
#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

// The next rank above 0 of a text, 0 at its end.
inline unsigned next_rank(const char *&text, StateTable ranks) {
    while (*text)
        if (unsigned rank = ranks[static_cast<unsigned char>(*text++)] & 0xFF) return rank;
    return 0;
}

int compare_ranks(const char *a, const char *b, StateTable ranks) {
    for (;;) {
        unsigned left = next_rank(a, ranks), right = next_rank(b, ranks);
        if (left != right) return left < right ? -1 : 1;
        if (!left) return 0;
    }
}

// The ranks themselves: strings of bytes that compare as the texts do.
size_t transform_ranks(char *to, const char *from, size_t size, StateTable ranks) {
    size_t length = 0;
    while (unsigned rank = next_rank(from, ranks)) {
        if (length < size) to[length] = static_cast<char>(rank);
        ++length;
    }
    if (length < size) to[length] = '\0';
    return length;
}

template <typename Char>
size_t transform_codes(Char *to, const Char *from, size_t length, size_t size) {
    if (size) memcpy(to, from, (length < size ? length + 1 : size) * sizeof(Char));
    return length;
}

bool system_collates(const LocaleRecord &locale) { return locale.wide_collation[0]; }

// The system's sort key, byte by byte in wide characters; one more than each, since a key may hold
// 0.
size_t transform_by_system(wchar_t *to, const wchar_t *from, size_t size, LCID lcid) {
    int needed = LCMapStringW(lcid, LCMAP_SORTKEY, from, -1, nullptr, 0);
    auto *key = needed > 0
                    ? static_cast<unsigned char *>(heap_allocate(static_cast<size_t>(needed)))
                    : nullptr;
    if (!key) return transform_codes(to, from, wcslen(from), size);
    LCMapStringW(lcid, LCMAP_SORTKEY, from, -1, reinterpret_cast<wchar_t *>(key), needed);
    size_t length = static_cast<size_t>(needed) - 1;
    for (size_t i = 0; i <= length && i < size; ++i)
        to[i] = static_cast<wchar_t>(i < length ? key[i] + 1 : 0);
    heap_release(key);
    return length;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

int strcoll(const char *a, const char *b) {
    StateTable ranks = thread_record().locale->narrow_collation[0];
    return ranks ? compare_ranks(a, b, ranks) : strcmp(a, b);
}

size_t strxfrm(char *to, const char *from, size_t size) {
    StateTable ranks = thread_record().locale->narrow_collation[0];
    return ranks ? transform_ranks(to, from, size, ranks)
                 : transform_codes(to, from, strlen(from), size);
}

int wcscoll(const wchar_t *a, const wchar_t *b) {
    const LocaleRecord &locale = *thread_record().locale;
    int order = system_collates(locale) ? CompareStringW(locale.lcid, 0, a, -1, b, -1) : 0;
    return order ? order - CSTR_EQUAL : wcscmp(a, b);
}

size_t wcsxfrm(wchar_t *to, const wchar_t *from, size_t size) {
    const LocaleRecord &locale = *thread_record().locale;
    return system_collates(locale) ? transform_by_system(to, from, size, locale.lcid)
                                   : transform_codes(to, from, wcslen(from), size);
}

} // extern "C"
