// The part of advapi32.dll that this library calls, declared as the operating system documents it.
#pragma once

#include "platform/kernel32.h"

namespace vexrt {

using HCRYPTPROV = DWORD;

constexpr DWORD PROV_RSA_FULL = 1;
enum : DWORD { CRYPT_VERIFYCONTEXT = 0xF0000000, CRYPT_SILENT = 0x40 };
constexpr DWORD NTE_NO_MEMORY = 0x8009000E;

VEXRT_IMPORT BOOL __stdcall CryptAcquireContextW(HCRYPTPROV *, const wchar_t *container,
                                                 const wchar_t *provider, DWORD type, DWORD flags);
VEXRT_IMPORT BOOL __stdcall CryptGenRandom(HCRYPTPROV, DWORD size, BYTE *);
VEXRT_IMPORT BOOL __stdcall CryptReleaseContext(HCRYPTPROV, DWORD flags);

} // namespace vexrt
