#!/usr/bin/env python3
"""doxygen_filter.py HEADER: prints a header with its comments in Doxygen's form.

Our headers are written to be read as they are. What their layout means is told to Doxygen here:
  - the first comment, when a blank line follows it, is about the file;
  - a comment is about the declaration below it, and about the ones that follow without a blank
    line or another comment in between (copying and destruction have words of their own);
  - "// --- Title ----" begins a group, and a comment right below it is about the group and about
    those declarations in it that have no other;
  - a comment behind a declaration is about that declaration;
  - indented rows "name   text" are the parameters, or a list; other indented rows stay as laid out.
"""
import re
import sys

SECTION = re.compile(r"^---+ (.*?) -*$")
ROW = re.compile(r"^ {2,3}(\S(?:.*?\S)?) {2,}(\S.*)$")
NAME = re.compile(r"^\*?(\w+)$")
CONTAINER = re.compile(r'^(template\s*<.*>\s*)?(class|struct|union|enum|namespace|extern\s+0)(\s|$)')
SPECIAL = re.compile(r"([\\@<>&#%$\"])")


def escape(text):
    """Text as Doxygen shows it unchanged; what stands in `backticks` is left as it is."""
    parts = text.split("`")
    return "`".join(SPECIAL.sub(r"\\\1", p) if i % 2 == 0 else p for i, p in enumerate(parts))


def code_only(line):
    """A line without literals and comment, for counting brackets."""
    return re.sub(r"//.*", "", re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])\'', "0", line))


def trailing_comment(line):
    bare = re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])\'', lambda m: "0" * len(m.group()), line)
    match = re.search(r"\s*(//+|/\*+) ?(.*?)( ?\*/)?$", bare)
    if not match or "//" in bare[:match.start()]:
        return line, None
    return line[:match.start()], line[match.start(2):match.end(2)]


def special(head):
    """What a member that every class has is, or None."""
    if re.search(r"=\s*delete\b", head):
        return "Not available."
    if re.match(r"(virtual )?~\w+\(", head):
        return "Destructor."
    match = re.match(r"(?:(\w+)& operator=|(\w+))\((?:const )?(\w+)(?:<T>)?(&&?)", head)
    if not match or match.group(3) not in (match.group(1), match.group(2)):
        return None
    return ("Moves" if match.group(4) == "&&" else "Copies") + " the value."


def render(text, parameters):
    """The lines of a comment as lines of Doxygen; rows about `parameters` become @param."""
    out, i, in_list = [], 0, False
    while i < len(text):
        in_list = text[i].startswith("- ") or in_list and text[i].startswith("  ")
        if in_list or not text[i].startswith("  "):
            out.append(escape(text[i]))
            i += 1
            continue
        end = i
        while end < len(text) and (text[end].startswith("  ") or not text[end]):
            end += 1
        while not text[end - 1]:
            end -= 1
        out += render_rows(text[i:end], parameters)
        i = end
    return out


def render_rows(rows, parameters):
    if rows[0].startswith("    ") or not all(ROW.match(r) or r.startswith("    ") for r in rows):
        return ["@code{.unparsed}", *(r[2:] for r in rows), "@endcode"]
    out = []
    for row in rows:
        match = ROW.match(row)
        if not match or row.startswith("    "):
            out.append("  " + escape(row.strip()))
            continue
        term = NAME.match(match.group(1))
        if term and term.group(1) in parameters:
            out.append(f"@param {term.group(1)} {escape(match.group(2))}")
        else:
            out.append(f"- {escape(match.group(1))}: {escape(match.group(2))}")
    return [*out, ""]


