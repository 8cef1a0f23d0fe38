#!/usr/bin/env python3
"""Writes the vantel-aspectratio(5) manual page from docs/format.md.

Usage: format-to-man.py FORMAT_MD VERSION OUTPUT

docs/format.md is the one description of the document format (a test holds
its key tables to the keys the decoder reads), so the page is made from it
rather than written twice. Only what that file uses is understood: headings,
paragraphs, "- " lists, tables, fenced code, `code` and [links](...).
The title becomes NAME, the text before the first "##" DESCRIPTION, each
"##" a section and each "###" a subsection. A table becomes a list tagged
by its first column; the other columns follow, from the third on labelled
with their headings, so that it reads at any width.
"""
import re
import sys

SECTION_NAMES = {"An example": "EXAMPLE"}


def escape(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    text = "".join(c if ord(c) < 128 else "\\[u%04X]" % ord(c) for c in text)
    return re.sub(r"^([.'])", r"\\&\1", text, flags=re.M)


def inline(text):
    """Markdown spans to roff: `code` in bold, [text](address) as its text."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", text)
    parts = text.split("`")
    return "".join(escape(p) if i % 2 == 0 else "\\fB" + escape(p) + "\\fR" for i, p in enumerate(parts))


def cells(line):
    return [cell.strip() for cell in line.strip().strip("|").split("|")]


def sentence(text):
    return inline(text if text.endswith(".") else text + ".")


def table(lines):
    headings = cells(lines[0])
    out = []
    for row in lines[2:]:
        values = cells(row)
        out += [".TP", inline(values[0]), sentence(values[1])]
        for heading, value in zip(headings[2:], values[2:]):
            out += [".br", sentence(heading[0].upper() + heading[1:] + ": " + value)]
    return out + [".PP"]


def blocks(markdown):
    """The file as (kind, lines): heading, code, table, list or paragraph."""
    lines = markdown.split("\n")
    i = 0
    while i < len(lines):
        line = lines[i]
        if not line.strip():
            i += 1
        elif line.startswith("```"):
            end = lines.index("```", i + 1)
            yield "code", lines[i + 1:end]
            i = end + 1
        elif line.startswith("#"):
            yield "heading", [line]
            i += 1
        else:
            start = i
            while i < len(lines) and lines[i].strip() and not lines[i].startswith(("#", "```")):
                i += 1
            kind = "table" if line.startswith("|") else "list" if line.startswith("- ") else "paragraph"
            yield kind, lines[start:i]


def list_items(lines):
    items = []
    for line in lines:
        if line.startswith("- "):
            items.append(line[2:])
        else:
            items[-1] += " " + line.strip()
    return items


def page(markdown, version):
    out = []
    for kind, lines in blocks(markdown):
        if kind == "heading":
            level, _, title = lines[0].partition(" ")
            if level == "#":
                out += ['.TH VANTEL\\-ASPECTRATIO 5 "" "Vantel %s" "File Formats"' % escape(version),
                        ".nh", ".SH NAME", "vantel\\-aspectratio \\- " + escape(title[0].lower() + title[1:]),
                        ".SH DESCRIPTION"]
            elif level == "##":
                out.append(".SH " + escape(SECTION_NAMES.get(title, title.upper())))
            else:
                out.append(".SS " + inline(title))
        elif kind == "code":
            out += [".PP", ".RS 2", ".nf"] + [escape(line) for line in lines] + [".fi", ".RE", ".PP"]
        elif kind == "table":
            out += table(lines)
        elif kind == "list":
            for item in list_items(lines):
                out += [".IP \\(bu 2", inline(item)]
            out.append(".PP")
        else:
            out += [inline(line.strip()) for line in lines] + [".PP"]
    out += [".SH SEE ALSO", "vantel(1); docs/format.md in Vantel's sources holds the same text."]
    return "\n".join(out) + "\n"


def main():
    source, version, output = sys.argv[1:4]
    with open(source, encoding="utf-8") as file:
        text = page(file.read(), version)
    with open(output, "w", encoding="utf-8") as file:
        file.write(text)


if __name__ == "__main__":
    main()
