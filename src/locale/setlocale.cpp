// setlocale: which locale each category of a thread has, and what the combination is called.
//
// A thread begins with the shared "C" record. The first change of a category gives it a private
// copy, into which the fields of a category are then copied from the entry that was selected.

#include "core/fatal.h"
#include "core/last_error.h"
#include "core/lock.h"
#include "core/thread_record.h"
#include "heap/heap.h"
#include "locale/locale_list.h"
#include "platform/kernel32.h"
#include "startup/startup.h"

#include <locale.h>
#include <stdlib.h>
#include <string.h>

namespace vexrt {

namespace {

// ---- the list ----

// Nothing is given back while other threads may be using a locale; the process ends soon.
void release_loaded_locales() {
    if (threading_mode.many_threads) return;
    ThreadRecord &record = thread_record();
    if (record.locale != &c_locale) heap_release(record.locale);
    record.locale = &c_locale;
    for (LocaleRecord *&category : record.category_locales) category = &c_locale;
    while (LocaleRecord *loaded = c_locale.next) {
        c_locale.next = loaded->next;
        release_locale(static_cast<LoadedLocale *>(loaded));
    }
}

LocaleRecord *find_listed(const char *name, size_t length) {
    static bool registered;
    Locked guard(numbered_lock(lock_locales));
    if (!registered) {
        registered = true;
        register_internal_exit_handler(release_loaded_locales);
    }
    for (LocaleRecord *entry = &c_locale; entry; entry = entry->next)
        if (strncmp(entry->name, name, length) == 0 && !entry->name[length]) return entry;
    return nullptr;
}

// ---- names ----

constexpr unsigned category_count = locale_category_count;
constexpr unsigned all_index = category_count; // of the entry selected for all categories

// By category index; the last is that of all categories.
constexpr const char *prefixes[category_count + 1] = {
    "collate:", "ctype:", "monetary:", "numeric:", "time:", ""};

struct Component {
    const char *text;
    size_t length;
};

// The value for a prefix: that of the component with the prefix, else the first without any. An
// empty text when there is neither.
Component select_component(const char *names, const char *prefix) {
    size_t prefix_length = strlen(prefix);
    Component unprefixed = {"", 0};
    for (const char *at = names;; ++at) {
        size_t length = strcspn(at, ";");
        size_t head = strcspn(at, ":;");
        if (at[head] == ':') {
            bool wanted = head + 1 == prefix_length && strncmp(at, prefix, prefix_length) == 0;
            if (wanted) return {at + prefix_length, length - prefix_length};
        } else if (length && !unprefixed.length) {
            unprefixed = {at, length};
        }
        at += length;
        if (!*at) return unprefixed;
    }
}

LocaleRecord *select_locale(const char *names, unsigned index) {
    Component name = select_component(names, prefixes[index]);
    return name.length ? find_locale(name.text, name.length) : nullptr;
}

// Copies with the terminator; returns where that stands.
char *append(char *to, const char *text) {
    size_t length = strlen(text);
    memcpy(to, text, length + 1);
    return to + length;
}

// The name of five selections seen from that of all categories, as a heap string.
char *compose_name(LocaleRecord *const *selected) {
    const LocaleRecord *all = selected[all_index];
    unsigned same = 0;
    size_t size = strlen(all->name) + 1;
    for (unsigned i = 0; i < category_count; ++i) {
        same += selected[i] == all;
        size += strlen(prefixes[i]) + strlen(selected[i]->name) + 1;
    }
    auto *name = static_cast<char *>(malloc(size));
    if (!name) return nullptr;
    char *end = append(name, same ? all->name : "");
    for (unsigned i = 0; i < category_count; ++i) {
        if (selected[i] == all) continue;
        if (end != name) end = append(end, ";");
        end = append(append(end, prefixes[i]), selected[i]->name);
    }
    return name;
}

// ---- installing ----

constexpr unsigned char thread_multibyte_limit = 8;

void install_collate(LocaleRecord &to, const LocaleRecord &from) {
    to.lcid = from.lcid;
    memcpy(to.narrow_collation, from.narrow_collation, sizeof to.narrow_collation);
    memcpy(to.wide_collation, from.wide_collation, sizeof to.wide_collation);
}

void install_ctype(LocaleRecord &to, const LocaleRecord &from) {
    to.code_page = from.code_page;
    to.classes = from.classes;
    to.lower_case = from.lower_case;
    to.upper_case = from.upper_case;
    to.wide_mappings = from.wide_mappings;
    to.wide_classes = from.wide_classes;
    memcpy(to.decode, from.decode, sizeof to.decode);
    memcpy(to.encode, from.encode, sizeof to.encode);
    to.multibyte_max =
        from.multibyte_max < thread_multibyte_limit ? from.multibyte_max : thread_multibyte_limit;
}

// The monetary members come first in the structure, the numeric ones last.
constexpr size_t numeric_offset = offsetof(lconv, decimal_point);

void install_monetary(LocaleRecord &to, const LocaleRecord &from) {
    memcpy(&to.conventions, &from.conventions, numeric_offset);
}

void install_numeric(LocaleRecord &to, const LocaleRecord &from) {
    to.conventions.decimal_point = from.conventions.decimal_point;
    to.conventions.grouping = from.conventions.grouping;
    to.conventions.thousands_sep = from.conventions.thousands_sep;
    if (!*to.conventions.decimal_point) to.conventions.decimal_point = const_cast<char *>(".");
}

void install_time(LocaleRecord &to, const LocaleRecord &from) {
    memcpy(&to.am_pm, &from.am_pm,
           offsetof(LocaleRecord, conventions) - offsetof(LocaleRecord, am_pm));
}

constexpr void (*installers[category_count])(LocaleRecord &, const LocaleRecord &) = {
    install_collate, install_ctype, install_monetary, install_numeric, install_time};

void install(ThreadRecord &record, unsigned index, LocaleRecord *entry) {
    if (record.locale == &c_locale) {
        auto *own = static_cast<LocaleRecord *>(heap_allocate(sizeof(LocaleRecord)));
        if (!own) fatal(FatalCode::out_of_memory);
        *own = c_locale;
        record.locale = own;
    }
    installers[index](*record.locale, *entry);
    record.category_locales[index] = entry;
}

// ---- the call ----

// What "" stands for.
const char *default_name(char *room, int size) {
    bool known = GetLocaleInfoA(GetUserDefaultLCID(), LOCALE_SISO3166CTRYNAME, room, size);
    return known ? room : "C";
}

// Fills in the entries that the call asks for. False when one cannot be had.
bool select_all(int category, const char *names, LocaleRecord **selected) {
    for (unsigned i = 0; i < category_count; ++i) {
        if (!(category >> i & 1)) continue;
        LocaleRecord *entry = select_locale(names, i);
        if (!entry) return false;
        selected[i] = entry;
    }
    if (category != LC_ALL) return true;
    if (LocaleRecord *all = select_locale(names, all_index)) selected[all_index] = all;
    return true;
}

// The selection for all categories serves the name of this call alone: the thread's own stays the
// "C" entry.
char *change_locale(ThreadRecord &record, int category, const char *names) {
    LocaleRecord *selected[category_count + 1];
    memcpy(selected, record.category_locales, sizeof selected);
    if (!select_all(category, names, selected)) return nullptr;
    if (memcmp(selected, record.category_locales, sizeof selected) == 0) return record.locale_name;
    char *name = compose_name(selected);
    if (!name) return nullptr;
    for (unsigned i = 0; i < category_count; ++i)
        if (selected[i] != record.category_locales[i]) install(record, i, selected[i]);
    heap_release(record.locale_name);
    return record.locale_name = name;
}

} // namespace

// Two threads that load the same new name at once may make two entries; both are good.
LocaleRecord *find_locale(const char *name, size_t length) {
    if (LocaleRecord *entry = find_listed(name, length)) return entry;
    LoadedLocale *loaded = load_locale(name, length);
    if (!loaded) return nullptr;
    Locked guard(numbered_lock(lock_locales));
    loaded->next = c_locale.next;
    c_locale.next = loaded;
    return loaded;
}

} // namespace vexrt

using namespace vexrt;

extern "C" char *setlocale(int category, const char *locale) {
    ThreadRecord &record = thread_record();
    if (!locale) return record.locale_name;
    if (category & ~LC_ALL) return nullptr;
    LastErrorKept kept;
    char name[80];
    if (!*locale) locale = default_name(name, sizeof name);
    return change_locale(record, category, locale);
}
