#!/usr/bin/env python3
"""Writes the vantel(1) manual page from the command's own --help texts.

Usage: help-to-man.py VANTEL OUTPUT

The help is laid out as: a description, "Usage:" with one form per line,
groups ("Input:", "Output:", ...) of two-space-indented entries whose
descriptions start at a fixed column, and a footer. The footer of the
command as a whole holds lists laid out as groups, "Environment:",
"Files:" and "Exit codes (a note):", which become the page's ENVIRONMENT,
FILES and EXIT STATUS sections; its other paragraphs become DESCRIPTION.
This turns each part into its roff counterpart, so the page says exactly
what --help says.
"""
import re
import subprocess
import sys

HEADING = re.compile(r"^([A-Z][A-Za-z ]*?)(?: \((.+)\))?:$")  # "Group:" or "Group (note):"


def help_text(vantel, *command):
    args = [vantel, *command, "--help"]
    return subprocess.run(args, check=True, capture_output=True, text=True).stdout


def roff(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return re.sub(r"^([.'])", r"\\&\1", text, flags=re.M)


def blocks(text):
    """Blank-line separated paragraphs of the help, as lists of lines."""
    return [b.split("\n") for b in text.strip("\n").split("\n\n")]


def entries(lines):
    """(name, description) pairs of a group's two-space-indented lines."""
    items = []
    for line in lines:
        if line.startswith("  ") and not line.startswith("   "):
            name, _, description = line.strip().partition("  ")
            items.append([name, description.strip()])
        else:
            items[-1][1] = (items[-1][1] + " " + line.strip()).strip()
    return items


def section(help):
    """Description, usage forms, [(group, note, entries)], footer paragraphs."""
    parts = blocks(help)
    description = " ".join(parts[0])
    usage, groups, footer = [], [], []
    for part in parts[1:]:
        heading = HEADING.match(part[0])
        if part[0] == "Usage:":
            usage = [line.strip() for line in part[1:]]
        elif heading:
            groups.append((heading.group(1), heading.group(2), entries(part[1:])))
        else:
            footer.append(part)
    return description, usage, groups, footer


def footer_roff(paragraphs):
    out = []
    for paragraph in paragraphs:
        for line in paragraph:
            if line.startswith("Exit codes:"):
                out.append(".PP")
            if line.startswith("  "):
                out += [".br", roff(line.strip())]
            else:
                out.append(roff(line))
        out.append(".PP")
    return out


def entry_roff(name, description):
    return [".TP", "\\fB" + roff(name) + "\\fR", roff(description)]


def command_roff(vantel, *command):
    """The command's subsection, then one for each command under it (fdl apply)."""
    description, usage, groups, footer = section(help_text(vantel, *command))
    out = [".SS " + roff(" ".join(("vantel",) + command)), roff(description), ".PP", ".nf"]
    out += [roff(form) for form in usage] + [".fi"]
    for group, _, items in groups:
        if group == "Options":
            continue  # --help alone, the same for every command
        out += [".PP", "\\fI" + roff(group) + "\\fR"]
        for name, text in items:
            out += entry_roff(name, text)
    out += [".PP"] + footer_roff(footer)
    for group, _, items in groups:
        if group == "Commands":
            for name, _ in items:
                out += command_roff(vantel, *command, name)
    return out


def page(vantel):
    description, usage, groups, footer = section(help_text(vantel))
    name, _, summary = description.partition(": ")
    version = subprocess.run([vantel, "--version"], check=True, capture_output=True,
                             text=True).stdout.split("\n")[0]
    out = ['.TH VANTEL 1 "" "%s" "User Commands"' % roff(version),
           ".SH NAME", roff(name) + " \\- " + roff(summary),
           ".SH SYNOPSIS", ".nf"] + [roff(form) for form in usage] + [".fi"]
    items = {group: entries for group, _, entries in groups}
    notes = {group: note for group, note, _ in groups if note}

    def listed(heading, group):
        out = [".SH " + heading] + [line for item in items.get(group, []) for line in entry_roff(*item)]
        return out + ([".PP", roff(notes[group][0].upper() + notes[group][1:] + ".")] if group in notes else [])

    out += [".SH DESCRIPTION"] + footer_roff(footer)
    out += listed("OPTIONS", "Options") + listed("COMMANDS", "Commands")
    for command, _ in items.get("Commands", []):
        out += command_roff(vantel, command)
    out += listed("ENVIRONMENT", "Environment") + listed("FILES", "Files") + listed("EXIT STATUS", "Exit codes")
    out += [".SH SEE ALSO", "vantel\\-aspectratio(5) for the format of overlay documents,",
            "rsvg\\-convert(1), pdfinfo(1), and the README of Vantel's sources"]
    return "\n".join(line for line in out if line != "") + "\n"


def main():
    vantel, output = sys.argv[1:3]
    text = page(vantel)
    with open(output, "w", encoding="utf-8") as file:
        file.write(text)


if __name__ == "__main__":
    main()
