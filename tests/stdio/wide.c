/* Wide streams: every encoding, every small buffer, orientation, pushback, positions, formatted members. */
#include "check.h"
#include "script.h"

#include <fcntl.h>
#include <io.h>
#include <locale.h>
#include <stdlib.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);
#define NAME "stdio-wide.tmp"

static const char *const encodings[] = {"", ",ccs=UTF-8", ",ccs=UTF-16LE", ",ccs=UNICODE"};

static FILE *open_with(const char *mode, const char *encoding, size_t buffer)
{
    char full[40];
    FILE *file = fopen(NAME, strcat(strcpy(full, mode), encoding));
    if (file && buffer) setvbuf(file, NULL, buffer == 1 ? _IONBF : _IOFBF, buffer);
    return file;
}

static size_t bytes_of_file(unsigned char *to, size_t size)
{
    FILE *file = fopen(NAME, "rb");
    size_t count = fread(to, 1, size, file);
    fclose(file);
    return count;
}

/* A text with characters of every length; its lines do not end with the buffers. */
static size_t make_text(wchar_t *text, int unicode)
{
    size_t length = 0;
    for (int i = 0; i < 300; ++i) {
        length += (size_t)swprintf(text + length, 100, L"%d %.*ls\n", i, i % 40, L"abcdefghijklmnopqrstuvwxyzabcdefghijklmn");
        if (!unicode) continue;
        for (int k = 0; k < i % 5; ++k) {
            text[length++] = 0xE9;
            text[length++] = 0x0100; /* its low byte is 0 */
            text[length++] = 0x20AC;
            text[length++] = 0x0A0D;
            text[length++] = 0xD83D;
            text[length++] = 0xDE00;
        }
    }
    text[length] = 0;
    return length;
}

/* The same text by characters, by lines and by formats comes back through every buffer. */
static void test_round_trips(void)
{
    static wchar_t text[20000], back[20000];
    static const size_t buffers[] = {0, 1, 2, 3, 4, 5, 7, 64, 511, 4096};
    for (size_t e = 0; e < 4; ++e)
        for (size_t b = 0; b < sizeof buffers / sizeof *buffers; ++b) {
            char label[40];
            sprintf(label, "%s, buffer %u", encodings[e], (unsigned)buffers[b]);
            check_label = label;
            size_t length = make_text(text, e != 0);
            FILE *file = open_with("w", encodings[e], buffers[b]);
            size_t half = length / 2;
            for (size_t i = 0; i < half; ++i)
                if (fputwc(text[i], file) != text[i]) CHECK_INT(i, -1);
            CHECK_INT(fputws(text + half, file), 0);
            CHECK_INT(fclose(file), 0);
            file = open_with("r", e ? ",ccs=UTF-8" : "", buffers[b]); /* the mark decides */
            size_t count = 0;
            for (wint_t wc; count < half && (wc = fgetwc(file)) != WEOF;) back[count++] = (wchar_t)wc;
            while (count < length && fgetws(back + count, 33, file)) count += wcslen(back + count);
            CHECK_INT(count, length);
            CHECK_MEM(back, text, 2 * length);
            CHECK_INT(fgetwc(file), WEOF);
            CHECK(feof(file) && !ferror(file));
            fclose(file);
        }
    check_label = "";
}

/* Line ends alone take the most room below; a large buffer loses none of them. */
static void test_many_line_ends(void)
{
    for (size_t e = 1; e < 3; ++e) {
        int count = 0;
        FILE *file = open_with("w", encodings[e], 8192);
        for (int i = 0; i < 4000; ++i) fputwc(L'\n', file);
        fclose(file);
        file = open_with("r", encodings[e], 0);
        while (fgetwc(file) == L'\n') ++count;
        CHECK_INT(count, 4000);
        CHECK(feof(file));
        fclose(file);
    }
}

/* Every character of the basic plane but Ctrl-Z, which ends a text, and WEOF; lone surrogates are not for
   UTF-8. */
static void test_every_character(void)
{
    for (size_t e = 1; e < 3; ++e) {
        int wrong = 0;
        check_label = encodings[e];
        FILE *file = open_with("w", encodings[e], 0);
        for (int wc = 1; wc < 0xFFFF; ++wc)
            if (wc != 0x1A && (e == 2 || wc < 0xD800 || wc > 0xDFFF)) wrong += fputwc((wchar_t)wc, file) != wc;
        fclose(file);
        file = open_with("r", encodings[e], 0);
        for (int wc = 1; wc < 0xFFFF; ++wc)
            if (wc != 0x1A && (e == 2 || wc < 0xD800 || wc > 0xDFFF)) wrong += fgetwc(file) != wc;
        CHECK_INT(wrong, 0);
        CHECK_INT(fgetwc(file), WEOF);
        fclose(file);
    }
    check_label = "";
}

