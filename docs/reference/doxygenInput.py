#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Prints a header or a page as Doxygen wants to read it: its input filter.

    doxygenInput.py FILE

The headers and the pages are written for people and contain no markup of Doxygen.
In a header, this script

  - turns each comment of a declaration into one of Doxygen;
  - turns the paragraph that begins with "Returns" into the description of the result,
    the list of messages into a table, and lists in two columns into definition lists;
  - describes each parameter, from the list of parameters at the top of dataInterface.h;
  - groups the functions by the headings "==== Title ====".

In a page, it gives each heading the anchor that it has on a code hosting site, and
turns links between pages into links of the documentation.
"""
import os
import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
EXAMPLES = ROOT / "docs/reference/examples"
LEVELS = {"E": "error", "N": "notice", "I": "informational"}
GROUP_BEGINS = "\n@{ */"
STRING = r'"(?:\\.|[^"\\\n])*"'


def slug(title):
    """The anchor of a heading on a code hosting site."""
    words = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", title)
    return re.sub(r"[^\w\- ]", "", words.lower()).replace(" ", "-")


def escaped(text):
    """Text in which nothing is a command, a link or markup for Doxygen, except code in backticks."""
    pieces = re.split(r'(`[^`]*`|"[^"]*")', text)
    pieces[::2] = [re.sub(r"([\\@%#<>&$])", r"\\\1", piece) for piece in pieces[::2]]
    pieces[1::2] = [code(piece[1:-1]) if piece[0] == "`" else entities(piece) for piece in pieces[1::2]]
    return "".join(pieces)


def code(text):
    """Text in the font of code. Doxygen reads no command in it."""
    return f"<code>{entities(text)}</code>"


def entities(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


# ---- Headers: the text of a comment ---------------------------------------------


def text_lines(comment):
    """The lines of a comment without the comment's own characters."""
    lines = comment[2:-2].split("\n")
    return [re.sub(r"^\s*\* ?", "", lines[0]).strip()] + [re.sub(r"^\s*\* ?", "", line).rstrip()
                                                          for line in lines[1:]]


def blocks(lines):
    """The paragraphs, lists and definitions of a comment: (kind, lines), in their order.

    A line that is indented less than the block it follows begins a new one, even without
    an empty line between them.
    """
    found = []
    for line in lines:
        kind = kind_of(line)
        if kind == "empty":
            found.append(("empty", []))
        elif kind == "message":
            found.append(("message", [line]))
        elif kind == "item" and not (found and found[-1][0] == "message"):
            found.append(("item", [line]))
        elif kind == "definition" and not (found and found[-1][0] in ("message", "item")):
            found.append(("definition", [line]))
        elif kind != "text" and found and found[-1][0] in ("message", "item", "definition"):
            found[-1][1].append(line)
        elif found and found[-1][0] == "text":
            found[-1][1].append(line)
        else:
            found.append(("text", [line]))
    return [(kind, part) for kind, part in found if kind != "empty"]


def kind_of(line):
    if not line.strip():
        return "empty"
    if re.match(rf" +[EIN] {STRING}", line):
        return "message"
    if re.match(r" *- ", line):
        return "item"
    if re.match(r"  \S", line):
        return "definition"
    return "more" if line.startswith("  ") else "text"


def definition(lines):
    """(term, text): the columns are two or more blanks apart, or the text is below the term."""
    columns = re.match(r" +(\S.*?) {2,}(\S.*)$", lines[0])
    term, first = columns.groups() if columns else (lines[0].strip(), "")
    return term, " ".join([first] + [line.strip() for line in lines[1:]]).strip()


def message_row(lines):
    level, text, remark = re.match(rf" +([EIN]) ({STRING})(.*)$", lines[0]).groups()
    remark = " ".join([remark.strip()] + [line.strip() for line in lines[1:]]).strip()
    return (f"<tr><td>{code(text)}</td><td>{LEVELS[level]}</td>"
            f"<td>{escaped(remark)}</td></tr>")


def paragraph(lines):
    return escaped("\n".join(line.strip() for line in lines))


def marked_up(lines):
    """The markup of Doxygen for the lines of a comment."""
    text, before = [], None
    for kind, part in blocks(lines):
        if before in ("definition", "message") and kind != before:
            text.append({"definition": "</dl>", "message": "</table>"}[before])
        if kind == "text":
            words = paragraph(part)
            returns = re.match(r"(?:Always r|R)eturns\b", words)
            text.append(("\n@return " if returns else "\n") + words)
        elif kind == "item":
            text.append("- " + paragraph([part[0].lstrip()[2:]] + part[1:]).replace("\n", "\n  "))
        elif kind == "definition":
            term, meaning = definition(part)
            text.append(("" if before == kind else "<dl>")
                        + f"<dt>{escaped(term)}</dt><dd>{escaped(meaning)}</dd>")
        else:
            opening = "\n@par Messages\n<table><tr><th>Message</th><th>Level</th><th>When</th></tr>"
            text.append(("" if before == kind else opening) + message_row(part))
        before = kind
    if before in ("definition", "message"):
        text.append({"definition": "</dl>", "message": "</table>"}[before])
    return "\n".join(text).strip()


