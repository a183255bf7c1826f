#!/usr/bin/env bash
# The example programs, built with each compiler, give the output that they should.
set -eu
bin=$(cd "$1/bin" && pwd)
examples=$(cd "$(dirname "$0")/../../examples" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
passed=0 failed=0

check_text() { # WHAT GOT DUE
    if [ "$2" = "$3" ]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        printf '%s: got\n%s\ndue\n%s\n' "$1" "$2" "$3"
    fi
}

# check PROGRAM INPUT DUE [ARGUMENT...]: standard output and the exit status
check() {
    local program=$1 input=$2 due=$3 got
    shift 3
    got=$(printf "$input" | { "$bin/vexrun" "$program.exe" "$@" 2>&1; echo "status $?"; } | tr -d '\r')
    check_text "$program $*" "$got" "$due"
}

build() { # COMPILER SOURCE: with the flags that its first comment asks for
    local options
    options=$(sed -n 's/^ \* options: //p' "$2")
    # shellcheck disable=SC2086
    "$bin/vexcc" --compiler=$1 -O2 $options "$2" -o "$(basename "${2%.*}").exe"
}

for compiler in clang gcc; do
    for source in "$examples"/*.c "$examples"/*.cpp "$examples"/plugin/textfilter.c; do
        build $compiler "$source"
    done
    "$bin/vexcc" --compiler=$compiler -O2 -shared "$examples/plugin/rot13.c" -o rot13.dll
    check columns '1 10 x\n2 20.5\n\n3e0 -5 7 end' "\
column    count          least       greatest           mean      deviation
     1        3              1              3              2              1
     2        3             -5           20.5            8.5         12.816
     3        1              7              7              7              0
status 0"
    mkdir -p listed/sub
    printf 'four' >listed/file.txt
    : >listed/run.bat
    touch -d '2020-02-03 04:05:06' listed/* listed .
    due=$(date -d '2020-02-03 04:05:06' '+%F %H:%M')
    check listdir '' "\
drwxrwxrwx            0 $due .
drwxrwxrwx            0 $due ..
-rw-rw-rw-            4 $due file.txt
-rwxrwxrwx            0 $due run.bat
drwxrwxrwx            0 $due sub
status 0" listed
    check minishell 'set SHELLED=yes\ncmd /c echo %%SHELLED%%\ncd listed\ncmd /c cd | count\ncmd /c exit 5\nnone\nexit 3\n' "\
yes
1 lines, $(($(cd listed && pwd | wc -c) + 2)) bytes
status 5
none: No such file or directory
status 127
status 3"
    check histogram 'one word, or two: a%%1 longer\nfinishes' "\
  1     1 ********************
  2     1 ********************
  3     2 ****************************************
  4     1 ********************
  6     1 ********************
  8     1 ********************
7 words
status 0"
    printf 12345 >Größe.txt
    printf 123 >ねこ𝄞.txt
    check filesizes '' "\
         5 Größe.txt (9 units)
         3 ねこ𝄞.txt (8 units)
nicht da.txt: No such file or directory
         8 in all
status 1" Größe.txt ねこ𝄞.txt 'nicht da.txt'
    rm -f notes
    check notelog '' 'status 0' notes first
    check notelog '' 'status 0' notes 'and a second'
    check notelog '' 'status 2' notes
    [ "$(llvm-readobj-19 --file-headers notelog.exe | grep -c IMAGE_SUBSYSTEM_WINDOWS_GUI)" = 1 ] && subsystem=windows || subsystem=other
    check_text "what notelog wrote, its subsystem" "$(tr -d '\r' <notes); $subsystem" '001 first
002 "and a second"; windows'
    printf 123456789 >digits
    : >empty
    check checksum '' 'cbf43926          9 digits
00000000          0 empty
checksum: missing: error 2
status 1' digits empty missing
    check textfilter 'Hello\nUryyb\n' '[rot13]
Uryyb
Hello
[10 letters]
status 0' ./rot13.dll
    check heapwatch '' 'heap: sound
heap: sound
leaked: no
status 0'
    check heapwatch '' 'heap: sound
heap: sound
leaked: yes
status 1' leak
    check heapwatch '' "heap: sound
heap: overwritten
at the block of 'xxxxxxxx'
status 3" overrun
done

# recode against the machine's own converter: FROM TO, and their names there
python3 - <<'PY' >text.utf8
for i in range(300):
    print(i, "x" * (i % 37), "äöü ß" * (i % 7), "é" * (i % 3), sep="\r\n" if i % 50 == 0 else " ", end="\r\n")
PY
for pair in "UTF-8 DE UTF-8 CP1252" "DE UTF-8 CP1252 UTF-8" "UTF-8 UTF-16LE UTF-8 UTF-16LE" "UTF-16LE JP UTF-16LE CP932" \
    "JP UTF-8 CP932 UTF-8" "RU UTF-16LE CP1251 UTF-16LE"; do
    set -- $pair
    case $pair in *JP*) sed 's/[äöüßé]/ねこ漢字/g' text.utf8 ;; *RU*) sed 's/[äöüßé]/щы/g' text.utf8 ;; *) cat text.utf8 ;; esac >source
    iconv -f UTF-8 -t "$3" source >input
    iconv -f UTF-8 -t "$4" source >due
    case $2 in UTF-8) printf '\357\273\277' | cat - due >marked ;; UTF-16LE) printf '\377\376' | cat - due >marked ;; *) cp due marked ;; esac
    if "$bin/vexrun" recode.exe "$1" input "$2" output && cmp output marked; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        echo "recode $1 $2 differs from iconv"
    fi
done
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
