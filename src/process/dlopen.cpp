// Loading of libraries at run time. Each thread remembers the last failure.

#include "core/thread_record.h"

#include <dlfcn.h>

namespace vexrt {

namespace {

// Notes how a call went, and passes its result on.
template <typename Result>
Result noted(Result result, bool done) {
    thread_record().dynamic_loading_error = done ? ERROR_SUCCESS : GetLastError();
    return result;
}

struct LoadingError {
    DWORD code;
    const char *text;
};
constexpr LoadingError loading_errors[] = {
    {32, "Sharing violation"},
    {126, "Module not found"},
    {127, "Symbol not found"},
    {193, "Invalid image format"},
};

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" void *_dlopen(const char *file, int flag) {
    DWORD flags = flag & _RTLD_UNRESOLVED ? DONT_RESOLVE_DLL_REFERENCES : 0;
    HMODULE module = file ? LoadLibraryExA(file, nullptr, flags) : GetModuleHandleA(nullptr);
    return noted<void *>(module, module);
}

extern "C" void *_dlsym(void *handle, const char *name) {
    void *symbol = GetProcAddress(static_cast<HMODULE>(handle), name);
    return noted(symbol, symbol);
}

extern "C" int _dlclose(void *handle) {
    bool done = FreeLibrary(static_cast<HMODULE>(handle));
    return noted(done ? 0 : 1, done);
}

extern "C" char *_dlerror() {
    DWORD &code = thread_record().dynamic_loading_error;
    const char *text = code ? "Operation failed" : nullptr;
    for (const LoadingError &error : loading_errors)
        if (error.code == code) text = error.text;
    code = ERROR_SUCCESS;
    return const_cast<char *>(text);
}
