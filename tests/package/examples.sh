#!/usr/bin/env bash
# The example programs, built with each compiler, give the output that they should.
set -eu
bin=$(cd "$1/bin" && pwd)
examples=$(cd "$(dirname "$0")/../../examples" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
passed=0 failed=0

# check PROGRAM INPUT DUE [ARGUMENT...]: standard output and the exit status
check() {
    local program=$1 input=$2 due=$3 got
    shift 3
    got=$(printf "$input" | { "$bin/vexrun" "$program.exe" "$@" 2>&1; echo "status $?"; } | tr -d '\r')
    if [ "$got" = "$due" ]; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        printf '%s %s: got\n%s\ndue\n%s\n' "$program" "$*" "$got" "$due"
    fi
}

for compiler in clang gcc; do
    for source in "$examples"/*.c; do
        "$bin/vexcc" --compiler=$compiler -O2 "$source" -o "$(basename "$source" .c).exe"
    done
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
