// Names for temporary files: the directory of TEMP, "ctm", five octal digits that the thread counts
// up, ".tmp". Whether there is such a file is not looked at.

#include "core/constraint.h"
#include "core/thread_record.h"
#include "fs/file_api.h"
#include "heap/heap.h"

#include <stdio.h>
#include <stdlib.h>

namespace vexrt {

namespace {

constexpr size_t name_capacity = 260;

template <typename Char>
struct Temporary;
template <>
struct Temporary<char> {
    static char *directory() { return getenv("TEMP"); }
    static char *&buffer() { return thread_record().tmpnam_buffer; }
};
template <>
struct Temporary<wchar_t> {
    static wchar_t *directory() { return _wgetenv(L"TEMP"); }
    static wchar_t *&buffer() { return thread_record().wtmpnam_buffer; }
};

template <typename Char>
size_t next_name(Char *to) {
    const Char *directory = Temporary<Char>::directory();
    size_t length = directory ? FileApi<Char>::length(directory) : 0;
    if (length + 14 > name_capacity) length = 0; // then in the root of the current drive
    if (length) memcpy(to, directory, length * sizeof(Char));
    Char *at = to + length;
    for (const char *c = "\\ctm"; *c; ++c) *at++ = static_cast<Char>(*c);
    unsigned number = ++thread_record().temporary_name_counter;
    for (int shift = 12; shift >= 0; shift -= 3)
        *at++ = static_cast<Char>('0' + (number >> shift & 7));
    for (const char *c = ".tmp"; *c; ++c) *at++ = static_cast<Char>(*c);
    *at = 0;
    return static_cast<size_t>(at - to);
}

template <typename Char>
Char *temporary_name(Char *to) {
    Char *&own = Temporary<Char>::buffer();
    if (!to && !own) own = static_cast<Char *>(malloc(name_capacity * sizeof(Char)));
    if (!to) to = own;
    if (to) next_name(to);
    return to;
}

template <typename Char>
errno_t temporary_name_s(Char *to, rsize_t size) {
    if (!to || size == 0 || size > RSIZE_MAX) {
        if (to && size) *to = 0;
        return report_constraint(EINVAL);
    }
    Char name[name_capacity];
    size_t length = next_name(name);
    if (length >= size) {
        *to = 0;
        return report_constraint(ERANGE);
    }
    memcpy(to, name, (length + 1) * sizeof(Char));
    return 0;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" char *tmpnam(char *to) { return temporary_name(to); }
extern "C" wchar_t *_wtmpnam(wchar_t *to) { return temporary_name(to); }
extern "C" errno_t tmpnam_s(char *to, rsize_t size) { return temporary_name_s(to, size); }
extern "C" errno_t _wtmpnam_s(wchar_t *to, rsize_t size) { return temporary_name_s(to, size); }
