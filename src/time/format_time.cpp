// The engine behind strftime and all its kin. A conversion is a number from the table below, a text
// from one of the locale's lists, or another format, which is expanded in its place.
//
// The time data of locales is narrow text. Where the output is wide, it is decoded by the rules of
// the thread's locale.

#include "locale/multibyte.h"
#include "time/time_text.h"
#include "time/zone.h"

#include <stdio.h>
#include <string.h>

namespace vexrt {

namespace {

// Conversions that print a field of `struct tm` plus `addend` in so many digits.
struct NumberConversion {
    int tm::*field;
    unsigned short addend;
    unsigned short digits; // 0: not such a conversion
};

struct NumberTable {
    NumberConversion of[128];
};

constexpr NumberTable make_number_table() {
    NumberTable table = {};
    table.of['d'] = {&tm::tm_mday, 0, 2};
    table.of['H'] = {&tm::tm_hour, 0, 2};
    table.of['j'] = {&tm::tm_yday, 1, 3};
    table.of['M'] = {&tm::tm_min, 0, 2};
    table.of['m'] = {&tm::tm_mon, 1, 2};
    table.of['S'] = {&tm::tm_sec, 0, 2};
    table.of['w'] = {&tm::tm_wday, 0, 1};
    table.of['Y'] = {&tm::tm_year, 1900, 4};
    return table;
}
constexpr NumberTable number_table = make_number_table();

// The place of a conversion's format in the locale's list.
constexpr int list_formats[] = {'c', 'x', 'X', 'r'};

constexpr unsigned most_digits = 10;

// A format of a locale may name others, but not without end.
constexpr int most_expansions = 5;

constexpr Item text_item(const char *text, size_t length) { return {text, text + length}; }

template <typename Char>
class TimeWriter {
public:
    TimeWriter(Char *to, size_t size, const tm &time, const LocaleRecord &data)
        : to_(to), end_(to + size - 1), time_(time), data_(data) {}

    // Expands a format that ends at `end` or, when that is null, at its terminator.
    template <typename FormatChar>
    void expand(const FormatChar *at, const FormatChar *end) {
        while (fits_ && at != end && *at) {
            if (*at == '%')
                at = convert(at, end);
            else
                at = literal(at);
        }
    }

    bool finish() {
        *to_ = 0;
        return fits_;
    }

    Char *to() const { return to_; }

private:
    enum Modifier { plain, locale_era, alternative };

    void put(Char c) {
        if (to_ == end_)
            fits_ = false;
        else
            *to_++ = c;
    }

    const Char *literal(const Char *at) {
        put(*at);
        return at + 1;
    }

    // A narrow character in wide output. What cannot be decoded stands for itself.
    template <typename Narrow>
    const Narrow *literal(const Narrow *at) {
        constexpr size_t no_limit = 0x7FFFFFFF;
        wchar_t wc;
        int taken = take_character(wc, at, no_limit, state_);
        if (taken > 0) {
            put(wc);
            return at + taken;
        }
        state_ = {};
        put(static_cast<unsigned char>(*at));
        return at + 1;
    }

    void text(Item item) {
        for (const char *at = item.begin; fits_ && at < item.end;) at = literal(at);
    }

    void number(unsigned value, unsigned digits, Modifier modifier = plain) {
        if (__builtin_expect(modifier == alternative && *data_.alternative_digits, false)) {
            Item item = list_item(data_.alternative_digits, value);
            if (!item.empty()) return text(item);
        }
        if (static_cast<size_t>(end_ - to_) < digits) {
            fits_ = false;
            return;
        }
        for (Char *digit = to_ += digits; digits; --digits, value /= 10)
            *--digit = static_cast<Char>('0' + value % 10);
    }

    // Negative values are printed as 0.
    void number(long long value, unsigned digits, Modifier modifier = plain) {
        number(value < 0 ? 0U : static_cast<unsigned>(value), digits, modifier);
    }

    void number_of(const NumberConversion &conversion, Modifier modifier) {
        int value = time_.*conversion.field, addend = conversion.addend;
        number(value < -addend ? 0U : static_cast<unsigned>(value) + static_cast<unsigned>(addend),
               conversion.digits, modifier);
    }

    void name(const char *list, int index, unsigned form) {
        if (index >= 0) text(list_item(list, 2 * static_cast<unsigned>(index) + form));
    }

    void nested(Item format) {
        if (depth_ == most_expansions) return;
        ++depth_;
        expand(format.begin, format.end);
        --depth_;
    }

    // Takes one conversion; returns what is behind it.
    template <typename FormatChar>
    const FormatChar *convert(const FormatChar *percent, const FormatChar *end) {
        const FormatChar *at = percent + 1;
        Modifier modifier = plain;
        if (at != end && (*at == 'E' || *at == 'O'))
            modifier = *at++ == 'E' ? locale_era : alternative;
        unsigned c = at == end ? 0 : static_cast<unsigned>(*at);
        bool known = c < 128;
        if (known && number_table.of[c].digits && !(c == 'Y' && modifier == locale_era))
            number_of(number_table.of[c], modifier);
        else if (known)
            known = other_number(c, modifier) || other(c, modifier);
        if (known) return at + 1;
        if (c) ++at;
        while (percent != at) percent = literal(percent); // an unknown one stands for itself
        return at;
    }