# ---- Headers: parameters ----------------------------------------------------------


def parameter_texts():
    """(names, text) of the list of parameters at the top of the interface."""
    top = re.search(r"/\*(?:(?!\*/).)*?Parameters, by(?:(?!\*/).)*\*/",
                    (ROOT / "alg/dataInterface.h").read_text(), re.S)[0]
    lines = text_lines(top)
    begin = next(i for i, line in enumerate(lines) if line.startswith("Parameters, by"))
    rows = [definition(part) for kind, part in blocks(lines[begin:lines.index("", begin)])
            if kind == "definition"]
    return [(names.split(", "), text) for names, text in rows]


def described(parameter, texts):
    """The description of a parameter; of names that end in dots, the longest beginning decides."""
    exact = [text for names, text in texts if parameter in names]
    alike = sorted((len(name), text) for names, text in texts for name in names
                   if name.endswith("...") and parameter.startswith(name[:-3]))
    return exact[0] if exact else alike[-1][1] if alike else ""


def parameters(declaration, texts):
    """The markup for the parameters of a function; empty for anything else."""
    declaration = re.sub(r" ALG_PRINTF_LIKE\(.*\);", ";", declaration)
    arguments = re.match(r"[\w ]+?\b\w+\((.*)\);", declaration, re.S)
    if not arguments:
        return ""
    marked = []
    for argument in arguments[1].split(","):
        name = re.search(r"\(\*(\w+)\)|(\w+)(?:\[\w*\])*\s*$", argument)
        if "..." in argument:
            marked.append("@param ... what the format prints")
        elif name and (text := described(name[1] or name[2], texts)):  # Doxygen reports those without
            marked.append(f"@param {name[1] or name[2]} {escaped(text)}")
    return "\n".join(marked)


# ---- Headers: the whole file --------------------------------------------------------


def header(path):
    source = path.read_text()
    texts = parameter_texts()
    done, at, group, enclosing = [], 0, False, ""
    for comment in re.finditer(r"/\*.*?\*/", source, re.S):
        code = macros_closed(done, source[at:comment.start()])
        for opened in re.finditer(r"\b(enum|struct)\b[^;{}]*\{|\}", code):
            enclosing = opened[1] or ""
        done.append(code)
        lines = text_lines(comment[0])
        after = source[comment.end():]
        title = re.fullmatch(r"==== (.*?) =+", lines[0])
        trailing = code.rpartition("\n")[2].strip() != ""
        if title:
            done.append(("/** @} */\n" if group else "")
                        + f"/** @defgroup {slug(title[1])} {escaped(title[1])}" + GROUP_BEGINS)
            group = True
        elif lines[0].startswith(("SPDX", "----")) or (enclosing == "enum" and not trailing):
            pass
        elif trailing:
            done.append("/**< " + marked_up(lines).replace("\n", " ") + " */")
        elif not group_text(done, marked_up(lines), after):
            done.append(declared(path, lines, after, texts))
        at = comment.end()
    rest = source[at:]
    end = rest.rfind("#ifdef __cplusplus") if group else -1
    return "".join(done) + (rest[:end] + "/** @} */\n" + rest[end:] if group else rest)


def macros_closed(done, code):
    """The code after a comment of macros, with the end of their group at the first empty line."""
    if not done or not done[-1].endswith("/** @{ */"):
        return code
    macros, _, rest = code.partition("\n\n")
    return macros + "\n/** @} */\n\n" + rest


def group_text(done, text, after):
    """Adds the comment to the group that it follows without declaring anything; tells whether it has."""
    if len(done) < 2 or not done[-2].endswith(GROUP_BEGINS) or not after.startswith("\n\n"):
        return False
    done[-2] = done[-2].removesuffix(GROUP_BEGINS) + "\n\n" + text + "\n" + GROUP_BEGINS
    return True


def declared(path, lines, after, texts):
    declaration = after.lstrip("\n")
    if declaration.startswith("#ifndef ALG_"):  # the comment of the whole file
        return f"/** @file {path.name}\n\n{marked_up(lines)}\n*/"
    if declaration.startswith("#define"):  # one comment for all lines up to the next empty one
        return f"/** {marked_up(lines)}\n*/\n/** @{{ */"
    prototype = re.match(r"[^;{]*;", declaration)
    extra = parameters(prototype[0], texts) + example(prototype[0]) if prototype else ""
    return f"/** {marked_up(lines + messages_of_another(path, lines))}\n\n{extra}\n*/"


