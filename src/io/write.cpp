// Writing through a descriptor: raw bytes, and text in three encodings.
//
// Text is translated chunk by chunk in buffers on the stack, so that writing needs no heap. Behind
// every full chunk one unit of the source is passed over; that is how the interface is defined, and
// the streams, which must lose nothing, write in smaller pieces.

#include "io/console.h"
#include "io/find_unit.h"
#include "io/io.h"
#include "locale/locale_record.h"

#include <io.h>
#include <limits.h>

namespace vexrt {

namespace {

constexpr UINT utf8_code_page = 65001;
constexpr char ctrl_z = 26;
constexpr unsigned chunk_bytes = 2048;

struct Transfer {
    unsigned written; // bytes
    unsigned added;   // of them, by translation
    DWORD error;
};

// One WriteFile; counts what went. False ends the write.
bool write_handle(HANDLE handle, const void *from, unsigned count, Transfer &done) {
    DWORD written = 0;
    if (!WriteFile(handle, from, count, &written, nullptr)) {
        done.error = GetLastError();
        return false;
    }
    done.written += written;
    return written == count;
}

// A chunk of text with a CR before every LF. It takes units while one more pair is sure to fit.
template <typename U, unsigned capacity>
struct Chunk {
    static constexpr unsigned fill_limit = capacity - 1;
    U units[capacity];
    unsigned count, added;

