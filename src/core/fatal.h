// Ends the process when something fails that no caller could handle. Defined with `__crt_abort`.
#pragma once

namespace vexrt {

enum class FatalCode : int {
    heap_init = -2,
    threads_init = -3,
    out_of_memory = -4,
    corrupt_thread_data = -5,
    bad_stream_lock = -6,
    thread_exception = -15,
};

[[noreturn]] void fatal(FatalCode code);

} // namespace vexrt
