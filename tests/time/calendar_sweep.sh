#!/usr/bin/env bash
# Every day from 1970 to 2099 in zones of every kind: this library's calendar against the host's. The
# host knows the zones by the rules of POSIX. VEXRT_SWEEP=full looks at every half hour.
set -eu
dist=$1
root=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
how=${VEXRT_SWEEP:-small}
passed=0 failed=0

gcc -O2 -w "$root/tests/programs/calendar_days.c" -o host
"$dist/bin/vexcc" -O2 "$root/tests/programs/calendar_days.c" -o ours.exe

compare() { # POSIX ZONE-STRING
    TZ=$1 ./host "$how" >due
    TIMEZONE=$2 "$dist/bin/vexrun" ./ours.exe "$how" 2>log | tr -d '\r' >got
    if cmp -s got due && [ "$(wc -l <due)" -ge 130 ]; then
        passed=$((passed + 1))
    else
        failed=$((failed + 1))
        echo "$2 differs from $1 in $(diff got due | grep -c '^>') years: $(diff got due | grep -m1 '^>')"
    fi
}

compare 'UTC0'                                        ':UTC:UTC:+0000'
compare 'IST-5:30'                                    ':IST:IST:+0530'
compare 'MST7'                                        ':MST:MST:-0700'
compare 'EST5EDT,M3.2.0,M11.1.0'                      ':EST:EDT:-0500:030807+7:110106+7'
compare 'PST8PDT,M4.1.0,M10.5.0'                      ':PST:PDT:-0800:040110+7:110109-7'
compare 'GMT0BST,M3.5.0/1,M10.5.0'                    ':GMT:BST:+0000:040101-7:110101-7'
compare 'CET-1CEST,M3.5.0,M10.5.0/3'                  ':CET:CEST:+0100:040101-7:110101-7'
compare 'EET-2EEST,M4.5.5/0,M10.5.4/24'               ':EET:EEST:+0200:042322+4:110121-4'
compare 'NST3:30NDT,M3.2.0/2:30,M11.1.0/2:30'         ':NST:NDT:-0330:030806+7:110105+7'
compare '<+0330>-3:30<+0430>,J79/0:30,J263/1:30'      ':IRST:IRDT:+0330:031921:091921'
compare 'HST10HDT,J60/2,J300/2'                       ':HST:HDT:-1000:030112:102711'
# South of the equator daylight time spans the new year: it is on from before the year's start until
# autumn, and on from spring until after the year's end.
compare 'AEST-10AEDT,M10.1.0,M4.1.0/3'                ':AEST:AEDT:+1000:0101-7:033116+6:093016+6:123199'
compare 'NZST-12NZDT,M9.5.0,M4.1.0/3'                 ':NZST:NZDT:+1200:0101-7:033114+6:092314+6:123199'
compare '<+1245>-12:45<+1345>,M9.5.0/2:45,M4.1.0/3:45' ':A:B:+1245:0101-7:033114+6:092314+6:123199'
compare '<-04>4<-03>,M9.1.6/24,M4.1.6/24'             ':CLT:CLST:-0400:0101-7:040203+7:090204+7:123199'

echo "$passed passed, $failed failed ($how)"
[ "$failed" -eq 0 ]
