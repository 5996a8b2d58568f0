#!/bin/sh
# run_way.sh RUN_WINE PREFIX PROGRAM DLL_FOLDER WORK_FOLDER EXPECTED [COMPILER...]
# With a compiler command: builds PROGRAM with it first. Runs PROGRAM with the DLLs of DLL_FOLDER, in
# WORK_FOLDER, and compares what it prints with EXPECTED.
set -eu
run_wine=$1 prefix=$2 program=$3 dlls=$4 work=$5 expected=$6
shift 6
mkdir -p "$work"
[ $# = 0 ] || "$@" -o "$program"
cd "$work"
WINEPATH=Z:$(printf '%s' "$dlls" | tr / '\\')
export WINEPATH
printed=$("$run_wine" "$prefix" "$program" | tr -d '\r')
echo "$printed"
[ "$printed" = "$expected" ]
