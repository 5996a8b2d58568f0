#!/bin/sh
# Tries samples/clean_folder on real folders, one of which has a link to a canary.
set -u
. "$(dirname "$0")/sample_cases.sh"
sample_cases "$@"

mkdir -p "$scratch/tree/sub/deep" "$scratch/canaries"
head -c 5000000 /dev/zero >"$scratch/tree/large.tmp"
for file in tree/a.txt tree/sub/b.tmp tree/sub/deep/c.txt tree/.dot canaries/canary; do
  echo 12345 >"$scratch/$file"
done
ln -s "$scratch/canaries" "$scratch/tree/sub/link"
tree=$(windows "$scratch/tree")

run "$tree" '*.txt'
check 'list: succeeds' ends_with 0
check 'list: names what matches below' says 'deep\c.txt'
check 'list: sums it up' says 'found 2 files'
check 'list: sums the whole folder' says 'the whole folder: 5.0 MB'
check 'list: touches nothing' [ -e "$scratch/tree/a.txt" ]

run --wipe "$tree" '*.tmp'
check 'wipe: succeeds' ends_with 0
check 'wipe: says what went' says 'wiped 2 files, 5.0 MB; 0 failed'
check 'wipe: the files are gone' [ ! -e "$scratch/tree/large.tmp" ]
check 'wipe: the others stay' [ -e "$scratch/tree/sub/deep/c.txt" ]

hold "$scratch/tree/a.txt"
run --clear "$tree"
check 'held: fails' ends_with 1
check 'held: names it' says 'failed: '
release "$scratch/tree/a.txt"
rm -f "$scratch"/tree/a.txt.*

run --clear "$tree"
check 'clear: succeeds' ends_with 0
check 'clear: the folders are gone' [ ! -e "$scratch/tree/sub/deep" ]
check 'clear: names with a dot stay' [ -e "$scratch/tree/.dot" ]
check 'clear: what a link leads to stays' [ -e "$scratch/canaries/canary" ]

run "$(windows "$scratch/none")"
check 'missing: fails' ends_with 1
run --burn "$tree"
check 'unknown wish: fails with the usage' says 'usage:'

finish
