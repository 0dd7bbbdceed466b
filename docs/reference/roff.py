# SPDX-License-Identifier: Apache-2.0
"""Turns Doxygen's XML into the text of manual pages, in the macros of man(7)."""
import re
import textwrap

WIDTH = 80
NOTHING = ("", "-", "as stored")  # cells of a table that say nothing
BLOCKS = {"itemizedlist", "variablelist", "table", "programlisting", "verbatim", "simplesect",
          "parameterlist", "sect1", "sect2", "sect3", "sect4"}
SECTIONS = {"simplesect", "parameterlist"}  # of a function's page; see manualPages.py

arguments = set()  # the names of the page's arguments, which are set in italics


def escaped(text, code=False):
    text = text.replace("\\", "\\e")
    return text.replace("-", "\\-") if code else text


def plain(element):
    """The text alone."""
    return re.sub(r"\s+", " ", "".join(element.itertext())).strip()


def source(listing):
    """The lines of a program, without empty lines around them."""
    lines = []
    for line in listing.iter("codeline"):
        lines.append("".join((part.text or "") + "".join(
            (" " if inner.tag == "sp" else inner.text or "") + (inner.tail or "") for inner in part)
            for part in line.iter("highlight")))
    if listing.tag == "verbatim":
        lines = listing.text.split("\n")
    while lines and not lines[0].strip():
        lines.pop(0)
    while lines and not lines[-1].strip():
        lines.pop()
    return [line.rstrip() for line in lines]


def inline(element):
    """The text of an element with its fonts. Blocks in it are left out."""
    text = escaped(element.text or "")
    for child in element:
        if child.tag == "sp":
            text += " "
        elif child.tag == "computeroutput" and plain(child) in arguments:
            text += f"\\fI{escaped(plain(child))}\\fR"
        elif child.tag in ("computeroutput", "bold"):
            text += f"\\fB{escaped(plain(child), child.tag != 'bold')}\\fR"
        elif child.tag == "emphasis":
            text += f"\\fI{escaped(plain(child))}\\fR"
        elif child.tag == "ref" and plain(child).endswith("()"):
            text += f"\\fB{plain(child)[:-2]}\\fR()"
        elif child.tag == "ulink":
            text += f"{inline(child)} ({child.get('url')})"
        elif child.tag == "ndash":
            text += "\\(en"
        elif child.tag not in BLOCKS:
            text += inline(child)
        text += escaped(child.tail or "")
    return text


def filled(text):
    """Lines of text that groff fills. None of them begins like a request."""
    lines = textwrap.wrap(re.sub(r"\s+", " ", text).strip(), WIDTH, break_long_words=False,
                          break_on_hyphens=False)
    return ["\\&" + line if line[0] in ".'" else line for line in lines]


def literal(lines):
    made = [escaped(line, code=True) for line in lines]
    return [".PP", ".RS 4", ".nf", *("\\&" + line if line[:1] in (".", "'") else line for line in made),
            ".fi", ".RE"]


def tagged(tag, lines):
    return [".TP", tag, *lines]


def table(element):
    """A row is a paragraph with the first column as its tag. The other columns have their titles."""
    rows = [[entry for entry in row.iter("entry")] for row in element.iter("row")]
    titles = [plain(entry) for entry in rows[0]]
    lines = []
    for row in rows[1:]:
        cells = [inline_of_entry(entry) for entry in row]
        rest = [(title, cell) for title, cell in zip(titles[1:], cells[1:]) if cell not in NOTHING]
        if not rest:
            lines += [".PP", *filled(cells[0])]
            continue
        if len(titles) > 3:  # the meaning first
            rest = rest[-1:] + rest[:-1]
        words = "; ".join(cell if len(titles) <= 2 or (len(titles) > 3 and i == 0) else f"{title}: {cell}"
                          for i, (title, cell) in enumerate(rest))
        lines += tagged(filled(cells[0])[0], filled(words))
    return lines


def inline_of_entry(entry):
    return " ".join(inline(para).strip() for para in entry.iter("para")).strip()


def entries(element):
    """(term, lines) of a definition list."""
    children = list(element)
    for name, item in zip(children[::2], children[1::2]):
        yield plain(name), [line for para in item for line in filled(inline(para))]


def items(element):
    lines = []
    for item in element.iter("listitem"):
        lines += [".IP \\[u2022] 2"]
        for number, para in enumerate(item):
            lines += ([".IP"] if number else []) + filled(inline(para))
    return lines


def block(element):
    if element.tag == "itemizedlist":
        return items(element)
    if element.tag == "variablelist":
        return [line for term, text in entries(element)
                for line in tagged(f"\\fB{escaped(term, code=True)}\\fR", text)]
    if element.tag == "table":
        return table(element)
    if element.tag in ("programlisting", "verbatim"):
        return literal(source(element))
    if element.tag in SECTIONS:
        return []
    return [f".SS {escaped(plain(element.find('title')))}", *blocks(element)]


def blocks(element):
    """The lines for everything in an element, except the sections of a function's page."""
    lines = []
    for child in element:
        if child.tag == "para":
            lines += paragraph(child)
        elif child.tag in BLOCKS:
            lines += block(child)
    return lines


def paragraph(para):
    """A paragraph may contain lists and tables between its words."""
    lines, words = [], escaped(para.text or "")
    for child in para:
        if child.tag in BLOCKS:
            lines += text_paragraph(words) + block(child)
            words = ""
        else:
            alone = type(para)("para")
            alone.append(child)
            words += inline(alone)
            continue
        words += escaped(child.tail or "")
    return lines + text_paragraph(words)


def text_paragraph(words):
    lines = filled(words)
    return [".PP", *lines] if lines else []


def page(name, section, subtitle, date, version, sections):
    """The text of a page. `sections` is a list of (title, lines); those without lines are left out."""
    lines = [f'.TH {name} {section} {date} "algDataInterface {version}" "{subtitle}"']
    for title, content in sections:
        if content:
            lines += [f".SH {title}", *content]
    kept = []
    for number, line in enumerate(lines):
        after = lines[number + 1] if number + 1 < len(lines) else ".SH"
        if line == ".PP" and (kept[-1].startswith((".SH", ".SS")) or after.startswith((".PP", ".SH", ".SS"))):
            continue
        kept.append(line)
    return "\n".join(kept) + "\n"
