// Opening files on descriptors: _open, _sopen, _creat and their wide forms.

#include "io/io.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <stdarg.h>
#include <sys/stat.h>

namespace vexrt {

namespace {

constexpr int access_mask = O_RDONLY | O_WRONLY | O_RDWR;
constexpr int creation_mask = O_CREAT | O_TRUNC | O_EXCL;
constexpr int unicode_mask = O_WTEXT | O_U16TEXT | O_U8TEXT;
constexpr int mode_mask = O_TEXT | O_BINARY | unicode_mask;
constexpr DWORD update_access = GENERIC_READ | GENERIC_WRITE;
constexpr char ctrl_z = 26;

// What the flags of the call come to for the system and for the descriptor.
struct OpenRequest {
    DWORD access, share, disposition, attributes;
    unsigned char flags;    // initial descriptor flags
    unsigned char encoding; // asked for; what the file gets depends on its mark
    bool inherit;
    bool write_only; // asked for; any read access is then only for the mark

    bool reads() const { return access & GENERIC_READ; }
    bool writes() const { return access & GENERIC_WRITE; }
    // Not true of files that are deleted when they are closed: their access has one bit more.
    bool updates() const { return access == update_access; }
};

bool share_of(int shflag, DWORD &share) {
    switch (shflag) {
    case SH_DENYRW: share = 0; return true;
    case SH_DENYWR: share = FILE_SHARE_READ; return true;
    case SH_DENYRD: share = FILE_SHARE_WRITE; return true;
    case SH_DENYNO: share = FILE_SHARE_READ | FILE_SHARE_WRITE; return true;
    default: return false;
    }
}

bool access_of(int oflag, DWORD &access) {
    switch (oflag & access_mask) {
    case O_RDONLY: access = GENERIC_READ; return true;
    case O_RDWR: access = update_access; return true;
    case O_WRONLY:
        access = GENERIC_WRITE;
        // Appending to Unicode text looks at the file's mark first.
        if ((oflag & O_APPEND) && (oflag & unicode_mask)) access |= GENERIC_READ;
        return true;
    default: return false;
    }
}

DWORD disposition_of(int oflag) {
    switch (oflag & creation_mask) {
    case O_CREAT: return OPEN_ALWAYS;
    case O_TRUNC:
    case O_TRUNC | O_EXCL: return TRUNCATE_EXISTING;
    case O_CREAT | O_TRUNC: return CREATE_ALWAYS;
    case O_CREAT | O_EXCL:
    case O_CREAT | O_TRUNC | O_EXCL: return CREATE_NEW;
    default: return OPEN_EXISTING;
    }
}

DWORD attributes_of(int oflag, int permissions) {
    DWORD attributes = (oflag & O_CREAT) && !(permissions & S_IWRITE) ? FILE_ATTRIBUTE_READONLY
                                                                      : FILE_ATTRIBUTE_NORMAL;
    if (oflag & O_TEMPORARY) attributes |= FILE_FLAG_DELETE_ON_CLOSE;
    if (oflag & O_SHORT_LIVED) attributes |= FILE_ATTRIBUTE_TEMPORARY;
    if (oflag & O_SEQUENTIAL)
        attributes |= FILE_FLAG_SEQUENTIAL_SCAN;
    else if (oflag & O_RANDOM)
        attributes |= FILE_FLAG_RANDOM_ACCESS;
    return attributes;
}

// Text or binary; binary when neither is asked for.
bool mode_of(int oflag, OpenRequest &request) {
    constexpr int fresh = O_WRONLY | O_CREAT | O_TRUNC;
    request.flags = FD_TEXT;
    request.encoding = encoding_ansi;
    switch (oflag & mode_mask) {
    case 0:
    case O_BINARY: request.flags = 0; return true;
    case O_TEXT: return true;
    case O_U8TEXT:
    case O_U8TEXT | O_TEXT: request.encoding = encoding_utf8; return true;
    case O_U16TEXT:
    case O_U16TEXT | O_TEXT: request.encoding = encoding_utf16le; return true;
    case O_WTEXT:
    case O_WTEXT | O_TEXT:
        if ((oflag & fresh) == fresh) request.encoding = encoding_utf16le;
        return true;
    default: return false;
    }
}

bool translate(int oflag, int shflag, int permissions, OpenRequest &request) {
    if (!share_of(shflag, request.share) || !access_of(oflag, request.access) ||
        !mode_of(oflag, request))
        return false;
    request.disposition = disposition_of(oflag);
    request.attributes = attributes_of(oflag, permissions);
    if (oflag & O_TEMPORARY) request.access |= DELETE;
    if (oflag & O_NOINHERIT) request.flags |= FD_NOINHERIT;
    if (oflag & O_APPEND) request.flags |= FD_APPEND;
    request.inherit = !(oflag & O_NOINHERIT);
    request.write_only = (oflag & access_mask) == O_WRONLY;
    return true;
}

HANDLE create_file(const char *path, const OpenRequest &r, SECURITY_ATTRIBUTES &security) {
    return CreateFileA(path, r.access, r.share, &security, r.disposition, r.attributes, nullptr);
}

HANDLE create_file(const wchar_t *path, const OpenRequest &r, SECURITY_ATTRIBUTES &security) {
    return CreateFileW(path, r.access, r.share, &security, r.disposition, r.attributes, nullptr);
}

template <typename Char>
HANDLE open_handle(const Char *path, const OpenRequest &request) {
    SECURITY_ATTRIBUTES security = {sizeof security, nullptr, request.inherit};
    return create_file(path, request, security);
}

// A Ctrl-Z at the end of a text file that is opened for update would end later reads before what is
// appended; it is cut off. The text reader reports it as an end of file.
bool remove_trailing_ctrl_z(Descriptor &descriptor) {
    int64_t position = 0;
    if (!SetFilePointerEx(descriptor.osfhandle, -1, &position, FILE_END)) {
        if (GetLastError() == ERROR_NEGATIVE_SEEK) return true; // an empty file
        map_os_error(GetLastError());
        return false;
    }
    char last = 0;
    if (read_worker(descriptor, &last, 1) == 0 && last == ctrl_z &&
        chsize64_worker(descriptor, position) != 0)
        return false;
    return seek64(descriptor, 0, SEEK_SET) != -1;
}

struct Mark {
    unsigned size;
    unsigned char bytes[3];
};
constexpr Mark utf8_mark = {3, {0xEF, 0xBB, 0xBF}};
constexpr Mark utf16le_mark = {2, {0xFF, 0xFE}};

bool starts_with(const unsigned char *bytes, int count, const Mark &mark) {
    if (count < static_cast<int>(mark.size)) return false;
    for (unsigned i = 0; i < mark.size; ++i)
        if (bytes[i] != mark.bytes[i]) return false;
    return true;
}

bool write_mark(Descriptor &descriptor, unsigned char encoding) {
    const Mark &mark = encoding == encoding_utf8 ? utf8_mark : utf16le_mark;
    return write_worker(descriptor, mark.bytes, mark.size) == static_cast<int>(mark.size);
}

// Finds the encoding of a file from its mark. Without one it is ANSI text, whatever was asked for;
// the mark of the other byte order makes the open fail. The descriptor is raw for the moment.
bool read_mark(Descriptor &descriptor, unsigned char &encoding) {
    unsigned char bytes[3] = {};
    unsigned char text = descriptor.flags & FD_TEXT;
    descriptor.flags &= static_cast<unsigned char>(~FD_TEXT);
    int count = read_worker(descriptor, bytes, sizeof bytes);
    descriptor.flags |= text;
    if (count < 0) return false;
    if (starts_with(bytes, count, utf8_mark)) {
        encoding = encoding_utf8;
        return true;
    }
    if (count >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) return false;
    bool utf16 = starts_with(bytes, count, utf16le_mark);
    encoding = utf16 ? encoding_utf16le : encoding_ansi;
    return seek64(descriptor, utf16 ? utf16le_mark.size : 0, SEEK_SET) != -1;
}

bool settle_encoding(Descriptor &descriptor, const OpenRequest &request, unsigned char &encoding) {
    if (!request.writes()) return read_mark(descriptor, encoding);
    switch (request.disposition) {
    case CREATE_NEW:
    case CREATE_ALWAYS:
    case TRUNCATE_EXISTING: return write_mark(descriptor, encoding);
    default: break;
    }
    int64_t size = seek64(descriptor, 0, SEEK_END);
    if (size == -1) return false;
    if (size == 0) return write_mark(descriptor, encoding);
    if (seek64(descriptor, 0, SEEK_SET) == -1) return false;
    return !request.reads() || read_mark(descriptor, encoding);
}

// The read access was only for the mark: the file is opened again without it.
template <typename Char>
bool reopen_write_only(int fd, Descriptor &descriptor, const Char *path, OpenRequest request) {
    CloseHandle(descriptor.osfhandle);
    request.access &= ~static_cast<DWORD>(GENERIC_READ);
    HANDLE handle = open_handle(path, request);
    if (handle != INVALID_HANDLE_VALUE) {
        descriptor.osfhandle = handle;
        return true;
    }
    map_os_error(GetLastError());
    free_handle(fd);
    descriptor.flags = 0;
    return false;
}

// What is left to do on a new handle: the Ctrl-Z, the mark and the encoding.
bool prepare_text(Descriptor &descriptor, const OpenRequest &request) {
    unsigned char encoding = encoding_ansi;
    if (descriptor.is_text() && descriptor.is_seekable()) {
        if (request.updates() && !remove_trailing_ctrl_z(descriptor)) return false;
        encoding = request.encoding;
        if (encoding != encoding_ansi && !settle_encoding(descriptor, request, encoding))
            return false;
    }
    descriptor.encoding = encoding;
    return true;
}

template <typename Char>
int open_file(const Char *path, int oflag, int shflag, int permissions) {
    OpenRequest request{};
    if (!path || !translate(oflag, shflag, permissions, request)) return fail_with(EINVAL);
    int fd = allocate_descriptor();
    if (fd < 0) return fail_with(EMFILE);
    Descriptor &descriptor = descriptor_at(static_cast<unsigned>(fd));

    int result = -1;
    HANDLE handle = open_handle(path, request);
    unsigned char type = 0;
    if (handle == INVALID_HANDLE_VALUE) {
        map_os_error(GetLastError());
    } else if (!handle_type_flags(handle, type)) {
        map_os_error(GetLastError());
        CloseHandle(handle);
    } else {
        if (type) request.flags &= static_cast<unsigned char>(~FD_APPEND);
        set_handle(fd, handle);
        descriptor.flags = request.flags | type | FD_OPEN;
        descriptor.encoding = encoding_ansi;
        if (!prepare_text(descriptor, request))
            close_worker(fd, descriptor);
        else if (!(request.write_only && request.updates()) ||
                 reopen_write_only(fd, descriptor, path, request))
            result = fd;
    }
    descriptor.lock.leave();
    return result;
}

// The permission argument exists only where a file may be created.
#define VEXRT_PERMISSIONS(oflag, last)                                                             \
    int permissions = 0;                                                                           \
    if ((oflag) & O_CREAT) {                                                                       \
        va_list arguments;                                                                         \
        va_start(arguments, last);                                                                 \
        permissions = va_arg(arguments, int);                                                      \
        va_end(arguments);                                                                         \
    }

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" int _open(const char *path, int oflag, ...) {
    VEXRT_PERMISSIONS(oflag, oflag)
    return open_file(path, oflag, SH_DENYNO, permissions);
}

extern "C" int _wopen(const wchar_t *path, int oflag, ...) {
    VEXRT_PERMISSIONS(oflag, oflag)
    return open_file(path, oflag, SH_DENYNO, permissions);
}

extern "C" int _sopen(const char *path, int oflag, int shflag, ...) {
    VEXRT_PERMISSIONS(oflag, shflag)
    return open_file(path, oflag, shflag, permissions);
}

extern "C" int _wsopen(const wchar_t *path, int oflag, int shflag, ...) {
    VEXRT_PERMISSIONS(oflag, shflag)
    return open_file(path, oflag, shflag, permissions);
}

extern "C" int _creat(const char *path, int permissions) {
    return open_file(path, O_RDWR | O_CREAT | O_TRUNC, SH_DENYNO, permissions);
}

extern "C" int _wcreat(const wchar_t *path, int permissions) {
    return open_file(path, O_RDWR | O_CREAT | O_TRUNC, SH_DENYNO, permissions);
}
