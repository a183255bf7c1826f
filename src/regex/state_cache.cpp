#include "regex/state_cache.h"

#include <string.h>

namespace vexrt {

namespace {

uint32_t hash_of(const uint32_t *key, size_t size) {
    uint32_t hash = 2166136261u;
    for (size_t i = 0; i < size; ++i) {
        hash = (hash ^ key[i]) * 0x9E3779B1u;
        hash ^= hash >> 15;
    }
    return hash;
}

} // namespace

StateCache::~StateCache() {
    for (size_t i = 0; i < chunks_.size(); ++i) free(chunks_[i].bytes);
}

bool StateCache::next_chunk(size_t needed) {
    for (size_t i = chunks_.empty() ? 0 : chunk_ + 1; i < chunks_.size(); ++i) {
        if (chunks_[i].size < needed) continue;
        chunk_ = i;
        used_ = 0;
        return true;
    }
    size_t size = chunks_.empty() ? first_chunk : 4 * taken_;
    if (size > largest_chunk) size = largest_chunk;
    if (size < needed) size = needed;
    if (size > limit_ - taken_) return false;
    Chunk chunk{static_cast<char *>(malloc(size)), size};
    if (!chunk.bytes) return false;
    if (!chunks_.push(chunk)) {
        free(chunk.bytes);
        return false;
    }
    taken_ += size;
    chunk_ = chunks_.size() - 1;
    used_ = 0;
    return true;
}

uint32_t *StateCache::allocate(size_t words) {
    size_t needed = words * sizeof(uint32_t);
    if ((chunks_.empty() || chunks_[chunk_].size - used_ < needed) && !next_chunk(needed))
        return nullptr;
    char *allocated = chunks_[chunk_].bytes + used_;
    used_ += needed;
    return reinterpret_cast<uint32_t *>(allocated);
}

bool StateCache::grow_buckets() {
    if (state_count_ < buckets_.size()) return true;
    Array<CachedState *> old;
    size_t count = buckets_.size();
    for (size_t i = 0; i < count; ++i)
        if (buckets_[i] && !old.push(buckets_[i])) return false;
    size_t grown = count ? 2 * count : 64;
    if (!buckets_.resize(grown)) return false;
    for (size_t i = 0; i < grown; ++i) buckets_[i] = nullptr;
    for (size_t i = 0; i < old.size(); ++i) {
        for (CachedState *state = old[i], *next; state; state = next) {
            next = state->next_in_bucket;
            CachedState *&bucket = buckets_[state->hash & (grown - 1)];
            state->next_in_bucket = bucket;
            bucket = state;
        }
    }
    return true;
}

CachedState *StateCache::find_or_add(const uint32_t *key, size_t size, uint32_t fresh) {
    uint32_t hash = hash_of(key, size);
    if (!grow_buckets()) return nullptr;
    CachedState *&bucket = buckets_[hash & (buckets_.size() - 1)];
    for (CachedState *state = bucket; state; state = state->next_in_bucket)
        if (state->hash == hash && state->key_size == size &&
            memcmp(key_of(state), key, size * sizeof *key) == 0)
            return state;
    uint32_t *words = allocate(sizeof(CachedState) / sizeof *words + slot_count_ + size);
    if (!words) return nullptr;
    auto state = reinterpret_cast<CachedState *>(words);
    *state = {bucket, hash, static_cast<uint32_t>(size)};
    for (uint32_t i = 0; i < slot_count_; ++i) state->slots()[i] = fresh;
    memcpy(state->slots() + slot_count_, key, size * sizeof *key);
    bucket = state;
    ++state_count_;
    return state;
}

void StateCache::flush() {
    for (size_t i = 0; i < buckets_.size(); ++i) buckets_[i] = nullptr;
    state_count_ = 0;
    chunk_ = used_ = 0;
    ++flush_count_;
}

} // namespace vexrt
