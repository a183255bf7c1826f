// Temporary files: open until they are closed, and then gone.

#include "core/constraint.h"
#include "heap/heap.h"
#include "stdio/stream_table.h"

#include <string.h>

namespace vexrt {

namespace {

constexpr size_t name_capacity = 261;

// Keeps the name, by which closing deletes the file. Without memory the stream is closed again and
// the file stays.
bool delete_on_close(FILE *file, const char *name) {
    auto *copy = static_cast<char *>(heap_allocate(name_capacity));
    if (!copy) {
        fclose(file);
        return false;
    }
    memcpy(copy, name, strlen(name) + 1);
    stream_of(file).tmpname = copy;
    return true;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" FILE *tmpfile() {
    char name[name_capacity];
    FILE *file = fopen(tmpnam(name), "wb+");
    return file && delete_on_close(file, name) ? file : nullptr;
}

extern "C" errno_t tmpfile_s(FILE *_VEXRT_RESTRICT *result) {
    if (!result) return report_constraint(EINVAL);
    char name[name_capacity];
    if (errno_t error = fopen_s(result, tmpnam(name), "wb+")) return error;
    if (delete_on_close(*result, name)) return 0;
    *result = nullptr;
    return ENOMEM;
}
