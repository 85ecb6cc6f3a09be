#!/usr/bin/env python3
# usage: filter.py HEADER      the header with its comments as Doxygen reads them, on standard output
# One comment stands before a group of declarations, the element types of one routine: it becomes the comment of
# each of them. Indented lines (tables of arguments, formulas) keep their shape, banners vanish.
import re
import sys

OPEN, CLOSE = "/*! @{ */", "/*! @} */"


def doxygen_text(lines):
    """Sentences as text, tables as they stand."""
    out, table = [], False
    for line in lines:
        line = line.rstrip()
        row = bool(re.match(r"  +\S", line)) or (table and bool(re.match(r" +\S", line)))
        if row != table:
            out.append("@verbatim" if row else "@endverbatim")
        table = row
        out.append(line if row else re.sub(r"([\\@<>#%$&*_`~|\[\]])", r"\\\1", line.strip()))
    return "\n".join(out + ["@endverbatim"] * table)


def block(lines, head=""):
    return "/*! " + head + doxygen_text(lines) + "\n */"


class group:
    """Declarations under one comment, up to the next comment, an empty line (lists) or a closing brace."""

    def __init__(self, out):
        self.out, self.is_open, self.indent = out, False, 0

    def begin(self, text, indent):
        self.end()
        self.indent = indent
        self.out += [OPEN, text]
        self.is_open = True

    def end(self):
        if self.is_open:
            self.out.append(CLOSE)
        self.is_open = False


def filtered(text, name):
    out, lines, i, seen_head = [], text.split("\n"), 0, False
    current = group(out)
    while i < len(lines):
        line = lines[i]
        start = line.strip()
        if start.startswith("/*") or start.startswith("//"):
            body = []
            if start.startswith("/*"):
                while "*/" not in lines[i]:
                    body.append(lines[i])
                    i += 1
                body.append(lines[i])
                body = [re.sub(r"^\s*(/\*| \*(?!/)|\*(?!/))? ?", "", b, count=1).replace("*/", "") for b in body]
            else:
                body = []
                prefix = start[:3] if start.startswith("///") else "//"
                while i < len(lines) and lines[i].strip().startswith(prefix) and (
                        prefix == "///" or not lines[i].strip().startswith("///")):
                    body.append(lines[i].strip()[len(prefix):].removeprefix(" "))
                    i += 1
                i -= 1
            body = [b for b in body if "SPDX" not in b]
            banner = body and re.fullmatch(r"-+ .* -+\s*", body[0])
            if not seen_head:
                out.append(block(body, f"@file {name}\n"))
                seen_head = True
            elif banner or not "".join(body).strip():
                current.end()
            else:
                current.begin(block(body), len(line) - len(line.lstrip()))
        elif re.match(r"\s*(}|#(?!define)|public:|private:|protected:|$)", line):
            outer = len(line) - len(line.lstrip()) < current.indent  # closes what is around the group
            if outer or not re.match(r"\s*};?$|\s*} \w+;", line) or not current.is_open:
                current.end()
                out.append(line)
            else:  # the end of a type that the group's comment is about
                out.append(line)
                current.end()
        else:
            line = re.sub(r"/\*(?!!) *(.*?) *\*/", r"/*!< \1 */", line)
            out.append(line)
        i += 1
    current.end()
    return "\n".join(out)


def main():
    path = sys.argv[1]
    with open(path, encoding="utf-8") as file:
        text = file.read()
    sys.stdout.write(filtered(text, path.split("include/")[-1]) if "include/" in path else text)


main()
