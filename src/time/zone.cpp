// Which zone string counts, and what each thread keeps of it.

#include "time/zone.h"

#include "core/thread_record.h"
#include "heap/heap.h"
#include "locale/locale_record.h"
#include "time/list.h"

namespace vexrt {

namespace {

constexpr bool is_digit(char c) { return c >= '0' && c <= '9'; }

constexpr int longest_offset = 1299; // fields of more are no offsets

const char *zone_string_of(const ThreadRecord &record) {
    const char *zone = record.locale->zone;
    return *zone ? zone : process_zone_string();
}

// -530 is five hours and thirty minutes.
constexpr int minutes_of(int offset) { return offset - 40 * (offset / 100); }

[[gnu::noinline]] void parse_zone(ThreadRecord &record, const char *zone) {
    heap_release(record.spare_buffer);
    record.spare_buffer = parse_zone_rules(zone);
    record.zone_offset_minutes = minutes_of(zone_offset_value(zone));
    record.zone_string = const_cast<char *>(zone);
}

} // namespace

const char *current_zone_string() { return zone_string_of(thread_record()); }

// The text is known by its address: none is ever changed in place.
Zone current_zone() {
    ThreadRecord &record = thread_record();
    const char *zone = zone_string_of(record);
    if (__builtin_expect(zone != record.zone_string, false)) parse_zone(record, zone);
    return {record.zone_offset_minutes, static_cast<const ZoneRule *>(record.spare_buffer)};
}

int zone_offset_value(const char *zone) {
    Item field = list_item(zone, zone_offset);
    const char *at = field.begin;
    bool negative = *at == '-';
    if (!field.empty() && (*at == '-' || *at == '+')) ++at;
    int value = 0;
    if (at == field.end) return 0;
    for (; at != field.end; ++at) {
        if (!is_digit(*at)) return 0;
        value = 10 * value + (*at - '0');
        if (value > longest_offset) return 0;
    }
    return negative ? -value : value;
}

} // namespace vexrt
