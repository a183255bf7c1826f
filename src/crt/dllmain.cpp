// For DLLs that have no DllMain of their own.

#include "platform/kernel32.h"

extern "C" vexrt::BOOL __stdcall DllMain(vexrt::HMODULE, vexrt::DWORD, void *) { return true; }
