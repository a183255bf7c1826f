// The indicators of a stream, and what lies behind it.

#include "core/errno.h"
#include "stdio/stream_table.h"

using namespace vexrt;

extern "C" int feof(FILE *file) {
    return with_stream(file, 0, [](Stream &s) { return (s.flags & SF_EOF) != 0; });
}

extern "C" int ferror(FILE *file) {
    return with_stream(file, 0, [](Stream &s) { return (s.flags & SF_ERR) != 0; });
}

extern "C" void clearerr(FILE *file) {
    with_stream(file, 0, [](Stream &s) {
        s.flags &= ~static_cast<uint32_t>(SF_EOF | SF_ERR);
        return 0;
    });
}

extern "C" int _fileno(FILE *file) {
    return with_stream(file, -1, [](Stream &s) { return s.fd; });
}
