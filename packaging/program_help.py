"""The help of a program that reads its command line with our command-line library, taken apart.

Used by the makers of the manual pages and of the completion, so that both tell what the program itself tells.
"""
import dataclasses
import re
import subprocess

GROUP = re.compile(r"^([A-Z][A-Za-z ]*):$")
ENTRY = re.compile(r"^  (\S.*?)(?: {2,}(\S.*))?$")
MORE_OF_ENTRY = re.compile(r"^ {10,}(\S.*)$")
CHOICES = re.compile(r":\{(.*)\}")


@dataclasses.dataclass
class Entry:
    """A line of a group: a positional, an option or a subcommand."""
    name: str
    text: str

    def flags(self):
        return [word for word in self.name.split(" ")[0].split(",") if word.startswith("-")]

    def takes_value(self):
        return " " in self.name

    def choices(self):
        found = CHOICES.search(self.name)
        return found.group(1).split(",") if found else []


@dataclasses.dataclass
class Help:
    description: str
    usage: str
    groups: dict
    footer: str

    def entries(self, group):
        return self.groups.get(group, [])


def parsed(text):
    """Takes a help text apart; whatever stands where nothing is expected is an error, lest it be lost."""
    lines = text.rstrip("\n").split("\n")
    usage_at = next(number for number, line in enumerate(lines) if line.startswith("Usage: "))
    found = Help(" ".join(lines[:usage_at]).strip(), lines[usage_at][len("Usage: "):], {}, "")
    group = None
    for number, line in enumerate(lines[usage_at + 1:], usage_at + 1):
        heading, entry, more = GROUP.match(line), ENTRY.match(line), MORE_OF_ENTRY.match(line)
        if line == "":
            group = None
        elif heading and lines[number - 1] == "" and group is None:
            group = found.groups.setdefault(heading.group(1), [])
        elif group is None:
            found.footer = "\n".join(lines[number:])
            break
        elif entry:
            group.append(Entry(entry.group(1), entry.group(2) or ""))
        elif more and group:
            group[-1].text = f"{group[-1].text} {more.group(1)}".strip()
        else:
            raise ValueError(f"not understood: {line}")
    return found


def of_program(program, *subcommand):
    run = subprocess.run([program, *subcommand, "--help"], capture_output=True, text=True, check=True)
    return parsed(run.stdout)
