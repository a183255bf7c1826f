/* Locales: names, what a category changes, threads of their own, loads that fail. */
#include "check.h"
#include "script.h"

#include <ctype.h>
#include <limits.h>
#include <locale.h>
#include <malloc.h>
#include <time.h>
#include <wctype.h>


static void test_names(void)
{
    static const struct {
        int category;
        const char *locale, *due; /* in sequence: each call begins where the last one ended */
    } calls[] = {
        {LC_ALL, NULL, "C"},
        {0, "anything", "C"},
        {64, "C", NULL},
        {LC_ALL | 32, "US", NULL},
        {LC_ALL, "US", "US"},
        {LC_ALL, "US", "US"},
        {LC_NUMERIC, NULL, "US"}, /* no query by category */
        {LC_NUMERIC, "C", "C;collate:US;ctype:US;monetary:US;time:US"},
        {LC_ALL, "C;collate:US;ctype:US;monetary:US;time:US", "C;collate:US;ctype:US;monetary:US;time:US"},
        {LC_ALL, "c", NULL}, /* the built-in name is exact */
        {LC_ALL, "us", "us"}, /* a country code is not, but spelt anew it is another entry */
        {LC_NUMERIC | LC_TIME, "DE", "collate:us;ctype:us;monetary:us;numeric:DE;time:DE"},
        {LC_ALL, "numeric:SE;GB", "GB;numeric:SE"},
        {LC_ALL, "GB;Numeric:SE", "GB"},
        {LC_NUMERIC, "time:DE", NULL}, /* nothing for the category */
        {LC_NUMERIC, ";;C", "C;collate:GB;ctype:GB;monetary:GB;time:GB"},
        {LC_ALL, "QQ", NULL},
        {LC_ALL, "USA", NULL},
        {LC_ALL, "U", NULL},
        {LC_TIME, "time:", NULL},
        {LC_ALL, "collate:C;ctype:C;monetary:C;numeric:C;time:C", "C"},
    };
    for (size_t i = 0; i < sizeof calls / sizeof *calls; ++i) {
        check_label = calls[i].locale ? calls[i].locale : "(null)";
        CHECK_STR(setlocale(calls[i].category, calls[i].locale), calls[i].due);
    }
    for (const char *names = "US\0GB\0DE\0SE\0FR\0JP\0RU\0"; *names; names += 3) {
        check_label = names;
        CHECK_STR(setlocale(LC_ALL, names), names);
    }
    check_label = "";
    CHECK(setlocale(LC_ALL, "") != NULL);
    CHECK_STR(setlocale(LC_ALL, "C"), "C");
}

static void test_effects(void)
{
    char text[40];
    setlocale(LC_ALL, "DE");
    CHECK_STR((sprintf(text, "%.2f %g %a", 1.5, 2.25, 0.8), text), "1,50 2,25 0xc,cccccccccccdp-4");
    char *end;
    CHECK(strtod("1,5", &end) == 1.5 && !*end);
    CHECK(strtod("1.5", &end) == 1 && *end == '.');
    float value = 0;
    CHECK_INT(sscanf("3,25", "%f", &value), 1);
    CHECK(value == 3.25f);
    CHECK_INT(toupper(0xE4), 0xC4);
    CHECK_INT(tolower(0xC4), 0xE4);
    CHECK_INT(tolower(EOF), EOF);
    CHECK(isalpha(0xE4) && islower(0xE4) && !isupper(0xE4) && isupper(0xC4) && ispunct(0xA7));
    CHECK(!isalpha(EOF));
    CHECK_INT(isspace(' '), 0x40);
    CHECK(isblank('\t') && isspace('\v') && isxdigit('7') && !isgraph(' ') && isprint(' '));
    CHECK_INT(iswalpha(0xE4), 0); /* wide classes are the same everywhere */
    CHECK_INT(_stricmp("\xC4pfel", "\xE4PFEL"), 0);
    wchar_t wide;
    CHECK_INT(mbtowc(&wide, "\x80", 1), 1);
    CHECK_INT(wide, 0x20AC);
    CHECK_INT(wctomb(text, 0x20AC), 1);
    CHECK_INT((unsigned char)text[0], 0x80);
    CHECK_ERRNO(wctomb(text, 0x4E00), -1, EILSEQ);
    struct tm friday = {.tm_year = 101, .tm_mon = 2, .tm_mday = 2, .tm_wday = 5};
    CHECK_INT(strftime(text, sizeof text, "%A %a %B %x", &friday), 27);
    CHECK_STR(text, "Freitag Fr. M\xE4rz 02.03.2001");
    CHECK_STR(localeconv()->decimal_point, "."); /* never follows */
    CHECK_INT(localeconv()->frac_digits, CHAR_MAX);
    setlocale(LC_NUMERIC, "C");
    CHECK_STR((sprintf(text, "%.1f", 1.5), text), "1.5");
    CHECK_INT(toupper(0xE4), 0xC4);
    setlocale(LC_ALL, "JP");
    CHECK_INT(mbtowc(&wide, "\x82\xA0", 2), 1); /* one, though two bytes */
    CHECK_INT(wide, 0x3042);
    CHECK_ERRNO(mblen("\x82", 1), -1, EILSEQ);
    CHECK_INT(wctomb(text, 0x3042), 2);
    CHECK_INT(sscanf("\x82\xA0\x82\xA2 x", "%lc", &wide), 1); /* the engine reads whole characters */
    CHECK_INT(wide, 0x3042);
    wchar_t wides[8];
    CHECK_INT(sscanf("\x82\xA0\x82\xA2 x", "%ls%s", wides, text), 2);
    CHECK_WSTR(wides, L"\x3042\x3044");
    CHECK_STR(text, "x");
    CHECK_STR((sprintf(text, "%ls", L"\x3042z"), text), "\x82\xA0z");
    CHECK_INT(wcstombs(strcpy(text, "~~~~"), L"a\x3042z", 2), 2); /* cuts a character */
    CHECK_STR(text, "a\x82~~");
    CHECK_INT(wcstombs(NULL, L"a\x3042z", 2), 2);
    const wchar_t *from = L"a\x3042z";
    CHECK_INT(wcsrtombs(strcpy(text, "~~~~"), &from, 2, NULL), 1); /* does not */
    CHECK_STR(text, "a~~~");
    CHECK_WSTR(from, L"\x3042z");
    CHECK_INT(wcsrtombs(NULL, &from, 0, NULL), 3);
    CHECK_INT(mbstowcs(wides, "\x82\xB1z", 8), 3); /* goes on at the second byte */
    CHECK_WSTR(wides, L"\x3053\xFF71z");
    setlocale(LC_ALL, "C");
    CHECK_INT(toupper(0xE4), 0xE4);
}

