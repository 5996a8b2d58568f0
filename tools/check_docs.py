#!/usr/bin/env python3
"""check_docs.py XML_FOLDER: looks through Doxygen's XML for what a caller is not told.

Every public or protected member and every enumerator has a text. Every parameter is named (as it is
spelt, or in words: error_number is "error number") in the text of its function or of an overload, of
its group, class or file; "The same ..." refers to the member before. Parameters of copying,
operators, overriding and deleted functions need no name. Exits 1 and lists what is missing.
"""
import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

KINDS = ("function", "variable", "enum", "typedef", "define")


def text_of(element, *tags):
    return " ".join(" ".join(child.itertext()) for tag in tags
                    for child in element.findall(tag)).strip()


def own_text(member):
    return text_of(member, "briefdescription", "detaileddescription")


def in_words(name):
    """errorNumber and error_number are "error number"."""
    return re.sub(r"(?<=[a-z])(?=[A-Z])|_", " ", name).lower()


def explains_itself(member):
    name, arguments = member.findtext("name"), member.findtext("argsstring") or ""
    kind = re.fullmatch(r"\((const )?(\w+)(< T >)? &&?\w+\)( noexcept)?", arguments)
    return (name.startswith("operator") or re.search("delete$|override$", arguments) or
            kind and kind.group(2) == name)


def faults_of(member, context):
    """What is missing about one member; `context` is the text around it."""
    name, text = member.findtext("name"), own_text(member)
    if not text:
        yield f"{name} is not documented"
    for value in member.findall("enumvalue"):
        if not own_text(value):
            yield f"{value.findtext('name')} is not documented"
    if explains_itself(member):
        return
    told = f"{in_words(name)} {text} {context}".lower()
    for parameter in member.findall("param"):
        called = parameter.findtext("declname")
        if called and not re.search(rf"\b({re.escape(called.lower())}|{in_words(called)})s?\b", told):
            yield f"{name}{member.findtext('argsstring')}: nothing is said about {called}"


def contexts_of(compound, file_text):
    """Pairs of each member of a compound and the text around it."""
    overloads = {}
    for member in compound.iter("memberdef"):
        name = member.findtext("name")
        overloads[name] = overloads.get(name, "") + " " + own_text(member)
    for section in compound.findall("sectiondef"):
        around = " ".join([own_text(compound), file_text, text_of(section, "header", "description")])
        before = ""
        for member in section.findall("memberdef"):
            text = own_text(member)
            if text.startswith("The same") and not before.endswith(text):
                text = before + " " + text
            before = text
            yield member, " ".join([around, overloads[member.findtext("name")], text])


def compounds(folder):
    for path in sorted(pathlib.Path(folder).glob("*.xml")):
        compound = ElementTree.parse(path).getroot().find("compounddef")
        if compound is not None and compound.get("kind") in ("class", "struct", "namespace", "file"):
            yield compound


def main():
    found = list(compounds(sys.argv[1]))
    files = {c.find("location").get("file"): own_text(c) for c in found if c.get("kind") == "file"}
    members, seen, faults = 0, set(), set()
    for compound in found:
        for member, context in contexts_of(compound, files.get(compound.find("location").get("file"), "")):
            if (member.get("prot") == "private" or member.get("kind") not in KINDS or
                    member.get("id") in seen):
                continue
            seen.add(member.get("id"))
            members += 1 + len(member.findall("enumvalue"))
            where = member.find("location").get("file")
            faults.update(f"{where}: {fault}" for fault in faults_of(member, context))
    print("\n".join(sorted(faults)))
    print(f"reference: {members} members, {len(faults)} faults")
    return 1 if faults or not members else 0


if __name__ == "__main__":
    sys.exit(main())
