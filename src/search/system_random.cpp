// Random numbers from the system's cryptographic generator.

#include "core/constraint.h"
#include "platform/advapi32.h"
#include "platform/kernel32.h"

#include <stdlib.h>

using namespace vexrt;

namespace {

// The code of the step that failed; an error in any case, whatever the system left as its cause.
errno_t code_of_failure() {
    switch (GetLastError()) {
    case ERROR_FILE_NOT_FOUND: return ENOENT;
    case ERROR_NOT_ENOUGH_MEMORY:
    case NTE_NO_MEMORY: return ENOMEM;
    default: return EINVAL;
    }
}

errno_t draw(void *to, DWORD size) {
    HCRYPTPROV provider;
    if (!CryptAcquireContextW(&provider, nullptr, nullptr, PROV_RSA_FULL,
                              CRYPT_VERIFYCONTEXT | CRYPT_SILENT))
        return code_of_failure();
    errno_t code = CryptGenRandom(provider, size, static_cast<BYTE *>(to)) ? 0 : code_of_failure();
    if (!CryptReleaseContext(provider, 0) && code == 0) code = code_of_failure();
    return code;
}

} // namespace

extern "C" errno_t _rand_s(unsigned int *out) {
    if (!out) return report_constraint(EINVAL);
    unsigned value = 0;
    *out = 0;
    errno_t code = draw(&value, sizeof value);
    if (code == 0) *out = value;
    return code;
}
