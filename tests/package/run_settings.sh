#!/bin/sh
# Tries samples/settings on new, old and locked files.
set -u
. "$(dirname "$0")/sample_cases.sh"
sample_cases "$@"

file=$(windows "$scratch/a.ini")
key="Software\\qelkit-sample-$$"
run "$file" "$key"
check 'new file: succeeds' ends_with 0
check 'new file: the first run' says 'Runs = 1'
check 'new file: Russian text comes back from file and registry' says 'Имя = Иван Ёлкин'
check 'new file: the copied key has its sections' says 'Пользователь\'
run "$file" "$key"
check 'second run counts on' says 'Runs = 2'
hold "$scratch/a.ini"
run "$file" "$key"
check 'locked: fails' ends_with 1
check 'locked: says why' says 'Ошибка записи в файл'
release "$scratch/a.ini"
run "$file" 'Software\'"$(printf '%0300d' 0)"
check 'key path too long: fails' ends_with 1
"$run_wine" "$prefix" reg delete "HKCU\\$key" /f >/dev/null 2>&1
finish
