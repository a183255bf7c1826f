// Text on standard error for the paths that report and then end the process. Defined with the
// streams.
#pragma once

#include <stddef.h>

namespace vexrt {

void write_diagnostic_pieces(const char *const *pieces, size_t count);

// Writes the pieces to the standard error stream under its lock, in one go. Allocates nothing; when
// the stream cannot take the text, it goes to the handle.
template <typename... Pieces>
void write_diagnostic(Pieces... pieces) {
    const char *const list[] = {pieces...};
    write_diagnostic_pieces(list, sizeof...(pieces));
}

} // namespace vexrt
