#include "core/constraint.h"

#include "core/diagnostic.h"
#include "core/errno.h"

namespace vexrt {

void default_constraint_handler(const char *, void *, errno_t) {}

[[gnu::cold]] errno_t report_constraint(errno_t code) {
    thread_record().constraint_handler(error_message(code), nullptr, code);
    return code;
}

int refuse_argument(bool secure) {
    if (!secure) return fail_with(EINVAL);
    report_constraint(EINVAL);
    return -1;
}

} // namespace vexrt

using namespace vexrt;

extern "C" constraint_handler_t set_constraint_handler_s(constraint_handler_t handler) {
    ThreadRecord &record = thread_record();
    constraint_handler_t previous = record.constraint_handler;
    record.constraint_handler = handler ? handler : default_constraint_handler;
    return previous;
}

extern "C" void abort_handler_s(const char *message, void *, errno_t) {
    write_diagnostic(message ? message : "", "\n");
    abort();
}

extern "C" void ignore_handler_s(const char *, void *, errno_t) {}
