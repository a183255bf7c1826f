// Descriptors at the start of the process, and the block that hands them on to a child.
//
// The block is what parent and child agree on: a count N, N flag bytes, N handles.

#include "core/fatal.h"
#include "heap/heap.h"
#include "io/io.h"

#include <string.h>

namespace vexrt {

HANDLE standard_error_at_start = INVALID_HANDLE_VALUE;

namespace {

constexpr unsigned bytes_per_entry = sizeof(BYTE) + sizeof(HANDLE);

// The parts of a block. Handles need not lie aligned.
struct InheritedBlock {
    BYTE *start;

    uint32_t count() const {
        uint32_t value;
        memcpy(&value, start, sizeof value);
        return value;
    }
    void set_count(uint32_t value) const { memcpy(start, &value, sizeof value); }
    BYTE &flags(unsigned i) const { return start[sizeof(uint32_t) + i]; }
    HANDLE handle(unsigned i) const {
        HANDLE value;
        memcpy(&value, handle_place(i), sizeof value);
        return value;
    }
    void set_handle(unsigned i, HANDLE value) const {
        memcpy(handle_place(i), &value, sizeof value);
    }
    static uint64_t size(uint64_t count) { return sizeof(uint32_t) + bytes_per_entry * count; }

private:
    BYTE *handle_place(unsigned i) const {
        return start + sizeof(uint32_t) + count() + i * sizeof(HANDLE);
    }
};

void import_entry(const InheritedBlock &block, unsigned i) {
    HANDLE handle = block.handle(i);
    BYTE flags = block.flags(i);
    if (handle == INVALID_HANDLE_VALUE || !(flags & FD_OPEN)) return;
    if (!(flags & FD_PIPE) && GetFileType(handle) == FILE_TYPE_UNKNOWN) return;
    Descriptor &descriptor = descriptor_at(i);
    descriptor.flags = flags;
    descriptor.osfhandle = handle;
}

void import_inherited() {
    STARTUPINFOW info;
    GetStartupInfoW(&info);
    if (info.cbReserved2 < sizeof(uint32_t) || !info.lpReserved2) return;
    InheritedBlock block{info.lpReserved2};
    unsigned count = block.count();
    if (info.cbReserved2 < InheritedBlock::size(count)) return;
    if (count > descriptor_limit) count = descriptor_limit;
    if (count && !grow_descriptors(count - 1)) count = descriptor_count;
    for (unsigned i = 0; i < count; ++i) import_entry(block, i);
}

// A standard descriptor that was not inherited gets a duplicate of the process's standard handle.
void open_standard(unsigned fd) {
    Descriptor &descriptor = descriptor_at(fd);
    auto number = reinterpret_cast<intptr_t>(descriptor.osfhandle);
    if (number != -1 && number != -2) {
        descriptor.flags |= FD_TEXT;
        return;
    }
    descriptor.flags = FD_OPEN | FD_TEXT;
    HANDLE handle = GetStdHandle(standard_handles[fd]);
    unsigned char type = 0;
    if (!handle || handle == INVALID_HANDLE_VALUE || !handle_type_flags(handle, type)) {
        descriptor.flags |= FD_DEVICE;
        descriptor.osfhandle = INVALID_HANDLE_VALUE;
        return;
    }
    descriptor.flags |= type;
    HANDLE copy;
    set_handle(static_cast<int>(fd), duplicate_handle(handle, true, copy) ? copy : handle);
}

} // namespace

void descriptors_attach() {
    if (!grow_descriptors(0)) fatal(FatalCode::out_of_memory);
    import_inherited();
    for (unsigned fd = 0; fd < standard_count; ++fd) open_standard(fd);
    standard_error_at_start = standard_error_handle_now();
}

void descriptors_detach() {
    for (Descriptor *&block : descriptor_blocks) {
        if (!block) break;
        for (unsigned i = 0; i < descriptors_per_block; ++i) block[i].lock.destroy();
        heap_release(block);
        block = nullptr;
    }
    descriptor_count = 0;
}

HANDLE standard_error_handle_now() { return descriptor_at(2).osfhandle; }

void *build_inherited_block(bool omit_standard, unsigned &size) {
    unsigned count = descriptor_count;
    while (count && descriptor_at(count - 1).flags == 0) --count;
    size = static_cast<unsigned>(InheritedBlock::size(count));
    InheritedBlock block{static_cast<BYTE *>(heap_allocate(size))};
    if (!block.start) return nullptr;
    block.set_count(count);
    for (unsigned i = 0; i < count; ++i) {
        const Descriptor &descriptor = descriptor_at(i);
        bool keep = !(descriptor.flags & FD_NOINHERIT) && !(omit_standard && i < standard_count);
        block.flags(i) = keep ? descriptor.flags : 0;
        block.set_handle(i, keep ? descriptor.osfhandle : INVALID_HANDLE_VALUE);
    }
    return block.start;
}

} // namespace vexrt
