// The block that hands descriptors on to a child: what it holds of each kind of descriptor, and that
// the end of the table is cut off. The code under test is compiled into this program, over the
// program's own heap and errno.

#include "core/lock.cpp"
#include "io/descriptor_table.cpp"
#include "io/inherit.cpp"

#include <stdio.h>

namespace vexrt {

DWORD thread_record_slot = TLS_OUT_OF_INDEXES;
static ThreadRecord record;
static bool no_memory;

ThreadRecord &create_thread_record() { return record; }
void fatal(FatalCode) { _Exit(2); }
void *heap_allocate(size_t size) { return no_memory ? nullptr : malloc(size); }
void heap_release(void *block) { free(block); }

} // namespace vexrt

using namespace vexrt;

static int passed, failed;

static void check(bool ok, const char *what) {
    (ok ? passed : failed)++;
    if (!ok) printf("%s\n", what);
}

static void open(unsigned fd, unsigned char flags, int handle) {
    descriptor_at(fd).flags = flags;
    descriptor_at(fd).osfhandle = reinterpret_cast<HANDLE>(handle);
}

struct Entry {
    unsigned char flags;
    int handle;
};

static bool holds(bool omit_standard, const Entry *due, unsigned count) {
    unsigned size = 0, stored = 0;
    auto *block = static_cast<unsigned char *>(build_inherited_block(omit_standard, size));
    memcpy(&stored, block, 4);
    bool ok = stored == count && size == 4 + 5 * count;
    for (unsigned i = 0; ok && i < count; ++i) {
        int handle;
        memcpy(&handle, block + 4 + count + 4 * i, 4);
        ok = block[4 + i] == due[i].flags && handle == due[i].handle;
    }
    heap_release(block);
    return ok;
}

int main() {
    create_static_locks();
    check(grow_descriptors(130), "the table grows");
    check(holds(false, nullptr, 0), "nothing is open");
    open(0, FD_OPEN | FD_TEXT, 11);
    open(1, FD_OPEN | FD_TEXT | FD_PIPE, 12);
    open(3, FD_OPEN | FD_NOINHERIT, 13);
    open(4, FD_OPEN | FD_APPEND, 14);
    static const Entry all[] = {{0x81, 11}, {0x89, 12}, {0, -1}, {0, -1}, {0x21, 14}};
    check(holds(false, all, 5), "all that may be inherited");
    static const Entry detached[] = {{0, -1}, {0, -1}, {0, -1}, {0, -1}, {0x21, 14}};
    check(holds(true, detached, 5), "without the standard ones");
    open(4, 0, -1);
    static const Entry last[] = {{0x81, 11}, {0x89, 12}, {0, -1}, {0, -1}};
    check(holds(false, last, 4), "one that is not inherited still counts");
    no_memory = true;
    unsigned size;
    check(!build_inherited_block(false, size), "no memory");
    printf("%d passed, %d failed\n", passed, failed);
    return failed != 0;
}
