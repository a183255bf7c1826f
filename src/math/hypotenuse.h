#pragma once

namespace vexrt {

// sqrt(x^2 + y^2); `name` is the caller's, for errors.
double hypotenuse(double x, double y, const char *name);

} // namespace vexrt
