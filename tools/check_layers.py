#!/usr/bin/env python3
"""check_layers.py SOURCE_DIR: checks every #include "..." below SOURCE_DIR against its layers.txt.

Refuses an edge between directories that is not listed, an include of another directory's detail/,
an include that does not name a file below SOURCE_DIR, a <windows.h> outside platform/, and the
umbrella header inside the library. Exits 1 and names each fault as file:line.
"""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+([<"])([^>"]+)[>"]')
UMBRELLA = "qelkit2.h"


def read_layers(path):
    """Returns {directory: (allowed for all files, allowed for .cpp files besides)}."""
    layers = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        line = line.split("#")[0].strip()
        if not line:
            continue
        directory, _, rest = line.partition(":")
        everywhere, _, sources = rest.partition("|")
        layers[directory.strip()] = (set(everywhere.split()), set(sources.split()))
    return layers


def fault_of(root, layers, file, bracket, target):
    """Returns what is wrong with one include, or None."""
    here = file.relative_to(root).parts[0]
    if bracket == "<":
        if target.lower() == "windows.h" and here != "platform":
            return "<windows.h> arrives only through platform/windows.h"
        return None
    if target == UMBRELLA:
        return "the umbrella header is for callers"
    if not (root / target).is_file():
        return f'"{target}" is no file below {root.name}/'
    there = pathlib.PurePosixPath(target).parts[0]
    if there == here:
        return None
    if "detail" in pathlib.PurePosixPath(target).parts:
        return f'"{target}" is private to {there}/'
    everywhere, sources = layers[here]
    if there in everywhere or (file.suffix == ".cpp" and there in sources):
        return None
    return f"{here}/ may not include {there}/"


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    layers = read_layers(root / "layers.txt")
    files = sorted(p for p in root.glob("*/**/*") if p.suffix in (".h", ".cpp"))
    faults = includes = 0
    for file in files:
        if file.relative_to(root).parts[0] not in layers:
            print(f"{file}:1: the directory is not in layers.txt")
            faults += 1
            continue
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            includes += 1
            fault = fault_of(root, layers, file, *match.groups())
            if fault:
                print(f"{file}:{number}: {fault}")
                faults += 1
    print(f"layers: {len(files)} files, {includes} includes, {faults} faults")
    return 1 if faults or not files else 0


if __name__ == "__main__":
    sys.exit(main())