static void test_bytes(void)
{
    static const struct {
        const char *encoding;
        size_t size;
        const char *bytes;
    } cases[] = {
        {"", 4, "a\xE9\r\n"},
        {",ccs=UTF-8", 12, "\xEF\xBB\xBF" "a\xC3\xA9\r\n\xF0\x9F\x98\x80"},
        {",ccs=utf-16le", 14, "\xFF\xFE" "a\0\xE9\0\r\0\n\0\x3D\xD8\x00\xDE"},
        {", CCS = Unicode ", 14, "\xFF\xFE" "a\0\xE9\0\r\0\n\0\x3D\xD8\x00\xDE"},
    };
    for (size_t i = 0; i < 4; ++i) {
        unsigned char bytes[40];
        check_label = cases[i].encoding;
        FILE *file = open_with("w", cases[i].encoding, i % 2);
        fputws(L"a\xE9\n", file);
        if (i) fputwc(0xD83D, file), fputwc(0xDE00, file);
        fclose(file);
        CHECK_INT(bytes_of_file(bytes, sizeof bytes), cases[i].size);
        CHECK_MEM(bytes, cases[i].bytes, cases[i].size);
        /* appended text has no second mark; reading finds the encoding by the mark, but for "UNICODE", which
           stands for an encoding only where a file is made */
        file = open_with("a", i ? ",ccs=UTF-8" : "", 0);
        fputws(L"z", file);
        fclose(file);
        file = open_with("r", ",ccs=UNICODE", 0);
        CHECK_INT(fgetwc(file), (unsigned char)cases[i].bytes[0]);
        fclose(file);
        file = open_with("r", i ? ",ccs=UTF-16LE" : "", 0);
        wchar_t line[20];
        CHECK_WSTR(fgetws(line, 20, file), L"a\xE9\n");
        CHECK_WSTR(fgetws(line, 20, file), i ? L"\xD83D\xDE00z" : L"z");
        fclose(file);
    }
    check_label = "";
    FILE *file = open_with("w", ",ccs=UTF-8", 0);
    fputwc(0xD83D, file); /* half of a pair, and no other half */
    fputwc(L'x', file);
    CHECK_INT(fclose(file), 0);
    unsigned char bytes[20];
    CHECK_INT(bytes_of_file(bytes, sizeof bytes), 7);
    CHECK_MEM(bytes, "\xEF\xBB\xBF\xEF\xBF\xBDx", 7);
    file = fopen(NAME, "wb");
    fwrite("\xFE\xFF\0a", 1, 4, file); /* the other byte order */
    fclose(file);
    CHECK(!open_with("r", ",ccs=UTF-8", 0));
    file = fopen(NAME, "wb");
    fwrite("no mark", 1, 7, file);
    fclose(file);
    file = open_with("r", ",ccs=UTF-8", 0); /* then it is plain text */
    CHECK_INT(fgetwc(file), 'n');
    fclose(file);
}

static void test_orientation(void)
{
    FILE *file = open_with("w+", "", 0);
    CHECK_INT(fwide(file, 0), 0);
    CHECK_INT(fwide(file, 1), 1);
    CHECK_INT(fwide(file, -1), 1);
    CHECK_INT(fputc('x', file), EOF);
    CHECK(ferror(file));
    clearerr(file);
    CHECK_INT(fputwc(L'x', file), 'x');
    CHECK_INT(fgetwc(file), WEOF); /* without a positioning call in between */
    rewind(file);
    CHECK_INT(fgetwc(file), 'x');
    CHECK_INT(fgetc(file), EOF);
    fclose(file);
    file = open_with("r", "", 0);
    CHECK_INT(fwide(file, -1), -1);
    CHECK_INT(fwide(file, 1), -1);
    CHECK_INT(fgetwc(file), WEOF);
    CHECK(ferror(file) && !feof(file));
    fclose(file);
    CHECK_ERRNO(fputwc(L'x', NULL), WEOF, EINVAL);
    CHECK_ERRNO(fputws(NULL, stdout), -1, EINVAL);
    CHECK(!fgetws(NULL, 3, stdin) && !fgetws((wchar_t[1]){0}, 0, stdin));
}

