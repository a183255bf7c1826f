// The entry point of programs with main().

#include "crt/startup.h"

extern "C" int main(int, char **, char **);

extern "C" [[noreturn]] void mainCRTStartup(void) {
    int count;
    char **arguments;
    __concmdln(&count, &arguments);
    run_program([&] { return main(count, arguments, reinterpret_cast<char **>(no_variables)); });
}
