/* Streams: transfer, pushback, update mode, buffering, positions, the table, indicators. */
#include "check.h"
#include "script.h"

#include <fcntl.h>
#include <io.h>
#include <stdlib.h>
#include <sys/stat.h>

__declspec(dllimport) int __stdcall DeleteFileA(const char *path);

#define NAME "streams.tmp"

static void write_file(const void *bytes, size_t size)
{
    FILE *file = fopen(NAME, "wb");
    CHECK_INT(fwrite(bytes, 1, size, file), size);
    CHECK_INT(fclose(file), 0);
}

static void check_file(const char *due, size_t size)
{
    static char bytes[8192];
    FILE *file = fopen(NAME, "rb");
    CHECK_INT(fread(bytes, 1, sizeof bytes, file), size);
    CHECK_MEM(bytes, due, size);
    fclose(file);
}

static void test_modes(void)
{
    static const struct {
        const char *mode;
        int opens;
    } cases[] = {
        {"r", 1}, {"rb", 1}, {"rb+", 1}, {"r+b", 1}, {"r+", 1}, {"a+", 1}, {"w", 1},
        {"rt", 0}, {"rbb", 0}, {"r++", 0}, {"", 0}, {"x", 0}, {"br", 0}, {"rw", 0}, {" r", 0}, {"r ", 0},
        {"wx", 0}, {"wbx", 0}, {"w+bx", 0}, {"ur", 0}, {"uw", 0}, {"r,", 0}, {"r,ccs=", 0},
        {"r,ccs=latin", 0}, {"r,ccs=UTF-8", 1}, {"r,  CCS = utf-16le  ", 1}, {"rb,ccs=UNICODE", 1},
        {"r,ccs=UTF-8x", 0}, {"rx", 1}, {"r,ccs=UTF-8,", 0},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        wchar_t wide[32];
        size_t k = 0;
        do wide[k] = (wchar_t)cases[i].mode[k];
        while (cases[i].mode[k++]);
        write_file("text\r\n", 6);
        check_label = cases[i].mode;
        FILE *file = fopen(NAME, cases[i].mode);
        CHECK_INT(file != NULL, cases[i].opens);
        if (file) fclose(file);
        write_file("text\r\n", 6);
        file = _wfopen(L"" NAME, wide);
        CHECK_INT(file != NULL, cases[i].opens);
        if (file) fclose(file);
    }
    check_label = "";
    CHECK_ERRNO(fopen("no\\such\\file", "r"), 0, ENOENT);
    CHECK_ERRNO(fopen(NULL, "r"), 0, EINVAL);
    CHECK_ERRNO(fopen(NAME, NULL), 0, EINVAL);
    DeleteFileA(NAME);
    FILE *file = fopen(NAME, "wx");
    CHECK(file != NULL);
    fclose(file);
}

static int violations, last_violation;
static void count_violation(const char *message, void *instance, errno_t code)
{
    ++violations;
    last_violation = code;
    CHECK(instance == NULL);
    CHECK_STR(message, strerror(code));
}

static void test_checked_opening(void)
{
    FILE *file = stdin;
    set_constraint_handler_s(count_violation);
    CHECK_INT(fopen_s(&file, "missing.tmp", "r"), 2);
    CHECK(file == NULL);
    CHECK_INT(violations, 0);
    file = stdin;
    CHECK_INT(fopen_s(&file, NULL, "r"), EINVAL);
    CHECK(file == NULL);
    CHECK_INT(fopen_s(&file, NAME, NULL), EINVAL);
    CHECK_INT(fopen_s(NULL, NAME, "r"), EINVAL);
    CHECK_INT(violations, 3);
    CHECK_INT(last_violation, EINVAL);
    write_file("abc", 3);
    CHECK_INT(fopen_s(&file, NAME, "uw"), 0); /* u is passed over; nobody else may open the file */
    CHECK_ERRNO(fopen(NAME, "r"), 0, EACCES);
    FILE *same = NULL;
    CHECK_INT(freopen_s(&same, NAME, "r", file), 0);
    CHECK(same == file);
    fclose(file);
    file = fopen(NAME, "r");
    CHECK_INT(freopen_s(&same, "missing.tmp", "r", file), ENOENT);
    CHECK(same == NULL);
    errno = 0;
    CHECK_INT(freopen_s(&same, NAME, "rt", fopen(NAME, "r")), EINVAL);
    set_constraint_handler_s(NULL);
}

