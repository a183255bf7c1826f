#!/usr/bin/env python3
"""Writes the table of docs/differences.md from the headers' comments; with --check only compares.

A sentence that says "differs from ISO C" (POSIX, Annex K) or "deliberately" counts, with the one before it,
which says from what; of a comment's paragraph that begins with such words, the whole.
"""

import glob
import re
import sys

from filter import blocks, declarations, text_of

PAGE = "docs/differences.md"
DIFFERS = re.compile(r"\b(differs? from|unlike) (ISO C|POSIX|Annex K)|\bdeliberately\b", re.I)
BEGIN, END = "<!-- from the headers -->\n", "<!-- end -->\n"


def sentences(lines):
    """The sentences of a comment that tell a difference."""
    for paragraph in re.split(r"\n\s*\n", "\n".join(lines)):
        if paragraph.startswith("  "): # a table
            yield from (re.sub(r"\s+", " ", line).strip() for line in paragraph.split("\n") if DIFFERS.search(line))
            continue
        text = re.sub(r"\s+", " ", paragraph).strip()
        if re.match(r"where (this|they) differs?", text, re.I):
            yield text
            continue
        before = ""
        for sentence in re.split(r"(?<=[.:;]) (?=[A-Z(])|(?<=\.\)) ", text):
            if DIFFERS.search(sentence):
                yield f"{before} {sentence}".strip()
            before = sentence


def names(code):
    """What the declarations of a block declare."""
    found = []
    for piece in declarations(code):
        name = re.match(r"#define (\w+)", piece) or re.search(r"(\w+)\((?!\*)", re.sub(r"__\w+__|__attribute__\S* ", "", piece))
        if name and name[1] not in found:
            found.append(name[1])
    return found


def rows():
    for path in sorted(glob.glob("include/**/*.h", recursive=True)):
        parts = list(blocks(open(path, encoding="utf-8").read()))
        section = ""
        for (kind, content), (follower, code) in zip(parts, parts[1:]):
            if kind != "comment":
                continue
            title = re.match(r"/\* ---- (.*?) -* ?\*/", content)
            section = title[1] if title else section
            about = names(code) if follower == "code" and not code[0].startswith("#ifndef _") else []
            what = ", ".join(f"`{name}`" for name in about) or section or "all"
            for sentence in sentences(text_of(content)):
                # Bars would end the table's column.
                yield f"| `<{path.removeprefix('include/')}>` | {what} | {sentence.replace('|', '&#124;').replace('<', '&lt;')} |\n"


def main():
    page = open(PAGE, encoding="utf-8").read()
    before, rest = page.split(BEGIN)
    table = "| header | what | difference |\n| --- | --- | --- |\n" + "".join(rows())
    due = before + BEGIN + table + END + rest.split(END)[1]
    if sys.argv[1:] == ["--check"]:
        if page != due:
            sys.exit(f"{PAGE} is not what the headers say: run tools/manual/differences.py")
    else:
        with open(PAGE, "w", encoding="utf-8") as output:
            output.write(due)


main()
