#include "core/last_error.h"
#include "heap/heap.h"
#include "io/io.h"

namespace vexrt {

Descriptor *descriptor_blocks[descriptor_block_limit];
volatile unsigned descriptor_count;

namespace {

const HANDLE handle_none = INVALID_HANDLE_VALUE;
const HANDLE handle_no_console = reinterpret_cast<HANDLE>(-2); // a process without standard streams

// Appends a block. Caller holds the table's lock or is the only thread.
bool add_block() {
    unsigned count = descriptor_count;
    if (count == descriptor_limit) return false;
    auto *block =
        static_cast<Descriptor *>(heap_allocate(descriptors_per_block * sizeof(Descriptor)));
    if (!block) return false;
    Descriptor fresh{};
    fresh.lock_ready = 1;
    fresh.osfhandle = handle_none;
    for (unsigned i = 0; i < descriptors_per_block; ++i) block[i] = fresh;
    descriptor_blocks[count >> descriptor_block_shift] = block;
    compiler_barrier(); // readers look at the count first
    descriptor_count = count + descriptors_per_block;
    return true;
}

} // namespace

// A device that is none fails, which is no error of the call that asks.
bool Descriptor::is_console() const {
    if (!(flags & FD_DEVICE)) return false;
    LastErrorKept kept;
    DWORD mode;
    return GetConsoleMode(osfhandle, &mode);
}

// A closed descriptor whose lock another thread holds is taken already, or not quite closed. It is
// not waited for: as soon as it is open its lock may be held by a _dup that waits for the table.
int allocate_descriptor() {
    Locked table(numbered_lock(lock_descriptors));
    unsigned fd = 0;
    do {
        for (; fd < descriptor_count; ++fd) {
            Descriptor &descriptor = descriptor_at(fd);
            if (descriptor.is_open() || !descriptor.lock.try_enter()) continue;
            if (!descriptor.is_open()) {
                descriptor.osfhandle = handle_none;
                return static_cast<int>(fd);
            }
            descriptor.lock.leave();
        }
    } while (add_block());
    return -1;
}

bool grow_descriptors(unsigned fd) {
    if (fd < descriptor_count) return true;
    Locked table(numbered_lock(lock_descriptors));
    while (fd >= descriptor_count)
        if (!add_block()) return false;
    return true;
}

int set_handle(int fd, HANDLE handle) {
    if (static_cast<unsigned>(fd) >= descriptor_count) return fail_with(EBADF);
    Descriptor &descriptor = descriptor_at(static_cast<unsigned>(fd));
    if (descriptor.osfhandle != handle_none && descriptor.osfhandle != handle_no_console)
        return fail_with(EBADF);
    if (fd < static_cast<int>(standard_count)) SetStdHandle(standard_handles[fd], handle);
    descriptor.osfhandle = handle;
    return 0;
}

int free_handle(int fd) {
    Descriptor *descriptor = open_descriptor(fd);
    if (!descriptor || descriptor->osfhandle == handle_none) return fail_with(EBADF);
    if (fd < static_cast<int>(standard_count)) SetStdHandle(standard_handles[fd], nullptr);
    descriptor->osfhandle = handle_none;
    return 0;
}

bool has_handle(const Descriptor &descriptor) {
    if (descriptor.osfhandle != handle_none) return true;
    set_errno(EBADF);
    return false;
}

bool duplicate_handle(HANDLE from, bool inherit, HANDLE &to) {
    HANDLE process = GetCurrentProcess();
    return DuplicateHandle(process, from, process, &to, 0, inherit, DUPLICATE_SAME_ACCESS);
}

bool handle_type_flags(HANDLE handle, unsigned char &flags) {
    DWORD type = GetFileType(handle);
    flags = type == FILE_TYPE_CHAR ? FD_DEVICE : type == FILE_TYPE_PIPE ? FD_PIPE : 0;
    return type != FILE_TYPE_UNKNOWN;
}

} // namespace vexrt

using namespace vexrt;

extern "C" intptr_t _get_osfhandle(int fd) {
    if (Descriptor *descriptor = open_descriptor(fd))
        return reinterpret_cast<intptr_t>(descriptor->osfhandle);
    return fail_with(EBADF);
}

// The flag itself, not 1; whether the descriptor is open does not matter.
extern "C" int _isatty(int fd) {
    if (static_cast<unsigned>(fd) >= descriptor_count) return 0;
    return descriptor_at(static_cast<unsigned>(fd)).flags & FD_DEVICE;
}
