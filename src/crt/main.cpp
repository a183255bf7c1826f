// The entry point of programs with main().

#include "crt/variables.h"

extern "C" int main(int, char **, char **);

extern "C" [[noreturn]] void mainCRTStartup(void) {
    int count;
    char **arguments;
    __concmdln(&count, &arguments);
    run_program([&] { return main(count, arguments, vexrt::variables<char>()); });
}
