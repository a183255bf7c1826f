/*
 * violations.h - counts runtime-constraint violations, from count_violations() on.
 *
 *   CHECK_REFUSED(call, result, code)   the call's result, and that it reports one violation of `code`
 */
#ifndef VIOLATIONS_H
#define VIOLATIONS_H

#include "check.h"

#include <stdlib.h>

static int violations; /* reported so far */
static errno_t violation_code; /* of the last one */

static void note_violation(const char *message, void *object, errno_t code)
{
    violations += message && !object;
    violation_code = code;
}

static void count_violations(void) { set_constraint_handler_s(note_violation); }

#define CHECK_REFUSED(call, result, code)                                                          \
    do {                                                                                           \
        violations = violation_code = 0;                                                           \
        CHECK_INT((call), (result));                                                               \
        CHECK_INT(violations, 1);                                                                  \
        CHECK_INT(violation_code, (code));                                                         \
    } while (0)

#endif
