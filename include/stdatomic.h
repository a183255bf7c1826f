/* <stdatomic.h> - C11 7.17: atomic operations. The generic ones are the compiler's own. In C++ there
   are the flag and the fences, and with clang all the rest. */
#ifndef _STDATOMIC_H
#define _STDATOMIC_H

#include <_vexrt.h>

typedef enum {
    memory_order_relaxed = 0,
    memory_order_consume = 1,
    memory_order_acquire = 2,
    memory_order_release = 3,
    memory_order_acq_rel = 4,
    memory_order_seq_cst = 5
} memory_order;

typedef struct {
    unsigned int __set;
} atomic_flag;

#define ATOMIC_FLAG_INIT {0}

#define ATOMIC_BOOL_LOCK_FREE 2
#define ATOMIC_CHAR_LOCK_FREE 2
#define ATOMIC_CHAR16_T_LOCK_FREE 2
#define ATOMIC_CHAR32_T_LOCK_FREE 2
#define ATOMIC_WCHAR_T_LOCK_FREE 2
#define ATOMIC_SHORT_LOCK_FREE 2
#define ATOMIC_INT_LOCK_FREE 2
#define ATOMIC_LONG_LOCK_FREE 2
#define ATOMIC_LLONG_LOCK_FREE 2
#define ATOMIC_POINTER_LOCK_FREE 2

_VEXRT_BEGIN

/*
 * Sets a flag and returns whether it was set before; clears it. Both are sequentially consistent
 * whatever the order says.
 */
#ifdef __cplusplus
bool atomic_flag_test_and_set(volatile atomic_flag *object);
bool atomic_flag_test_and_set_explicit(volatile atomic_flag *object, memory_order order);
#else
_Bool atomic_flag_test_and_set(volatile atomic_flag *object);
_Bool atomic_flag_test_and_set_explicit(volatile atomic_flag *object, memory_order order);
#endif
void atomic_flag_clear(volatile atomic_flag *object);
void atomic_flag_clear_explicit(volatile atomic_flag *object, memory_order order);

/* A fence between threads, which takes an instruction for memory_order_seq_cst only, and one between
   a thread and its signal handlers. Both keep the compiler from moving accesses to memory. */
void atomic_thread_fence(memory_order order);
void atomic_signal_fence(memory_order order);

_VEXRT_END

#if !defined(__cplusplus) || defined(__clang__)

typedef _Atomic(signed char) atomic_schar;
typedef _Atomic(unsigned char) atomic_uchar;
typedef _Atomic(char) atomic_char;
typedef _Atomic(short) atomic_short;
typedef _Atomic(unsigned short) atomic_ushort;
typedef _Atomic(int) atomic_int;
typedef _Atomic(unsigned int) atomic_uint;
typedef _Atomic(long) atomic_long;
typedef _Atomic(unsigned long) atomic_ulong;
typedef _Atomic(long long) atomic_llong;
typedef _Atomic(unsigned long long) atomic_ullong;
#ifdef __cplusplus
typedef _Atomic(bool) atomic_bool;
#else
typedef _Atomic(_Bool) atomic_bool;
#endif
typedef _Atomic(__CHAR16_TYPE__) atomic_char16_t;
typedef _Atomic(__CHAR32_TYPE__) atomic_char32_t;
typedef _Atomic(wchar_t) atomic_wchar_t;
typedef _Atomic(__INT_LEAST8_TYPE__) atomic_int_least8_t;
typedef _Atomic(__UINT_LEAST8_TYPE__) atomic_uint_least8_t;
typedef _Atomic(__INT_LEAST16_TYPE__) atomic_int_least16_t;
typedef _Atomic(__UINT_LEAST16_TYPE__) atomic_uint_least16_t;
typedef _Atomic(__INT_LEAST32_TYPE__) atomic_int_least32_t;
typedef _Atomic(__UINT_LEAST32_TYPE__) atomic_uint_least32_t;
typedef _Atomic(__INT_LEAST64_TYPE__) atomic_int_least64_t;
typedef _Atomic(__UINT_LEAST64_TYPE__) atomic_uint_least64_t;
typedef _Atomic(__INT_FAST8_TYPE__) atomic_int_fast8_t;
typedef _Atomic(__UINT_FAST8_TYPE__) atomic_uint_fast8_t;
typedef _Atomic(__INT_FAST16_TYPE__) atomic_int_fast16_t;
typedef _Atomic(__UINT_FAST16_TYPE__) atomic_uint_fast16_t;
typedef _Atomic(__INT_FAST32_TYPE__) atomic_int_fast32_t;
typedef _Atomic(__UINT_FAST32_TYPE__) atomic_uint_fast32_t;
typedef _Atomic(__INT_FAST64_TYPE__) atomic_int_fast64_t;
typedef _Atomic(__UINT_FAST64_TYPE__) atomic_uint_fast64_t;
typedef _Atomic(intptr_t) atomic_intptr_t;
typedef _Atomic(uintptr_t) atomic_uintptr_t;
typedef _Atomic(size_t) atomic_size_t;
typedef _Atomic(ptrdiff_t) atomic_ptrdiff_t;
typedef _Atomic(__INTMAX_TYPE__) atomic_intmax_t;
typedef _Atomic(__UINTMAX_TYPE__) atomic_uintmax_t;

#define ATOMIC_VAR_INIT(value) (value)
#define kill_dependency(y) (y)

