// The message texts of errno values, narrow and wide from one list.

#include "core/constraint.h"
#include "core/diagnostic.h"
#include "core/errno.h"
#include "heap/heap.h"

#include <string.h>
#include <wchar.h>

namespace vexrt {

namespace {

#define VEXRT_ERROR_TEXTS(TEXT)                                                                    \
    TEXT(0, "No error")                                                                            \
    TEXT(EPERM, "Operation not permitted")                                                         \
    TEXT(ENOENT, "No such file or directory")                                                      \
    TEXT(ESRCH, "No such process")                                                                 \
    TEXT(EINTR, "Interrupted function")                                                            \
    TEXT(EIO, "I/O error")                                                                         \
    TEXT(ENXIO, "No such device or address")                                                       \
    TEXT(E2BIG, "Argument list too long")                                                          \
    TEXT(ENOEXEC, "Executable file format error")                                                  \
    TEXT(EBADF, "Bad file descriptor")                                                             \
    TEXT(ECHILD, "No child processes")                                                             \
    TEXT(EAGAIN, "Resource temporarily unavailable")                                               \
    TEXT(ENOMEM, "Not enough space")                                                               \
    TEXT(EACCES, "Permission denied")                                                              \
    TEXT(EFAULT, "Bad address")                                                                    \
    TEXT(EBUSY, "Device or resource busy")                                                         \
    TEXT(EEXIST, "File exists")                                                                    \
    TEXT(EXDEV, "Cross-device link")                                                               \
    TEXT(ENODEV, "No such device")                                                                 \
    TEXT(ENOTDIR, "Not a directory")                                                               \
    TEXT(EISDIR, "Is a directory")                                                                 \
    TEXT(EINVAL, "Invalid argument")                                                               \
    TEXT(ENFILE, "Too many files open in system")                                                  \
    TEXT(EMFILE, "Too many open files")                                                            \
    TEXT(ENOTTY, "Inappropriate I/O control operation")                                            \
    TEXT(EFBIG, "File too large")                                                                  \
    TEXT(ENOSPC, "No space left on device")                                                        \
    TEXT(ESPIPE, "Invalid seek")                                                                   \
    TEXT(EROFS, "Read-only file system")                                                           \
    TEXT(EMLINK, "Too many links")                                                                 \
    TEXT(EPIPE, "Broken pipe")                                                                     \
    TEXT(EDOM, "Mathematics argument out of domain of function")                                   \
    TEXT(ERANGE, "Range error")                                                                    \
    TEXT(EFPOS, "File positioning error")                                                          \
    TEXT(EDEADLK, "Resource deadlock would occur")                                                 \
    TEXT(ENAMETOOLONG, "Filename too long")                                                        \
    TEXT(ENOLCK, "No locks available")                                                             \
    TEXT(ENOSYS, "Function not supported")                                                         \
    TEXT(ENOTEMPTY, "Directory not empty")                                                         \
    TEXT(EILSEQ, "Multibyte encoding error")

constexpr int assigned_count = EILSEQ + 1;
constexpr int numbered_limit = 255;                      // above it a number has no text of its own
constexpr size_t numbered_length = sizeof("Error #xxx"); // with its terminator

template <typename Char>
struct Texts;

template <>
struct Texts<char> {
    static constexpr const char *unknown = "Unknown error";
    static constexpr const char *numbered = "Error #";
    static constexpr const char *none = "";
    const char *of[assigned_count];
    constexpr Texts() : of{} {
#define VEXRT_NARROW(code, text) of[code] = text;
        VEXRT_ERROR_TEXTS(VEXRT_NARROW)
    }
    static char *&buffer(ThreadRecord &record) { return record.error_text; }
};

template <>
struct Texts<wchar_t> {
    static constexpr const wchar_t *unknown = L"Unknown error";
    static constexpr const wchar_t *numbered = L"Error #";
    static constexpr const wchar_t *none = L"";
    const wchar_t *of[assigned_count];
    constexpr Texts() : of{} {
#define VEXRT_WIDE(code, text) of[code] = L##text;
        VEXRT_ERROR_TEXTS(VEXRT_WIDE)
    }
    static wchar_t *&buffer(ThreadRecord &record) { return record.wide_error_text; }
};

template <typename Char>
constexpr Texts<Char> texts;

// "Error #" and three digits, in a buffer that the thread keeps.
template <typename Char>
const Char *numbered_message(int code) {
    Char *&buffer = Texts<Char>::buffer(thread_record());
    if (!buffer) buffer = static_cast<Char *>(heap_allocate(numbered_length * sizeof(Char)));
    if (!buffer) return Texts<Char>::none;
    Char *to = buffer;
    for (const Char *from = Texts<Char>::numbered; *from;) *to++ = *from++;
    *to++ = static_cast<Char>('0' + code / 100);
    *to++ = static_cast<Char>('0' + code / 10 % 10);
    *to++ = static_cast<Char>('0' + code % 10);
    *to = 0;
    return buffer;
}

template <typename Char>
const Char *message(int code) {
    if (code < 0 || code > numbered_limit) return Texts<Char>::unknown;
    if (code < assigned_count && texts<Char>.of[code]) return texts<Char>.of[code];
    return numbered_message<Char>(code);
}

} // namespace

const char *error_message(int code) { return message<char>(code); }
const wchar_t *wide_error_message(int code) { return message<wchar_t>(code); }

} // namespace vexrt

using namespace vexrt;

extern "C" char *strerror(int code) { return const_cast<char *>(error_message(code)); }
extern "C" wchar_t *_wcserror(int code) { return const_cast<wchar_t *>(wide_error_message(code)); }
extern "C" size_t strerrorlen_s(errno_t code) { return strlen(error_message(code)); }

// K.3.7.4.2: a text that does not fit is cut and ends in three dots if there is room for them.
extern "C" errno_t strerror_s(char *s, rsize_t maxsize, errno_t code) {
    if (!s || maxsize == 0 || maxsize > RSIZE_MAX) return report_constraint(EINVAL);
    const char *text = error_message(code);
    size_t length = strlen(text);
    if (length < maxsize) {
        memcpy(s, text, length + 1);
        return 0;
    }
    memcpy(s, text, maxsize - 1);
    if (maxsize > 3) memcpy(s + maxsize - 4, "...", 3);
    s[maxsize - 1] = '\0';
    return ERANGE;
}

extern "C" void perror(const char *prefix) {
    const char *text = error_message(thread_record().error_number);
    if (prefix && *prefix)
        write_diagnostic(prefix, ": ", text, "\n");
    else
        write_diagnostic(text, "\n");
}