def example(declaration):
    """The part of an example about a function or a variable. It is an error if there is none."""
    name = re.match(r"\w[\w ]*[ *](\w+)(?:\(|\[.*\];|;)", declaration)
    if not name:
        return ""
    marker = f"/* [{name[1]}] */"
    files = [path.name for path in sorted(EXAMPLES.iterdir()) if marker in path.read_text()]
    return f"\n@par Example\n@snippet {(files or ['no-example'])[0]} {name[1]}\n"


def messages_of_another(path, lines):
    """The list of messages of the function that the comment refers to for them."""
    other = re.search(r"(\w+)\(\).*the same messages under its own name", " ".join(lines))
    if not other:
        return []
    before = path.read_text().partition(f" {other[1]}(")[0]
    return [line for line in text_lines(before[before.rindex("/*"):before.rindex("*/") + 2])
            if kind_of(line) == "message"]


# ---- Pages -----------------------------------------------------------------------------


def page_name(path):
    return re.sub(r"\W", "-", str(path.relative_to(ROOT).with_suffix("")).lower())


def linked(path, text):
    """The text with its links to files of the repository turned into links of the documentation."""
    def one(link):
        words, target = link[1], link[2]
        where, _, anchor = target.partition("#")
        if re.match(r"[a-z]+:", target):
            return link[0]
        to = Path(os.path.normpath(path.parent / where)) if where else path
        words = words.strip("`")
        if to.suffix == ".md" and to in PAGES:
            return f'@ref {page_name(to) + ("-" + anchor if anchor else "")} "{words}"'
        if to.parent == ROOT / "alg" and to.suffix == ".h":
            return f'@ref {to.name} "{words}"'
        return f"<code>{words}</code>"
    return re.sub(r"\[([^\]]+)\]\(([^)\s]+)\)", one, text)


PAGES = [ROOT / "README.md", *(ROOT / name for name in ("CONTRIBUTING.md", "CHANGELOG.md", "SECURITY.md")),
         *(ROOT / "docs").glob("*.md")]


def page(path):
    """The page with anchors and links; code blocks stay as they are."""
    done, anchors = [], Anchors(path)
    text = path.read_text()
    paragraphs = re.split(r"(^```.*?^```$)", text, flags=re.M | re.S)
    for number, part in enumerate(paragraphs):
        if number % 2:
            done.append(part.replace("```console", "```sh").replace("```text", "```"))
            continue
        part = re.sub(r"<!-- picture: (\w+) -->", r"\n@image html \1.svg\n", part)
        part = re.sub(r"^<!--.*?-->\n", "", part, flags=re.M | re.S)
        part = "".join(span(piece[1:-1]) if odd % 2 else outside_code(piece)
                       for odd, piece in enumerate(re.split(r"(`[^`]+`)", linked(path, part))))
        part = re.sub(r"\*\*((?:(?!\n\n|\*\*).)+)\*\*", r"<b>\1</b>", part, flags=re.S)
        done.append(re.sub(r"^(#{1,6}) +(.*?)[ #]*$", anchors.heading, part, flags=re.M))
    return "".join(done)


def span(text):
    """Code for Doxygen, which ends a span in single backticks at a single quote or a line's end."""
    return "``" + re.sub(r"\s+", " ", text) + "``"


def outside_code(text):
    """Text in which only what linked() has written is a command."""
    text = re.sub(r'(@ref \S+ ".*?")|"', lambda found: found[1] or "&quot;", text)
    text = re.sub(r"<(?!/?code>)", r"\\<", text)
    return re.sub(r"@(?!ref |image )", r"\\@", text)


class Anchors:
    """Gives the headings of a page their anchors; one that occurs again gets a number."""

    def __init__(self, path):
        self.page, self.seen, self.level = page_name(path), {}, 0

    def heading(self, match):
        title = match[2]
        anchor = slug(re.sub(r"@ref \S+ \"(.*?)\"", r"\1", title))
        self.seen[anchor] = self.seen.get(anchor, -1) + 1
        if self.seen[anchor]:
            anchor += f"-{self.seen[anchor]}"
        self.level = min(len(match[1]), self.level + 1)  # Doxygen wants no level left out
        name = self.page if self.level == 1 else f"{self.page}-{anchor}"
        return f"{'#' * self.level} {title} {{#{name}}}"


def main():
    path = Path(sys.argv[1]).resolve()
    sys.stdout.write(page(path) if path.suffix == ".md" else header(path))


if __name__ == "__main__":
    main()
