// The entry point of DLLs.

#include "crt/startup.h"
#include "platform/kernel32.h"

using namespace vexrt;

extern "C" BOOL __stdcall DllMain(HMODULE module, DWORD reason, void *reserved);

extern "C" BOOL __stdcall _DllMainCRTStartup(HMODULE module, DWORD reason, void *reserved) {
    if (reason == DLL_PROCESS_ATTACH) __vexcrt_construct();
    BOOL result = DllMain(module, reason, reserved);
    bool failed_attach = reason == DLL_PROCESS_ATTACH && !result;
    if (reason == DLL_PROCESS_DETACH || failed_attach) __vexcrt_destruct();
    return result;
}
