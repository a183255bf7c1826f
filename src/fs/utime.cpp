// Setting the times of a file.

#include "fs/file_api.h"
#include "fs/file_times.h"

#include <sys/utime.h>

namespace vexrt {

namespace {

template <typename Char>
int set_times(const Char *path, const utimbuf *times) {
    if (!path) return fail_with(EINVAL);
    FILETIME accessed, written;
    time_t now = time(nullptr);
    if (!file_time_of(times ? times->actime : now, accessed) ||
        !file_time_of(times ? times->modtime : now, written))
        return fail_with(EINVAL);
    HANDLE file = FileApi<Char>::open_for_attributes(path);
    if (file == INVALID_HANDLE_VALUE) return fail_with_last_error();
    int result = result_by_system(SetFileTime(file, nullptr, &accessed, &written));
    CloseHandle(file);
    return result;
}

} // namespace

} // namespace vexrt

extern "C" int _utime(const char *path, const utimbuf *times) {
    return vexrt::set_times(path, times);
}
extern "C" int _wutime(const wchar_t *path, const utimbuf *times) {
    return vexrt::set_times(path, times);
}