static void test_pushback(void)
{
    write_file("0123456789", 10);
    FILE *file = fopen(NAME, "rb");
    CHECK_INT(fgetc(file), '0');
    CHECK_INT(ungetc(0x141, file), 0x141);
    CHECK_INT(ftell(file), 0);
    CHECK_INT(fgetc(file), 0x41);
    for (int i = 0; i < 8; ++i) CHECK_INT(ungetc('a' + i, file), 'a' + i);
    CHECK_INT(ungetc('z', file), EOF);
    CHECK_INT(ungetc(EOF, file), EOF);
    char text[16] = "";
    CHECK_INT(fread(text, 1, 12, file), 12); /* pushed-back bytes, newest first, then the file */
    CHECK_MEM(text, "hgfedcba1234", 12);
    CHECK_INT(fgetc(file), '5');
    while (fgetc(file) != EOF) {}
    CHECK(feof(file));
    CHECK_INT(ungetc('x', file), 'x');
    CHECK(!feof(file));
    CHECK_INT(fgetc(file), 'x');
    CHECK_INT(fgetc(file), EOF);
    ungetc('y', file);
    CHECK_INT(fseek(file, 4, SEEK_SET), 0); /* positioning drops what was pushed back */
    CHECK_INT(fgetc(file), '4');
    fclose(file);
    file = fopen(NAME, "wb");
    CHECK_INT(ungetc('x', file), EOF);
    fclose(file);
}

static void test_update(void)
{
    write_file("0123456789", 10);
    FILE *file = fopen(NAME, "rb+");
    CHECK_INT(fgetc(file), '0');
    CHECK_INT(fputc('x', file), EOF); /* no positioning in between */
    CHECK(ferror(file));
    clearerr(file);
    CHECK_INT(fseek(file, 0, SEEK_CUR), 0);
    CHECK_INT(fputc('A', file), 'A');
    CHECK_INT(fgetc(file), EOF);
    CHECK(ferror(file));
    clearerr(file);
    CHECK_INT(fflush(file), 0); /* enough between writing and reading */
    CHECK_INT(fgetc(file), '2');
    fseek(file, -1, SEEK_END);
    fputs("XY", file);
    rewind(file);
    CHECK_INT(fgetc(file), '0');
    fclose(file);
    check_file("0A2345678XY", 11);
    file = fopen(NAME, "ab");
    fseek(file, 0, SEEK_SET);
    fputc('!', file);
    fclose(file);
    check_file("0A2345678XY!", 12);
    file = fopen(NAME, "r");
    CHECK_INT(fputs("x", file), EOF);
    CHECK(ferror(file));
    fclose(file);
    file = fopen(NAME, "a");
    CHECK_INT(fgetc(file), EOF);
    CHECK(ferror(file) && !feof(file));
    rewind(file);
    CHECK(!ferror(file));
    fclose(file);
}

static void test_buffering(void)
{
    static char buffer[64];
    static const struct {
        const char *label;
        int mode;
        size_t size;
        long after_line, after_rest; /* bytes in the file after "ab\n" and after "cd" */
    } cases[] = {
        {"full", _IOFBF, 64, 0, 0},
        {"line", _IOLBF, 64, 4, 4},
        {"none", _IONBF, 64, 4, 6},
        {"size 0 is none", _IOFBF, 0, 4, 6},
        {"small", _IOFBF, 2, 2, 5},
    };
    for (size_t i = 0; i < sizeof cases / sizeof *cases; ++i) {
        for (int own = 0; own < 2; ++own) {
            check_label = cases[i].label;
            FILE *file = fopen(NAME, "w");
            CHECK_INT(setvbuf(file, own ? NULL : buffer, cases[i].mode, cases[i].size), 0);
            CHECK_INT(fputs("ab\n", file), 0);
            CHECK_INT(_filelength(_fileno(file)), cases[i].after_line);
            CHECK_INT(setvbuf(file, NULL, _IONBF, 0), -1); /* too late */
            fputc('c', file);
            fputc('d', file);
            CHECK_INT(_filelength(_fileno(file)), cases[i].after_rest);
            CHECK_INT(fclose(file), 0);
            check_file("ab\r\ncd", 6);
        }
    }
    check_label = "";
    FILE *file = fopen(NAME, "w");
    CHECK_INT(setvbuf(file, NULL, 3, 100), -1);
    CHECK_INT(setvbuf(file, NULL, _IOFBF, 0x7FFFFFFF), -1); /* no memory for it */
    fclose(file);
}

/* A text stream with a large buffer loses nothing at the chunk boundaries of the descriptor, however many
   of its bytes are line ends. */
