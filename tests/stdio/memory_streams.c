/* Memory streams: what is stored, when it ends, positions, the growing forms narrow and wide. */
#include "check.h"

#include <stdlib.h>

static void test_fixed(void)
{
    char memory[16], line[16];
    memset(memory, 'x', sizeof memory);
    FILE *file = fmemopen(memory, 5, "w");
    CHECK_INT(fwrite("12345678", 1, 8, file), 8); /* into the buffer ... */
    CHECK_ERRNO(fclose(file), EOF, ENOSPC);       /* ... of which four go, and the terminator */
    CHECK_MEM(memory, "1234\0xxx", 8);
    file = fmemopen(memory, 5, "wb"); /* binary: five go */
    fputs("abcde", file);
    CHECK_INT(fclose(file), 0);
    CHECK_MEM(memory, "abcdexxx", 8);
    strcpy(memory, "one\ntwo");
    file = fmemopen(memory, sizeof memory, "r");
    CHECK_INT(fseek(file, -1, SEEK_END), 0); /* an offset from the end counts backwards */
    CHECK_INT(fseek(file, 1, SEEK_END), 0);
    CHECK_INT(getc(file), 'o');
    rewind(file);
    CHECK_STR(fgets(line, 16, file), "one\n");
    CHECK_INT(ftell(file), 4);
    CHECK_INT(fseek(file, 17, SEEK_SET), -1);
    CHECK_INT(fseek(file, 16, SEEK_SET), 0);
    CHECK_INT(getc(file), EOF);
    CHECK_INT(putc('x', file), EOF);
    fclose(file);
    file = fmemopen(memory, sizeof memory, "a+");
    fputs("-three", file);
    fflush(file);
    CHECK_STR(memory, "one\ntwo-three");
    rewind(file);
    CHECK_INT(fscanf(file, "%s", line), 1);
    CHECK_STR(line, "one");
    fseek(file, 0, SEEK_SET);
    putc('O', file); /* inside the contents: no terminator */
    fclose(file);
    CHECK_STR(memory, "One\ntwo-three");
    file = fmemopen(NULL, 100, "w+");
    CHECK(fprintf(file, "%d %s", 42, "own") == 6);
    rewind(file);
    CHECK_STR(fgets(line, 7, file), "42 own");
    CHECK_INT(_fileno(file), -1);
    fclose(file);
    CHECK_ERRNO(fmemopen(memory, 0, "r") == NULL, 1, EINVAL);
    CHECK_ERRNO(fmemopen(memory, 5, NULL) == NULL, 1, EINVAL);
    CHECK(!fmemopen(memory, 5, "q") && !fmemopen(memory, 5, "r,ccs=UTF-8"));
}

static void test_growing(void)
{
    char *memory = (char *)1;
    size_t size = 99;
    FILE *file = open_memstream(&memory, &size);
    CHECK(!memory && size == 0);
    fputs("abc", file);
    fflush(file);
    CHECK_INT(size, 3);
    CHECK_STR(memory, "abc");
    for (int i = 0; i < 10000; ++i) fprintf(file, "%d,", i);
    CHECK_INT(fseek(file, 1, SEEK_SET), 0);
    putc('B', file);
    CHECK_INT(fflush(file), 0);
    CHECK_INT(size, 3 + 10 * 2 + 90 * 3 + 900 * 4 + 9000 * 5);
    CHECK_MEM(memory, "aBc0,1,2,", 9);
    CHECK_STR(memory + size - 5, "9999,");
    CHECK_INT(fseek(file, -5, SEEK_END), 0); /* beyond the end ... */
    CHECK_INT(getc(file), EOF);              /* ... where a read does not move that */
    CHECK_INT(fseek(file, -10, SEEK_END), 0); /* the gap is zero */
    putc('!', file);
    fclose(file);
    CHECK_MEM(memory + size - 12, ",\0\0\0\0\0\0\0\0\0\0!", 13);
    free(memory);
    wchar_t *wide = NULL;
    file = open_wmemstream(&wide, &size);
    CHECK_INT(fwide(file, 0), 1);
    CHECK_INT(fputwc(L'\x20AC', file), 0x20AC);
    CHECK_INT(fwprintf(file, L"%d %ls", 7, L"\xD83D\xDE00\x0100"), 5);
    CHECK_INT(fputc('x', file), EOF);
    fclose(file);
    CHECK_INT(size, 6);
    CHECK_WSTR(wide, L"\x20AC" L"7 \xD83D\xDE00\x0100");
    free(wide);
    CHECK_ERRNO(open_memstream(NULL, &size) == NULL, 1, EINVAL);
    CHECK_ERRNO(open_wmemstream(&wide, NULL) == NULL, 1, EINVAL);
}

/* More streams than there are slots; all their memory comes back. */
static void test_many(void)
{
    FILE *files[300];
    int count = 0;
    while (count < 300 && (files[count] = fmemopen(NULL, 10, "w")) != NULL) ++count;
    CHECK_INT(count, FOPEN_MAX - 3);
    while (count > 0) CHECK_INT(fclose(files[--count]), 0);
}

int main(void)
{
    test_fixed();
    test_growing();
    test_many();
    return check_done();
}
