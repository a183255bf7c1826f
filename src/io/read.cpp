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

// Bytes until all are there or the input ends: a pipe gives what it has just now. Returns how many.
unsigned read_fully(HANDLE handle, void *buffer, unsigned count) {
    auto *bytes = static_cast<unsigned char *>(buffer);
    unsigned done = 0;
    while (done < count) {
        unsigned got = read_handle(handle, bytes + done, count - done).count;
        if (got == 0) break;
        done += got;
    }
    return done;
}

// Hands out the bytes kept by an earlier read; returns how many.
unsigned deliver_pending(Descriptor &descriptor, void *buffer, unsigned count) {
    unsigned delivered = descriptor.pending_count < count ? descriptor.pending_count : count;
    memcpy(buffer, descriptor.pending, delivered);
    descriptor.pending_count -= static_cast<unsigned char>(delivered);
    memmove(descriptor.pending, descriptor.pending + delivered, descriptor.pending_count);
    return delivered;
}

Transfer raw_read(Descriptor &descriptor, void *buffer, unsigned count) {
    auto *bytes = static_cast<unsigned char *>(buffer);
    descriptor.dropped_return = false;
    unsigned delivered = deliver_pending(descriptor, bytes, count);
    if (delivered == count) return {delivered, ERROR_SUCCESS}; // reading nothing could block
    Transfer rest = read_handle(descriptor.osfhandle, bytes + delivered, count - delivered);
    return {delivered + rest.count, rest.error};
}

// For the next read of a pipe or device; nothing is pending.
void keep(Descriptor &descriptor, const void *bytes, unsigned count) {
    memcpy(descriptor.pending, bytes, count);
    descriptor.pending_count = static_cast<unsigned char>(count);
}

// Whether a CR that ends what was read is part of the output. `output_empty`: nothing else is.
// May turn the CR into the LF that follows it. What is pending by now starts no line end.
template <typename U>
bool settle_last_carriage_return(Descriptor &descriptor, U &unit, bool output_empty) {
    U next;
    if (descriptor.pending_count) return true;
    if (read_fully(descriptor.osfhandle, &next, sizeof next) < sizeof next) return true;
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

// A pipe may give half of a unit; the other half is waited for.
Transfer read_utf16_text(Descriptor &descriptor, void *buffer, unsigned count) {
    Transfer done = raw_read(descriptor, buffer, count);
    if (done.count % sizeof(wchar_t))
        done.count += read_fully(descriptor.osfhandle, static_cast<char *>(buffer) + done.count, 1);
    unsigned units = translate_lines(descriptor, static_cast<wchar_t *>(buffer),
                                     done.count / static_cast<unsigned>(sizeof(wchar_t)));
    done.count = units * sizeof(wchar_t);
    return done;
}

unsigned sequence_length(unsigned char lead) {
    if (lead < 0xC0 || lead >= 0xF8) return 1;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

// A sequence of four bytes makes a pair of surrogates.
unsigned units_of_sequence(unsigned char lead) { return sequence_length(lead) == 4 ? 2 : 1; }

// The length of the longest prefix of at most `units` in whole sequences.
unsigned whole_sequences(const unsigned char *text, unsigned size, unsigned units) {
    unsigned length = 0;
    while (length < size) {
        unsigned needed = units_of_sequence(text[length]);
        if (sequence_length(text[length]) > size - length || needed > units) break;
        length += sequence_length(text[length]);
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

// `length` bytes of UTF-8 in `text`, translated there, into the caller's units.
Transfer convert_utf8(Descriptor &descriptor, char *text, unsigned length, void *buffer,
                      unsigned units) {
    length = translate_lines(descriptor, text, length);
    if (length == 0) return {0, ERROR_SUCCESS};
    int made = MultiByteToWideChar(utf8_code_page, reject_invalid_characters, text,
                                   static_cast<int>(length), static_cast<wchar_t *>(buffer),
                                   static_cast<int>(units));
    if (made == 0) return {0, GetLastError()};
    return {static_cast<unsigned>(made) * static_cast<unsigned>(sizeof(wchar_t)), ERROR_SUCCESS};
}

// Takes whole sequences of `size` bytes that were read; `text` has room for one sequence at least.
// A first one that is cut is completed, or invalid where the input ends in it.
Transfer take_sequences(Descriptor &descriptor, unsigned char *text, unsigned size, void *buffer,
                        unsigned units) {
    if (units_of_sequence(*text) > units) { // a pair and room for half of it: nothing is lost
        put_back(descriptor, text, size);
        return {0, ERROR_INSUFFICIENT_BUFFER};
    }
    unsigned first = sequence_length(*text);
    if (size < first) size += read_fully(descriptor.osfhandle, text + size, first - size);
    unsigned length = whole_sequences(text, size, units);
    if (length == 0) length = size;
    if (length < size) put_back(descriptor, text + length, size - length);
    return convert_utf8(descriptor, reinterpret_cast<char *>(text), length, buffer, units);
}

// From a file, twice the room of the caller is read and the surplus sought back over. A pipe cannot
// be sought: it gives at most as many bytes as the caller has units (or were kept), so that all
// whole sequences fit, and what remains is a part of one sequence.
Transfer read_utf8_text(Descriptor &descriptor, void *buffer, unsigned count) {
    unsigned units = count / sizeof(wchar_t);
    unsigned capacity = descriptor.is_seekable() ? 2 * count : units;
    if (capacity < descriptor.pending_count) capacity = descriptor.pending_count;
    constexpr unsigned longest_sequence = 4;
    auto *text = static_cast<unsigned char *>(heap_allocate(capacity + longest_sequence));
    if (!text) return {0, ERROR_NOT_ENOUGH_MEMORY};
    Transfer done = raw_read(descriptor, text, capacity);
    if (done.count) done = take_sequences(descriptor, text, done.count, buffer, units);
    heap_release(text);
    return done;
}

// What is pending is delivered ahead of the console's units and translated with them; a byte of
// ANSI text, kept before the mode was changed, is no unit. A CR at the end passes through: a look
// at what comes next would wait for the user.
Transfer read_console(Descriptor &descriptor, void *buffer, unsigned count) {
    auto *units = static_cast<wchar_t *>(buffer);
    unsigned room = count / sizeof(wchar_t);
    unsigned delivered = deliver_pending(descriptor, buffer, count) / sizeof(wchar_t);
    DWORD made = 0, error = ERROR_SUCCESS;
    if (delivered < room &&
        !ReadConsoleW(descriptor.osfhandle, units + delivered, room - delivered, &made, nullptr))
        error = GetLastError();
    const wchar_t *from = units, *end = units + delivered + made;
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
