// Lists as the time data of locales and zone strings have them: the first character is the
// separator, and an item lies between two separators or the last one and the end.
#pragma once

namespace vexrt {

struct Item {
    const char *begin, *end;
    bool empty() const { return begin == end; }
};

// Item `index` of a list; an empty one past the end.
inline Item list_item(const char *list, unsigned index) {
    char separator = *list;
    if (!separator) return {list, list};
    const char *at = list + 1;
    for (; index; --index) {
        while (*at && *at != separator) ++at;
        if (!*at) return {at, at};
        ++at;
    }
    const char *end = at;
    while (*end && *end != separator) ++end;
    return {at, end};
}

} // namespace vexrt
