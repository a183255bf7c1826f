#!/usr/bin/env bash
# The packages, unpacked elsewhere, are all that a user needs: a CMake project of his own, with vexcc by
# either compiler and with gcc and GNU ld alone, and a plain Makefile project build against them and run.
# Both packages hold the same files; the manual has a page for every export; the DLL says its version.
#
#   package.sh DIST
set -eu
root=$(cd "$(dirname "$0")/../.." && pwd)
version=$(awk '/^project/ { print $3 }' "$root/CMakeLists.txt")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
passed=0 failed=0
check() { # WHAT GOT DUE
    if [ "$2" = "$3" ]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        printf '%s: got\n%s\ndue\n%s\n' "$1" "$2" "$3"
    fi
}

mkdir zip
tar -xzf "$root/build/vexrt-$version.tar.gz"
python3 -m zipfile -e "$root/build/vexrt-$version.zip" zip
check "files of the zip that are not in the tarball" "$(diff -r "vexrt-$version" "zip/vexrt-$version")" ""
package=$work/vexrt-$version
chmod +x "$package"/bin/*
for file in LICENSE VERSION bin/vexrt.dll bin/vexrt.pdb bin/vexcc include/stdio.h lib/vexrt.lib lib/libvexrt.a \
    lib/vexcrt.lib lib/pkgconfig/vexrt.pc cmake/vexrt-config.cmake manual/html/index.html docs/getting-started.md; do
    [ -f "$package/$file" ] || echo "$file"
done >missing
check "missing in the package" "$(cat missing)" ""

# Names that begin with a letter or one underscore are what a program calls.
awk '/^[ \t]*;/ { public = /</ } public && NF && !/^[ \t]*;/ { split($1, name, "="); print name[1] }' "$root/src/vexrt.def" |
    tr -d '\r' | while read -r name; do [ -f "$package/manual/man/man3/$name.3" ] || echo "$name"; done >missing
check "exports without a manual page" "$(cat missing)" ""

cat >greet.c <<'C'
#include <stdio.h>
#include <stdlib.h>
#include <fcntl.h>
#include <unistd.h>
#include "answer.h"
_Thread_local int counter = 40;
static int constructed;
__attribute__((constructor)) static void construct(void) { constructed = 1; }
int main(int argc, char **argv)
{
    volatile long long large = 1LL << 40;
    printf("%s %d %d %d %lld\n", argc > 1 ? argv[1] : "nobody", answer(), ++counter + argc - 2, constructed, large / 1000);
    int self = open(argv[0], O_RDONLY);
    char start[3] = "";
    read(self, start, 2);
    puts(start);
    return close(self);
}
C
echo 'int answer(void);' >answer.h
echo '#include "answer.h"
int answer(void) { return 42; }' >answer.c
cat >CMakeLists.txt <<'CMAKE'
cmake_minimum_required(VERSION 3.20)
project(greet C)
find_package(vexrt REQUIRED)
add_library(answer STATIC answer.c)
add_executable(greet greet.c)
target_link_libraries(greet answer vexrt::vexrt)
vexrt_copy_dll(greet)
file(WRITE ${CMAKE_BINARY_DIR}/version ${VEXRT_VERSION})
CMAKE
cat >Makefile <<'MAKE'
CC = vexcc
CFLAGS = -O2 -Wall
greet.exe: greet.o answer.o
	$(CC) $(LDFLAGS) $^ $(LDLIBS) -o $@
greet.o answer.o: answer.h
MAKE

due='Ada 42 41 1 1099511627
MZ
status 0'
run() { # PROGRAM...
    { "$package/bin/vexrun" "$@" Ada; echo "status $?"; } 2>&1 </dev/null | tr -d '\r'
}
# In the worker's prefix: the package has none of its own.
export WINEPREFIX=${WINEPREFIX:-$root/build/wine}
toolchain=$package/cmake/vexrt-toolchain.cmake
cmake_project() { # NAME OPTION...
    local name=$1
    shift
    { cmake -S . -B "$name" "$@" && cmake --build "$name"; } >log 2>&1 || cat log
    check "CMake project, $name" "$(run "$name/greet.exe")" "$due"
    check "find_package's version, $name" "$(cat "$name/version")" "$version"
    check "the DLL beside the program, $name" "$(cmp "$name/vexrt.dll" "$package/bin/vexrt.dll" 2>&1)" ""
}
cmake_project clang --toolchain "$toolchain"
cmake_project gcc --toolchain "$toolchain" -DVEXRT_COMPILER=gcc
cmake_project gnu -DCMAKE_SYSTEM_NAME=Windows -DCMAKE_C_COMPILER=i686-w64-mingw32-gcc -DCMAKE_PREFIX_PATH="$package"
check "libraries of the program by GNU ld" \
    "$(i686-w64-mingw32-objdump -p gnu/greet.exe | sed -n 's/.*DLL Name: //p' | sort | paste -sd ' ')" "kernel32.dll vexrt.dll"

make_project() { # NAME VARIABLE...
    local name=$1
    shift
    rm -f ./*.o greet.exe
    make "$@" >log 2>&1 || cat log
    check "Makefile project, $name" "$(run ./greet.exe)" "$due"
}
make_project clang CC="$package/bin/vexcc"
make_project gcc CC="$package/bin/vexcc --compiler=gcc"
export PKG_CONFIG_PATH=$package/lib/pkgconfig
make_project "pkg-config and GNU ld" CC=i686-w64-mingw32-gcc \
    CFLAGS="$(pkg-config --cflags vexrt)" LDLIBS="$(pkg-config --libs vexrt)"
check "pkg-config's version" "$(pkg-config --modversion vexrt)" "$version"

resource=$(llvm-readobj-19 --coff-resources "$package/bin/vexrt.dll" | sed -n 's/.*|\(.*\)|$/\1/p' | tr -d '\n.')
check "version in the DLL" "$(grep -o 'FileVersion[0-9]*' <<<"$resource")" "FileVersion${version//./}"
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
