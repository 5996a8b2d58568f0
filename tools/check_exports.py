#!/usr/bin/env python3
"""check_exports.py DLL LIST [--update]: compares what the DLL exports with the list in the tree.

The list holds demangled names, sorted. Names of the compiler's own (type information, virtual
tables) are left out: they follow from the classes. With --update the list is rewritten.
"""
import re
import subprocess
import sys

TOOLS = "x86_64-w64-mingw32-"
OWN_OF_COMPILER = ("typeinfo ", "vtable for ", "VTT for ", "non-virtual thunk ", "virtual thunk ",
                   "construction vtable ")


def exported(dll):
    dump = subprocess.run([TOOLS + "objdump", "-p", dll], check=True, capture_output=True, text=True)
    table = dump.stdout.split("[Ordinal/Name Pointer] Table", 1)[1].split("\n\n", 1)[0]
    names = re.findall(r"^\s*\[\s*\d+\]\s+(\S+)$", table, re.MULTILINE)
    demangled = subprocess.run([TOOLS + "c++filt"], input="\n".join(names), check=True,
                               capture_output=True, text=True).stdout.splitlines()
    return sorted({n for n in demangled if not n.startswith(OWN_OF_COMPILER)})


def main():
    dll, path = sys.argv[1:3]
    names = exported(dll)
    if "--update" in sys.argv:
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(names) + "\n")
    with open(path, encoding="utf-8") as file:
        listed = set(file.read().splitlines())
    for name in sorted(set(names) - listed):
        print(f"exported but not listed: {name}")
    for name in sorted(listed - set(names)):
        print(f"listed but not exported: {name}")
    print(f"exports: {len(names)} exported, {len(listed)} listed")
    return 0 if names and set(names) == listed else 1


if __name__ == "__main__":
    sys.exit(main())
