#include "string/kernel_set.h"
#include "string/sse2_vector.h"

namespace vexrt {

constinit Kernels kernels = kernels_of<Sse2>;

} // namespace vexrt
