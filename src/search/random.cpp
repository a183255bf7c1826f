// The pseudo-random sequence of each thread: a linear congruential generator whose outputs pass
// through a shuffle table, so that neighbouring results do not come from neighbouring states.

#include "core/fatal.h"
#include "core/thread_record.h"
#include "heap/heap.h"

#include <stdlib.h>

namespace vexrt {

namespace {

constexpr unsigned table_size = 32;
constexpr unsigned warm_up_steps = 8;

constexpr unsigned step(unsigned state) { return state * 1664525 + 1013904223; }

// Fills the table from the seed, allocating it on the thread's first call.
[[gnu::noinline]] unsigned *fill_table(ThreadRecord &record) {
    if (!record.random_table) record.random_table = heap_allocate(table_size * sizeof(unsigned));
    auto *table = static_cast<unsigned *>(record.random_table);
    if (!table) fatal(FatalCode::out_of_memory);
    unsigned state = record.random_seed;
    for (unsigned i = 0; i < warm_up_steps; ++i) state = step(state);
    for (unsigned i = 0; i < table_size; ++i) table[i] = state = step(state);
    record.random_seed = state;
    record.random_state = state;
    record.random_table_valid = 1;
    return table;
}

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" void srand(unsigned seed) {
    ThreadRecord &record = thread_record();
    record.random_seed = seed;
    record.random_table_valid = 0;
}

// The last output chooses the entry that goes out next; the new state takes its place.
extern "C" int rand() {
    ThreadRecord &record = thread_record();
    auto *table = static_cast<unsigned *>(record.random_table);
    if (__builtin_expect(!record.random_table_valid, false)) table = fill_table(record);
    unsigned state = step(record.random_seed);
    unsigned &entry = table[record.random_state % table_size];
    unsigned output = entry;
    entry = state;
    record.random_seed = state;
    record.random_state = output;
    return static_cast<int>(output & RAND_MAX);
}
