#!/usr/bin/env python3
"""check_abi.py SOURCE_DIR LAYOUTS: compares the classes of the public headers with LAYOUTS.

Two compilers lay them out: clang with the Microsoft ABI (tools/clang_msvc.sh) and the GCC that builds
the DLL. The format of LAYOUTS stands at its head. Each difference is named; exits 1 when there is one
or when an exported class is not listed.
"""
import os
import pathlib
import re
import subprocess
import sys
import tempfile

GCC = os.environ.get("CXX", "x86_64-w64-mingw32-g++-posix")
CLANG = str(pathlib.Path(__file__).with_name("clang_msvc.sh"))
HEAD = """#include <cstddef>
#include "qelkit2.h"
struct Size_of_list { char bytes[sizeof(std::list<int>)]; };
struct Size_of_string { char bytes[sizeof(std::string)]; };
constexpr int list = sizeof(Size_of_list), string = sizeof(Size_of_string);
"""


class Class:
    def __init__(self, size):
        self.size, self.places, self.tables = size, {}, []


def read_layouts(path, abi):
    """Returns {class: Class} for the ABI "msvc" or "mingw"; sizes and offsets are expressions."""
    def pick(number):
        return number.split("|")[-1 if abi == "mingw" else 0]

    classes = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        line = line.split("#")[0].rstrip()
        if heading := re.fullmatch(r"(\S.*) = (\S+):(.*)", line):
            name = heading[1]
            classes[name] = Class(pick(heading[2]))
            for place in filter(None, heading[3].strip().split(", ")):
                what, at = place.rsplit(" ", 1)
                if pick(at) != "-":
                    classes[name].places[what] = pick(at)
        elif table := re.fullmatch(r"    slots(?: (msvc|mingw))?(?: in \S+)?: (.*)", line):
            if table[1] in (None, abi):
                slots = [full_name(slot, name) for slot in re.split(r", (?!\.)", table[2])]
                classes[name].tables.append(slots)
        elif line:
            sys.exit(f"{path}: cannot read: {line}")
    return classes


def own_name(name):
    return name.split("<")[0].split("::")[-1]


def full_name(slot, name):
    if slot == "~":
        return f"{name}::~{own_name(name)}"
    return slot if "::" in slot else f"{name}::{slot}"


def tidy(text):
    return re.sub(r"\b(class|struct) ", "", text).replace("long unsigned int", "unsigned long")


def compile(command, source):
    with tempfile.NamedTemporaryFile("w", suffix=".cpp") as file:
        file.write(source)
        file.flush()
        done = subprocess.run([*command, file.name], capture_output=True, text=True)
    if done.returncode:
        sys.exit(f"check_abi: {command[0]} refuses the headers or finds another layout:\n"
                 + done.stdout[:2000] * (not done.stderr) + done.stderr)
    return done.stdout


# --- Microsoft ABI: clang writes what it lays out

def msvc_classes(source_dir, layouts, final):
    source = HEAD + "".join(f"static_assert(sizeof(struct {name}) > 0);\n" for name in layouts)
    # A table is written where one is needed, as for the destructor of a class that derives from ours.
    source += "void Use(void*);\n"
    heirs = {f"Heir{at}": name for at, (name, entry) in enumerate(layouts.items())
             if entry.tables and name not in final}
    source += "".join(f"struct {heir} : {name} {{ ~{heir}(); }};\n{heir}::~{heir}() {{ Use(this); }}\n"
                      for heir, name in heirs.items())
    dump = compile([CLANG, "/std:c++17", "/w", "-DQELKIT_BUILD", f"/I{source_dir}", "/c", "/Fo/dev/null",
                    "-Xclang", "-fno-access-control", "-Xclang", "-fdump-record-layouts",
                    "-Xclang", "-fdump-vtable-layouts"], source)
    classes = {}
    for record in tidy(dump).split("*** Dumping AST Record Layout\n")[1:]:
        if heading := re.match(r" *0 \| (\S.*?)(?: \(empty\))?\n", record):
            entry = classes.setdefault(heading[1], Class(re.search(r"\[sizeof=(\d+)", record)[1]))
            for at, what in re.findall(r"^ *([\d:]+)(?:-\d+)? \|   (\S.*)$", record, re.M):
                entry.places[msvc_place(what)] = at
    for table in re.findall(r"^VFTable for .*\n((?: .*\n)+)", tidy(dump), re.M):
        name, *slots = re.findall(r"^ +\d+ \| (.*?)(?: RTTI)?$", table, re.M)
        if name in heirs or name in final:
            ours = heirs.get(name, name)
            classes[ours].tables.append([slot.replace(f"{name}::~{name}", full_name("~", ours))
                                         for slot in slots])
    return classes