__declspec(dllimport) int __stdcall IsDBCSLeadByteEx(unsigned page, unsigned char byte);

/* Half a character of two bytes belongs to no class and has no case, nor disturbs its neighbours. */
static void test_double_byte_classes(void)
{
    static const struct {
        const char *locale;
        unsigned page;
        const char *letters; /* single bytes above 0x7F that are no lead bytes */
    } cases[] = {{"JP", 932, "\xB1\xDD"}, {"KR", 949, ""}, {"TW", 950, ""}};
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        check_label = cases[i].locale;
        setlocale(LC_ALL, cases[i].locale);
        for (int c = 0; c < 256; ++c) {
            int lead = IsDBCSLeadByteEx(cases[i].page, (unsigned char)c);
            if (!lead && c >= 0x80 && !strchr(cases[i].letters, c)) continue;
            int ascii = c < 0x80, upper = ascii && c >= 'A' && c <= 'Z', lower = ascii && c >= 'a' && c <= 'z';
            CHECK_INT(!!isalpha(c), upper || lower);
            CHECK_INT(toupper(c), lower ? c - 32 : c);
            CHECK_INT(tolower(c), upper ? c + 32 : c);
            if (!ascii) CHECK(!isspace(c) && !iscntrl(c) && !isdigit(c) && !ispunct(c) && !isxdigit(c));
        }
    }
    check_label = "";
    setlocale(LC_ALL, "C");
}

__declspec(dllimport) void *__stdcall CreateThread(void *, size_t, unsigned long(__stdcall *)(void *), void *,
                                                   unsigned long, unsigned long *);
__declspec(dllimport) unsigned long __stdcall WaitForSingleObject(void *, unsigned long);

static unsigned long __stdcall other_thread(void *wrong)
{
    char text[20];
    int *count = wrong;
    *count += strcmp(setlocale(LC_ALL, NULL), "C") != 0;
    for (int i = 0; i < 200; ++i) {
        *count += !setlocale(LC_ALL, i % 2 ? "SE" : "C");
        sprintf(text, "%.1f", 2.5);
        *count += strcmp(text, i % 2 ? "2,5" : "2.5") != 0;
    }
    return 0;
}

static void test_threads(void)
{
    int wrong = 0;
    char text[20];
    setlocale(LC_ALL, "DE");
    void *thread = CreateThread(NULL, 0, other_thread, &wrong, 0, NULL);
    for (int i = 0; i < 2000; ++i) {
        sprintf(text, "%.1f", 2.5);
        wrong += strcmp(text, "2,5") != 0;
    }
    WaitForSingleObject(thread, ~0u);
    CHECK_INT(wrong, 0);
    CHECK_STR(setlocale(LC_ALL, NULL), "DE");
    setlocale(LC_ALL, "C");
}

/* The system's answers, scripted: every query fails in turn, and the load with it. */
static int(__stdcall *real_info)(unsigned long, unsigned long, char *, int);
static int queries, failing;

