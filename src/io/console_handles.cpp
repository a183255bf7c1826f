#include "io/console.h"

namespace vexrt {

namespace {

HANDLE input_handle, output_handle; // null: not yet opened

// Two threads may open it at the same time; the first result stays.
HANDLE open_once(HANDLE &cached, const wchar_t *name) {
    HANDLE handle = __atomic_load_n(&cached, __ATOMIC_ACQUIRE);
    if (handle) return handle;
    HANDLE opened =
        CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    if (__atomic_compare_exchange_n(&cached, &handle, opened, false, __ATOMIC_ACQ_REL,
                                    __ATOMIC_ACQUIRE))
        return opened;
    if (opened != INVALID_HANDLE_VALUE) CloseHandle(opened);
    return handle;
}

} // namespace

HANDLE console_input() { return open_once(input_handle, L"CONIN$"); }
HANDLE console_output() { return open_once(output_handle, L"CONOUT$"); }

void console_detach() {
    const HANDLE handles[] = {input_handle, output_handle};
    for (HANDLE handle : handles)
        if (handle && handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
}

} // namespace vexrt
