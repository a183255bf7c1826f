// The report of a failed assertion: on standard error while that is where it was at start-up, else
// in a message box.

#include "core/diagnostic.h"
#include "io/io.h"
#include "platform/kernel32.h"

#include <assert.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>

namespace vexrt {

namespace {

constexpr UINT box_style = 0x42010;        // error icon, task modal, topmost, one OK button
constexpr size_t box_text_capacity = 1024; // the system's formatter writes no more than this

struct Report {
    const char *expression, *file, *line, *function;
};

// Looked up at run time: a system without it has no debugger to offer.
bool debugger_attached() {
    auto *query = reinterpret_cast<BOOL(__stdcall *)()>(
        GetProcAddress(GetModuleHandleA("kernel32.dll"), "IsDebuggerPresent"));
    return query && query();
}

bool conformance_test() {
    SetLastError(ERROR_SUCCESS);
    return GetEnvironmentVariableA("__VEXC_CONFORMANCE_TEST__", nullptr, 0) != 0 ||
           GetLastError() == ERROR_SUCCESS;
}

bool standard_error_unchanged() {
    HANDLE now = standard_error_handle_now();
    return now != INVALID_HANDLE_VALUE && now == standard_error_at_start;
}

void show_box(const Report &report) {
    HMODULE user32 = LoadLibraryA("user32.dll");
    if (!user32) return;
    auto *format =
        reinterpret_cast<int (*)(char *, const char *, ...)>(GetProcAddress(user32, "wsprintfA"));
    auto *show = reinterpret_cast<int(__stdcall *)(void *, const char *, const char *, UINT)>(
        GetProcAddress(user32, "MessageBoxA"));
    if (format && show) {
        char text[box_text_capacity];
        format(text, "File %.255s, func %.255s, line %.16s, %.255s", report.file, report.function,
               report.line, report.expression);
        show(nullptr, text, "Assertion failed", box_style);
    }
    FreeLibrary(user32);
}

// Decimal digits of `value` in front of `end`; returns the first one.
char *decimal(int value, char *end) {
    unsigned magnitude =
        value < 0 ? 0u - static_cast<unsigned>(value) : static_cast<unsigned>(value);
    *--end = '\0';
    do *--end = static_cast<char>('0' + magnitude % 10);
    while (magnitude /= 10);
    if (value < 0) *--end = '-';
    return end;
}

const char *or_empty(const char *text) { return text ? text : ""; }

} // namespace

} // namespace vexrt

using namespace vexrt;

extern "C" void __assert(const char *expression, const char *file, int line, const char *function) {
    char digits[12];
    Report report = {or_empty(expression), or_empty(file), decimal(line, digits + sizeof digits),
                     or_empty(function)};
    bool debugged = false;
    if (conformance_test() || (!(debugged = debugger_attached()) && standard_error_unchanged())) {
        write_diagnostic("Assertion failed: ", "file ", report.file, ", func ", report.function,
                         ", line ", report.line, ", ", report.expression, "\n");
        fflush(nullptr);
    } else {
        show_box(report);
        if (debugged) return;
    }
    raise(SIGABRT);
    exit(1);
}
