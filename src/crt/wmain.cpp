// The entry point of programs with wmain().

#include "crt/variables.h"

extern "C" int wmain(int, wchar_t **, wchar_t **);

extern "C" [[noreturn]] void wmainCRTStartup(void) {
    int count;
    wchar_t **arguments;
    __wconcmdln(&count, &arguments);
    run_program([&] { return wmain(count, arguments, vexrt::variables<wchar_t>()); });
}
