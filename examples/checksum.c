/*
 * checksum: CRC-32 and size of files. Mixes the platform's <windows.h>, for mapping files into memory, with
 * this library's headers.
 *
 *   checksum FILE...
 */
#include <windows.h>

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

static uint32_t table[256];

static void make_table(void)
{
    for (uint32_t i = 0; i < 256; ++i) {
        table[i] = i;
        for (int bit = 0; bit < 8; ++bit) table[i] = table[i] >> 1 ^ (table[i] & 1 ? 0xEDB88320 : 0);
    }
}

static uint32_t checksum(const unsigned char *data, size_t size)
{
    uint32_t sum = UINT32_MAX;
    for (size_t i = 0; i < size; ++i) sum = sum >> 8 ^ table[(sum ^ data[i]) & 255];
    return ~sum;
}

/* Prints the line of one file; returns 0 if it could not be read. */
static int report(const char *name)
{
    HANDLE file = CreateFileA(name, GENERIC_READ, FILE_SHARE_READ, NULL, OPEN_EXISTING, 0, NULL);
    HANDLE mapping;
    const void *data = "";
    DWORD size;
    if (file == INVALID_HANDLE_VALUE) {
        fprintf(stderr, "checksum: %s: error %lu\n", name, (unsigned long)GetLastError());
        return 0;
    }
    size = GetFileSize(file, NULL);
    mapping = CreateFileMappingA(file, NULL, PAGE_READONLY, 0, 0, NULL); /* none of an empty file */
    if (mapping) data = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
    if (data) printf("%08x %10lu %s\n", (unsigned)checksum(data, size), (unsigned long)size, name);
    if (mapping && data) UnmapViewOfFile(data);
    if (mapping) CloseHandle(mapping);
    CloseHandle(file);
    return data != NULL;
}

int main(int argc, char **argv)
{
    int failures = 0;
    make_table();
    for (int i = 1; i < argc; ++i) failures += !report(argv[i]);
    return failures ? EXIT_FAILURE : EXIT_SUCCESS;
}
