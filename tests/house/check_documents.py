#!/usr/bin/env python3
"""Every link of README and docs leads somewhere: files and folders exist, headings stand under the named anchor,
pictures are pictures, and every picture and page of docs is reached from README.

usage: check_documents.py ROOT
"""
import pathlib
import re
import sys
import tempfile

LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
FENCE = re.compile(r"^```.*?^```", re.M | re.S)
CODE = re.compile(r"`[^`\n]*`")
INDENTED = re.compile(r"^ {4}.*$", re.M)
NAMED = re.compile(r'<a id="([^"]+)">')
HEADING = re.compile(r"^#+ (.*)$", re.M)
ABROAD = re.compile(r"^[a-z]+:")
PICTURES = {".png": b"\x89PNG\r\n\x1a\n", ".jpg": b"\xff\xd8\xff", ".svg": b"<svg"}


def prose(text):
    """The text without what stands there as code."""
    return CODE.sub("", INDENTED.sub("", FENCE.sub("", text)))


def anchor(heading):
    """As the web pages of repositories name a heading."""
    words = re.sub(r"[^\w\- ]", "", CODE.sub(lambda code: code.group()[1:-1], heading).lower())
    return words.strip().replace(" ", "-")


def anchors(page):
    text = FENCE.sub("", page.read_text(encoding="utf-8"))
    return {anchor(heading) for heading in HEADING.findall(text)} | set(NAMED.findall(text))


def links(page):
    return LINK.findall(prose(page.read_text(encoding="utf-8")))


def fault(root, page, link):
    name, _, heading = link.partition("#")
    target = (page.parent / name).resolve() if name else page
    if not target.is_relative_to(root):
        return "leads out of the project"
    if not target.exists():
        return "leads to nothing"
    if heading and heading not in anchors(target):
        return "names a heading that isn't there"
    mark = PICTURES.get(target.suffix)
    if mark and not target.read_bytes().startswith(mark):
        return "is no picture of its kind"
    return None


def reached(root, start):
    """Everything of the project that links lead to, page by page."""
    found, waiting = {start}, [start]
    while waiting:
        page = waiting.pop()
        for link in links(page):
            name = link.partition("#")[0]
            target = (page.parent / name).resolve()
            if name and not ABROAD.match(link) and target not in found:
                found.add(target)
                if target.suffix == ".md" and target.is_file():
                    waiting.append(target)
    return found


def faults(root):
    pages = [root / "README.md", *sorted((root / "docs").glob("*.md")), *sorted(root.glob("[a-z]*/README.md"))]
    for page in pages:
        for link in links(page):
            found = None if ABROAD.match(link) else fault(root, page, link)
            if found:
                yield f"{page.relative_to(root)}: {link} {found}"
    known = reached(root, root / "README.md")
    for path in sorted([*(root / "docs").glob("*.md"), *(root / "docs/pictures").glob("*")]):
        if path not in known:
            yield f"{path.relative_to(root)}: no way leads there from README"


def prove_that_faults_are_found():
    """A project of three pages with one fault of each kind."""
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder).resolve()
        (root / "docs/pictures").mkdir(parents=True)
        (root / "README.md").write_text("[a](docs/a.md#here-it-is) [b](docs/a.md#there) [c](none.md) [d](../..)\n"
                                        "![e](docs/pictures/e.png) `[f](g)` [h](https://h)\n\n    [i](j)\n")
        (root / "docs/a.md").write_text("# Here *it* is\n")
        (root / "docs/lost.md").write_text("[README](../README.md)\n")
        (root / "docs/pictures/e.png").write_text("text")
        assert list(faults(root)) == [
            "README.md: docs/a.md#there names a heading that isn't there",
            "README.md: none.md leads to nothing",
            "README.md: ../.. leads out of the project",
            "README.md: docs/pictures/e.png is no picture of its kind",
            "docs/lost.md: no way leads there from README",
        ], list(faults(root))


def main():
    prove_that_faults_are_found()
    found = list(faults(pathlib.Path(sys.argv[1]).resolve()))
    print("\n".join(found) or "every link leads somewhere")
    return 1 if found else 0


sys.exit(main())
