// Thread-local variables as gcc makes them: every access asks for the variable's address. Each
// thread has an array of addresses, found through one slot of the system; a variable gets its
// number on the first access of any thread, and its place in a thread on that thread's first
// access.

#include "platform/kernel32.h"

using namespace vexrt;

extern "C" {

void *calloc(unsigned count, unsigned size);
void *realloc(void *block, unsigned size);
void free(void *block);
void *memcpy(void *to, const void *from, unsigned size);
[[noreturn]] void abort(void);

struct EmulatedVariable {
    unsigned size, alignment;
    unsigned number;     // from 1 on; 0: never accessed
    const void *initial; // null: zero
};

extern const struct TlsDirectory _tls_used;

} // extern "C"

namespace {

struct Place {
    void *block;   // from malloc
    void *address; // aligned inside it
};

struct ThreadVariables {
    unsigned capacity;
    Place places[1];
};

constexpr unsigned first_capacity = 15;
constexpr DWORD no_slot = TLS_OUT_OF_INDEXES;
volatile DWORD slot = no_slot;
unsigned variable_count;

DWORD slot_of_process() {
    if (slot != no_slot) return slot;
    DWORD made = TlsAlloc();
    if (made == no_slot) abort();
    DWORD expected = no_slot;
    if (__atomic_compare_exchange_n(&slot, &expected, made, false, __ATOMIC_SEQ_CST,
                                    __ATOMIC_SEQ_CST))
        return made;
    TlsFree(made);
    return expected;
}

unsigned number_of(EmulatedVariable &variable) {
    unsigned number = __atomic_load_n(&variable.number, __ATOMIC_ACQUIRE);
    if (number) return number;
    unsigned fresh = __atomic_add_fetch(&variable_count, 1, __ATOMIC_SEQ_CST);
    if (__atomic_compare_exchange_n(&variable.number, &number, fresh, false, __ATOMIC_SEQ_CST,
                                    __ATOMIC_SEQ_CST))
        return fresh;
    return number; // another thread was faster; the fresh number stays unused
}

// The calling thread's array with room for variable `number`.
ThreadVariables &variables_with_room(unsigned number) {
    DWORD index = slot_of_process();
    auto *variables = static_cast<ThreadVariables *>(TlsGetValue(index));
    unsigned capacity = variables ? variables->capacity : 0;
    if (number < capacity) return *variables;
    unsigned wanted = number < first_capacity ? first_capacity : 2 * number + 1;
    auto *grown = static_cast<ThreadVariables *>(
        realloc(variables, sizeof(ThreadVariables) + wanted * sizeof(Place)));
    if (!grown || !TlsSetValue(index, grown)) abort();
    for (unsigned i = capacity; i < wanted; ++i) grown->places[i] = Place{};
    grown->capacity = wanted;
    return *grown;
}

void make_place(const EmulatedVariable &variable, Place &place) {
    unsigned alignment = variable.alignment < 4 ? 4 : variable.alignment;
    place.block = calloc(1, variable.size + alignment - 1);
    if (!place.block) abort();
    auto start = reinterpret_cast<unsigned>(place.block) + alignment - 1;
    place.address = reinterpret_cast<void *>(start & ~(alignment - 1));
    if (variable.initial) memcpy(place.address, variable.initial, variable.size);
}

void __stdcall on_thread_event(void *, DWORD reason, void *) {
    if (reason != DLL_THREAD_DETACH || slot == no_slot) return;
    auto *variables = static_cast<ThreadVariables *>(TlsGetValue(slot));
    if (!variables) return;
    TlsSetValue(slot, nullptr);
    for (unsigned i = 0; i < variables->capacity; ++i) free(variables->places[i].block);
    free(variables);
}

#pragma section(".CRT$XLC", read)
using ThreadEvent = void(__stdcall *)(void *, DWORD, void *);
__declspec(allocate(".CRT$XLC")) __attribute__((used)) const ThreadEvent thread_event =
    on_thread_event;

} // namespace

extern "C" void *__emutls_get_address(EmulatedVariable *variable) {
    // The directory makes the loader call `on_thread_event`.
    __asm__ volatile("" : : "i"(&_tls_used));
    unsigned number = number_of(*variable);
    Place &place = variables_with_room(number).places[number];
    if (!place.address) make_place(*variable, place);
    return place.address;
}