    // Numbers that are computed. Returns false for any other conversion.
    bool other_number(unsigned c, Modifier modifier) {
        switch (c) {
        case 'C': century(modifier); break;
        case 'e': day_with_blank(modifier); break;
        case 'G': number(iso_week(time_).year + 1900, 4, modifier); break;
        case 'g': number((iso_week(time_).year % 100 + 100) % 100, 2, modifier); break;
        case 'I': number((time_.tm_hour + 11LL) % 12 + 1, 2, modifier); break;
        case 'U': number(week_of_year(time_, 0), 2, modifier); break;
        case 'u': number(time_.tm_wday ? 0LL + time_.tm_wday : 7LL, 1, modifier); break;
        case 'V': number(0LL + iso_week(time_).number, 2, modifier); break;
        case 'W': number(week_of_year(time_, 1), 2, modifier); break;
        case 'Y': era_format(); break;
        case 'y': year_of_century(modifier); break;
        default: return false;
        }
        return true;
    }

    bool other(unsigned c, Modifier modifier) {
        switch (c) {
        case '%': put('%'); break;
        case 'n': put('\n'); break;
        case 't': put('\t'); break;
        case 'a': name(data_.weekdays[0], time_.tm_wday, 0); break;
        case 'A': name(data_.weekdays[1], time_.tm_wday, 1); break;
        case 'b':
        case 'h': name(data_.months[0], time_.tm_mon, 0); break;
        case 'B': name(data_.months[1], time_.tm_mon, 1); break;
        case 'p': text(list_item(data_.am_pm, time_.tm_hour >= 12)); break;
        case 'D': nested(text_item("%m/%d/%y", 8)); break;
        case 'F': nested(text_item("%Y-%m-%d", 8)); break;
        case 'R': nested(text_item("%H:%M", 5)); break;
        case 'T': nested(text_item("%H:%M:%S", 8)); break;
        case 'Z':
            text(list_item(zone(), time_.tm_isdst > 0 ? daylight_name : standard_name));
            break;
        case 'z': offset(); break;
        default: return format_of_list(c, modifier);
        }
        return true;
    }

    bool format_of_list(unsigned c, Modifier modifier) {
        for (unsigned i = 0; i < 4; ++i) {
            if (static_cast<int>(c) != list_formats[i]) continue;
            nested(list_item(data_.formats[i + (modifier == locale_era ? 6 : 1)], i));
            return true;
        }
        return false;
    }

    Era era() const { return find_era(data_.era, time_); }

    void century(Modifier modifier) {
        if (modifier == locale_era) {
            Era found = era();
            if (!found.name.empty()) return text(found.name);
        }
        number(time_.tm_year / 100 + 19LL, 2, modifier);
    }

    void era_format() {
        Era found = era();
        if (found.matches)
            nested(found.format);
        else
            number_of(number_table.of['Y'], plain);
    }

    void year_of_century(Modifier modifier) {
        Era found = modifier == locale_era ? era() : Era{};
        if (!found.matches) return number((time_.tm_year % 100 + 100LL) % 100, 2, modifier);
        unsigned digits = 1;
        for (long long rest = found.year; rest >= 10 && digits < most_digits; rest /= 10) ++digits;
        number(found.year, digits);
    }

    void day_with_blank(Modifier modifier) {
        Char *start = to_;
        number(0LL + time_.tm_mday, 2, modifier);
        if (fits_ && *start == '0') *start = ' ';
    }

    const char *zone() const { return *data_.zone ? data_.zone : process_zone_string(); }

    // Daylight time is always an hour ahead.
    void offset() {
        Item field = list_item(zone(), zone_offset);
        if (time_.tm_isdst <= 0 || field.empty()) return text(field);
        int value = zone_offset_value(zone()) + 100;
        put(value < 0 ? '-' : '+');
        number(0LL + (value < 0 ? -value : value), 4);
    }

    Char *to_;
    Char *const end_; // the terminator's last place
    const tm &time_;
    const LocaleRecord &data_;
    mbstate_t state_ = {};
    int depth_ = 0;
    bool fits_ = true;
};

} // namespace

template <typename Char>
size_t format_time(Char *to, size_t size, const Char *format, const tm &time,
                   const LocaleRecord &data) {
    TimeWriter<Char> writer(to, size, time, data);
    writer.expand(format, static_cast<const Char *>(nullptr));
    return writer.finish() ? static_cast<size_t>(writer.to() - to) : 0;
}

template size_t format_time(char *, size_t, const char *, const tm &, const LocaleRecord &);
template size_t format_time(wchar_t *, size_t, const wchar_t *, const tm &, const LocaleRecord &);

} // namespace vexrt
