// Ends the process when something fails that no caller could handle. Defined with `__crt_abort`.
#pragma once

namespace vexrt {

enum class FatalCode : int {
    out_of_memory = -4,
    corrupt_thread_data = -5,
    bad_stream_lock = -6,
};

[[noreturn]] void fatal(FatalCode code);

} // namespace vexrt
