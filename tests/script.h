/*
 * script.h - scripting of the operating system: replaces functions that a module (vexrt.dll unless
 * told otherwise) imports, and so makes them fail or answer what a test wants.
 *
 *   static void *(__stdcall *real_alloc)(void *, DWORD, size_t);
 *   static void *__stdcall no_alloc(void *heap, DWORD flags, size_t size) { return 0; }
 *   ...
 *   real_alloc = script_import("HeapAlloc", no_alloc);   replaces; returns what was there
 *   script_restore();                                    puts everything back
 *
 * `script_fail_now()` is for functions that fail once: it counts calls and is true for call number
 * `script_fail_at` (1 is the first) and, when `script_fail_on` is set, for all after it.
 *
 *   script_fail_from(3, 0);    the third call fails
 *   static void *__stdcall alloc(...) { return script_fail_now() ? 0 : real_alloc(...); }
 */
#ifndef SCRIPT_H
#define SCRIPT_H

#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

__declspec(dllimport) void *__stdcall GetModuleHandleA(const char *name);
__declspec(dllimport) int __stdcall VirtualProtect(void *start, size_t size, unsigned long protect,
                                                   unsigned long *old);

struct script_change {
    void **slot;
    void *original;
};
static struct script_change script_changes[64];
static int script_change_count;

static void script_store(void **slot, void *value)
{
    unsigned long old;
    if (!VirtualProtect(slot, sizeof *slot, 4 /* PAGE_READWRITE */, &old)) {
        fprintf(stderr, "script.h: the import table cannot be written\n");
        _Exit(2);
    }
    *slot = value;
    VirtualProtect(slot, sizeof *slot, old, &old);
}

/* The import table slot of a function in a loaded module, or null. */
static void **script_find(const char *module, const char *function)
{
    struct descriptor {
        unsigned names, stamp, chain, library, slots;
    } const *entry;
    unsigned char *base = GetModuleHandleA(module);
    if (!base) return NULL;
    unsigned header = *(unsigned *)(base + 0x3C);
    unsigned directory = *(unsigned *)(base + header + 0x80); /* imports, in a 32-bit image */
    if (!directory) return NULL;
    for (entry = (const void *)(base + directory); entry->slots; ++entry) {
        unsigned *name = (unsigned *)(base + (entry->names ? entry->names : entry->slots));
        void **slot = (void **)(base + entry->slots);
        for (; *name; ++name, ++slot)
            if (!(*name >> 31) && strcmp((char *)base + *name + 2, function) == 0) return slot;
    }
    return NULL;
}

/* Replaces what `module` imports as `function`; ends the test when it imports no such thing. */
static void *script_import_of(const char *module, const char *function, void *replacement)
{
    void **slot = script_find(module, function);
    if (!slot || script_change_count == (int)(sizeof script_changes / sizeof *script_changes)) {
        fprintf(stderr, "script.h: %s imports no %s\n", module, function);
        _Exit(2);
    }
    void *original = *slot;
    script_changes[script_change_count].slot = slot;
    script_changes[script_change_count++].original = original;
    script_store(slot, replacement);
    return original;
}

static void *script_import(const char *function, void *replacement)
{
    return script_import_of("vexrt.dll", function, replacement);
}

/* Undoes all replacements, the newest first. */
static void script_restore(void)
{
    while (script_change_count) {
        --script_change_count;
        script_store(script_changes[script_change_count].slot,
                     script_changes[script_change_count].original);
    }
}

static int script_calls, script_fail_at, script_fail_on;

/* From now on the `call`-th call of script_fail_now() is true, and with `on` those after it too. */
static void script_fail_from(int call, int on)
{
    script_calls = 0;
    script_fail_at = call;
    script_fail_on = on;
}

static int script_fail_now(void)
{
    ++script_calls;
    return script_calls == script_fail_at || (script_fail_on && script_calls > script_fail_at);
}

#endif
