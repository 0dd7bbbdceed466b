#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Builds the documentation site: the reference of the headers, and the pages of docs/.

    site.py DIRECTORY

It writes DIRECTORY/html. Everything that Doxygen warns of is an error, what is not
documented included; so is a link of a page that leads nowhere.
"""
import html.parser
import os
import shutil
import subprocess
import sys
import urllib.parse
from pathlib import Path

import doxygen


class Page(html.parser.HTMLParser):
    """The anchors of a page, and what it links to."""

    def __init__(self, path):
        super().__init__()
        self.anchors, self.links = set(), []
        self.feed(path.read_text())

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.anchors |= {values[name] for name in ("id", "name") if values.get(name)}
        self.links += [values[name] for name in ("href", "src", "data") if values.get(name)]


def broken(site):
    """(page, link) of each link to a file or an anchor that does not exist."""
    pages = {path: Page(path) for path in sorted(site.glob("*.html"))}
    for path, page in pages.items():
        for link in page.links:
            parts = urllib.parse.urlsplit(link)
            if parts.scheme or parts.netloc:
                continue
            where, anchor = map(urllib.parse.unquote, (parts.path, parts.fragment))
            target = Path(os.path.normpath(path.parent / where)) if where else path
            if not target.exists() or (anchor and target in pages and anchor not in pages[target].anchors):
                yield path.name, link


def draw_rooms(output):
    rooms = Path(__file__).with_name("rooms.py")
    graph = subprocess.run([sys.executable, rooms], check=True, stdout=subprocess.PIPE).stdout
    subprocess.run(["dot", "-Tsvg", "-o", output / "rooms.svg"], input=graph, check=True)


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: site.py DIRECTORY")
    output = Path(sys.argv[1]).resolve()
    doxygen.require_version()
    shutil.rmtree(output / "html", ignore_errors=True)
    output.mkdir(parents=True, exist_ok=True)
    draw_rooms(output)
    doxygen.run(output, html=True)
    site = output / "html"
    faults = [f"{page}: a link to {link}, which is not there" for page, link in broken(site)]
    if faults:
        sys.exit("\n".join(faults))
    links = sum(len(Page(path).links) for path in site.glob("*.html"))
    print(f"{len(list(site.glob('*.html')))} pages of the site, {links} links")


if __name__ == "__main__":
    main()
