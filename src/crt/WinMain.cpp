// The entry point of programs with WinMain().

#include "crt/startup.h"
#include "crt/windows_program.h"

extern "C" int __stdcall WinMain(vexrt::HMODULE, vexrt::HMODULE, char *, int);

extern "C" [[noreturn]] void WinMainCRTStartup(void) {
    run_program([] {
        return WinMain(vexrt::GetModuleHandleA(nullptr), nullptr, __wincmdln(), show_command());
    });
}
