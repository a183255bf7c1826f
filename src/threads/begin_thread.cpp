// _beginthread and _beginthreadex: threads by their handles.

#include "core/errno.h"
#include "core/fatal.h"
#include "threads/c11_thread.h"

#include <process.h>
#include <stdlib.h>

namespace vexrt {

namespace {

using Start = void(__cdecl *)(void *);
using StartEx = unsigned int(__stdcall *)(void *);

DWORD __stdcall start_thread(void *parameter) {
    auto *record = static_cast<ThreadRecord *>(parameter);
    if (!install_thread_record(record)) fatal(FatalCode::corrupt_thread_data);
    run_guarded([record] {
        reinterpret_cast<Start>(record->start_routine)(record->start_argument);
        return 0;
    });
    _endthread();
}

DWORD __stdcall start_thread_ex(void *parameter) {
    auto *record = static_cast<ThreadRecord *>(parameter);
    if (!install_thread_record(record)) fatal(FatalCode::corrupt_thread_data);
    record->thread_id = GetCurrentThreadId();
    _endthreadex(run_guarded([record] {
        return reinterpret_cast<StartEx>(record->start_routine)(record->start_argument);
    }));
}

// Null, with EINVAL for a null routine.
ThreadRecord *record_for(void *start, void *arg) {
    if (!start) {
        set_errno(EINVAL);
        return nullptr;
    }
    ThreadRecord *record = new_thread_record();
    if (!record) return nullptr;
    record->start_routine = start;
    record->start_argument = arg;
    return record;
}

void give_up(ThreadRecord *record) {
    map_os_error(GetLastError());
    free_thread_record(record);
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" {

uintptr_t _beginthread(void(__cdecl *start)(void *), unsigned int stack_size, void *arg) {
    constexpr uintptr_t failed = static_cast<uintptr_t>(-1);
    ThreadRecord *record = record_for(reinterpret_cast<void *>(start), arg);
    if (!record) return failed;
    HANDLE handle = CreateThread(nullptr, stack_size, start_thread, record, CREATE_SUSPENDED,
                                 &record->thread_id);
    if (!handle) {
        give_up(record);
        return failed;
    }
    record->thread_handle = handle;
    if (ResumeThread(handle) == static_cast<DWORD>(-1)) {
        give_up(record);
        CloseHandle(handle);
        return failed;
    }
    return reinterpret_cast<uintptr_t>(handle);
}

uintptr_t _beginthreadex(void *security, unsigned int stack_size,
                         unsigned int(__stdcall *start)(void *), void *arg, unsigned int flags,
                         unsigned int *thread_id_out) {
    ThreadRecord *record = record_for(reinterpret_cast<void *>(start), arg);
    if (!record) return 0;
    HANDLE handle =
        CreateThread(static_cast<SECURITY_ATTRIBUTES *>(security), stack_size, start_thread_ex,
                     record, flags, reinterpret_cast<DWORD *>(thread_id_out));
    if (!handle) give_up(record);
    return reinterpret_cast<uintptr_t>(handle);
}

void _endthread() { end_thread(0); }

// The handle is the program's.
void _endthreadex(unsigned int code) {
    if (auto *thread = static_cast<C11Thread *>(thread_record().c11_thread)) {
        thread->result = static_cast<int>(code);
        thread->handle = nullptr;
    }
    free_thread_record(nullptr);
    ExitThread(code);
}

} // extern "C"