/* Bytes have no business on a stream that writes wide characters, wherever in memory its buffer lies: below
   the record, too, which takes a young heap. */
static void test_bytes_between_wide_characters(void)
{
    for (int buffer_below = 1; buffer_below >= 0; --buffer_below) {
        unsigned char bytes[8];
        void *holes[40];
        for (int i = 0; i < 40; ++i) holes[i] = malloc(600);
        FILE *file = open_with("w+", "", 0);
        for (int i = 0; i < 40 && buffer_below; ++i) free(holes[i]);
        fputwc(L'a', file);
        CHECK_INT(fputc('x', file), EOF);
        CHECK(ferror(file));
        CHECK_INT(fgetc(file), EOF);
        fputwc(L'b', file);
        fclose(file);
        for (int i = 0; i < 40 && !buffer_below; ++i) free(holes[i]);
        CHECK_INT(bytes_of_file(bytes, sizeof bytes), 2);
        CHECK_MEM(bytes, "ab", 2);
    }
}

static void test_pushback_and_positions(void)
{
    for (size_t e = 0; e < 3; ++e) {
        wchar_t text[8];
        check_label = encodings[e];
        FILE *file = open_with("w+", encodings[e], 0);
        fputws(e ? L"one\n\x20AC\xD83D\xDE00\nthree\n" : L"one\ntwo\nthree\n", file);
        rewind(file);
        if (e) fgetwc(file); /* the mark */
        CHECK_INT(fgetwc(file), 'o');
        CHECK_INT(ungetwc(L'2', file), '2');
        CHECK_INT(ungetwc(L'1', file), '1');
        CHECK_INT(ungetwc(L'0', file), WEOF);
        CHECK_INT(ungetwc(WEOF, file), WEOF);
        CHECK_INT(fgetwc(file), '1');
        CHECK_INT(fgetwc(file), '2');
        CHECK_WSTR(fgetws(text, 8, file), L"ne\n");
        long second = ftell(file);
        CHECK_INT(second, e == 0 ? 5 : e == 1 ? 8 : 12);
        fpos_t position;
        fgetpos(file, &position);
        fgetws(text, 8, file);
        CHECK_INT(ftell(file), e == 0 ? 10 : e == 1 ? 17 : 22);
        CHECK_INT(fseek(file, second, SEEK_SET), 0);
        CHECK_INT(fgetwc(file), e ? 0x20AC : 't');
        CHECK_INT(ungetwc(L'q', file), 'q');
        CHECK_INT(fsetpos(file, &position), 0); /* drops it */
        CHECK_INT(fgetwc(file), e ? 0x20AC : 't');
        rewind(file);
        if (e) fgetwc(file);
        fgetwc(file);
        fseek(file, 0, SEEK_CUR);
        fputwc(L'!', file);
        rewind(file);
        if (e) fgetwc(file);
        CHECK_WSTR(fgetws(text, 8, file), L"o!e\n");
        fclose(file);
    }
    check_label = "";
}

static void test_formatted(void)
{
    for (size_t e = 0; e < 3; ++e)
        for (size_t buffer = 0; buffer < 2; ++buffer) {
            int number = 0, consumed = 0;
            wchar_t word[8] = L"";
            char narrow[8] = "";
            check_label = encodings[e];
            FILE *file = open_with("w", encodings[e], buffer);
            CHECK_INT(fwprintf(file, L"%d %ls %s\n", 42, L"h\xE9h", "yes"), 11);
            CHECK_INT(fwprintf_s(file, L"%*d\n", 700, 7), 701);
            fclose(file);
            file = open_with("r", encodings[e], buffer);
            CHECK_INT(fwscanf(file, L"%d%ls%n", &number, word, &consumed), 2);
            CHECK_INT(number, 42);
            CHECK_WSTR(word, L"h\xE9h");
            CHECK_INT(consumed, 6);
            CHECK_INT(fwscanf_s(file, L"%s", narrow, (rsize_t)4), 1);
            CHECK_STR(narrow, "yes");
            CHECK_INT(fgetwc(file), '\n');
            CHECK_INT(fwscanf(file, L"%d", &number), 1);
            CHECK_INT(number, 7);
            CHECK_INT(fwscanf(file, L"%d", &number), -1);
            fclose(file);
        }
    check_label = "";
}

