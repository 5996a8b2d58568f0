# Sourced by the run_*.sh scripts: cases for a sample program.
#   sample_cases RUN_WINE PREFIX PROGRAM SCRATCH HOLD_FILE
# Defines $scratch (an empty folder), run (the program with its arguments, output in $out, status
# in $status), windows (a path as the program wants it), hold and release (another program that has
# a file open without sharing), the checks, and finish.

sample_cases() {
  run_wine=$1 prefix=$2 program=$3 scratch=$4 hold_file=$5
  passed=0 failed=0
  rm -rf "$scratch"
  mkdir -p "$scratch"
}

windows() { printf 'Z:%s' "$1" | tr / '\\'; }

run() {
  status=0
  out=$("$run_wine" "$prefix" "$program" "$@" 2>&1) || status=$?
}

hold() {
  "$run_wine" "$prefix" "$hold_file" "$(windows "$1")" >/dev/null 2>&1 &
  for _ in $(seq 100); do
    [ -e "$1.held" ] && return
    sleep 0.1
  done
  echo "sample_cases: $1 could not be held" >&2
}

release() {
  touch "$1.release"
  wait
}

check() { # check NAME COMMAND...
  name=$1
  shift
  if "$@"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf 'FAILED: %s\nstatus %s, output:\n%s\n' "$name" "$status" "$out"
  fi
}

says() { case $out in *"$1"*) true ;; *) false ;; esac; }
lacks() { ! says "$1"; }
ends_with() { [ "$status" = "$1" ]; }
leaves_nothing() { ! ls "$scratch" | grep -q '\.part$'; }

finish() {
  printf 'sample cases: %s passed, %s failed\n' "$passed" "$failed"
  [ "$failed" = 0 ]
}
