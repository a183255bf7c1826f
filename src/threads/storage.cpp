// Thread-specific storage. Values lie in slots of the system. For keys with a destructor there is a
// node for every thread that has stored a value, in a list of the thread (under its storage lock)
// and in one of the key (under the key's lock).
//
// Who takes both locks takes the key's first. Only the run of the destructors has to go from the
// thread to the key: it tries the key's lock, and steps back when that is taken.

#include "core/last_error.h"
#include "heap/heap.h"
#include "threads/c11_thread.h"

#include <threads.h>

struct _vexrt_storage_key {
    vexrt::Mutex *lock; // null for a key without a destructor
    vexrt::StorageNode *nodes;
    tss_dtor_t destructor;
    vexrt::DWORD slot;
};

namespace vexrt {

struct StorageNode {
    C11Thread *thread;
    _vexrt_storage_key *key;
    StorageNode *next_of_thread, *previous_of_thread;
    StorageNode *next_of_key, *previous_of_key;
};

namespace {

using Key = _vexrt_storage_key;

// The first slots lie in the thread block itself; reading them there is quick and leaves the
// last-error value alone.
void *read_slot(DWORD slot) {
    if (__builtin_expect(slot < TLS_MINIMUM_AVAILABLE, true))
        return *reinterpret_cast<void *volatile __attribute__((address_space(257))) *>(0xE10 +
                                                                                       slot * 4);
    LastErrorKept kept;
    return TlsGetValue(slot);
}

void link(StorageNode &node) {
    C11Thread &thread = *node.thread;
    Key &key = *node.key;
    node.next_of_thread = thread.storage;
    if (thread.storage) thread.storage->previous_of_thread = &node;
    thread.storage = &node;
    node.next_of_key = key.nodes;
    if (key.nodes) key.nodes->previous_of_key = &node;
    key.nodes = &node;
}

// Takes a node out of both lists and frees it. Both locks are held.
void remove(StorageNode *node) {
    C11Thread &thread = *node->thread;
    Key &key = *node->key;
    if (thread.cursor == node) thread.cursor = node->next_of_thread;
    if (node->next_of_thread) node->next_of_thread->previous_of_thread = node->previous_of_thread;
    (node->previous_of_thread ? node->previous_of_thread->next_of_thread : thread.storage) =
        node->next_of_thread;
    if (node->next_of_key) node->next_of_key->previous_of_key = node->previous_of_key;
    (node->previous_of_key ? node->previous_of_key->next_of_key : key.nodes) = node->next_of_key;
    heap_release(node);
}

bool has_node(const C11Thread &thread, const Key &key) {
    for (StorageNode *node = thread.storage; node; node = node->next_of_thread)
        if (node->key == &key) return true;
    return false;
}

int make_node(C11Thread &thread, Key &key) {
    MutexLocked key_guard(*key.lock);
    MutexLocked thread_guard(*thread.storage_lock);
    if (has_node(thread, key)) return thrd_success;
    auto *node = static_cast<StorageNode *>(heap_allocate(sizeof(StorageNode)));
    if (!node) return thrd_nomem;
    *node = {&thread, &key, nullptr, nullptr, nullptr, nullptr};
    link(*node);
    return thrd_success;
}

// Deals with the node at the thread's cursor: calls the destructor if there is a value and
// `may_call`, else removes the node. Without any lock during the call, as the destructor may do
// anything.
enum Step { at_end, key_is_busy, removed, called };
Step run_next(C11Thread &thread, bool may_call) {
    tss_dtor_t destructor = nullptr;
    void *value = nullptr;
    {
        MutexLocked thread_guard(*thread.storage_lock);
        StorageNode *node = thread.cursor;
        if (!node) return at_end;
        Key &key = *node->key;
        if (try_lock_mutex(*key.lock) != thrd_success) return key_is_busy;
        value = read_slot(key.slot);
        TlsSetValue(key.slot, nullptr);
        thread.cursor = node->next_of_thread;
        if (value && may_call)
            destructor = key.destructor;
        else
            remove(node);
        unlock_mutex(*key.lock);
    }
    if (!destructor) return removed;
    destructor(value);
    return called;
}

// One pass over all nodes; whether a destructor ran.
bool run_pass(C11Thread &thread, bool may_call) {
    bool any = false;
    {
        MutexLocked guard(*thread.storage_lock);
        thread.cursor = thread.storage;
    }
    for (;;) {
        switch (run_next(thread, may_call)) {
        case at_end: return any;
        case key_is_busy: Sleep(1); break;
        case removed: break;
        case called: any = true; break;
        }
    }
}

bool create_key(Key &key, tss_dtor_t destructor) {
    key = Key{};
    key.destructor = destructor;
    if (destructor && create_mutex(key.lock, mtx_plain) != thrd_success) return false;
    key.slot = TlsAlloc();
    if (key.slot != TLS_OUT_OF_INDEXES) return true;
    if (key.lock) destroy_mutex(key.lock);
    return false;
}

void remove_nodes(Key &key) {
    MutexLocked guard(*key.lock);
    while (StorageNode *node = key.nodes) {
        MutexLocked thread_guard(*node->thread->storage_lock);
        remove(node);
    }
}

} // namespace

// A value that a destructor stores is found by the next pass. The last one only cleans up.
void run_storage_destructors(C11Thread &thread) {
    for (int pass = 1; run_pass(thread, pass <= TSS_DTOR_ITERATIONS); ++pass) {
    }
}

} // namespace vexrt

using namespace vexrt;

extern "C" {

int tss_create(tss_t *key, tss_dtor_t dtor) {
    if (!key) return thrd_error;
    *key = nullptr;
    auto *made = static_cast<Key *>(heap_allocate(sizeof(Key)));
    if (!made) return thrd_nomem;
    if (!create_key(*made, dtor)) {
        heap_release(made);
        return thrd_nomem;
    }
    *key = made;
    return thrd_success;
}

void *tss_get(tss_t key) { return key ? read_slot(key->slot) : nullptr; }

int tss_set(tss_t key, void *val) {
    if (!key) return thrd_success;
    if (!thrd_current().__record) return thrd_error;
    // A thread that has a value has a node.
    if (key->destructor && val && !read_slot(key->slot)) {
        int result = make_node(*static_cast<C11Thread *>(thread_record().c11_thread), *key);
        if (result != thrd_success) return result;
    }
    return TlsSetValue(key->slot, val) ? thrd_success : thrd_error;
}

void tss_delete(tss_t key) {
    if (!key) return;
    if (key->lock) remove_nodes(*key);
    TlsFree(key->slot);
    while (key->lock && destroy_mutex(key->lock) == thrd_busy) Sleep(1);
    heap_release(key);
}

} // extern "C"
