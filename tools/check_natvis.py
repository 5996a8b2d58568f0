#!/usr/bin/env python3
"""check_natvis.py SOURCE_DIR NATVIS: compiles every expression of NATVIS against the public headers.

A type or field that is named there and is gone, or an expression that no longer means anything, is
an error of the compiler, reported with the type it belongs to. The expressions of a type stand in a
member function of a class derived from it, with access control off.
"""
import os
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

COMPILER = [os.environ.get("CXX", "x86_64-w64-mingw32-g++-posix"), "-std=c++20", "-fsyntax-only",
            "-fno-access-control", "-w", "-x", "c++"]
NAMESPACE = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
WILDCARDS = {"StdListSafe": "CQELRangeIP", "TRef": "CRefCnt"}  # what * stands for
PLAIN = ("StringView", "Item", "ExpandedItem", "Size", "ValuePointer", "SmartPointer")
FORMAT = re.compile(r",\s*(?:\[(.*?)\])?\w*$")


def expressions_in(text):
    """One expression with its format, and the count in the format."""
    match = FORMAT.search(text)
    yield text[:match.start()] if match else text
    if match and match.group(1):
        yield match.group(1)


def statements_of(element):
    """The expressions of an element and those within it, as statements in their order."""
    tag, text = element.tag.replace(NAMESPACE, ""), (element.text or "").strip()
    found = [element.get("Condition")] if element.get("Condition") else []
    if tag == "Variable":
        yield f"auto {element.get('Name')} = {element.get('InitialValue')};"
    if tag == "Exec":
        yield f"{text};"
    if tag in PLAIN:
        found += expressions_in(text)
    if tag == "DisplayString":
        for part in re.findall(r"\{([^{}]*)\}", text.replace("{{", "").replace("}}", "")):
            found += expressions_in(part)
    for expression in found:
        yield f"(void)({expression});"
    for child in element:
        yield from statements_of(child)


def check_of(number, type_element):
    """The class whose member function holds the expressions of one type, and how many they are."""
    name, argument = type_element.get("Name"), ""
    if name.endswith("<*>"):
        argument = WILDCARDS[name[:-3]]
        name = f"{name[:-3]}<{argument}>"
    statements = [s.replace("$T1", argument) for s in statements_of(type_element)]
    lines = [f'#line 1 "{name}"', f"struct Check{number} : {name} {{", "void Expressions() {"]
    return "\n".join([*lines, *statements, "}", "};"]), len(statements)


def main():
    source, natvis = sys.argv[1:3]
    types = ElementTree.parse(natvis).getroot().findall(NAMESPACE + "Type")
    checks = [check_of(number, element) for number, element in enumerate(types)]
    program = "\n".join(['#include "qelkit2.h"', *(text for text, _ in checks)])
    result = subprocess.run([*COMPILER, f"-I{source}", "-"], input=program, text=True)
    print(f"natvis: {len(types)} types, {sum(count for _, count in checks)} expressions")
    return 0 if result.returncode == 0 and all(count for _, count in checks) else 1


if __name__ == "__main__":
    sys.exit(main())