static void test_lines(void)
{
    FILE *file = open_with("w", ",ccs=UTF-8", 0);
    fputws(L"first line\n", file);
    for (int i = 0; i < 1000; ++i) fputwc(0x4E00 + i, file);
    fputws(L"|rest", file);
    fclose(file);
    file = open_with("r", ",ccs=UTF-8", 0);
    wchar_t *line = NULL;
    size_t capacity = 0;
    CHECK_INT(getwline(&line, &capacity, file), 11);
    CHECK_INT(getwdelim(&line, &capacity, L'|', file), 1001);
    CHECK(capacity > 1001 && line[999] == 0x4E00 + 999 && line[1000] == L'|');
    CHECK_INT(getwline(&line, &capacity, file), 4);
    CHECK_WSTR(line, L"rest");
    CHECK_INT(getwline(&line, &capacity, file), -1);
    free(line);
    fclose(file);
}

/* Multibyte text of a locale with two-byte characters, cut by every buffer; what is no character. */
static void test_multibyte(void)
{
    setlocale(LC_ALL, "JP");
    for (size_t buffer = 1; buffer < 8; ++buffer) {
        FILE *file = open_with("w", "", buffer);
        for (int i = 0; i < 50; ++i) CHECK_INT(fputws(L"a\x3042\x30A2z", file), 0);
        CHECK_ERRNO(fputwc(0xE9F0 - 0x0A00 + 0x0A00, file) == WEOF, 1, EILSEQ); /* no such character in it */
        CHECK(ferror(file));
        fclose(file);
        file = open_with("r", "", buffer);
        int wrong = 0;
        for (int i = 0; i < 50; ++i)
            for (const wchar_t *due = L"a\x3042\x30A2z"; *due; ++due) wrong += fgetwc(file) != *due;
        CHECK_INT(wrong, 0);
        CHECK_INT(fgetwc(file), WEOF);
        CHECK(feof(file));
        fclose(file);
    }
    FILE *file = fopen(NAME, "wb");
    fwrite("x\x82", 1, 2, file); /* the file ends inside a character */
    fclose(file);
    file = open_with("r", "", 0);
    CHECK_INT(fgetwc(file), 'x');
    CHECK_ERRNO(fgetwc(file), WEOF, EILSEQ);
    CHECK(ferror(file));
    rewind(file); /* drops the half character */
    CHECK_INT(fgetwc(file), 'x');
    fclose(file);
    setlocale(LC_ALL, "C");
}

/* A pipe that delivers byte by byte, whatever is asked for. */
static int(__stdcall *real_read)(void *, void *, unsigned long, unsigned long *, void *);
static int __stdcall one_byte(void *handle, void *to, unsigned long count, unsigned long *done, void *overlapped)
{
    return real_read(handle, to, count ? 1 : 0, done, overlapped);
}

static void test_pipes(void)
{
    static const wchar_t text[] = L"a\xE9\r\x20AC\r\n\xD83D\xDE00\nz";
    static const wchar_t due[] = L"a\xE9\r\x20AC\n\xD83D\xDE00\nz"; /* the writer doubles the return */
    for (int trickle = 0; trickle < 2; ++trickle) {
        int ends[2];
        CHECK_INT(_pipe(ends, 4096, O_BINARY), 0);
        _setmode(ends[1], O_U8TEXT);
        _setmode(ends[0], O_U8TEXT);
        FILE *out = _fdopen(ends[1], "w"), *in = _fdopen(ends[0], "r");
        CHECK_INT(fputws(text, out), 0);
        fclose(out);
        wchar_t back[40] = L"";
        size_t count = 0;
        if (trickle) real_read = script_import("ReadFile", one_byte);
        for (wint_t wc; count < 39 && (wc = fgetwc(in)) != WEOF;) back[count++] = (wchar_t)wc;
        script_restore();
        CHECK(!ferror(in));
        fclose(in);
        wchar_t plain[40] = L"";
        for (size_t i = 0, k = 0; i < count; ++i) /* "\r\r\n" may come back as a return of its own and a line end */
            if (!(back[i] == L'\r' && back[i + 1] == L'\n')) plain[k++] = back[i];
        CHECK_WSTR(plain, due);
    }
}

int main(void)
{
    test_bytes_between_wide_characters();
    test_round_trips();
    test_many_line_ends();
    test_every_character();
    test_bytes();
    test_orientation();
    test_pushback_and_positions();
    test_formatted();
    test_lines();
    test_multibyte();
    test_pipes();
    DeleteFileA(NAME);
    return check_done();
}
