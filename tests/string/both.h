/* One set of names for the narrow and the wide functions: a file of cases includes itself twice,
   with WIDE undefined and defined. */
#undef CHAR
#undef T
#undef STR
#undef MEM
#undef EXT
#undef CHECK_TEXT
#undef CASES
#ifdef WIDE
#define CHAR wchar_t
#define T(text) L##text
#define STR(name) wcs##name
#define EXT(name) _wcs##name
#define MEM(name) wmem##name
#define CASES(name) wide_##name
#define CHECK_TEXT CHECK_WSTR
#else
#define CHAR char
#define T(text) text
#define STR(name) str##name
#define EXT(name) _str##name
#define MEM(name) mem##name
#define CASES(name) narrow_##name
#define CHECK_TEXT CHECK_STR
#endif
#define COUNT(array) (sizeof(array) / sizeof *(array))