    const U *fill(const U *from, const U *end) {
        count = added = 0;
        while (count < fill_limit && from < end) {
            size_t room = fill_limit - count;
            const U *limit = static_cast<size_t>(end - from) > room ? from + room : end;
            const U *line_end = find_unit(from, limit, U('\n'));
            memcpy(units + count, from, static_cast<size_t>(line_end - from) * sizeof(U));
            count += static_cast<unsigned>(line_end - from);
            from = line_end;
            if (from == limit) continue;
            units[count++] = '\r';
            units[count++] = *from++;
            ++added;
        }
        return from;
    }
};

using AnsiChunk = Chunk<char, chunk_bytes>;
using WideChunk = Chunk<wchar_t, chunk_bytes / sizeof(wchar_t)>;

// Calls `send(chunk)` for chunk after chunk, until it returns false or the source is used up.
template <typename C, typename U, typename Send>
void for_each_chunk(const U *from, const U *end, Send send) {
    C chunk;
    while (from < end) {
        from = chunk.fill(from, end);
        if (!send(chunk, from)) return;
        ++from; // deliberate: see the top of the file
    }
}

Transfer write_ansi_text(Descriptor &descriptor, const char *text, unsigned count) {
    Transfer done{};
    bool console = descriptor.is_console();
    for_each_chunk<AnsiChunk>(text, text + count, [&](AnsiChunk &chunk, const char *) {
        if (console)
            recode_in_place(GetConsoleOutputCP(), thread_record().locale->code_page, chunk.units,
                            static_cast<int>(chunk.count));
        done.added += chunk.added;
        return write_handle(descriptor.osfhandle, chunk.units, chunk.count, done);
    });
    return done;
}

bool write_wide_chunk(const Descriptor &descriptor, bool console, const WideChunk &chunk,
                      Transfer &done) {
    if (!console)
        return write_handle(descriptor.osfhandle, chunk.units, chunk.count * sizeof(wchar_t), done);
    DWORD units = 0;
    if (!WriteConsoleW(descriptor.osfhandle, chunk.units, chunk.count, &units, nullptr)) {
        done.error = GetLastError();
        return false;
    }
    done.written += units * sizeof(wchar_t);
    return units == chunk.count;
}

Transfer write_utf16_text(Descriptor &descriptor, const wchar_t *text, unsigned units) {
    Transfer done{};
    bool console = descriptor.is_console();
    for_each_chunk<WideChunk>(text, text + units, [&](const WideChunk &chunk, const wchar_t *) {
        done.added += chunk.added * sizeof(wchar_t);
        return write_wide_chunk(descriptor, console, chunk, done);
    });
    return done;
}

bool write_completely(HANDLE handle, const char *from, unsigned count, Transfer &done) {
    Transfer part{};
    while (part.written < count) {
        unsigned before = part.written;
        if (!write_handle(handle, from + before, count - before, part) &&
            (part.error || part.written == before)) {
            done.error = part.error;
            return false;
        }
    }
    return true;
}

// The result counts units of the source, so nothing is ever taken off for the CRs.
Transfer write_utf8_text(Descriptor &descriptor, const wchar_t *text, unsigned units) {
    using HalfChunk = Chunk<wchar_t, chunk_bytes / 2 / sizeof(wchar_t)>;
    Transfer done{};
    for_each_chunk<HalfChunk>(text, text + units, [&](HalfChunk &chunk, const wchar_t *consumed) {
        char bytes[chunk_bytes];
        int size =
            WideCharToMultiByte(utf8_code_page, 0, chunk.units, static_cast<int>(chunk.count),
                                bytes, sizeof bytes, nullptr, nullptr);
        if (!size) done.error = GetLastError();
        if (!size ||
            !write_completely(descriptor.osfhandle, bytes, static_cast<unsigned>(size), done))
            return false;
        done.written = static_cast<unsigned>(consumed - text) * sizeof(wchar_t);
        return true;
    });
    return done;
}

Transfer write_unicode_text(Descriptor &descriptor, const void *buffer, unsigned count) {
    const auto *text = static_cast<const wchar_t *>(buffer);
    unsigned units = count / sizeof(wchar_t);
    if (descriptor.encoding == encoding_utf8 && !descriptor.is_console())
        return write_utf8_text(descriptor, text, units);
    return write_utf16_text(descriptor, text, units);
}

Transfer write_raw(Descriptor &descriptor, const void *buffer, unsigned count) {
    Transfer done{};
    write_handle(descriptor.osfhandle, buffer, count, done);
    return done;
}

int result_of(const Descriptor &descriptor, const void *buffer, const Transfer &done) {
    if (done.written) return static_cast<int>(done.written - done.added);
    switch (done.error) {
    case ERROR_SUCCESS:
        if ((descriptor.flags & FD_DEVICE) && *static_cast<const char *>(buffer) == ctrl_z)
            return 0;
        return fail_with(ENOSPC);
    case ERROR_ACCESS_DENIED: return fail_with(EBADF);
    case ERROR_NO_DATA: return fail_with(EPIPE); // the pipe is being closed
    default: map_os_error(done.error); return -1;
    }
}

} // namespace

int write_worker(Descriptor &descriptor, const void *buffer, unsigned count) {
    if (count == 0) return 0;
    if (!buffer || count > INT_MAX) return fail_with(EINVAL);
    if (descriptor.flags & FD_APPEND) seek64(descriptor, 0, SEEK_END);
    bool unicode = descriptor.is_text() && descriptor.encoding != encoding_ansi;
    if (unicode && count % sizeof(wchar_t)) return fail_with(EINVAL);
    Transfer done = !descriptor.is_text() ? write_raw(descriptor, buffer, count)
                    : unicode
                        ? write_unicode_text(descriptor, buffer, count)
                        : write_ansi_text(descriptor, static_cast<const char *>(buffer), count);
    return result_of(descriptor, buffer, done);
}

} // namespace vexrt

using namespace vexrt;

// The console lock is taken before the descriptor's.
extern "C" int _write(int fd, const void *buffer, unsigned count) {
    Descriptor *descriptor = open_descriptor(fd);
    if (!descriptor) return fail_with(EBADF);
    auto write = [=]() {
        return with_descriptor(fd, [=](Descriptor &d) { return write_worker(d, buffer, count); });
    };
    return descriptor->is_console() ? under_console_lock(write) : write();
}
