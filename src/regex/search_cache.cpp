#include "regex/search_cache.h"

inline void *operator new(size_t, void *place) noexcept { return place; }

namespace vexrt {

namespace {

template <typename Type>
Type *make() {
    void *room = malloc(sizeof(Type));
    return room ? new (room) Type() : nullptr;
}

template <typename Type>
void destroy(Type *object) {
    object->~Type();
    free(object);
}

} // namespace

template <typename StateSet>
SearchCacheOf<StateSet> *take_cache(const Program &program) {
    if (SearchCache *cache = __atomic_exchange_n(&program.cache, nullptr, __ATOMIC_ACQ_REL))
        return static_cast<SearchCacheOf<StateSet> *>(cache);
    auto made = make<SearchCacheOf<StateSet>>();
    if (!made) return nullptr;
    made->one_word = program.state_count <= word_states;
    made->alphabet.create(program);
    if (made->forward.create(program, made->alphabet)) return made;
    destroy(made);
    return nullptr;
}

template SearchCacheOf<WordStates> *take_cache(const Program &program);
template SearchCacheOf<ByteStates> *take_cache(const Program &program);

void put_cache_back(const Program &program, SearchCache *cache) {
    release_cache(__atomic_exchange_n(&program.cache, cache, __ATOMIC_ACQ_REL));
}

void release_cache(SearchCache *cache) {
    if (!cache) return;
    if (cache->one_word)
        destroy(static_cast<SearchCacheOf<WordStates> *>(cache));
    else
        destroy(static_cast<SearchCacheOf<ByteStates> *>(cache));
}

} // namespace vexrt
