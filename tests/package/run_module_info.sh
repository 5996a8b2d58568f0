#!/bin/sh
# Tries samples/module_info on modules with and without a version resource.
set -u
. "$(dirname "$0")/sample_cases.sh"
sample_cases "$@"

run
check 'library: succeeds' ends_with 0
check 'library: its Russian description' says 'Библиотека общих функций'
check 'library: its type' says 'Dynamic link library'
run 'C:\windows\system32\kernel32.dll'
check 'system module: succeeds' ends_with 0
echo text >"$scratch/text"
run "$(windows "$scratch/text")" 'C:\windows\system32\kernel32.dll'
check 'text file: fails' ends_with 1
check 'text file: says why' says 'no readable version resource (error 1812)'
check 'text file: goes on' says 'kernel32'
finish