static void check_large_text_buffer(int line_end_every)
{
    static char text[20000], bytes[40000];
    size_t due = 0;
    for (int i = 0; i < 20000; ++i) {
        text[i] = (char)(i % line_end_every ? 'a' + i % 26 : '\n');
        if (text[i] == '\n') bytes[due++] = '\r';
        bytes[due++] = text[i];
    }
    FILE *file = fopen(NAME, "w");
    setvbuf(file, NULL, _IOFBF, 16384);
    CHECK_INT(fwrite(text, 1, sizeof text, file), sizeof text);
    CHECK_INT(ftell(file), due);
    fclose(file);
    static char read_back[40000];
    file = fopen(NAME, "rb");
    CHECK_INT(fread(read_back, 1, sizeof read_back, file), due);
    CHECK(memcmp(read_back, bytes, due) == 0);
    fclose(file);
    file = fopen(NAME, "r");
    CHECK_INT(fread(read_back, 7, 3000, file), 20000 / 7);
    CHECK(memcmp(read_back, text, 20000 / 7 * 7) == 0);
    fclose(file);
}

static void test_large_text_buffer(void)
{
    check_large_text_buffer(1);
    check_large_text_buffer(2);
    check_large_text_buffer(61);
}

/* Blocks of every size against the same bytes one at a time. */
static void test_blocks(void)
{
    static const size_t sizes[] = {1, 511, 512, 513, 1024, 1025, 5000, 100000};
    static unsigned char bytes[100000], got[100000];
    for (size_t i = 0; i < sizeof bytes; ++i) bytes[i] = (unsigned char)(i * 7 + i / 251);
    for (size_t i = 0; i < sizeof sizes / sizeof *sizes; ++i) {
        for (int lead = 0; lead < 3; ++lead) {
            size_t size = sizes[i], total = size + (size_t)lead;
            FILE *file = fopen(NAME, "wb+");
            for (int k = 0; k < lead; ++k) fputc(bytes[size % 100 + (size_t)k], file);
            CHECK_INT(fwrite(bytes, size, 1, file), 1);
            CHECK_INT(ftell(file), total);
            rewind(file);
            for (int k = 0; k < lead; ++k) CHECK_INT(fgetc(file), bytes[size % 100 + (size_t)k]);
            CHECK_INT(fread(got, 1, size, file), size);
            CHECK(memcmp(got, bytes, size) == 0);
            CHECK_INT(ftell(file), total);
            CHECK_INT(fread(got, 1, size, file), 0);
            CHECK(feof(file));
            fclose(file);
        }
    }
    /* Whole buffers of a large block go out at once, the rest waits. */
    FILE *file = fopen(NAME, "wb");
    fputc('x', file);
    CHECK_INT(fwrite(bytes, 1, 4195, file), 4195);
    CHECK_INT(_filelength(_fileno(file)), 4096);
    CHECK_INT(ftell(file), 4196);
    fclose(file);
    write_file(bytes, 100000);
    file = fopen(NAME, "rb");
    CHECK_INT(fread(got, 0x10000, 0x10000, file), 0);
    CHECK_INT(fread(got, 0x8001, 0x20000, file), 0);
    CHECK_INT(fread(got, 0, 5, file), 0);
    CHECK_INT(ftell(file), 0);
    CHECK_INT(fread(got, 30, 4000, file), 100000 / 30);
    fclose(file);
}

static void test_positions(void)
{
    write_file("a\r\nbc\r\nd", 8);
    FILE *file = fopen(NAME, "r");
    char line[16];
    fpos_t position;
    CHECK_STR(fgets(line, sizeof line, file), "a\n");
    CHECK_INT(ftell(file), 3);
    CHECK_INT(fgetpos(file, &position), 0);
    CHECK_INT(_ftell64(file), 3);
    CHECK_STR(fgets(line, 2, file), "b");
    CHECK_INT(ftell(file), 4);
    ungetc('\n', file);
    CHECK_INT(ftell(file), 2);
    CHECK_INT(fsetpos(file, &position), 0);
    CHECK_STR(fgets(line, sizeof line, file), "bc\n");
    CHECK_INT(fseek(file, 1, SEEK_CUR), 0);
    CHECK_INT(fgetc(file), EOF);
    CHECK_INT(fseek(file, 0, 7), 0); /* an unknown origin moves nothing */
    CHECK_ERRNO(fseek(file, -1, SEEK_SET), -1, EFPOS);
    CHECK_ERRNO(fseek(file, -100, SEEK_END), -1, EFPOS);
    fclose(file);
    file = fopen(NAME, "wb");
    CHECK_INT(_fseek64(file, 0x123456789LL, SEEK_SET), 0);
    CHECK_INT(fputc('x', file), 'x');
    CHECK_INT(_ftell64(file), 0x12345678ALL);
    CHECK_ERRNO(ftell(file), -1, EFPOS);
    CHECK_INT(_fseeko(file, 3, SEEK_SET), 0);
    CHECK_INT(_ftello(file), 3);
    fclose(file);
    CHECK_ERRNO(fgetpos(stdin, NULL), -1, EINVAL);
}

