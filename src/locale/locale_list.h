// The locales that have been loaded: a list behind the built-in one, each entry with its own name
// and filled once from the system's data.
#pragma once

#include "locale/locale_record.h"

namespace vexrt {

// The locale of a name of `length` bytes: "C", or the country code of an installed locale. Null
// when there is none, when the system cannot tell all about it, or without memory.
LocaleRecord *find_locale(const char *name, size_t length);

// A loaded locale: the record and what it points at.
struct LoadedLocale : LocaleRecord {
    ByteTable<unsigned short> class_table;
    ByteTable<short> lower_table, upper_table;
    ByteTable<unsigned short> collation_table;
    struct Text *texts; // every string of the record
};

// Null on failure, with nothing left behind.
LoadedLocale *load_locale(const char *name, size_t length);
void release_locale(LoadedLocale *locale);

// The system's date and time pictures as strftime formats, into `size` bytes, terminated. Return
// where the text ends.
char *convert_date_picture(const char *picture, char *to, const char *end);
char *convert_time_picture(const char *picture, char *to, const char *end);

} // namespace vexrt