static int __stdcall scripted_info(unsigned long lcid, unsigned long type, char *to, int size)
{
    unsigned long kind = type & 0xFFFF;
    if (kind == 0x5A) return real_info(lcid, type, to, size);
    if (kind == 0x1004) return real_info(lcid, type, to, size);
    if (++queries == failing) return 0;
    if (kind == 0x0E) return strcpy(to, ""), 1;                       /* no decimal separator */
    if (kind == 0x1F) return strcpy(to, "dddd, d MMM 'de' yyy gg"), 1; /* a picture */
    if (kind == 0x1003) return strcpy(to, "h:mm:ss tt"), 1;
    if (kind == 0x18) return strcpy(to, "3;2;0"), 1;
    return real_info(lcid, type, to, size);
}

/* A Switzerland whose French locale has no code page, and an Austria of which none has. */
static int __stdcall unicode_only_info(unsigned long lcid, unsigned long type, char *to, int size)
{
    int result = real_info(lcid, type, to, size);
    if ((type & 0xFFFF) == 0x1004 && (lcid == 0x100C || lcid == 0x0C07)) *(unsigned long *)to = 0;
    if (type == 0x0E) return strcpy(to, "\xB7"), 2; /* the decimal separator */
    return result;
}

static int __stdcall few_locales(int(__stdcall *visit)(char *), unsigned long flags)
{
    static const char *const identifiers[] = {"nonsense", "00000C07x", "0000100C", "00000807", "00000810", "00000C07"};
    char text[10];
    for (int i = 0; i < 6 && visit(strcpy(text, identifiers[i])); ++i) continue;
    return 1;
}

static void test_search(void)
{
    char text[40];
    struct tm monday = {.tm_wday = 1};
    real_info = script_import("GetLocaleInfoA", unicode_only_info);
    script_import("EnumSystemLocalesA", few_locales);
    CHECK_STR(setlocale(LC_TIME, "CH"), "C;time:CH");
    CHECK_STR((strftime(text, sizeof text, "%A", &monday), text), "Montag"); /* the first with a code page */
    CHECK_STR(setlocale(LC_TIME, "AT"), "C;time:AT"); /* better than none */
    CHECK(!setlocale(LC_TIME, "IS"));
    setlocale(LC_NUMERIC, "CH");
    CHECK_STR((sprintf(text, "%.1f", 1.5), text), "1\xB7" "5");
    char *end;
    CHECK(strtod(text, &end) == 1.5 && !*end);
    float value = 0;
    CHECK_INT(sscanf(text, "%f", &value), 1);
    CHECK(value == 1.5f);
    script_restore();
    setlocale(LC_ALL, "C");
}

/* Pictures as long as they can be, which double in length. */
static int __stdcall long_pictures(unsigned long lcid, unsigned long type, char *to, int size)
{
    if (type != 0x1F && type != 0x1003) return real_info(lcid, type, to, size);
    for (int i = 0; i < 79; ++i) to[i] = type == 0x1F ? "dM"[i % 2] : "hm"[i % 2];
    to[79] = '\0';
    return 80;
}

static int __stdcall failing_map(unsigned long lcid, unsigned long flags, const char *from, int n, char *to, int size)
{
    return 0;
}

static void test_loading(void)
{
    char text[40];
    real_info = script_import("GetLocaleInfoA", scripted_info);
    int failed = 0, loaded = 0;
    const char *country = "FI\0NO\0DK\0IT\0ES\0PT\0NL\0PL\0CZ\0";
    for (failing = 1; failing < 100; ++failing) {
        queries = 0;
        if (!setlocale(LC_ALL, country)) ++failed;
        else if (queries < failing) break;
        else ++loaded, country += 3;
    }
    CHECK_INT(loaded, 8); /* a number that is unknown is no failure */
    CHECK_INT(failed, 7 + 3 + 2 + 14 + 24 + 2);
    CHECK_STR((sprintf(text, "%.1f", 1.5), text), "1.5");
    struct tm evening = {.tm_year = 101, .tm_mday = 2, .tm_hour = 21, .tm_min = 4};
    strftime(text, sizeof text, "%x|%X", &evening);
    CHECK(strstr(text, ", 02 ") && strstr(text, " de 0101 |09:04:00"));
    script_restore();
    script_import("LCMapStringA", failing_map);
    CHECK(!setlocale(LC_ALL, "De"));
    script_restore();
    CHECK_STR(setlocale(LC_ALL, NULL), country); /* nothing has changed */
    script_import("GetLocaleInfoA", long_pictures);
    CHECK_STR(setlocale(LC_ALL, "BE"), "BE");
    script_restore();
    char long_text[200];
    CHECK_INT(strftime(long_text, sizeof long_text, "%c%x%X", &evening), 78 * 2 + 1);
    CHECK_MEM(long_text + 150, "010201 ", 8);
    setlocale(LC_ALL, "C");
    CHECK(__heap_validate(NULL));
}

int main(void)
{
    test_names();
    test_effects();
    test_double_byte_classes();
    test_threads();
    test_search();
    test_loading();
    return check_done();
}
