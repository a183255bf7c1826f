#!/usr/bin/env python3
"""Turns a public header into what Doxygen reads; Doxygen calls it with a file name.

The headers' comments are plain. A comment documents all declarations that follow it up to the next
blank line or comment; each of them gets a copy. One that no declaration follows belongs to its section
("---- Title ----"), the first one of a file to the file. Indented lines are tables and stay as they are.
"""

import re
import sys


def escape(text):
    """Nothing in the text is a command, a tag or markup, but `code`."""
    text = re.sub(r'([\\@<>&#%"$])', r"\\\1", text)
    return re.sub(r"`([^`\n]+)`", r"<code>\1</code>", text)


def text_of(comment):
    """The lines of a comment without its frame."""
    body = re.sub(r"^/\*|\*/$", "", comment.strip())
    lines = [re.sub(r"^ \* ?|^   ?(?=\S)| \*$", "", line.rstrip()) for line in body.split("\n")]
    return "\n".join(lines).strip("\n").lstrip(" ").rstrip().split("\n")


def documentation(lines):
    """Paragraphs as a line each, so that none of their lines looks like a list; tables verbatim."""
    result, table = [""], []

    def end_table():
        while table and not table[-1].strip():
            table.pop()
        if table:
            result.extend(["@verbatim", *table, "@endverbatim", "", ""])
            table.clear()

    for line in lines:
        if line.startswith("  ") or (table and not line.strip()):
            table.append(line)
        elif not line.strip():
            end_table()
            result.extend(["", ""])
        else:
            end_table()
            result[-1] = f"{result[-1]} {escape(line)}".strip()
    end_table()
    return "\n".join(result).strip()


def declarations(lines):
    """Splits lines of code into whole declarations and directives."""
    piece, depth = [], 0
    for line in lines:
        piece.append(line)
        if piece[0].startswith("#"):
            complete = not line.endswith("\\")
        else:
            depth += sum(line.count(c) for c in "({[") - sum(line.count(c) for c in ")}]")
            code = re.sub(r"/\*.*?\*/", "", line).rstrip()
            complete = depth == 0 and (code.endswith((";", "}")) or code.startswith("_VEXRT_"))
        if complete:
            yield "\n".join(piece)
            piece = []
    if piece:
        yield "\n".join(piece)


UNDOCUMENTED = re.compile(r"#(?!define)|_VEXRT_(BEGIN|END)|#define \w+_DEFINED\b|#define _\w+_H\b|struct \w+;")


def with_comments_inside(code):
    """Comments at the end of a member's or constant's line describe it."""
    return re.sub(r"^(.*\S.*?)/\*\s*(.*?)\s*\*/$", lambda m: f"{m[1]}/**< {escape(m[2])} */", code, flags=re.M)


def blocks(text):
    """Comments that begin a line, and the lines of code between them; blank lines are empty blocks."""
    lines = text.split("\n")
    at = 0
    while at < len(lines):
        start = at
        if lines[at].startswith("/*"):
            while not lines[at].rstrip().endswith("*/"):
                at += 1
            at += 1
            yield "comment", "\n".join(lines[start:at])
        elif not lines[at].strip():
            at += 1
            yield "blank", ""
        else:
            while at < len(lines) and lines[at].strip() and not lines[at].startswith("/*"):
                at += 1
            yield "code", lines[start:at]


def convert(text):
    """The header as Doxygen reads it."""
    parts = list(blocks(text))
    output, open_section, first = [], False, True
    for number, (kind, content) in enumerate(parts):
        follower = parts[number + 1][0] if number + 1 < len(parts) else "end"
        if kind == "comment" and first:
            first = False
            lines = text_of(content)
            title = re.sub(r"^<.*?> - |^\S+ - ", "", lines[0])
            output.append(f"/** @file\n@brief {documentation([title])}\n\n{documentation(lines[1:])}\n*/")
        elif kind == "comment" and (section := re.match(r"/\* ---- (.*?) -* ?\*/", content)):
            if open_section:
                output.append("/** @} */")
            open_section = True
            output.append(f"/** @name {escape(section[1][0].upper() + section[1][1:])}\n@{{ */")
        elif kind == "comment" and follower != "code":
            note = documentation(text_of(content))
            output.append(f"/** @file\n\n{note}\n*/")
        elif kind == "code":
            before = parts[number - 1] if number else ("blank", "")
            note = documentation(text_of(before[1])) if before[0] == "comment" and number > 1 else ""
            for piece in declarations(content):
                if note and not UNDOCUMENTED.match(piece):
                    output.append(f"/** {note} */")
                output.append(with_comments_inside(piece))
        if kind == "blank":
            output.append("")
    if open_section:
        output.append("/** @} */")
    return "\n".join(output) + "\n"


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as header:
        sys.stdout.write(convert(header.read()))
