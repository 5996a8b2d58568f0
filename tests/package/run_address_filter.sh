#!/bin/sh
# Tries samples/address_filter on lists and addresses, given on the command line and on its input.
set -u
. "$(dirname "$0")/sample_cases.sh"
sample_cases "$@"

list=$scratch/list.txt
run_with_input() { # run_with_input FILE ARGUMENT...
  QELKIT_INPUT=$1
  export QELKIT_INPUT
  shift
  run "$@"
  unset QELKIT_INPUT
}

printf '%s\n' '# offices' '192.168.0.0/16' ' 10.0.0.0 / 255.255.240.0  # the lab' '' \
  '172.16.0.10-172.16.0.99' '8.8.8.8' '192.168.0.0/16' >"$list"

run "$(windows "$list")" 192.168.255.255 10.0.15.255 10.0.16.0 172.16.0.10 172.16.0.100 8.8.8.8
check 'list: succeeds' ends_with 0
check 'list: names the first range' says 'list:       192.168.0.0-192.168.255.255...'
check 'list: shows every range once' says \
  'ranges:     192.168.0.0-192.168.255.255, 10.0.0.0-10.0.15.255, 172.16.0.10-172.16.0.99, 8.8.8.8'
check 'list: dumps' says 'dump:       rl: size=4 192.168.0.0-192.168.255.255, '
check 'list: counts its addresses' says 'addresses:  69723' # 65536 + 4096 + 90 + 1
check 'list: says its size' says 'serialized: 32 bytes for 4 ranges'
check 'address: last of a subnet' says '192.168.255.255: in 192.168.0.0-192.168.255.255'
check 'address: last under a mask' says '10.0.15.255: in 10.0.0.0-10.0.15.255'
check 'address: behind a subnet' says '10.0.16.0: not in the list'
check 'address: first of a range' says '172.16.0.10: in 172.16.0.10-172.16.0.99'
check 'address: behind a range' says '172.16.0.100: not in the list'
check 'address: a single one' says '8.8.8.8: in 8.8.8.8'

printf '8.8.8.8 8.8.4.4\r\n192.168.0.1\n' >"$scratch/addresses"
run_with_input "$scratch/addresses" "$(windows "$list")"
check 'input: succeeds' ends_with 0
check 'input: first of a line' says '8.8.8.8: in 8.8.8.8'
check 'input: second of a line' says '8.8.4.4: not in the list'
check 'input: next line' says '192.168.0.1: in 192.168.0.0-192.168.255.255'

run "$(windows "$list")" 8.8.8 8.8.8.8
check 'no address: ends with 2' ends_with 2
check 'no address: says so' says '8.8.8: no address'
check 'no address: answers the others' says '8.8.8.8: in 8.8.8.8'

printf '0.0.0.0/0\n' >"$scratch/all"
run "$(windows "$scratch/all")" 255.255.255.255 0.0.0.0
check 'all addresses: the last' says '255.255.255.255: in 0.0.0.0-255.255.255.255'
check 'all addresses: the first' says '0.0.0.0: in 0.0.0.0-255.255.255.255'

: >"$scratch/empty"
run "$(windows "$scratch/empty")" 1.2.3.4
check 'empty list: succeeds' ends_with 0
check 'empty list: has no bytes' says 'serialized: 0 bytes for 0 ranges'
check 'empty list: holds nothing' says '1.2.3.4: not in the list'

seq 0 65535 | awk '{ printf "10.%d.%d.0/25\r\n", $1 / 256, $1 % 256 }' >"$scratch/long"
run "$(windows "$scratch/long")" 10.255.255.127 10.255.255.128
check 'long list: succeeds' ends_with 0
check 'long list: says its size' says 'serialized: 524288 bytes for 65536 ranges'
check 'long list: holds its end' says '10.255.255.127: in 10.255.255.0-10.255.255.127'
check 'long list: ends there' says '10.255.255.128: not in the list'

for entry in 10.0.0.0/33 10.0.0.0/255.0.255.0 10.0.0.9-10.0.0.1 10.0.0.0/-1; do
  printf '1.2.3.4\n%s\n' "$entry" >"$scratch/bad"
  run "$(windows "$scratch/bad")" 1.2.3.4
  check "entry $entry: fails" ends_with 1
  check "entry $entry: says where" says "line 2 is no entry: $entry"
  check "entry $entry: answers nothing" lacks 'in 1.2.3.4'
done

run "$(windows "$scratch/none")" 1.2.3.4
check 'missing list: fails' ends_with 1
check 'missing list: says why' says 'Файл не найден'
hold "$list"
run "$(windows "$list")" 1.2.3.4
check 'held list: fails' ends_with 1
release "$list"
run
check 'no argument: fails with the usage' says 'usage'

finish
