// How the bounds-checked functions report a runtime-constraint violation.
#pragma once

#include <errno.h>
#include <stdint.h>
#include <stdlib.h>

namespace vexrt {

void default_constraint_handler(const char *message, void *instance, errno_t code);

// Calls the thread's handler with the message of `code` and returns `code`.
errno_t report_constraint(errno_t code);

// What a function returns for an argument that it cannot use: -1, after a report if it is
// bounds-checked, else with EINVAL.
int refuse_argument(bool secure);

} // namespace vexrt
