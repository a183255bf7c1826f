// Random numbers from the system's cryptographic generator.

#include "core/constraint.h"
#include "platform/advapi32.h"
#include "platform/kernel32.h"

#include <stdlib.h>

using namespace vexrt;

namespace {

// Draws `size` bytes; ERROR_SUCCESS, or the code of the step that failed.
DWORD draw(void *to, DWORD size) {
    HCRYPTPROV provider;
    if (!CryptAcquireContextW(&provider, nullptr, nullptr, PROV_RSA_FULL,
                              CRYPT_VERIFYCONTEXT | CRYPT_SILENT))
        return GetLastError();
    bool drawn = CryptGenRandom(provider, size, static_cast<BYTE *>(to));
    DWORD error = drawn ? ERROR_SUCCESS : GetLastError();
    if (!CryptReleaseContext(provider, 0) && drawn) return GetLastError();
    return error;
}

errno_t code_of(DWORD error) {
    switch (error) {
    case ERROR_SUCCESS: return 0;
    case ERROR_FILE_NOT_FOUND: return ENOENT;
    case ERROR_NOT_ENOUGH_MEMORY:
    case NTE_NO_MEMORY: return ENOMEM;
    default: return EINVAL;
    }
}

} // namespace

extern "C" errno_t _rand_s(unsigned int *out) {
    if (!out) return report_constraint(EINVAL);
    unsigned value = 0;
    *out = 0;
    errno_t code = code_of(draw(&value, sizeof value));
    if (code == 0) *out = value;
    return code;
}