class Filter:
    def __init__(self, name):
        self.name = name
        self.out = []
        self.about = []         # the comment that the next declarations are about
        self.shared = False     # they were about one already
        self.about_group = []
        self.group = None       # indentation of the open group
        self.file_told = False

    def say(self, indent, lines):
        self.out += [f"{indent}/// {line}".rstrip() for line in lines]

    def close_group(self):
        if self.group is not None:
            self.out.append(f"{self.group}///@}}")
            self.group = None
            self.about_group = []

    def comment(self, indent, text, followed_by_blank):
        section = SECTION.match(text[0])
        if section:
            self.close_group()
            self.group = indent
            self.say(indent, [f"@name {escape(section.group(1))}", *render(text[1:], ()), "@{"])
            self.out.append("")
            self.about, self.about_group = [], text[1:]
        elif followed_by_blank and not self.file_told and not indent:
            self.tell_file(text)
        elif followed_by_blank:
            self.about = []
        else:
            self.about = text
            self.shared = False

    def tell_file(self, text):
        self.say("", [f"@file {self.name}", *render(text, ())])
        self.out.append("")
        self.file_told = True

    def declaration(self, chunk):
        """Writes one declaration behind the comment that is about it."""
        indent = re.match(r"\s*", chunk[0]).group()
        if self.group is not None and len(indent) < len(self.group):
            self.close_group()
        head = " ".join(code_only(line).strip() for line in chunk)
        own = special(head)
        about = self.about or self.about_group
        if own and (self.shared or not self.about):
            self.say(indent, [own])
        elif about and not re.match(r"#(?!define)|}", head):
            self.say(indent, render(about, re.findall(r"\w+", head)))
            self.shared = True
        code, remark = trailing_comment(chunk[-1])
        if remark and not remark.startswith("namespace"):
            chunk = [*chunk[:-1], code + " ///< " + " ".join(render([remark], ()))]
        self.out += chunk
        if CONTAINER.match(head) and head.endswith("{"):
            self.about = []


def take_comment(lines, i):
    """The text of the comment that begins at line i, and the line behind it."""
    if lines[i].lstrip().startswith("/*"):
        end = i
        while "*/" not in lines[end]:
            end += 1
        text = "\n".join(lines[i:end + 1]).strip()[2:].rsplit("*/", 1)[0]
        return [line[1:] if j == 0 else re.sub("^   ", "", line)
                for j, line in enumerate(text.rstrip().split("\n"))], end + 1
    end = i
    while end < len(lines) and lines[end].lstrip().startswith("//"):
        end += 1
    return [re.sub(r"^\s*// ?", "", line) for line in lines[i:end]], end


def take_declaration(lines, i):
    """The lines of the declaration that begins at line i, and the line behind it."""
    if lines[i].startswith("#"):
        end = i + 1
        while lines[end - 1].endswith("\\"):
            end += 1
        return lines[i:end], end
    head, end = "", i
    while end < len(lines):
        head = f"{head} {code_only(lines[end]).strip()}".strip()
        end += 1
        if head.count("(") != head.count(")"):
            continue
        if CONTAINER.match(head) and head.endswith("{"):
            break
        if head.count("{") <= head.count("}") and (
                head.endswith((";", "}", ",", ":")) or re.fullmatch(r"\w+", head)):
            break
    return lines[i:end], end


def is_comment(line):
    return line.lstrip().startswith(("//", "/*"))


def main():
    path = sys.argv[1]
    with open(path, encoding="utf-8") as file:
        lines = file.read().splitlines()
    run = Filter(path.rsplit("source/", 1)[-1])
    i = 0
    while i < len(lines):
        if not lines[i].strip():
            run.about = []
            run.out.append("")
            i += 1
        elif is_comment(lines[i]):
            indent = re.match(r"\s*", lines[i]).group()
            text, i = take_comment(lines, i)
            run.comment(indent, text, i >= len(lines) or not lines[i].strip())
        else:
            chunk, i = take_declaration(lines, i)
            run.declaration(chunk)
    run.close_group()
    if not run.file_told:
        run.tell_file([])
    print("\n".join(run.out))


if __name__ == "__main__":
    main()
