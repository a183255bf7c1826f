#include "io/io.h"

#include <fcntl.h>
#include <io.h>

namespace vexrt {

namespace {

int mode_of(const Descriptor &descriptor) {
    if (!descriptor.is_text()) return O_BINARY;
    switch (descriptor.encoding) {
    case encoding_utf8: return O_U8TEXT;
    case encoding_utf16le: return O_U16TEXT;
    default: return O_TEXT;
    }
}

void set_text(Descriptor &descriptor, Encoding encoding) {
    descriptor.flags |= FD_TEXT;
    descriptor.encoding = encoding;
}

} // namespace

int setmode_worker(Descriptor &descriptor, int mode) {
    int previous = mode_of(descriptor);
    switch (mode) {
    case 0: break;
    case O_BINARY: descriptor.flags &= static_cast<unsigned char>(~FD_TEXT); break;
    case O_TEXT: set_text(descriptor, encoding_ansi); break;
    case O_U8TEXT: set_text(descriptor, encoding_utf8); break;
    case O_U16TEXT:
    case O_WTEXT: set_text(descriptor, encoding_utf16le); break;
    default: return fail_with(EINVAL);
    }
    return previous;
}

} // namespace vexrt

extern "C" int _setmode(int fd, int mode) {
    using namespace vexrt;
    return with_descriptor(fd, [=](Descriptor &d) { return setmode_worker(d, mode); });
}
