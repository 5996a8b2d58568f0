#!/bin/sh
# Tries samples/event_log on real files and on what can go wrong with them.
set -u
. "$(dirname "$0")/sample_cases.sh"
sample_cases "$@"

log=$scratch/events.rec
# 64 bytes for each event, behind a header of 52.
header=52
event=64
length_of() { wc -c <"$1"; }
is_long() { [ "$(length_of "$log")" = $((header + $1 * event)) ]; }
same() { cmp -s "$1" "$2"; }

run "$(windows "$log")" add start 'Запуск службы'
check 'new log: succeeds' ends_with 0
check 'new log: two events long' is_long 2
run "$(windows "$log")" show
check 'new log: shows the first' says ' start'
check 'new log: shows Cyrillic' says 'Запуск службы'
check 'new log: shows two' says '2 events'

run "$(windows "$log")" fill 150
check 'ring: succeeds' ends_with 0
check 'ring: stays at its size' is_long 100
run "$(windows "$log")" show
check 'ring: shows a hundred' says '100 events'
check 'ring: has the newest' says '  event 150'
check 'ring: has given up the oldest' lacks ' start'

truncate -s $((header + 40 * event + 10)) "$log"
run "$(windows "$log")" show
check 'cut: succeeds' ends_with 0
check 'cut: says what is left' says '40 of 100 events are left'
check 'cut: shows them' says '40 events'
check 'cut: the torn event is gone' is_long 40
run "$(windows "$log")" add 'after the cut'
check 'cut: goes on' ends_with 0
run "$(windows "$log")" show
check 'cut: has what was added' says 'after the cut'
check 'cut: is whole again' lacks 'are left'

cp "$log" "$scratch/before"
printf '\377' | dd of="$log" bs=1 seek=11 conv=notrunc 2>/dev/null # a count below zero
cp "$log" "$scratch/lying"
run "$(windows "$log")" add lost
check 'lying header: fails' ends_with 1
check 'lying header: says why' says 'this is no event log'
check 'lying header: leaves the file' same "$log" "$scratch/lying"
cp "$scratch/before" "$log"

echo 'some text of somebody else' >"$scratch/text"
cp "$scratch/text" "$scratch/text.before"
run "$(windows "$scratch/text")" add lost
check 'foreign file: fails' ends_with 1
check 'foreign file: leaves it' same "$scratch/text" "$scratch/text.before"

hold "$log"
run "$(windows "$log")" add lost
check 'held: fails' ends_with 1
check 'held: says why' says 'status 17'
release "$log"

run "$(windows "$scratch/no/folder")" add lost
check 'no folder: fails' ends_with 1
run "$(windows "$log")" forget
check 'no such command: fails with the usage' says 'usage'
run "$(windows "$log")" show
check 'in the end: everything is still there' says '41 events'

finish
