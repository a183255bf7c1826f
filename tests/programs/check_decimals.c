/* Reads decimal texts with their numbers, double and float, and compares strtod, strtof, wcstod and a
   round trip with them. Prints the count, and the first differences. */
#include <errno.h>
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

static unsigned long cases, differences;

static void differs(const char *function, const char *text, const void *got, const void *due, size_t size)
{
    unsigned long long bits[2] = {0, 0};
    memcpy(&bits[0], got, size);
    memcpy(&bits[1], due, size);
    if (++differences <= 10)
        printf("%s(\"%s\") is %#llx, due %#llx\n", function, text, bits[0], bits[1]);
}

static void check(const char *text, double due, float narrow_due)
{
    wchar_t wide[100];
    size_t i = 0;
    do wide[i] = (unsigned char)text[i];
    while (text[i++]);
    errno = 0;
    char *end;
    double number = strtod(text, &end), from_wide = wcstod(wide, NULL);
    float narrow = strtof(text, NULL);
    if (memcmp(&number, &due, 8) || *end) differs("strtod", text, &number, &due, 8);
    if (memcmp(&from_wide, &due, 8)) differs("wcstod", text, &from_wide, &due, 8);
    if (memcmp(&narrow, &narrow_due, 4)) differs("strtof", text, &narrow, &narrow_due, 4);
}

int main(void)
{
    unsigned char length;
    char text[100];
    double due;
    float narrow_due;
    _setmode(0, O_BINARY);
    setvbuf(stdin, NULL, _IOFBF, 1 << 16);
    while (fread(&length, 1, 1, stdin) == 1 && length < sizeof text) {
        if (fread(text, 1, length, stdin) != length) break;
        text[length] = '\0';
        if (fread(&due, 8, 1, stdin) != 1 || fread(&narrow_due, 4, 1, stdin) != 1) break;
        check(text, due, narrow_due);
        ++cases;
    }
    printf("%lu texts, %lu differences\n", cases, differences);
    return differences != 0 || cases == 0;
}