static void test_table(void)
{
    static FILE *files[256];
    int count = 0;
    write_file("x", 1);
    while ((files[count] = fopen(NAME, "r")) != NULL) ++count;
    CHECK_INT(count, 253);
    CHECK_ERRNO(fopen(NAME, "r"), 0, EMFILE);
    CHECK_INT(fclose(files[100]), 0);
    FILE *again = fopen(NAME, "r");
    CHECK(again != NULL);
    files[100] = again;
    CHECK_INT(_flushall(), 256);
    CHECK_INT(_fcloseall(), 253);
    CHECK_INT(_flushall(), 3); /* the standard streams stay */
    CHECK_INT(_fileno(stdin), 0);
}

static void test_reopen(void)
{
    write_file("first", 5);
    FILE *file = fopen(NAME, "r");
    CHECK(freopen(NAME, "w", file) == file);
    fputs("second", file);
    CHECK_INT(fclose(file), 0);
    check_file("second", 6);
    file = fopen(NAME, "r");
    CHECK_ERRNO(freopen(NULL, "r", file), 0, EINVAL);
    file = fopen(NAME, "r");
    CHECK_ERRNO(freopen("missing.tmp", "r", file), 0, ENOENT);
    int fd = _open(NAME, O_RDONLY | O_BINARY);
    file = _fdopen(fd, "r");
    CHECK_INT(_setmode(fd, 0), O_BINARY);
    CHECK_INT(fgetc(file), 's');
    fclose(file);
    CHECK_ERRNO(_close(fd), -1, EBADF);
    CHECK(_fdopen(-1, "r") == NULL);
    CHECK_ERRNO(fclose(NULL), EOF, 0);
    CHECK_ERRNO(fgetc(NULL), EOF, EINVAL);
    CHECK_ERRNO(fputs("x", NULL), EOF, EINVAL);
    CHECK_ERRNO(fread(NULL, 1, 1, NULL), 0, EINVAL);
}

static int(__stdcall *real_write)(void *, const void *, unsigned, unsigned long *, void *);
static int writes;
static int __stdcall scripted_write(void *file, const void *from, unsigned size, unsigned long *done,
                                    void *overlapped)
{
    ++writes;
    if (!script_fail_now()) return real_write(file, from, size > 100 ? 100 : size, done, overlapped);
    *done = 0;
    return 1;
}

static void test_failing_writes(void)
{
    static char text[1000];
    memset(text, 'x', sizeof text);
    real_write = script_import("WriteFile", scripted_write);
    script_fail_from(1000, 0);
    FILE *file = fopen(NAME, "wb");
    CHECK_INT(fwrite(text, 1, 1000, file), 1000); /* partial writes are continued */
    CHECK_INT(fclose(file), 0);
    check_file(text, 1000);
    file = fopen(NAME, "wb");
    script_fail_from(1, 1);
    CHECK_INT(fwrite(text, 1, 300, file), 300);
    CHECK_ERRNO(fflush(file), EOF, ENOSPC);
    CHECK(ferror(file));
    CHECK_INT(fflush(file), 0); /* what could not be written is gone */
    CHECK_INT(fwrite(text, 1, 1000, file), 512);
    CHECK_INT(fputc('x', file), 'x');
    CHECK_INT(fclose(file), EOF);
    script_restore();
    check_file("", 0);
}

static void *__stdcall no_memory(void *heap, unsigned flags, size_t size) { return NULL; }

static void test_no_memory(void)
{
    unsigned threshold = 0;
    write_file("abc", 3);
    FILE *file = fopen(NAME, "rb+");
    extern __declspec(dllimport) unsigned __bheap_threshold;
    threshold = __bheap_threshold;
    __bheap_threshold = 0; /* everything from the system */
    script_import("HeapAlloc", no_memory);
    CHECK_INT(fgetc(file), 'a'); /* one byte at a time, then */
    CHECK_INT(fgetc(file), 'b');
    CHECK_INT(ftell(file), 2);
    CHECK(fopen(NAME, "r") == NULL);
    char *line = NULL;
    size_t capacity = 0;
    CHECK_ERRNO(getline(&line, &capacity, file), -1, ENOMEM);
    script_restore();
    __bheap_threshold = threshold;
    fclose(file);
}

int main(void)
{
    test_modes();
    test_checked_opening();
    test_pushback();
    test_update();
    test_buffering();
    test_large_text_buffer();
    test_blocks();
    test_positions();
    test_table();
    test_reopen();
    test_failing_writes();
    test_no_memory();
    DeleteFileA(NAME);
    return check_done();
}
