// A program's constructors and destructors, as the compilers leave them.
//
// For windows-msvc they stand in sections that the linker sorts by name: .CRT$XC* constructors,
// .CRT$XI* initialisers that may fail, .CRT$XP* and .CRT$XT* terminators. For windows-gnu they
// stand in .ctors and .dtors, lists that run backwards from their end; the linker puts an all-ones
// word in front and a zero behind.

#include "core/function_table.h"
#include "crt/startup.h"

using namespace vexrt;

namespace {

using Initialiser = int (*)();

constexpr int initialiser_failed = 255;

#pragma section(".CRT$XIA", read)
#pragma section(".CRT$XIZ", read)
#pragma section(".CRT$XCA", read)
#pragma section(".CRT$XCZ", read)
#pragma section(".CRT$XPA", read)
#pragma section(".CRT$XTZ", read)
__declspec(allocate(".CRT$XIA")) const Initialiser initialisers_begin[] = {nullptr};
__declspec(allocate(".CRT$XIZ")) const Initialiser initialisers_end[] = {nullptr};
__declspec(allocate(".CRT$XCA")) const TableFunction constructors_begin[] = {nullptr};
__declspec(allocate(".CRT$XCZ")) const TableFunction constructors_end[] = {nullptr};
__declspec(allocate(".CRT$XPA")) const TableFunction terminators_begin[] = {nullptr};
__declspec(allocate(".CRT$XTZ")) const TableFunction terminators_end[] = {nullptr};

extern "C" TableFunction __CTOR_LIST__[];
extern "C" TableFunction __DTOR_LIST__[];

// Without objects for windows-gnu the linker makes no lists; these stand in for them.
extern "C" const TableFunction __vexcrt_no_list[2] = {nullptr, nullptr};
#pragma comment(linker, "/alternatename:___CTOR_LIST__=___vexcrt_no_list")
#pragma comment(linker, "/alternatename:___DTOR_LIST__=___vexcrt_no_list")

bool constructed;

} // namespace

extern "C" void __vexcrt_destruct(void) {
    if (!constructed) return;
    constructed = false;
    for (const TableFunction *entry = opaque(__DTOR_LIST__) + 1; *entry; ++entry) (*entry)();
    run_table(terminators_begin, terminators_end);
}

// Without destructors no slot of atexit is taken.
extern "C" void __vexcrt_destruct_at_exit(void) {
    bool any = __DTOR_LIST__[1];
    for (const TableFunction *entry = opaque(terminators_begin); entry < opaque(terminators_end);
         ++entry)
        any = any || *entry;
    if (any) atexit(__vexcrt_destruct);
}

extern "C" void __vexcrt_construct(void) {
    if (constructed) return;
    constructed = true;
    for (const Initialiser *entry = opaque(initialisers_begin); entry < opaque(initialisers_end);
         ++entry)
        if (*entry && (*entry)() != 0) exit(initialiser_failed);
    const TableFunction *last = opaque(__CTOR_LIST__) + 1;
    while (*last) ++last;
    while (--last > opaque(__CTOR_LIST__)) (*last)();
    run_table(constructors_begin, constructors_end);
}

// What gcc calls at the beginning of main().
extern "C" void __main(void) { __vexcrt_construct(); }
