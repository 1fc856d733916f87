#!/usr/bin/env python3
"""Holds the pages of README.md, CONTRIBUTING.md and docs/ to the tree: what they quote and what they link to.

A C++ block stands behind a comment that names its file, <!-- from examples/ListCameras.cpp -->, and its lines stand in
that file one after the other, but for their indentation and their ends of line. A line "// ..." is a gap.
Links lead to files of the tree, and to headings that they have.

Prints each offence as FILE:LINE: what is wrong, and fails if there is any.
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
QUOTE = re.compile(r"<!-- from (\S+) -->")
LINK = re.compile(r"\[[^\]]*\]\(([^)\s]+)\)")


def bare(text):
    return " ".join(text.split())


def anchors(page):
    """The headings of a page as a browser's links spell them."""
    headings = re.findall(r"^#+ (.*)$", page.read_text(encoding="utf-8"), re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def offences_of(page):
    lines = page.read_text(encoding="utf-8").splitlines()
    source, block, start = None, None, 0
    for number, line in enumerate(lines, 1):
        if block is not None:
            if line.startswith("```"):
                yield from quoted_wrongly(start, source, block)
                source, block = None, None
            else:
                block.append(line)
        elif line.startswith("```cpp"):
            block, start = [], number
        elif match := QUOTE.match(line):
            source = match[1]
        for target in LINK.findall(line) if block is None else []:
            yield from leads_nowhere(page, number, target)
    if block is not None:
        yield start, "the block has no end"


def quoted_wrongly(number, source, block):
    if source is None:
        yield number, "no comment names the file that this quotes"
        return
    path = ROOT / source
    if not path.is_file():
        yield number, f"quotes {source}, which isn't there"
        return
    text, place = bare(path.read_text(encoding="utf-8")), 0
    for part in re.split(r"^\s*// \.\.\.$", "\n".join(block), flags=re.M):
        found = text.find(bare(part), place)
        if found < 0:
            yield number, f"isn't what {source} has: {bare(part)[:70]}"
            return
        place = found + len(bare(part))


def leads_nowhere(page, number, target):
    if re.match(r"\w+:", target):
        return
    name, _, anchor = target.partition("#")
    path = (page.parent / name).resolve() if name else page
    if not path.exists():
        yield number, f"leads to {target}, which isn't there"
    elif anchor and path.suffix == ".md" and anchor not in anchors(path):
        yield number, f"leads to {target}, a heading that isn't there"


def main():
    pages = [ROOT / "README.md", ROOT / "CONTRIBUTING.md", *sorted((ROOT / "docs").glob("*.md"))]
    offences = [f"{page.relative_to(ROOT)}:{number}: {what}" for page in pages for number, what in offences_of(page)]
    for offence in offences:
        print(offence)
    return 1 if offences else 0


if __name__ == "__main__":
    sys.exit(main())
