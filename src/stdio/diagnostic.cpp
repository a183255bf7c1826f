#include "core/diagnostic.h"

#include "core/thread_record.h"
#include "io/io.h"
#include "stdio/stream_table.h"

#include <string.h>

namespace vexrt {

namespace {

// The stream can be used when the thread has its record and the lock exists or can be made.
bool stream_usable() {
    return existing_thread_record() && standard_error.fd >= 0 &&
           find_numbered_lock(lock_first_stream + standard_error.index);
}

void write_to_handle(const char *text) {
    DWORD written;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(strlen(text)), &written,
              nullptr);
}

} // namespace

void write_diagnostic_pieces(const char *const *pieces, size_t count) {
    size_t done = 0;
    if (stream_usable()) {
        StreamLocked guard(standard_error);
        LentBuffer lent(standard_error);
        while (done < count && write_all(pieces[done], strlen(pieces[done]), standard_error))
            ++done;
    }
    for (; done < count; ++done) write_to_handle(pieces[done]);
}

} // namespace vexrt
