/* The least that a program does with its C library. */
#include <stdio.h>

int main(void)
{
    puts("hello");
    return 0;
}
