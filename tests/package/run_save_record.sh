#!/bin/sh
# Tries samples/save_record on real files and on what can go wrong with them.
set -u
. "$(dirname "$0")/sample_cases.sh"
sample_cases "$@"

# A file of some size that compresses, and one that does not.
cat /usr/share/common-licenses/* >"$scratch/text"
head -c 300000 /dev/urandom >"$scratch/noise"
: >"$scratch/empty"
mkdir "$scratch/folder"

run "$(windows "$scratch/text")"
check 'text: succeeds' ends_with 0
check 'text: every byte comes back' says 'every byte equal'
check 'text: the file is smaller' [ "$(wc -c <"$scratch/text.qel")" -lt "$(wc -c <"$scratch/text")" ]
check 'text: the failure shows its code' says 'ErrorMessage():   Status = 4'
check 'text: the failure shows its Russian text' says 'Файл не найден ('

run "$(windows "$scratch/noise")"
check 'noise: succeeds' ends_with 0
check 'noise: says that it is stored' says 'incompressible, stored as it is'

run "$(windows "$scratch/empty")"
check 'empty: succeeds' ends_with 0
check 'empty: every byte comes back' says 'every byte equal'

run "$(windows "$scratch/none")"
check 'missing: fails' ends_with 1
check 'missing: says why' says 'Файл не найден'

run 'Q:\none'
check 'missing drive: fails' ends_with 1

truncate -s 5G "$scratch/huge"
run "$(windows "$scratch/huge")"
check 'beyond 32 bits: fails' ends_with 1
check 'beyond 32 bits: says why' says 'too large'
rm "$scratch/huge"

run "$(windows "$scratch/text")" "$(windows "$scratch/folder")"
check 'target is a folder: fails' ends_with 1
check 'target is a folder: nothing half-written' leaves_nothing

run "$(windows "$scratch/text")" "$(windows "$scratch/no/such/folder")"
check 'target folder missing: fails' ends_with 1

echo held >"$scratch/held"
hold "$scratch/held"
run "$(windows "$scratch/held")"
check 'locked: fails' ends_with 1
check 'locked: says why' says 'Доступ запрещен'
release "$scratch/held"

run "$(windows "$scratch/text")" 'Z:\dev\full\x'
check 'target not writable: fails' ends_with 1

run
check 'no argument: fails with the usage' ends_with 1

finish
