// The entry point of programs with wWinMain().

#include "crt/startup.h"
#include "crt/windows_program.h"

extern "C" int __stdcall wWinMain(vexrt::HMODULE, vexrt::HMODULE, wchar_t *, int);

extern "C" [[noreturn]] void wWinMainCRTStartup(void) {
    run_program([] {
        return wWinMain(vexrt::GetModuleHandleA(nullptr), nullptr, __wwincmdln(), show_command());
    });
}