#ifdef __clang__
#define atomic_init(object, value) __c11_atomic_init((object), (value))
#define atomic_is_lock_free(object) __c11_atomic_is_lock_free(sizeof *(object))
#define atomic_store_explicit(object, desired, order) __c11_atomic_store((object), (desired), (order))
#define atomic_load_explicit(object, order) __c11_atomic_load((object), (order))
#define atomic_exchange_explicit(object, desired, order)                                           \
    __c11_atomic_exchange((object), (desired), (order))
#define atomic_compare_exchange_strong_explicit(object, expected, desired, success, failure)       \
    __c11_atomic_compare_exchange_strong((object), (expected), (desired), (success), (failure))
#define atomic_compare_exchange_weak_explicit(object, expected, desired, success, failure)         \
    __c11_atomic_compare_exchange_weak((object), (expected), (desired), (success), (failure))
#define atomic_fetch_add_explicit(object, operand, order)                                          \
    __c11_atomic_fetch_add((object), (operand), (order))
#define atomic_fetch_sub_explicit(object, operand, order)                                          \
    __c11_atomic_fetch_sub((object), (operand), (order))
#define atomic_fetch_or_explicit(object, operand, order)                                           \
    __c11_atomic_fetch_or((object), (operand), (order))
#define atomic_fetch_xor_explicit(object, operand, order)                                          \
    __c11_atomic_fetch_xor((object), (operand), (order))
#define atomic_fetch_and_explicit(object, operand, order)                                          \
    __c11_atomic_fetch_and((object), (operand), (order))
#else
/* What an atomic object holds, without the qualifier: the comma makes it a value. */
#define _VEXRT_VALUE_OF(object) __typeof__((void)0, *(object))
#define atomic_init(object, value) atomic_store_explicit((object), (value), memory_order_relaxed)
#define atomic_is_lock_free(object) __atomic_is_lock_free(sizeof *(object), (object))
#define atomic_store_explicit(object, desired, order)                                              \
    __extension__({                                                                                \
        _VEXRT_VALUE_OF(object) __vexrt_desired = (desired);                                       \
        __atomic_store((object), &__vexrt_desired, (order));                                       \
    })
#define atomic_load_explicit(object, order)                                                        \
    __extension__({                                                                                \
        _VEXRT_VALUE_OF(object) __vexrt_loaded;                                                    \
        __atomic_load((object), &__vexrt_loaded, (order));                                         \
        __vexrt_loaded;                                                                            \
    })
#define atomic_exchange_explicit(object, desired, order)                                           \
    __extension__({                                                                                \
        _VEXRT_VALUE_OF(object) __vexrt_desired = (desired), __vexrt_before;                       \
        __atomic_exchange((object), &__vexrt_desired, &__vexrt_before, (order));                   \
        __vexrt_before;                                                                            \
    })
#define _VEXRT_COMPARE_EXCHANGE(object, expected, desired, weak, success, failure)                 \
    __extension__({                                                                                \
        _VEXRT_VALUE_OF(object) __vexrt_desired = (desired);                                       \
        __atomic_compare_exchange((object), (expected), &__vexrt_desired, (weak), (success),       \
                                  (failure));                                                      \
    })
#define atomic_compare_exchange_strong_explicit(object, expected, desired, success, failure)       \
    _VEXRT_COMPARE_EXCHANGE(object, expected, desired, 0, success, failure)
#define atomic_compare_exchange_weak_explicit(object, expected, desired, success, failure)         \
    _VEXRT_COMPARE_EXCHANGE(object, expected, desired, 1, success, failure)
#define atomic_fetch_add_explicit(object, operand, order)                                          \
    __atomic_fetch_add((object), (operand), (order))
#define atomic_fetch_sub_explicit(object, operand, order)                                          \
    __atomic_fetch_sub((object), (operand), (order))
#define atomic_fetch_or_explicit(object, operand, order)                                           \
    __atomic_fetch_or((object), (operand), (order))
#define atomic_fetch_xor_explicit(object, operand, order)                                          \
    __atomic_fetch_xor((object), (operand), (order))
#define atomic_fetch_and_explicit(object, operand, order)                                          \
    __atomic_fetch_and((object), (operand), (order))
#endif

#define atomic_store(object, desired) atomic_store_explicit(object, desired, memory_order_seq_cst)
#define atomic_load(object) atomic_load_explicit(object, memory_order_seq_cst)
#define atomic_exchange(object, desired)                                                           \
    atomic_exchange_explicit(object, desired, memory_order_seq_cst)
#define atomic_compare_exchange_strong(object, expected, desired)                                  \
    atomic_compare_exchange_strong_explicit(object, expected, desired, memory_order_seq_cst,       \
                                            memory_order_seq_cst)
#define atomic_compare_exchange_weak(object, expected, desired)                                    \
    atomic_compare_exchange_weak_explicit(object, expected, desired, memory_order_seq_cst,         \
                                          memory_order_seq_cst)
#define atomic_fetch_add(object, operand)                                                          \
    atomic_fetch_add_explicit(object, operand, memory_order_seq_cst)
#define atomic_fetch_sub(object, operand)                                                          \
    atomic_fetch_sub_explicit(object, operand, memory_order_seq_cst)
#define atomic_fetch_or(object, operand)                                                           \
    atomic_fetch_or_explicit(object, operand, memory_order_seq_cst)
#define atomic_fetch_xor(object, operand)                                                          \
    atomic_fetch_xor_explicit(object, operand, memory_order_seq_cst)
#define atomic_fetch_and(object, operand)                                                          \
    atomic_fetch_and_explicit(object, operand, memory_order_seq_cst)

#endif

#endif
