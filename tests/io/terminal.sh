#!/usr/bin/env bash
# The console in a real terminal: programs run in tmux, keys are sent to them, and the screen is what it
# should be.
#
#   terminal.sh DIST
set -eu
bin=$1/bin
root=$(cd "$(dirname "$0")/../.." && pwd)
export LC_ALL=C.UTF-8 # what goes through the terminal is UTF-8
work=$(mktemp -d)
server=vexrt-$$ # a tmux server of its own
tmux() { command tmux -L "$server" -u -f /dev/null "$@"; }
trap 'tmux kill-server 2>/dev/null || true; rm -rf "$work"' EXIT
passed=0 failed=0

# The terminal stays until it is taken away: it goes with its last process.
start() { # PROGRAM ARGUMENT...
    tmux kill-session -t test 2>/dev/null || true
    tmux new-session -d -s test -x 120 -y 20 "'$bin/vexrun' $*; echo status \$?; exec cat"
}

# Polls until the test holds: a start of Wine may take its time.
until_so() { # TEST...
    local end=$((SECONDS + 60))
    until "$@"; do
        [ $SECONDS -lt $end ] || return 1
        sleep 0.05
    done
}
screen() { tmux capture-pane -p "$@" -t test | sed -e 's/ *$//' -e '/^$/d'; }
shows() { [[ $(screen "${@:2}") == *"$1"* ]]; }
shows_only() { [ "$(screen)" = "$1" ]; }

check() { # TEST DUE [OPTION]
    if until_so "$@"; then passed=$((passed + 1)); else
        failed=$((failed + 1))
        printf 'the screen is\n%s\ndue\n%s\n' "$(screen)" "$2"
    fi
}
# Sends keys and waits for what they make the program write.
press() { # TEXT KEY...
    tmux send-keys -t test "${@:2}"
    check shows "$1"
}

"$bin/vexcc" -O2 "$root/tests/programs/terminal.c" -o "$work/terminal.exe"
start "$work/terminal.exe"
check shows_only $'first line\nkeys:'
line='keys:'
for key in 'a 61' 'A 41' 'Up 00+48' 'F1 00+3B' 'F10 00+44' 'S-F1 00+54' 'C-F1 00+5E' 'M-F1 00+68' \
    'Right 00+4D' 'C-Left 00+73' 'PPage 00+49' 'F11 E0+85' 'F12 E0+86' 'BSpace 08' 'Enter 0D' 'C-a 01'; do
    line+=" ${key#* }"
    tmux send-keys -t test "${key% *}"
    check shows "$line"
done
press '71 end' q
check shows 'line:'
press '4 characters: hall' 'hallo' BSpace Enter
press '7 characters: wide ä€' 'wide ä€' Enter
press '2: 12 -5' '12,-5' Enter
check shows 'echoed'
press 'cursor at 1 10' e
# the first line ends where it was cleared; its words have the colours that were set
check shows_only "$(
    cat <<'END'
fired on green
keys: 61 41 00+48 00+3B 00+44 00+54 00+5E 00+68 00+4D 00+73 00+49 E0+85 E0+86 08 0D 01 71 end
line: hall
4 characters: hall
wide line: wide ä€
7 characters: wide ä€
numbers: 12,-5
2: 12 -5
after them 0D, echoed e 65
cursor at 1 10
α!
END
)"
check shows $'\e[31mred \e[42mon green' -e
tmux send-keys -t test x
check shows_only done
press 'status 3' x

# a game: straight on to the column before the food, down to its row, into it
"$bin/vexcc" -O2 "$root/examples/snake.c" -o "$work/snake.exe"
start "$work/snake.exe" -s 7
check shows 'at  6, 6'
for x in {7..26}; do press "$(printf 'at %2d, 6' "$x")" Right; done
press 'at 26, 7' Down
press 'length   5  at 27, 7' Right
press 'at 27, 8' Down
check shows_only "$(
    cat <<'END'
snake  length   5  at 27, 8
|------------------------------|
|                      *       |
|                              |
|                              |
|                              |
|                              |
|                              |
|                         oo   |
|                          oo  |
|                           @  |
|                              |
|                              |
|                              |
|------------------------------|
END
)"
press 'Goodbye. Your name:' q
press 'Ann reached a length of 5' Ann Enter
check shows 'status 0'

# in its own time the snake runs into the wall
start "$work/snake.exe" 7
check shows 'The snake has met its end. Your name:'
check shows 'at 29, 6'
press 'reached a length of 4' Bob Enter

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
