// Waiting for child processes, which are known by their handles.

#include "core/errno.h"
#include "process/process.h"

#include <process.h>

namespace vexrt {

namespace {

// The two of POSIX, neither of which has an effect.
constexpr int wait_options = 3;

bool is_pseudo_handle(intptr_t handle) { return handle == -1 || handle == -2; }

// The status is -1 on failure.
intptr_t wait_for(int *status, intptr_t handle) {
    DWORD code;
    bool done = exit_code_of(as_handle(handle), code);
    if (status) *status = done ? static_cast<int>(code) : -1;
    return done ? handle : -1;
}

} // namespace

// ECHILD for what is no handle.
bool exit_code_of(HANDLE process, DWORD &code) {
    if (WaitForSingleObject(process, INFINITE) != WAIT_FAILED && GetExitCodeProcess(process, &code))
        return true;
    DWORD error = GetLastError();
    if (error == ERROR_INVALID_HANDLE)
        set_errno(ECHILD);
    else
        map_os_error(error);
    return false;
}

} // namespace vexrt

using namespace vexrt;

extern "C" intptr_t _cwait(int *status, intptr_t handle, int) {
    if (is_pseudo_handle(handle)) return fail_with(ECHILD);
    intptr_t result = wait_for(status, handle);
    CloseHandle(as_handle(handle));
    return result;
}

extern "C" intptr_t _waitpid(intptr_t handle, int *status, int options) {
    if (options & ~wait_options) return fail_with(EINVAL);
    return is_pseudo_handle(handle) ? fail_with(ECHILD) : wait_for(status, handle);
}

extern "C" int _getpid() { return static_cast<int>(GetCurrentProcessId()); }
