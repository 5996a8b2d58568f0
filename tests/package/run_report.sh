#!/bin/sh
# Tries samples/report on a table with everything that such files have in them.
set -u
. "$(dirname "$0")/sample_cases.sh"
sample_cases "$@"

page() { iconv -f CP1251 -t UTF-8 "$scratch/page" | tr -d '\r'; }
page_has() { page | grep -qxF "$1"; }
cells() { page | grep -c "^<t[hd]"; }

printf 'Имя;Размер;"Знач""ок"\r\nЁлка & <b>;12.5;\r\n"две\nстроки; и ещё";-3 %%;конец' >"$scratch/table"
run "$(windows "$scratch/table")" "$(windows "$scratch/page")"
check 'UTF-8: succeeds' ends_with 0
check 'UTF-8: says what it did' says '3 lines, 9 cells'
check 'UTF-8: titles' page_has '<th>Имя</th>'
check 'UTF-8: quotes' page_has '<th>Знач&quot;ок</th>'
check 'UTF-8: plain text stays plain' page_has '<td>Ёлка &amp; &lt;b&gt;</td>'
check 'UTF-8: numbers' page_has '<td align=right>12.5</td>'
check 'UTF-8: empty fields' page_has '<td>&nbsp;</td>'
check 'UTF-8: line ends in quotes' page_has 'строки; и ещё</td>'
check 'UTF-8: no cell more' [ "$(cells)" = 9 ]

printf 'Имя,Размер\n' | iconv -t CP1251 >"$scratch/table"
run "$(windows "$scratch/table")" "$(windows "$scratch/page")"
check 'ANSI: titles' page_has '<th>Размер</th>'

run "$(windows "$scratch/none")" "$(windows "$scratch/page")"
check 'missing: fails' ends_with 1
run "$(windows "$scratch/table")" 'Z:\dev\full'
check 'disk full: fails' ends_with 1
check 'disk full: says why' says '(status 120)'
run
check 'no argument: fails with the usage' ends_with 1
finish
