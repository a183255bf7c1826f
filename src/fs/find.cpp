// _findfirst: the files that a pattern matches, one by one.

#include "fs/file_api.h"
#include "fs/file_times.h"

#include <io.h>

namespace vexrt {

namespace {

template <typename Char, typename Data>
void fill(Data &to, const FIND_DATA<Char> &from) {
    to.attrib = from.attributes;
    to.time_create = calendar_time_of(from.created);
    to.time_access = calendar_time_of(from.accessed);
    to.time_write = calendar_time_of(from.written);
    to.size = from.size_low;
    memcpy(to.name, from.name, sizeof to.name);
}

template <typename Char, typename Data>
intptr_t find_first(const Char *pattern, Data *to) {
    if (!pattern || !to) return fail_with(EINVAL);
    FIND_DATA<Char> data;
    HANDLE search = FileApi<Char>::find_first(pattern, &data);
    if (search == INVALID_HANDLE_VALUE) return fail_with_last_error();
    fill(*to, data);
    return reinterpret_cast<intptr_t>(search);
}

template <typename Char, typename Data>
int find_next(intptr_t search, Data *to) {
    if (!to || search == -1) return fail_with(EINVAL);
    FIND_DATA<Char> data;
    if (!FileApi<Char>::find_next(reinterpret_cast<HANDLE>(search), &data))
        return fail_with_last_error();
    fill(*to, data);
    return 0;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

intptr_t _findfirst(const char *pattern, _finddata_t *to) { return find_first(pattern, to); }
intptr_t _wfindfirst(const wchar_t *pattern, _wfinddata_t *to) { return find_first(pattern, to); }
int _findnext(intptr_t search, _finddata_t *to) { return find_next<char>(search, to); }
int _wfindnext(intptr_t search, _wfinddata_t *to) { return find_next<wchar_t>(search, to); }

int _findclose(intptr_t search) {
    bool closed = search != -1 && FindClose(reinterpret_cast<HANDLE>(search));
    return closed ? 0 : fail_with(EINVAL);
}

} // extern "C"
