#!/bin/sh
# Tries samples/worker.
set -u
. "$(dirname "$0")/sample_cases.sh"
sample_cases "$@"

run 3 500
check 'succeeds' ends_with 0
for thread in 0 1 2; do check 'in order' says "thread $thread: 500 of 500 functions ran, in order"; done
check 'one thread' says 'all on one thread: yes'
run 0
check 'no threads: fails with the usage' ends_with 1
finish
