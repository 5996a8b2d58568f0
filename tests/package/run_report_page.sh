#!/bin/sh
# Opens a page that samples/report has made in a real browser: what a person would see. Leaves a
# picture of it, page.png, in the scratch folder.
set -u
. "$(dirname "$0")/sample_cases.sh"
skip() {
  echo "SKIPPED: $1"
  exit 77
}
browser=$(command -v chromium || command -v chromium-browser || command -v google-chrome) ||
  skip 'there is no browser on this machine'
sample_cases "$@"
table=$(dirname "$0")/../../samples/report/services.csv

# browse OPTION... ADDRESS: opens a page without a window, a network or anything kept.
browse() {
  timeout 60 "$browser" --headless --no-sandbox --disable-gpu --disable-dev-shm-usage \
    --no-first-run --disable-background-networking --disable-component-update --disable-sync \
    --user-data-dir="$scratch/profile" "$@" 2>"$scratch/browser.log"
}
page=file://$scratch/page.html

# The document in the browser, as Unicode: its cells, one a line, as plain text.
seen_cells() {
  sed -n 's/^.*<t[hd][^>]*>\(.*\)<\/t[hd]>.*$/\1/p' "$scratch/dom" |
    sed 's/&nbsp;//; s/&lt;/</g; s/&gt;/>/g; s/&amp;/\&/g'
}
table_cells() { tr ';' '\n' <"$table"; }
count() { grep -o "<$1[ >]" "$scratch/dom" | wc -l; }

browse --dump-dom about:blank | grep -q '<html' || skip 'the browser does not start here'
run "$(windows "$(readlink -f "$table")")" "$(windows "$scratch/page.html")"
check 'the sample makes the page' ends_with 0
browse --dump-dom "$page" >"$scratch/dom"
check 'the encoding is the declared one' grep -q 'charset=windows-1251' "$scratch/dom"
check 'all rows are there' [ "$(count tr)" = 6 ]
check 'the titles are' [ "$(count th)" = 4 ]
check 'and the cells' [ "$(count td)" = 20 ]
seen_cells >"$scratch/seen"
table_cells >"$scratch/wanted"
check 'the text arrives letter for letter' cmp "$scratch/wanted" "$scratch/seen"
check 'numbers stand right' grep -q '<td align="right">148.75</td>' "$scratch/dom"
browse --window-size=880,210 --hide-scrollbars --screenshot="$scratch/page.png" "$page" >/dev/null
check 'the picture is one' grep -q 'PNG' "$scratch/page.png"
rm -rf "$scratch/profile"
finish
