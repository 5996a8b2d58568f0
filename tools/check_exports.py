#!/usr/bin/env python3
"""check_exports.py DLL LIST SOURCE_DIR [--update]: what the DLL exports is what the tree lists.

The list holds demangled names, sorted. Names of the compiler's own (type information, virtual
tables) are left out: they follow from the classes. With --update the list is rewritten. Besides,
the functions for C are those of the .def file, and no header defines a member inside an exported
class: GCC would keep it from callers.
"""
import pathlib
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


def inside_class(text):
    """Yields number and text of the lines where exported classes define functions inside."""
    for head in re.finditer(r"^(\w.* )?(class|struct) QELKIT_API [^;{]*{", text, re.MULTILINE):
        end = text.index("\n};", head.end())
        for member in re.finditer(r"\) *(const)? *(: .*)?{", text[head.end():end]):
            line = text.count("\n", 0, head.end() + member.start())
            before, itself = text.splitlines()[line - 1:line + 1]
            if "//" not in itself and "template" not in before:
                yield line + 1, itself


def faults_of_headers(source_dir):
    for file in sorted(source_dir.glob("*/*.h")):
        for number, line in inside_class(file.read_text(encoding="utf-8")):
            yield f"{file}:{number}: defined inside an exported class: {line.strip()}"


def main():
    dll, path, source_dir = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    names = exported(dll)
    if "--update" in sys.argv:
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(names) + "\n")
    with open(path, encoding="utf-8") as file:
        listed = set(file.read().splitlines())
    differences = ([f"exported but not listed: {name}" for name in sorted(set(names) - listed)]
                   + [f"listed but not exported: {name}" for name in sorted(listed - set(names))])
    print("\n".join(differences), end="\n" * bool(differences))
    faults = len(differences)
    definition = (source_dir / "report/table_builder_c.def").read_text(encoding="utf-8")
    of_c = {name for name in names if re.fullmatch(r"\w+", name)}
    for name in sorted(of_c ^ set(re.findall(r"^    (\w+)$", definition, re.MULTILINE))):
        print(f"not both exported and in the .def file: {name}")
        faults += 1
    for fault in faults_of_headers(source_dir):
        print(fault)
        faults += 1
    print(f"exports: {len(names)} exported, {len(of_c)} of them for C, {faults} faults")
    return 1 if faults or not names else 0


if __name__ == "__main__":
    sys.exit(main())
