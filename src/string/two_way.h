// Substring search in linear time and constant space.
#pragma once

namespace vexrt {

// The first occurrence of `needle`, of one character at least, or null.
char *two_way_search(const char *haystack, const char *needle);
wchar_t *two_way_search(const wchar_t *haystack, const wchar_t *needle);

} // namespace vexrt
