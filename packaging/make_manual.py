#!/usr/bin/env python3
"""Makes the manual page of a program from its live help, gzipped as the system keeps it.

usage: make_manual.py PROGRAM VERSION PAGE.1.gz [SEE_ALSO...]
"""
import pathlib
import re
import sys

import packed
import program_help

MARKS = {"\\": "\\e", "-": "\\-", "'": "\\(aq", "`": "\\(ga", "^": "\\(ha", "~": "\\(ti"}
# The headings of a manual page for those of a help; what stands without a heading are notes.
SECTIONS = {"Exit codes:": "EXIT STATUS", "Environment:": "ENVIRONMENT", "Files:": "FILES"}
TITLES = {"Positionals": "ARGUMENTS"}
LIST_ENTRY = re.compile(r"^  (\S.*?)(?: {2,}|: )(\S.*)$")


def escaped(text):
    """As text of the page: no character of it is taken for a command or for typography."""
    return "".join(MARKS.get(character, character) for character in text)


def line(text):
    return "\\&" + escaped(text) if text.startswith((".", "'")) else escaped(text)


def bold(text):
    return f"\\fB{escaped(text)}\\fR"


def name_of(entry):
    """The word to type in bold, what stands for a value in italics. The usage tells what must be there."""
    word, _, value = entry.name.partition(" ")
    if not entry.flags():
        return f"\\fI{escaped(word)}\\fR"
    flags = ", ".join(bold(flag) for flag in entry.flags())
    value = "|".join(entry.choices()) or re.sub(r"^(\w+):.*", r"\1", value)
    return f"{flags} \\fI{escaped(value)}\\fR" if value else flags


def entries(group):
    for entry in group:
        yield from (".TP", name_of(entry), line(entry.text) if entry.text else "\\&")


def shown(lines):
    """A paragraph; indented lines become a list. What goes on in a next line stands under the first one's text."""
    for each in lines:
        found = LIST_ENTRY.match(each)
        yield from (".TP", bold(found.group(1)), line(found.group(2))) if found else (line(each.lstrip()),)


def paragraphs(text):
    for paragraph in text.split("\n\n"):
        yield from (".PP", *shown(paragraph.split("\n")))


def closing(text):
    """The sections that a page ends with."""
    found = [paragraph.split("\n") for paragraph in text.split("\n\n")]
    for heading, title in SECTIONS.items():
        for lines in found:
            if lines[0] == heading:
                yield from (f".SH {title}", *shown(lines[1:]))
    notes = "\n\n".join("\n".join(lines) for lines in found if lines[0] not in SECTIONS)
    if notes:
        yield from (".SH NOTES", *paragraphs(notes))


def commands(program, own):
    if not own.entries("Subcommands"):
        return
    yield ".SH COMMANDS"
    for command in own.entries("Subcommands"):
        told = program_help.of_program(program, command.name)
        yield from (f".SS {escaped(told.usage)}", line(told.description) + ".")
        for group in told.groups.values():
            yield from entries(entry for entry in group if "--help" not in entry.flags())
        if told.footer != own.footer:
            yield from paragraphs(told.footer)


def page(program, version, see_also):
    own = program_help.of_program(program)
    name = pathlib.Path(program).name
    summary = (own.description[0].lower() + own.description[1:]).rstrip(".")
    yield from (f'.TH {name.upper()} 1 "" "QRV_Edit {version}" "User Commands"', ".nh", ".ad l", ".SH NAME")
    yield from (f"{name} \\- {escaped(summary)}", ".SH SYNOPSIS", escaped(own.usage), ".SH DESCRIPTION")
    yield line(own.description.rstrip(".") + ".")
    for title, group in own.groups.items():
        if title != "Subcommands":
            yield from (f".SH {TITLES.get(title, title.upper())}", *entries(group))
    yield from commands(program, own)
    if own.footer:
        yield from closing(own.footer)
    if see_also:
        yield from (".SH SEE ALSO", ", ".join(f"{bold(other)}(1)" for other in see_also))


def main():
    program, version, target, *see_also = sys.argv[1:]
    text = "\n".join(page(program, version, see_also)) + "\n"
    packed.write(target, text.encode())


main()
