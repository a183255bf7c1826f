// Descriptors as the rest of the library sees them: the table, and the workers that assume the
// descriptor's lock is held.
#pragma once

#include "core/errno.h"
#include "core/lock.h"
#include "platform/kernel32.h"

#include <stddef.h>
#include <stdint.h>

namespace vexrt {

enum DescriptorFlag : unsigned char {
    FD_OPEN = 0x01,
    FD_EOF = 0x02, // a Ctrl-Z was met in text mode: reads give nothing until a seek
    FD_PIPE = 0x08,
    FD_NOINHERIT = 0x10,
    FD_APPEND = 0x20, // every write goes to the end; never on pipes and devices
    FD_DEVICE = 0x40,
    FD_TEXT = 0x80,
};

enum Encoding : unsigned char { encoding_ansi, encoding_utf8, encoding_utf16le };

// One descriptor. It is free (flags 0, handle -1), reserved by the call that holds its lock (handle
// -1), or open. Its address is stable for the life of the process.
struct Descriptor {
    unsigned char flags;
    unsigned char encoding;   // of a text-mode descriptor
    unsigned char pending[3]; // read ahead from a pipe or device: the first `pending_count`
    unsigned char lock_ready; // a zero lock needs no set-up: always 1
    bool dropped_return;      // the last read ended in a CR that it dropped; its LF comes next
    unsigned char pending_count;
    Lock lock;
    HANDLE osfhandle;

    bool is_open() const { return flags & FD_OPEN; }
    bool is_text() const { return flags & FD_TEXT; }
    bool is_seekable() const { return !(flags & (FD_PIPE | FD_DEVICE)); }
    bool is_console() const;
};
static_assert(offsetof(Descriptor, pending) == 2 && offsetof(Descriptor, lock_ready) == 5);
static_assert(offsetof(Descriptor, lock) == 8 && offsetof(Descriptor, osfhandle) == 24);

constexpr unsigned descriptor_block_shift = 6;
constexpr unsigned descriptors_per_block = 1 << descriptor_block_shift;
constexpr unsigned descriptor_block_limit = 128;
constexpr unsigned descriptor_limit = descriptor_block_limit * descriptors_per_block;

// The process's standard handles, by descriptor.
constexpr unsigned standard_count = 3;
constexpr DWORD standard_handles[standard_count] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE,
                                                    STD_ERROR_HANDLE};

extern Descriptor *descriptor_blocks[descriptor_block_limit];
extern volatile unsigned descriptor_count; // those with a block; a multiple of the block size

inline Descriptor &descriptor_at(unsigned fd) {
    return descriptor_blocks[fd >> descriptor_block_shift][fd & (descriptors_per_block - 1)];
}

// The descriptor when it exists and is open, else null. Negative numbers never exist.
inline Descriptor *open_descriptor(int fd) {
    if (static_cast<unsigned>(fd) >= descriptor_count) return nullptr;
    Descriptor &descriptor = descriptor_at(static_cast<unsigned>(fd));
    return descriptor.is_open() ? &descriptor : nullptr;
}

// Calls `worker(descriptor)` with the lock held; EBADF and -1 when the descriptor is not open.
template <typename Worker>
auto with_descriptor(int fd, Worker worker) -> decltype(worker(descriptor_at(0))) {
    if (Descriptor *descriptor = open_descriptor(fd)) {
        Locked guard(descriptor->lock);
        if (descriptor->is_open()) return worker(*descriptor);
    }
    set_errno(EBADF);
    return -1;
}

// The lowest free descriptor with its lock held, or -1.
int allocate_descriptor();
// Makes blocks until descriptor `fd` exists; false when it cannot.
bool grow_descriptors(unsigned fd);

// Store or clear the handle of a descriptor, and the process's standard handle with 0 to 2. EBADF
// and -1 when it holds one already (or none).
int set_handle(int fd, HANDLE handle);
int free_handle(int fd);

// Whether an open descriptor has a handle, which a standard one may lack; sets EBADF if not.
bool has_handle(const Descriptor &descriptor);

// Duplicates a handle into this process.
bool duplicate_handle(HANDLE from, bool inherit, HANDLE &to);

// Workers, with the lock held.
int read_worker(Descriptor &descriptor, void *buffer, unsigned count);
int write_worker(Descriptor &descriptor, const void *buffer, unsigned count);
int close_worker(int fd, Descriptor &descriptor);
int64_t seek64(Descriptor &descriptor, int64_t offset, int origin);
long seek32(Descriptor &descriptor, long offset, int origin);
int setmode_worker(Descriptor &descriptor, int mode);
int chsize64_worker(Descriptor &descriptor, int64_t size);

// Fetches the type of a handle as descriptor flags; false when it has none (the last error tells).
bool handle_type_flags(HANDLE handle, unsigned char &flags);

// The descriptors that a child process inherits, as it finds them in its start-up information: a
// heap block of `size` bytes, null when there is no memory. `omit_standard` leaves out 0 to 2.
void *build_inherited_block(bool omit_standard, unsigned &size);

// Attach and detach.
void descriptors_attach();
void descriptors_detach();

// What descriptor 2 held at the end of start-up, and what it holds now.
extern HANDLE standard_error_at_start;
HANDLE standard_error_handle_now();

// Recodes a console's text in place between two code pages; leaves it alone where that cannot be
// done in the same number of bytes.
void recode_in_place(UINT to, UINT from, char *text, int length);

} // namespace vexrt
