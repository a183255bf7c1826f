// Single wide characters: get, put, push back; orientation.

#include "stdio/stream_table.h"
#include "stdio/wide.h"

#include <wchar.h>

using namespace vexrt;

namespace {

wint_t get(FILE *file) {
    return with_stream(file, wint_t(WEOF), [](Stream &s) { return get_wide(s); });
}

wint_t put(wchar_t wc, FILE *file) {
    return with_stream(file, wint_t(WEOF), [wc](Stream &s) {
        return write_wide(&wc, 1, s) ? wint_t(wc) : wint_t(WEOF);
    });
}

} // namespace

extern "C" wint_t fgetwc(FILE *file) { return get(file); }
extern "C" wint_t getwc(FILE *file) { return get(file); }
extern "C" wint_t getwchar() { return get(stdin); }
extern "C" wint_t fputwc(wchar_t wc, FILE *file) { return put(wc, file); }
extern "C" wint_t putwc(wchar_t wc, FILE *file) { return put(wc, file); }
extern "C" wint_t putwchar(wchar_t wc) { return put(wc, stdout); }

extern "C" wint_t ungetwc(wint_t wc, FILE *file) {
    return with_stream(file, wint_t(WEOF), [wc](Stream &s) { return unget_wide(wc, s); });
}

extern "C" int fwide(FILE *file, int mode) {
    return with_stream(file, 0, [mode](Stream &s) {
        if (mode > 0 && !(s.flags & SF_BYTE)) s.flags |= SF_WIDE;
        if (mode < 0 && !(s.flags & SF_WIDE)) s.flags |= SF_BYTE;
        return s.flags & SF_BYTE ? -1 : s.flags & SF_WIDE ? 1 : 0;
    });
}
