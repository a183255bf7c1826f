// The formatted output engine as the rest of the library sees it.
#pragma once

#include <stdarg.h>
#include <stddef.h>

namespace vexrt {

// Takes `count` characters. Returns the state for the next call, or null when the output failed.
template <typename Char>
using OutputSink = void *(*)(void *state, const Char *text, size_t count);

/*
 * Formats to a sink. Returns the characters delivered; -1 when the sink failed, when a character
 * could not be converted (EILSEQ), when memory for a long field could not be had (ENOMEM), when
 * there would be more than INT_MAX characters (ERANGE), for a null format (EINVAL), and for a
 * runtime-constraint violation. A `secure` call is one of a `_s` function: %n and a null string are
 * violations in it. The sink gets the text in larger pieces than single fields; all of it has been
 * delivered when a call returns or reports a violation.
 */
int format_text(OutputSink<char> sink, void *state, const char *format, va_list arguments,
                bool secure);
int format_text(OutputSink<wchar_t> sink, void *state, const wchar_t *format, va_list arguments,
                bool secure);

} // namespace vexrt
