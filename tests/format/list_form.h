/* list_form.h - the body of a function with `...` behind `format` that calls a function taking a list. */
#ifndef LIST_FORM_H
#define LIST_FORM_H

#include <stdarg.h>

#define WITH_LIST(call)                                                                            \
    va_list list;                                                                                  \
    int result;                                                                                    \
    va_start(list, format);                                                                        \
    result = call;                                                                                 \
    va_end(list);                                                                                  \
    return result

#endif
