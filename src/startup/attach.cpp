// The entry point: what happens when the loader attaches and detaches the library.

#include "core/cpu.h"
#include "core/function_table.h"
#include "core/lock.h"
#include "core/thread_record.h"
#include "heap/heap.h"
#include "io/console.h"
#include "io/io.h"
#include "startup/startup.h"
#include "string/kernels.h"
#include "threads/threads.h"

namespace vexrt {

PerformanceBaseline performance_baseline;

namespace {

// Constructors and destructors of the library itself. Both tables are empty; they stand for what a
// build of the library may add.
#pragma section(".CRT$XCA", read)
#pragma section(".CRT$XCZ", read)
#pragma section(".CRT$XTA", read)
#pragma section(".CRT$XTZ", read)
__declspec(allocate(".CRT$XCA")) const TableFunction constructors_begin[] = {nullptr};
__declspec(allocate(".CRT$XCZ")) const TableFunction constructors_end[] = {nullptr};
__declspec(allocate(".CRT$XTA")) const TableFunction destructors_begin[] = {nullptr};
__declspec(allocate(".CRT$XTZ")) const TableFunction destructors_end[] = {nullptr};

int attach_count;

void sample_performance_counter() {
    PerformanceBaseline &sample = performance_baseline;
    if (!QueryPerformanceFrequency(&sample.frequency) ||
        !QueryPerformanceCounter(&sample.counter) || sample.frequency == 0)
        sample = {-1, -1};
}

// A library that is loaded later (not with the program itself) cannot know how many threads there
// are; it starts with interlocked operations.
BOOL attach_process(bool with_program) {
    threading_mode.first_thread = current_thread_id();
    threading_mode.many_threads = !with_program;
    if (!heap_create()) return false;
    create_static_locks();
    if (!thread_records_attach()) return false;
    probe_cpu();
    choose_string_kernels();
    sample_performance_counter();
    descriptors_attach();
    capture_environment();
    ++attach_count;
    run_table(constructors_begin, constructors_end);
    return true;
}

// When the process is ending, other threads may have been stopped in the middle of anything, the
// heap included. The exit handlers flush; the system takes back everything else.
BOOL detach_process(bool process_ending) {
    if (attach_count < 1) return false;
    --attach_count;
    if (process_ending) note_other_threads_gone();
    run_internal_exit_handlers();
    run_table(destructors_begin, destructors_end);
    if (process_ending) return true;
    descriptors_detach();
    console_detach();
    free_thread_record(nullptr);
    free_spare_threads();
    destroy_locks();
    thread_records_detach();
    heap_destroy();
    return true;
}

} // namespace

extern "C" BOOL __stdcall vexrt_entry(HMODULE, DWORD reason, void *reserved) {
    switch (reason) {
    case DLL_PROCESS_ATTACH: return attach_process(reserved != nullptr);
    case DLL_THREAD_ATTACH: note_second_thread(); return true;
    case DLL_THREAD_DETACH: free_thread_record(nullptr); return true;
    default: return detach_process(reserved != nullptr);
    }
}

} // namespace vexrt
