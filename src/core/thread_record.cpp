#include "core/thread_record.h"

#include "core/constraint.h"
#include "core/fatal.h"
#include "core/last_error.h"
#include "core/signals.h"
#include "heap/heap.h"
#include "locale/locale_record.h"

namespace vexrt {

DWORD thread_record_slot = TLS_OUT_OF_INDEXES;

namespace {

// Where the slot lies beyond the thread block's own array. Asking the system resets the last-error
// value.
void *read_slot() {
    LastErrorKept kept;
    return TlsGetValue(thread_record_slot);
}

bool initialise(ThreadRecord &record) {
    record = ThreadRecord{};
    record.locale_name = static_cast<char *>(heap_allocate(2));
    if (!record.locale_name) return false;
    record.locale_name[0] = 'C';
    record.locale_name[1] = '\0';
    record.thread_id = GetCurrentThreadId();
    record.thread_handle = INVALID_HANDLE_VALUE;
    record.constraint_handler = default_constraint_handler;
    record.random_seed = 1;
    record.temporary_name_counter = reinterpret_cast<unsigned>(&record);
    record.signal_handlers = default_signal_handlers;
    record.locale = &c_locale;
    for (LocaleRecord *&category : record.category_locales) category = &c_locale;
    return true;
}

} // namespace

ThreadRecord *existing_thread_record() {
    if (thread_record_slot == TLS_OUT_OF_INDEXES) return nullptr;
    return static_cast<ThreadRecord *>(read_slot());
}

ThreadRecord *new_thread_record() {
    auto *record = static_cast<ThreadRecord *>(heap_allocate(sizeof(ThreadRecord)));
    if (record && initialise(*record)) return record;
    heap_release(record);
    return nullptr;
}

// The thread may have called in already, on behalf of a library that was told of its start.
bool install_thread_record(ThreadRecord *record) {
    if (existing_thread_record()) free_thread_record(nullptr);
    return TlsSetValue(thread_record_slot, record);
}

[[gnu::noinline]] ThreadRecord &create_thread_record() {
    if (ThreadRecord *existing = existing_thread_record()) return *existing;
    LastErrorKept kept;
    ThreadRecord *made = new_thread_record();
    if (!made || !TlsSetValue(thread_record_slot, made)) fatal(FatalCode::corrupt_thread_data);
    return *made;
}

bool thread_records_attach() {
    thread_record_slot = TlsAlloc();
    if (thread_record_slot == TLS_OUT_OF_INDEXES) return false;
    ThreadRecord *record = new_thread_record();
    return record && TlsSetValue(thread_record_slot, record);
}

void thread_records_detach() {
    if (thread_record_slot == TLS_OUT_OF_INDEXES) return;
    TlsFree(thread_record_slot);
    thread_record_slot = TLS_OUT_OF_INDEXES;
}

namespace {

// The wide error text, the `_wtmpnam` buffer and the conversion states stay allocated: a text that
// a thread handed out may outlive it.
void release(ThreadRecord &record) {
    void *const buffers[] = {record.spare_buffer,  record.random_table,   record.error_text,
                             record.tmpnam_buffer, record.asctime_buffer, record.calendar_state};
    for (void *buffer : buffers) heap_release(buffer);
    if (record.signal_handlers != default_signal_handlers) heap_release(record.signal_handlers);
    free_hash_table(record.hash_table);
    heap_release(record.locale_name);
    if (record.locale != &c_locale) heap_release(record.locale);
    heap_release(&record);
}

} // namespace

void free_thread_record(ThreadRecord *record) {
    if (thread_record_slot == TLS_OUT_OF_INDEXES) return;
    ThreadRecord *own = existing_thread_record();
    if (!record) record = own;
    if (record) {
        // Destructors of the program may run, and call in.
        if (record->c11_thread) finish_c11_thread(record->c11_thread);
        release(*record);
    }
    if (record == own) TlsSetValue(thread_record_slot, nullptr);
}

} // namespace vexrt
