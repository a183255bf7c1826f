// One record per thread that has called in. Its layout is fixed: 47 words, zero but where noted.
#pragma once

#include "platform/kernel32.h"

#include <stdlib.h>

namespace vexrt {

struct LocaleRecord;
struct ConversionState;

// The functions that keep a conversion state for a null state argument, in the order of their
// words in the record.
enum class StateOf : unsigned {
    mbrlen,
    mbrtowc,
    mbsrtowcs,
    mbtowc,
    wcrtomb,
    wcsrtombs,
    wctomb,
    wctomb_s,
    mbrtoc16,
    mbrtoc32,
    c16rtomb,
    c32rtomb,
    count
};

constexpr unsigned locale_category_count = 5;
using SignalHandler = void (*)(int);

struct ThreadRecord {
    DWORD thread_id;
    HANDLE thread_handle; // -1: none
    int error_number;     // errno
    void *c11_thread;
    constraint_handler_t constraint_handler; // the default handler
    int random_table_valid;
    unsigned random_seed; // 1
    unsigned random_state;
    char *strtok_resume;
    wchar_t *wcstok_resume;
    unsigned temporary_name_counter; // the record's own address
    DWORD dynamic_loading_error;
    void *zone_string;
    int zone_offset_minutes;
    unsigned unused_14;
    void *spare_buffer;
    char *asctime_buffer;
    void *calendar_state;
    SignalHandler *signal_handlers; // the process default table
    void *hash_table;
    char *error_text;
    wchar_t *wide_error_text;
    char *tmpnam_buffer;
    wchar_t *wtmpnam_buffer;
    void *random_table;
    ConversionState *conversion_states[static_cast<unsigned>(StateOf::count)];
    void *start_routine;
    void *start_argument;
    char *locale_name; // a heap copy of "C"
    LocaleRecord *locale;
    LocaleRecord *category_locales[locale_category_count + 1];
};
static_assert(sizeof(ThreadRecord) == 47 * 4);
static_assert(__builtin_offsetof(ThreadRecord, constraint_handler) == 4 * 4);
static_assert(__builtin_offsetof(ThreadRecord, signal_handlers) == 18 * 4);
static_assert(__builtin_offsetof(ThreadRecord, conversion_states) == 25 * 4);
static_assert(__builtin_offsetof(ThreadRecord, locale) == 40 * 4);

extern DWORD thread_record_slot; // TLS_OUT_OF_INDEXES when there is none

// Makes the calling thread's record; ends the process with code -5 when it cannot.
ThreadRecord &create_thread_record();

// The calling thread's record. The system keeps the first 64 slots in the thread block itself;
// reading them there leaves the last-error value alone, as every caller expects.
inline ThreadRecord &thread_record() {
    DWORD slot = thread_record_slot;
    void *record = nullptr;
    if (__builtin_expect(slot < TLS_MINIMUM_AVAILABLE, true))
        record = *reinterpret_cast<void *volatile __attribute__((address_space(257))) *>(0xE10 +
                                                                                         slot * 4);
    if (__builtin_expect(record != nullptr, true)) return *static_cast<ThreadRecord *>(record);
    return create_thread_record();
}

// The calling thread's record if it has one already, else null.
ThreadRecord *existing_thread_record();

// A record for a thread that is yet to be started; null without memory. The new thread installs it,
// or whoever made it frees it.
ThreadRecord *new_thread_record();
bool install_thread_record(ThreadRecord *record);

bool thread_records_attach(); // slot and record of the attaching thread
void thread_records_detach();
void free_thread_record(ThreadRecord *record); // null: the calling thread's

// Ends what <threads.h> keeps of a thread: `c11_thread` of a record that is being freed. Defined
// with the threads.
void finish_c11_thread(void *thread);

// Frees the thread's hash table, if there is one. Defined with the search functions.
void free_hash_table(void *table);

} // namespace vexrt
