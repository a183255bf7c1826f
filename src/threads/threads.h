// What the threads offer to the attach sequence.
#pragma once

namespace vexrt {

// Gives back the records of threads that have ended.
void free_spare_threads();

} // namespace vexrt
