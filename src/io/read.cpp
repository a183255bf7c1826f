// Reading through a descriptor: raw bytes, and text in three encodings.
//
// Every path yields a count of bytes and an error of the system; the worker turns the two into the
// result. Line translation works in place on units of one or two bytes: CR LF becomes LF, a Ctrl-Z
// ends the file. A CR at the very end of what was read needs a look at the unit behind it, which is
// then kept in the descriptor (pipe, device) or sought back over (file).

#include "heap/heap.h"
#include "io/find_unit.h"
#include "io/io.h"
#include "locale/locale_record.h"

#include <io.h>
#include <limits.h>
#include <string.h>

namespace vexrt {

namespace {

constexpr UINT utf8_code_page = 65001;
constexpr DWORD reject_invalid_characters = 8; // of MultiByteToWideChar

enum Unit : char { line_feed = 10, carriage_return = 13, ctrl_z = 26 };

struct Transfer {
    unsigned count; // bytes
    DWORD error;
};

// One ReadFile. An error leaves the count at 0.
Transfer read_handle(HANDLE handle, void *buffer, unsigned count) {
    DWORD done = 0;
    if (!ReadFile(handle, buffer, count, &done, nullptr)) return {0, GetLastError()};
    return {done, ERROR_SUCCESS};
}

// Hands out the bytes kept by an earlier read; returns how many.
unsigned deliver_pending(Descriptor &descriptor, unsigned char *buffer, unsigned count) {
    if (descriptor.is_seekable()) return 0;
    // A byte is kept one at a time in ANSI text, two in UTF-16, up to three in UTF-8.
    unsigned limit = descriptor.encoding == encoding_ansi      ? 1
                     : descriptor.encoding == encoding_utf16le ? 2
                                                               : 3;
    unsigned delivered = 0;
    for (unsigned i = 0; i < limit && i < count; ++i) {
        unsigned char &slot = descriptor.pending[i];
        if (slot == no_pending) break;
        buffer[delivered++] = slot;
        slot = no_pending;
    }
    return delivered;
}

Transfer raw_read(Descriptor &descriptor, void *buffer, unsigned count) {
    auto *bytes = static_cast<unsigned char *>(buffer);
    descriptor.dropped_return = false;
    unsigned delivered = deliver_pending(descriptor, bytes, count);
    Transfer rest = read_handle(descriptor.osfhandle, bytes + delivered, count - delivered);
    return {delivered + rest.count, rest.error};
}

void keep(Descriptor &descriptor, const void *bytes, unsigned count) {
    memcpy(descriptor.pending, bytes, count);
}

// Whether a CR that ends what was read is part of the output. `output_empty`: nothing else is.
// May turn the CR into the LF that follows it.
template <typename U>
bool settle_last_carriage_return(Descriptor &descriptor, U &unit, bool output_empty) {
    U next;
    Transfer ahead = read_handle(descriptor.osfhandle, &next, sizeof next);
    if (ahead.count < sizeof next) return true;
    if (!descriptor.is_seekable()) {
        if (next == line_feed)
            unit = line_feed;
        else
            keep(descriptor, &next, sizeof next);
        return true;
    }
    if (next == line_feed && output_empty) {
        unit = line_feed;
        return true;
    }
    seek64(descriptor, -static_cast<int64_t>(sizeof next), SEEK_CUR);
    descriptor.dropped_return = next == line_feed;
    return next != line_feed;
}

// Translates `count` units in place; returns how many there are then. What lies between the CRs
// moves as a block.
template <typename U>
unsigned translate_lines(Descriptor &descriptor, U *units, unsigned count) {
    const U *from = units, *end = units + count;
    const U *stop = find_unit(from, end, U(ctrl_z));
    U *to = units;
    while (from < stop) {
        const U *mark = find_unit(from, stop, U(carriage_return));
        memmove(to, from, static_cast<size_t>(mark - from) * sizeof(U));
        to += mark - from;
        from = mark;
        if (from == stop) break;
        U unit = *from++;
        if (from == end) {
            if (!settle_last_carriage_return(descriptor, unit, to == units)) break;
        } else if (*from == line_feed) {
            unit = *from++;
        }
        *to++ = unit;
    }
    if (stop != end) {
        if (descriptor.flags & FD_DEVICE)
            *to++ = ctrl_z;
        else
            descriptor.flags |= FD_EOF;
    }
    return static_cast<unsigned>(to - units);
}

Transfer read_ansi_text(Descriptor &descriptor, void *buffer, unsigned count) {
    Transfer done = raw_read(descriptor, buffer, count);
    auto *text = static_cast<char *>(buffer);
    done.count = translate_lines(descriptor, text, done.count);
    if (descriptor.is_console())
        recode_in_place(thread_record().locale->code_page, GetConsoleCP(), text,
                        static_cast<int>(done.count));
    return done;
}

Transfer read_utf16_text(Descriptor &descriptor, void *buffer, unsigned count) {
    Transfer done = raw_read(descriptor, buffer, count);
    unsigned units = translate_lines(descriptor, static_cast<wchar_t *>(buffer),
                                     done.count / static_cast<unsigned>(sizeof(wchar_t)));
    done.count = units * sizeof(wchar_t);
    return done;
}

unsigned trailing_count(unsigned char lead) {
    if (lead < 0xC0 || lead >= 0xF8) return 0;
    return lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
}

// The length of the longest prefix of at most `units` whole sequences. A sequence of four bytes
// takes two units; it is left for the next read when only one is free.
unsigned whole_sequences(const unsigned char *text, unsigned size, unsigned units) {
    unsigned length = 0;
    while (units && length < size) {
        unsigned trailing = trailing_count(text[length]);
        unsigned needed = trailing == 3 ? 2 : 1;
        if (trailing >= size - length || needed > units) break;
        length += 1 + trailing;
        units -= needed;
    }
    return length;
}

// Puts back what follows the whole sequences. A pipe can keep three bytes; the limit on what is
// read from one ensures that there are never more.
void put_back(Descriptor &descriptor, const unsigned char *surplus, unsigned count) {
    if (descriptor.is_seekable())
        seek64(descriptor, -static_cast<int64_t>(count), SEEK_CUR);
    else
        keep(descriptor, surplus, count);
}

// From a file, twice the room of the caller is read and the surplus sought back over. A pipe cannot
// be sought: it gives at most as many bytes as the caller has units, so that all whole sequences
// fit, and what remains is a part of one sequence.
Transfer read_utf8_text(Descriptor &descriptor, void *buffer, unsigned count) {
    unsigned units = count / sizeof(wchar_t);
    unsigned capacity = descriptor.is_seekable() ? 2 * count : units;
    auto *text = static_cast<unsigned char *>(heap_allocate(capacity + sizeof descriptor.pending));
    if (!text) return {0, ERROR_NOT_ENOUGH_MEMORY};
    Transfer done = raw_read(descriptor, text, capacity);
    while (done.count && !done.error) {
        unsigned length = whole_sequences(text, done.count, units);
        if (length == 0 && !descriptor.is_seekable()) {
            // Less than one sequence: wait for the rest of it, unless there is none.
            Transfer more = read_handle(descriptor.osfhandle, text + done.count, 1);
            done.count += more.count;
            if (more.count) continue;
            length = done.count;
        }
        if (length == 0) length = done.count; // a cut sequence at the end of a file: invalid
        if (length < done.count) put_back(descriptor, text + length, done.count - length);
        length = translate_lines(descriptor, reinterpret_cast<char *>(text), length);
        int made =
            length ? MultiByteToWideChar(utf8_code_page, reject_invalid_characters,
                                         reinterpret_cast<char *>(text), static_cast<int>(length),
                                         static_cast<wchar_t *>(buffer), static_cast<int>(units))
                   : 0;
        done.error = length && !made ? GetLastError() : ERROR_SUCCESS;
        done.count = static_cast<unsigned>(made) * sizeof(wchar_t);
        break;
    }
    heap_release(text);
    return done;
}

// What is pending is delivered ahead of the console's units and translated with them. A CR at the
// end passes through: a look at what comes next would wait for the user.
Transfer read_console(Descriptor &descriptor, void *buffer, unsigned count) {
    auto *bytes = static_cast<unsigned char *>(buffer);
    unsigned delivered = deliver_pending(descriptor, bytes, count);
    auto *units = static_cast<wchar_t *>(buffer);
    DWORD made = 0, error = ERROR_SUCCESS;
    if (!ReadConsoleW(descriptor.osfhandle, bytes + delivered,
                      (count - delivered) / sizeof(wchar_t), &made, nullptr))
        error = GetLastError();
    const wchar_t *from = units, *end = units + delivered / sizeof(wchar_t) + made;
    wchar_t *to = units;
    while (from < end && *from != ctrl_z) {
        if (*from == carriage_return && from + 1 < end && from[1] == line_feed) ++from;
        *to++ = *from++;
    }
    if (from < end) descriptor.flags |= FD_EOF;
    return {static_cast<unsigned>(to - units) * static_cast<unsigned>(sizeof(wchar_t)), error};
}

Transfer read_unicode_text(Descriptor &descriptor, void *buffer, unsigned count) {
    if (descriptor.is_console()) return read_console(descriptor, buffer, count);
    return descriptor.encoding == encoding_utf8 ? read_utf8_text(descriptor, buffer, count)
                                                : read_utf16_text(descriptor, buffer, count);
}

int result_of(const Transfer &done) {
    if (done.count || !done.error) return static_cast<int>(done.count);
    if (done.error == ERROR_ACCESS_DENIED) return fail_with(EBADF);
    if (done.error == ERROR_BROKEN_PIPE) return 0; // the other end is closed: end of file
    map_os_error(done.error);
    return -1;
}

} // namespace

int read_worker(Descriptor &descriptor, void *buffer, unsigned count) {
    if (count == 0 || (descriptor.flags & FD_EOF)) return 0;
    if (!buffer || count > INT_MAX) return fail_with(EINVAL);
    if (!descriptor.is_text()) return result_of(raw_read(descriptor, buffer, count));
    if (descriptor.encoding == encoding_ansi)
        return result_of(read_ansi_text(descriptor, buffer, count));
    if (count % sizeof(wchar_t)) return fail_with(EINVAL);
    return result_of(read_unicode_text(descriptor, buffer, count));
}

} // namespace vexrt

extern "C" int _read(int fd, void *buffer, unsigned count) {
    using namespace vexrt;
    return with_descriptor(fd, [=](Descriptor &d) { return read_worker(d, buffer, count); });
}
