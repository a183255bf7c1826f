// Opening streams: fopen, freopen, _fdopen and their relatives.

#include "core/constraint.h"
#include "io/io.h"
#include "stdio/mode_string.h"
#include "stdio/stream_table.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

namespace vexrt {

namespace {

constexpr int permissions = S_IREAD | S_IWRITE;
constexpr unsigned short raw_two_byte_mode = 0x8000; // of a conversion state
constexpr errno_t open_failed = 2;                   // what fopen_s returns, whatever the cause

int open_flags(uint32_t flags) {
    int result = (flags & SF_READ) && (flags & SF_WRITE) ? O_RDWR
                 : flags & SF_WRITE                      ? O_WRONLY
                                                         : O_RDONLY;
    if (flags & SF_APPEND) result |= O_APPEND;
    if (flags & SF_TRUNC) result |= O_TRUNC;
    if (flags & SF_CREATE) result |= O_CREAT;
    if (flags & SF_EXCL) result |= O_EXCL;
    return result | (flags & SF_BINARY        ? O_BINARY
                     : flags & SF_CCS_UNICODE ? O_WTEXT
                     : flags & SF_CCS_UTF16LE ? O_U16TEXT
                     : flags & SF_CCS_UTF8    ? O_U8TEXT
                                              : O_TEXT);
}

// The bounds-checked functions open files for themselves alone; with a wide name they do not, which
// is how the interface is defined.
int open_below(const char *path, uint32_t flags) {
    int share = flags & SF_UMODE  ? (flags & SF_WRITE ? SH_DENYRW : SH_DENYWR)
                : flags & SF_EXCL ? SH_DENYRW
                                  : SH_DENYNO;
    return _sopen(path, open_flags(flags), share, permissions);
}

int open_below(const wchar_t *path, uint32_t flags) {
    int share = flags & SF_EXCL ? SH_DENYRW : SH_DENYNO;
    return _wsopen(path, open_flags(flags), share, permissions);
}

bool is_unicode(int fd) {
    Descriptor *descriptor = open_descriptor(fd);
    return descriptor && descriptor->is_text() && descriptor->encoding != encoding_ansi;
}

// Opens into a record from the table. `open` yields the descriptor from the stream flags, -1 if it
// cannot. A failure closes the record again. Caller holds lock 6 and, for a record that others
// know, its own lock.
template <typename Char, typename Open>
FILE *open_record(Stream *stream, const Char *mode, uint32_t extra_flags, Open open) {
    if (!stream) return nullptr;
    stream->flags &= SF_HEAP | SF_CUSTOM;
    reset_buffers(*stream);
    uint32_t flags = stream->flags | extra_flags;
    if (parse_mode(mode, true, flags)) {
        stream->flags = flags;
        stream->fd = open(flags);
    }
    if (stream->fd < 0) {
        close_stream(*stream);
        return nullptr;
    }
    stream->conv_state.__flags = is_unicode(stream->fd) ? raw_two_byte_mode : 0;
    register_close_at_exit();
    return file_of(*stream);
}

template <typename Char>
FILE *open_stream(const Char *path, const Char *mode, uint32_t extra_flags) {
    if (!path || !mode) {
        set_errno(EINVAL);
        return nullptr;
    }
    StreamTableLocked table;
    return open_record(allocate_stream(false), mode, extra_flags,
                       [=](uint32_t flags) { return open_below(path, flags); });
}

// A null path is not supported: the stream is closed and stays so.
template <typename Char>
FILE *reopen_stream(const Char *path, const Char *mode, FILE *file, uint32_t extra_flags) {
    if (!file) {
        set_errno(EINVAL);
        return nullptr;
    }
    StreamTableLocked table;
    Stream &stream = stream_of(file);
    Locked guard(stream_lock(stream.index));
    uint32_t heap = stream.flags & SF_HEAP;
    stream.flags &= ~static_cast<uint32_t>(SF_HEAP); // the record is reset, not freed
    close_stream(stream);
    stream.flags |= heap;
    if (!path || !mode) {
        set_errno(EINVAL);
        close_stream(stream);
        return nullptr;
    }
    return open_record(&stream, mode, extra_flags,
                       [=](uint32_t flags) { return open_below(path, flags); });
}

template <typename Char>
FILE *open_descriptor_stream(int fd, const Char *mode) {
    if (!mode) {
        set_errno(EINVAL);
        return nullptr;
    }
    StreamTableLocked table;
    return open_record(allocate_stream(false), mode, 0, [=](uint32_t) { return fd; });
}

template <typename Char>
errno_t open_checked(FILE *__restrict *result, const Char *path, const Char *mode) {
    if (result) *result = nullptr;
    if (!result || !path || !mode) return report_constraint(EINVAL);
    *result = open_stream(path, mode, SF_UMODE);
    return *result ? 0 : open_failed;
}

template <typename Char>
errno_t reopen_checked(FILE *__restrict *result, const Char *path, const Char *mode, FILE *file) {
    if (result) *result = nullptr;
    if (!result || !mode || !file) return report_constraint(EINVAL);
    *result = reopen_stream(path, mode, file, SF_UMODE);
    if (*result) return 0;
    errno_t error = thread_record().error_number;
    return error ? error : EINVAL; // an invalid mode sets no errno
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" FILE *fopen(const char *path, const char *mode) { return open_stream(path, mode, 0); }
extern "C" FILE *_wfopen(const wchar_t *path, const wchar_t *mode) {
    return open_stream(path, mode, 0);
}

extern "C" errno_t fopen_s(FILE *_VEXRT_RESTRICT *result, const char *path, const char *mode) {
    return open_checked(result, path, mode);
}
extern "C" errno_t _wfopen_s(FILE *_VEXRT_RESTRICT *result, const wchar_t *path,
                             const wchar_t *mode) {
    return open_checked(result, path, mode);
}

extern "C" FILE *freopen(const char *path, const char *mode, FILE *file) {
    return reopen_stream(path, mode, file, 0);
}
extern "C" FILE *_wfreopen(const wchar_t *path, const wchar_t *mode, FILE *file) {
    return reopen_stream(path, mode, file, 0);
}

extern "C" errno_t freopen_s(FILE *_VEXRT_RESTRICT *result, const char *path, const char *mode,
                             FILE *file) {
    return reopen_checked(result, path, mode, file);
}
extern "C" errno_t _wfreopen_s(FILE *_VEXRT_RESTRICT *result, const wchar_t *path,
                               const wchar_t *mode, FILE *file) {
    return reopen_checked(result, path, mode, file);
}

extern "C" FILE *_fdopen(int fd, const char *mode) { return open_descriptor_stream(fd, mode); }
extern "C" FILE *_wfdopen(int fd, const wchar_t *mode) { return open_descriptor_stream(fd, mode); }
