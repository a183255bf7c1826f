// The hash table of a thread.
//
// Entries lie in chunks and never move, since callers keep pointers to them. What finds them is an
// array of slots with open addressing: an entry is in the first free slot from the one that its
// hash chooses. A slot keeps the hash, so that few keys are compared and growing need not look at
// keys at all. Three quarters of the slots are used at most, unless there is no memory for more;
// one always stays free and ends every search.

#include "core/errno.h"
#include "heap/heap.h"

#include <search.h>
#include <stdint.h>
#include <string.h>

namespace vexrt {

namespace {

struct Slot {
    uint32_t hash;
    ENTRY *entry; // null: free
};

struct Chunk {
    Chunk *next;
    ENTRY entries[1]; // and more
};

struct HashTable {
    Slot *slots;
    uint32_t slot_count; // a power of two
    uint32_t count;
    Chunk *chunks;
    ENTRY *next_free, *end_free; // in the first chunk
};

constexpr uint32_t least_slots = 16, least_chunk = 16, largest_chunk = 4096;
constexpr size_t entry_limit = size_t{1} << 27; // more would not fit into memory

// How many entries may use so many slots.
uint32_t load_limit(uint32_t slot_count) { return slot_count / 4 * 3; }

template <typename T>
T *allocate_bytes(size_t size) {
    auto *block = static_cast<T *>(heap_allocate(size));
    if (!block) set_errno(ENOMEM);
    return block;
}

Slot *make_slots(uint32_t count) {
    auto *slots = allocate_bytes<Slot>(count * sizeof(Slot));
    if (slots) memset(slots, 0, count * sizeof(Slot));
    return slots;
}

bool add_chunk(HashTable &table, uint32_t entries) {
    auto *chunk = allocate_bytes<Chunk>(sizeof(Chunk) + (entries - 1) * sizeof(ENTRY));
    if (!chunk) return false;
    chunk->next = table.chunks;
    table.chunks = chunk;
    table.next_free = chunk->entries;
    table.end_free = chunk->entries + entries;
    return true;
}

// Four bytes a step; the last step takes what is left. The product carries every bit upward, the
// shifts bring it back down.
uint32_t hash_of(const char *key) {
    constexpr uint32_t factor = 0x9E3779B1;
    uint32_t hash = 0, word;
    size_t left = strlen(key);
    for (; left >= sizeof word; left -= sizeof word, key += sizeof word) {
        memcpy(&word, key, sizeof word);
        hash = (hash ^ word) * factor;
        hash ^= hash >> 15;
    }
    word = static_cast<uint32_t>(left) << 24;
    for (; left; --left)
        word ^= static_cast<uint32_t>(static_cast<unsigned char>(*key++)) << (left * 8 - 8);
    hash = (hash ^ word) * factor;
    hash = (hash ^ hash >> 15) * factor;
    return hash ^ hash >> 16;
}

// The slot of the entry with the key, or the free one where it belongs.
Slot &find_slot(const HashTable &table, const char *key, uint32_t hash) {
    for (uint32_t at = hash;; ++at) {
        Slot &slot = table.slots[at & (table.slot_count - 1)];
        if (!slot.entry || (slot.hash == hash && strcmp(slot.entry->key, key) == 0)) return slot;
    }
}

bool grow(HashTable &table) {
    if (table.slot_count > entry_limit) return false;
    uint32_t count = table.slot_count * 2;
    Slot *slots = make_slots(count);
    if (!slots) return false;
    for (uint32_t i = 0; i < table.slot_count; ++i) {
        if (!table.slots[i].entry) continue;
        uint32_t at = table.slots[i].hash;
        while (slots[at & (count - 1)].entry) ++at;
        slots[at & (count - 1)] = table.slots[i];
    }
    heap_release(table.slots);
    table.slots = slots;
    table.slot_count = count;
    return true;
}

ENTRY *enter(HashTable &table, const ENTRY &item, uint32_t hash) {
    bool full = table.count >= load_limit(table.slot_count);
    if (full && !grow(table) && table.count + 1 >= table.slot_count)
        return set_errno(ENOMEM), nullptr;
    if (table.next_free == table.end_free) {
        uint32_t more = table.count < least_chunk ? least_chunk : table.count;
        if (!add_chunk(table, more < largest_chunk ? more : largest_chunk)) return nullptr;
    }
    ENTRY *entry = table.next_free++;
    *entry = item;
    find_slot(table, item.key, hash) = {hash, entry};
    ++table.count;
    return entry;
}

HashTable *make_table(size_t entries) {
    if (entries > entry_limit) return set_errno(ENOMEM), nullptr;
    auto *table = allocate_bytes<HashTable>(sizeof(HashTable));
    if (!table) return nullptr;
    *table = {};
    table->slot_count = least_slots;
    while (load_limit(table->slot_count) < entries) table->slot_count *= 2;
    table->slots = make_slots(table->slot_count);
    uint32_t room = entries < least_chunk ? least_chunk : static_cast<uint32_t>(entries);
    if (table->slots && add_chunk(*table, room)) return table;
    free_hash_table(table);
    return nullptr;
}

} // namespace

void free_hash_table(void *thread_table) {
    auto *table = static_cast<HashTable *>(thread_table);
    if (!table) return;
    for (Chunk *chunk = table->chunks, *next; chunk; chunk = next) {
        next = chunk->next;
        heap_release(chunk);
    }
    heap_release(table->slots);
    heap_release(table);
}

} // namespace vexrt

using namespace vexrt;

extern "C" {

int _hcreate(size_t nel) {
    ThreadRecord &record = thread_record();
    if (record.hash_table) return set_errno(EINVAL), 0;
    record.hash_table = make_table(nel);
    return record.hash_table != nullptr;
}

ENTRY *_hsearch(ENTRY item, ACTION action) {
    auto *table = static_cast<HashTable *>(thread_record().hash_table);
    if (!table || !item.key || (action != FIND && action != ENTER))
        return set_errno(EINVAL), nullptr;
    uint32_t hash = hash_of(item.key);
    if (ENTRY *entry = find_slot(*table, item.key, hash).entry) return entry;
    if (action == ENTER) return enter(*table, item, hash);
    return set_errno(ESRCH), nullptr;
}

void _hdestroy() {
    ThreadRecord &record = thread_record();
    free_hash_table(record.hash_table);
    record.hash_table = nullptr;
}

} // extern "C"
