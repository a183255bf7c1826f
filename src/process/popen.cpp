// _popen: a command of the interpreter with a stream on its standard output or input.

#include "core/lock.h"
#include "heap/heap.h"
#include "io/io.h"
#include "process/process.h"

#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <stdio.h>
#include <stdlib.h>

namespace vexrt {

namespace {

// The streams that are open, under lock 8. An entry without a stream is free.
struct PipeEntry {
    FILE *stream;
    intptr_t process;
};
PipeEntry *pipes;
unsigned pipe_count;

PipeEntry *find_pipe(const FILE *stream) {
    for (unsigned i = 0; i < pipe_count; ++i)
        if (pipes[i].stream == stream) return &pipes[i];
    return nullptr;
}

PipeEntry *free_entry() {
    if (PipeEntry *entry = find_pipe(nullptr)) return entry;
    auto *grown = static_cast<PipeEntry *>(realloc(pipes, (pipe_count + 1) * sizeof(PipeEntry)));
    if (!grown) return nullptr;
    pipes = grown;
    pipes[pipe_count] = {};
    return &pipes[pipe_count++];
}

// Puts one end of a pipe in the place of a standard descriptor for as long as the child is started,
// with the descriptor's lock held, and closes the end's own descriptor.
class Redirection {
public:
    Redirection(int standard, int end)
        : fd_(standard), descriptor_(descriptor_at(static_cast<unsigned>(standard))) {
        descriptor_.lock.enter();
        flags_ = descriptor_.flags;
        if (descriptor_.osfhandle != INVALID_HANDLE_VALUE)
            done_ = duplicate_handle(descriptor_.osfhandle, false, kept_);
        HANDLE inherited;
        Descriptor *pipe_end = open_descriptor(end);
        if (done_ && pipe_end && duplicate_handle(pipe_end->osfhandle, true, inherited))
            replace(inherited, pipe_end->flags & static_cast<unsigned char>(~FD_NOINHERIT));
        else
            done_ = false;
        _close(end);
    }

    ~Redirection() {
        HANDLE restored;
        if (done_ && kept_ == INVALID_HANDLE_VALUE)
            replace(INVALID_HANDLE_VALUE, flags_);
        else if (done_ && duplicate_handle(kept_, true, restored))
            replace(restored, flags_);
        if (kept_ != INVALID_HANDLE_VALUE) CloseHandle(kept_);
        descriptor_.lock.leave();
    }

    Redirection(const Redirection &) = delete;
    Redirection &operator=(const Redirection &) = delete;
    explicit operator bool() const { return done_; }

private:
    // Standard output and standard error may share a handle, which then stays open.
    void replace(HANDLE handle, unsigned char flags) {
        HANDLE old = descriptor_.osfhandle;
        if (old != INVALID_HANDLE_VALUE) {
            free_handle(fd_);
            if (fd_ == 0 || old != descriptor_at(2).osfhandle) CloseHandle(old);
        }
        if (handle != INVALID_HANDLE_VALUE) set_handle(fd_, handle);
        descriptor_.flags = flags;
    }

    int fd_;
    Descriptor &descriptor_;
    unsigned char flags_;
    HANDLE kept_ = INVALID_HANDLE_VALUE;
    bool done_ = true;
};

FILE *open_stream(int fd, const char *mode) { return _fdopen(fd, mode); }
FILE *open_stream(int fd, const wchar_t *mode) { return _wfdopen(fd, mode); }

// Starts the command with the other end of the stream's pipe. With the parent's end not
// inheritable, the child holds no copy of it.
template <typename Char>
bool start(const Char *command, FILE *stream, int end, bool reads) {
    Redirection standard(reads, end);
    if (!standard) return false;
    Locked guard(numbered_lock(lock_pipes));
    PipeEntry *entry = free_entry();
    intptr_t process = entry ? run_command(spawn_handle, command) : -1;
    if (process == -1) return false;
    *entry = {stream, process};
    return true;
}

// The stream is opened and closed while no descriptor is locked, since that takes the lock of all
// streams, under which another thread may be flushing to that descriptor.
template <typename Char>
FILE *open_on_pipe(const Char *command, const Char *mode, const int ends[2], bool reads) {
    FILE *stream = open_stream(ends[!reads], mode);
    if (!stream) {
        for (int i = 0; i < 2; ++i) _close(ends[i]);
        return nullptr;
    }
    if (start(command, stream, ends[reads], reads)) return stream;
    fclose(stream);
    return nullptr;
}

template <typename Char>
FILE *open_pipe(const Char *command, const Char *mode) {
    constexpr unsigned pipe_size = 1024;
    if (!command || !mode || (*mode != 'r' && *mode != 'w')) return nullptr;
    int ends[2];
    int text_mode = mode[1] == 'b' ? O_BINARY : O_TEXT;
    if (_pipe(ends, pipe_size, text_mode | O_NOINHERIT) != 0) return nullptr;
    return open_on_pipe(command, mode, ends, *mode == 'r');
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" FILE *_popen(const char *command, const char *mode) { return open_pipe(command, mode); }
extern "C" FILE *_wpopen(const wchar_t *command, const wchar_t *mode) {
    return open_pipe(command, mode);
}

extern "C" int _pclose(FILE *stream) {
    intptr_t process;
    {
        Locked guard(numbered_lock(lock_pipes));
        PipeEntry *entry = stream ? find_pipe(stream) : nullptr;
        if (!entry) return -1;
        process = entry->process;
        *entry = {};
    }
    fclose(stream);
    int status;
    return _cwait(&status, process, 0) == -1 ? -1 : status;
}
