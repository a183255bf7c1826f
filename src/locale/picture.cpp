// Date and time pictures of the system ("dd.MM.yyyy") to formats of strftime ("%d.%m.%Y").

#include "locale/locale_list.h"

namespace vexrt {

namespace {

// What a run of one letter stands for, by its length; longer runs begin again. An empty text drops
// it.
struct PictureLetter {
    char letter;
    int longest;
    const char *formats[4];
};

constexpr PictureLetter date_letters[] = {
    {'d', 4, {"%d", "%d", "%a", "%A"}},
    {'M', 4, {"%m", "%m", "%b", "%B"}},
    {'y', 4, {"%y", "%y", nullptr, "%Y"}}, // of three, two are one field and the third another
    {'g', 1, {""}},
};
constexpr PictureLetter time_letters[] = {
    {'H', 2, {"%H", "%H"}}, {'h', 2, {"%I", "%I"}}, {'m', 2, {"%M", "%M"}},
    {'s', 2, {"%S", "%S"}}, {'t', 2, {"%p", "%p"}},
};

// The format of the longest run at `at`, which moves behind it; null when no letter stands there.
template <unsigned count>
const char *take_letter(const char *&at, const PictureLetter (&letters)[count]) {
    for (const PictureLetter &entry : letters) {
        if (*at != entry.letter) continue;
        int run = 1;
        while (run < entry.longest && at[run] == entry.letter) ++run;
        while (!entry.formats[run - 1]) --run;
        at += run;
        return entry.formats[run - 1];
    }
    return nullptr;
}

template <unsigned count>
char *convert(const char *at, char *to, const char *end, const PictureLetter (&letters)[count],
              bool quotes) {
    bool quoted = false;
    while (*at && end - to > 3) {
        if (quotes && *at == '\'') {
            quoted = !quoted;
            ++at;
            continue;
        }
        const char *format = quoted ? nullptr : take_letter(at, letters);
        if (format)
            while (*format) *to++ = *format++;
        else
            *to++ = *at++;
    }
    *to = '\0';
    return to;
}

} // namespace

char *convert_date_picture(const char *picture, char *to, const char *end) {
    return convert(picture, to, end, date_letters, true);
}

char *convert_time_picture(const char *picture, char *to, const char *end) {
    return convert(picture, to, end, time_letters, false);
}

} // namespace vexrt
