// The functions behind <stdatomic.h>.

#include <stdatomic.h>

extern "C" {

bool atomic_flag_test_and_set(volatile atomic_flag *object) {
    return __atomic_fetch_or(&object->__set, 1, __ATOMIC_SEQ_CST) & 1;
}

bool atomic_flag_test_and_set_explicit(volatile atomic_flag *object, memory_order) {
    return atomic_flag_test_and_set(object);
}

void atomic_flag_clear(volatile atomic_flag *object) {
    __atomic_fetch_and(&object->__set, ~1U, __ATOMIC_SEQ_CST);
}

void atomic_flag_clear_explicit(volatile atomic_flag *object, memory_order) {
    atomic_flag_clear(object);
}

void atomic_thread_fence(memory_order order) {
    if (order == memory_order_seq_cst) __atomic_thread_fence(__ATOMIC_SEQ_CST);
}

void atomic_signal_fence(memory_order) {}

} // extern "C"