def msvc_place(what):
    if what.endswith("table pointer)"):
        return "vbptr" if "vbtable" in what else "vptr"
    if base := re.fullmatch(r"([\w:]+)(.*) \((?:primary |virtual )?base\)(?: \(empty\))?", what):
        return ":" + (base[1] if base[1] == "std::list" else base[1] + base[2])
    return what.split()[-1]


# --- The DLL's compiler: fields by assertion, bases and tables from what it writes

def mingw_classes(source_dir, layouts):
    source = HEAD
    for name, entry in layouts.items():
        source += f'static_assert(sizeof(struct {name}) == {entry.size}, "size of {name}");\n'
        for what, at in entry.places.items():
            if what[0] != ":" and what != "vptr" and ":" not in at:  # a bit has no address
                source += f'static_assert(offsetof(struct {name}, {what}) == {at}, "{name}::{what}");\n'
    dump = compile([GCC, "-std=c++17", "-fno-access-control", "-Wno-invalid-offsetof", f"-I{source_dir}",
                    "-fsyntax-only", "-fdump-lang-class=stdout"], source)
    classes = {name: Class("") for name in layouts}
    for block in tidy(dump).split("\n\n"):
        if (heading := re.match(r"Class (.*)\n", block)) and heading[1] in classes:
            for base, at in re.findall(r"^(\S.*) \(0x\S+\) (\d+)", block, re.M):
                classes[heading[1]].places[":" + re.sub("^std::.*list<.*", "std::list", base)] = at
        elif (heading := re.match(r"Vtable for (.*)\n", block)) and heading[1] in classes:
            classes[heading[1]].tables = mingw_tables(block)
    return classes


def mingw_tables(block):
    names = subprocess.run(["c++filt"], input=block, capture_output=True, text=True, check=True).stdout
    tables = []
    for table in names.split("(& typeinfo for ")[1:]:
        slots = re.findall(r"\(\.\.\.\)\)(?:\S*::non-virtual thunk to )?([A-Za-z_].*)$", table, re.M)
        tables.append([slot for at, slot in enumerate(slots) if slot not in slots[:at] or "~" not in slot])
    return tables


# --- Comparing

def same_slot(promised, found):
    """`found` has its argument types or, from GCC, no more than a name."""
    if found == "__cxa_pure_virtual":
        return True
    if "(" not in promised or "(" not in found:
        promised, found = promised.split("(")[0], found.split("(")[0]
    return re.search(rf"(^|[ *&]){re.escape(promised)}( const|$| \[)", found) is not None


def evaluate(number, standard):
    return number if ":" in number else str(eval(number, standard))  # 16:0, 16+list


def differences(abi, layouts, found, standard):
    for name, promised in layouts.items():
        actual = found.get(name) or Class("")
        if abi == "msvc":
            places = {what: evaluate(at, standard) for what, at in promised.places.items()}
            if evaluate(promised.size, standard) != actual.size:
                yield f"{name}: {promised.size} bytes promised, {actual.size} found"
        else:  # sizes and fields have been compared by the compiler
            places = {what: at for what, at in promised.places.items() if what[0] == ":"}
            actual.places = {what: at for what, at in actual.places.items() if what in places}
        if places != actual.places:
            yield f"{name}: {places} promised, {actual.places} found"
        tables = promised.tables
        if any("__cxa_pure_virtual" in table for table in actual.tables):
            tables = [[slot for slot in table if "~" not in slot] for table in tables]
        if [len(table) for table in tables] != [len(table) for table in actual.tables]:
            yield f"{name}: slots {tables} promised, {actual.tables} found"
            continue
        for table, slots in zip(tables, actual.tables):
            for at, (slot, function) in enumerate(zip(table, slots)):
                if not same_slot(slot, function):
                    yield f"{name}: slot {at} is {function}, promised {slot}"


def main():
    source_dir, path = (pathlib.Path(argument) for argument in sys.argv[1:3])
    headers = "".join(file.read_text(encoding="utf-8") for file in source_dir.glob("*/*.h"))
    exported = set(re.findall(r"\b(?:class|struct) QELKIT_API (\w+)", headers))
    final = set(re.findall(r"\b(?:class|struct) QELKIT_API (\w+) final", headers))
    faults = slots = 0
    for abi in ("msvc", "mingw"):
        layouts = read_layouts(path, abi)
        for name in exported - {own_name(name) for name in layouts}:
            print(f"{name}: exported, but not in {path.name}")
            faults += 1
        if abi == "msvc":
            found = msvc_classes(source_dir, layouts, final)
            standard = {name: int(found["Size_of_" + name].size) for name in ("list", "string")}
        else:
            found = mingw_classes(source_dir, layouts)
        for fault in differences(abi, layouts, found, standard):
            print(f"{abi}: {fault}")
            faults += 1
        slots += sum(len(table) for entry in layouts.values() for table in entry.tables)
    print(f"abi: {len(layouts)} classes, {slots} slots in two layouts, {faults} differences")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
