// Memory mapping. Files are views of the system, which begin at multiples of its granularity; what
// a caller gets may begin within one. Anonymous memory is a reservation of its own. Either is found
// again from an address by asking the system.

#include "core/errno.h"
#include "core/lock.h"
#include "fs/file_api.h"
#include "heap/heap.h"
#include "io/io.h"

#include <limits.h>
#include <sys/mman.h>

namespace vexrt {

namespace {

constexpr unsigned granularity = 0x10000, page_size = 0x1000;

// The mappings that do not begin where their view does.
struct InnerMapping {
    InnerMapping *next;
    const void *address;
};
InnerMapping *inner_mappings;
Lock inner_lock;

bool remember(const void *address) {
    auto *entry = static_cast<InnerMapping *>(heap_allocate(sizeof(InnerMapping)));
    if (!entry) return false;
    Locked guard(inner_lock);
    *entry = {inner_mappings, address};
    inner_mappings = entry;
    return true;
}

uintptr_t granule_of(const void *address) {
    return reinterpret_cast<uintptr_t>(address) / granularity;
}
uintptr_t place_in_granule(const void *address) {
    return reinterpret_cast<uintptr_t>(address) % granularity;
}

// Whether the mapping of the view that begins in the address's granule begins at the address. If
// so, it is no longer remembered.
bool forget_beginning(const void *address) {
    Locked guard(inner_lock);
    for (InnerMapping **link = &inner_mappings; *link; link = &(*link)->next) {
        InnerMapping *entry = *link;
        if (granule_of(entry->address) != granule_of(address)) continue;
        if (entry->address != address) return false;
        *link = entry->next;
        heap_release(entry);
        return true;
    }
    return place_in_granule(address) == 0;
}

struct Access {
    DWORD page; // protection of the mapping object, and of anonymous memory
    DWORD view;
};

// By PROT_EXEC and PROT_WRITE; a private mapping copies what is written.
Access access_of(int protection, bool is_private, bool anonymous) {
    bool writes = protection & PROT_WRITE, executes = protection & PROT_EXEC;
    DWORD view = !writes ? FILE_MAP_READ : is_private ? FILE_MAP_COPY : FILE_MAP_WRITE;
    if (executes) view |= FILE_MAP_EXECUTE;
    bool copies = writes && is_private && !anonymous;
    DWORD page = !writes ? PAGE_READONLY : copies ? PAGE_WRITECOPY : PAGE_READWRITE;
    return {executes ? page << 4 : page,
            view}; // the executable protections follow in the same order
}

// The system would round an address down to its granularity.
void *map_anonymous(void *address, size_t length, int protection) {
    if (place_in_granule(address) != 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    Access access = access_of(protection, true, true);
    DWORD page = protection == PROT_NONE ? static_cast<DWORD>(PAGE_NOACCESS) : access.page;
    return VirtualAlloc(address, length, MEM_RESERVE | MEM_COMMIT, page);
}

// `length` is cut at the end of the file: what lies behind it has no memory.
void *map_file(void *address, size_t length, int protection, bool is_private, HANDLE file,
               unsigned offset) {
    int64_t size;
    if (!GetFileSizeEx(file, &size)) return nullptr;
    if (offset >= size) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    Access access = access_of(protection, is_private, false);
    HANDLE mapping = CreateFileMappingW(file, nullptr, access.page, 0, 0, nullptr);
    if (!mapping) return nullptr;
    unsigned skipped = offset % granularity;
    int64_t rest = size - offset;
    size_t view_length =
        skipped + (rest < static_cast<int64_t>(length) ? static_cast<size_t>(rest) : length);
    void *start = address ? static_cast<char *>(address) - skipped : nullptr;
    void *view = MapViewOfFileEx(mapping, access.view, 0, offset - skipped, view_length, start);
    DWORD error = GetLastError();
    CloseHandle(mapping); // the view keeps it
    SetLastError(error);
    if (!view) return nullptr;
    if (protection == PROT_NONE) {
        DWORD old;
        VirtualProtect(view, view_length, PAGE_NOACCESS, &old);
    }
    char *mapped = static_cast<char *>(view) + skipped;
    if (!skipped || remember(mapped)) return mapped;
    UnmapViewOfFile(view);
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return nullptr;
}

void *result_of(void *mapped) {
    if (mapped) return mapped;
    map_os_error(GetLastError());
    return MAP_FAILED;
}

bool valid_request(const void *address, size_t length, int protection, int flags, off_t offset) {
    int sharing = flags & (MAP_SHARED | MAP_PRIVATE);
    return length != 0 && length <= INT_MAX &&
           !(protection & ~(PROT_READ | PROT_WRITE | PROT_EXEC)) &&
           (sharing == MAP_SHARED || sharing == MAP_PRIVATE) && (address || !(flags & MAP_FIXED)) &&
           offset >= 0 && offset % page_size == 0;
}

// Whether a mapping begins at `address`, of which the system tells the region.
bool begins_mapping(const void *address, const MEMORY_BASIC_INFORMATION &region) {
    if (region.State == MEM_FREE || region.Type == MEM_IMAGE) return false;
    if (region.Type != MEM_MAPPED) return region.AllocationBase == address;
    auto inner = place_in_granule(address);
    return region.AllocationBase == static_cast<const char *>(address) - inner &&
           forget_beginning(address);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" void *_mmap(void *address, size_t length, int protection, int flags, int fd,
                       off_t offset) {
    if (!valid_request(address, length, protection, flags, offset)) {
        set_errno(EINVAL);
        return MAP_FAILED;
    }
    if (!(flags & MAP_FIXED)) address = nullptr;
    if (flags & MAP_ANONYMOUS) return result_of(map_anonymous(address, length, protection));
    auto mapped = with_descriptor(fd, [&](Descriptor &descriptor) -> intptr_t {
        if (!descriptor.is_seekable()) return fail_with(ENODEV);
        return reinterpret_cast<intptr_t>(
            result_of(map_file(address, length, protection, flags & MAP_PRIVATE,
                               descriptor.osfhandle, static_cast<unsigned>(offset))));
    });
    return reinterpret_cast<void *>(mapped); // MAP_FAILED for -1
}

// The whole mapping goes, whatever the length.
extern "C" int _munmap(void *address, size_t length) {
    MEMORY_BASIC_INFORMATION region;
    if (length == 0) return fail_with(EINVAL);
    if (!VirtualQuery(address, &region, sizeof region) || !begins_mapping(address, region))
        return fail_with(EINVAL);
    return result_by_system(region.Type == MEM_MAPPED ? UnmapViewOfFile(region.AllocationBase)
                                                      : VirtualFree(address, 0, MEM_RELEASE));
}

extern "C" int _msync(void *address, size_t length, int flags) {
    constexpr int both = MS_ASYNC | MS_SYNC;
    MEMORY_BASIC_INFORMATION region;
    if (flags & ~(both | MS_INVALIDATE) || (flags & both) == both ||
        reinterpret_cast<uintptr_t>(address) % page_size)
        return fail_with(EINVAL);
    auto *at = static_cast<char *>(address);
    do {
        if (!VirtualQuery(at, &region, sizeof region) || region.State == MEM_FREE)
            return fail_with(ENOMEM);
        size_t here = static_cast<char *>(region.BaseAddress) + region.RegionSize - at;
        if (here > length) here = length;
        if (here && region.Type == MEM_MAPPED && !FlushViewOfFile(at, here))
            return fail_with_last_error();
        at += here;
        length -= here;
    } while (length);
    return 0;
}
