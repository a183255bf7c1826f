#include "string/kernel_set.h"
#include "string/sse2_vector.h"

namespace vexrt {

constinit const Kernels sse2_kernels = kernels_of<Sse2>;

} // namespace vexrt
