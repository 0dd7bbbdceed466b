#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Checks the pages of `algdata report`: their structure, their values, and that they are always the same.

    report.py ALGDATA MESH_ROUND
"""
import html.parser
import json
import os
import re
import subprocess
import sys
import tempfile

VOID = {"meta", "br", "hr", "input"}
EVIL = "</script><script>window.pwned=1</script><!--<script>\"'&\u2028\u202e"
MAC = re.compile(r"[0-9a-fA-F]{12}")
ROOT = "000000000000"
checks = 0


def check(holds, text):
    global checks
    checks += 1
    assert holds, text


class Page(html.parser.HTMLParser):
    """Requires that each element is closed by its own end tag, and collects what the checks look at."""

    def __init__(self, text):
        super().__init__(convert_charrefs=True)
        self.open, self.ids, self.links, self.texts, self.values = [], [], [], [], []
        self.scripts, self.tables, self.charts = [], {}, 0
        self.table = self.cell = self.caption = None
        self.feed(text)
        self.close()
        check(not self.open, f"not closed: {self.open}")

    def handle_starttag(self, tag, attributes):
        attributes = dict(attributes)
        if tag not in VOID:
            self.open.append(tag)
        self.values += [(tag, name, value) for name, value in attributes.items()]
        if "id" in attributes:
            self.ids.append(attributes["id"])
        if "href" in attributes:
            self.links.append(attributes["href"])
        check("style" not in attributes, f"a style attribute of {tag}")
        check(not any(name.startswith("on") for name in attributes), f"an event handler of {tag}")
        if tag == "script":
            self.scripts.append([attributes.get("type", ""), ""])
        self.charts += tag == "svg" and attributes.get("role") == "img"
        if tag == "table":
            self.table = {"rows": []}
        elif tag == "tr":
            self.table["rows"].append([])
        elif tag in ("td", "th"):
            self.cell = ""
        elif tag == "caption":
            self.caption = ""

    def handle_startendtag(self, tag, attributes):
        check(False, f"<{tag}/> is no HTML")

    def handle_endtag(self, tag):
        check(self.open and self.open[-1] == tag, f"</{tag}> ends {self.open[-1:]}")
        self.open.pop()
        if tag in ("td", "th"):
            self.table["rows"][-1].append(self.cell)
            self.cell = None
        elif tag == "caption":
            self.tables[self.caption] = self.table
            self.caption = None

    def handle_data(self, data):
        if self.open and self.open[-1] == "script":
            self.scripts[-1][1] += data
        elif self.open and self.open[-1] != "style":
            self.texts.append(data)
        if self.cell is not None:
            self.cell += data
        if self.caption is not None:
            self.caption += data

    def rows(self, caption):
        """The rows of the table whose caption begins like this, by the names of its columns."""
        table = next(table for name, table in self.tables.items() if name.startswith(caption))
        head = table["rows"][0]
        return [dict(zip(head, row)) for row in table["rows"][1:]]


def run(algdata, *arguments, status=0, **how):
    done = subprocess.run([algdata, *arguments], stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False,
                          **how)
    check(done.returncode == status, f"{arguments}: status {done.returncode}, {done.stderr!r}")
    return done.stdout


def page_of(algdata, *arguments, status=0):
    text = run(algdata, "report", *arguments, status=status).decode()
    check("\0" not in text and "\u2028" not in text and "\u202e" not in text, "a hidden character")
    page = Page(text)
    check(len(page.ids) == len(set(page.ids)), "an id twice")
    for link in page.links:
        check(link.startswith("#") and link[1:] in page.ids, f"a link to nothing: {link}")
    for text in page.texts:
        check(not re.search(r"\b(NaN|undefined|Infinity|nan|inf)\b", text), f"no value: {text}")
    for tag, name, value in page.values:
        none = re.search(r"NaN|undefined|Infinity|\bnan\b|\binf\b", value or "")
        check(not none, f"no value: {tag} {name}={value}")
    kinds = [kind for kind, _ in page.scripts]
    check(kinds == ["application/json", ""], f"the scripts are {kinds}")
    json.loads(page.scripts[0][1])
    check("pwned" not in page.scripts[1][1], "a script of the input")
    return page


def export(algdata, mesh, kind, view="stored"):
    return [json.loads(line) for line in run(algdata, "export", mesh, "-k", kind, "--view", view, "-f",
                                             "ndjson").decode().splitlines()]


def name_of(mac):
    names = {"01": "FAP hall", "02": "RE1 living room", "03": "RE2 study", "04": "RE3 workshop",
             "05": "RE4 bedroom", "06": "RE5 attic"}
    return names[mac[-2:]] if mac.startswith("0a4e") else mac


def values_match(algdata, mesh, page):
    stations = [one for one in export(algdata, mesh, "station") if "history" not in one["source"]]
    rows = page.rows("Clients")
    check(len(rows) == len(stations) > 10, "clients")
    for row, one in zip(rows, stations):
        check([row["client"], row["AP"], row["RSSI"], row["rx rate"], row["tx packets"]] ==
              [one["deviceMac"], name_of(one["apMac"]), str(one["rssi"]), str(one["rxRate"]),
               str(one["txPackageCount"])], f"client {row}")
    delays = [one for one in export(algdata, mesh, "time-delay") if "history" not in one["source"]]
    for row, one in zip(page.rows("Delays, as stored"), delays):
        check(row["link"].endswith(" to " + name_of(one["fatherMAC"])), f"delays {row}")
        samples = [row[f"sample {i}"] for i in range(15)]
        check(samples == [str(value) for value in one["delayTime"]], f"delays {row}")
    for view in ("stored", "loaded"):
        sightings = export(algdata, mesh, "scanning", view)
        column = "RSSI, as stored" if view == "stored" else "as loaded"
        every = next(t for n, t in page.tables.items() if n == "Sightings")
        at = every["rows"][0].index(column)
        check([row[at] for row in every["rows"][1:]] == [str(one["rssi"]) for one in sightings], "sightings")
    links = [one for one in export(algdata, mesh, "bridging") if one["source"].endswith("now.txt")]
    links = [one for one in links if one["fatherDeviceMAC"] != ROOT]
    rows = page.rows("Links by band")
    check(len(rows) == 5 * len(links) > 10, "links")
    for i, row in enumerate(rows):
        one, band = links[i // 5], i % 5
        values = [str(one[name][band]) for name in ("bridgingRssi", "bridgingRxRate", "bridgingTxMcs")]
        check([row["RSSI"], row["rx rate"], row["tx MCS"]] == values, f"link {row}")
    signal, band, one = min(((signal, band, one) for one in links
                             for band, signal in enumerate(one["bridgingRssi"]) if signal > 0),
                            key=lambda weakest: weakest[0])
    link = f"{name_of(one['deviceMAC'])} to {name_of(one['fatherDeviceMAC'])}"
    for text in (f"{link}, band {band}, RSSI {signal}",
                 f"Weakest wireless signal: {link}, band {band}, RSSI {signal}."):
        check(text in page.texts, f"expected {text}")
    scores = [one for one in export(algdata, mesh, "score") if one["source"].endswith("04.txt")]
    rows = {row["value"]: row for row in page.rows("Candidate fathers of RE3 workshop")}
    for one in scores:
        name = name_of(one["fatherMAC"])
        check(rows["predicted throughput"][name] == str(one["thrputPredict"]), f"score of {name}")
        check(rows["RSSI, band 0"][name].split()[0] == str(one["rssi"][0]), f"score of {name}")


def same_everywhere(algdata, mesh, parent):
    once = run(algdata, "report", mesh)
    name = os.path.basename(mesh)
    check(once == run(algdata, "report", mesh), "twice")
    check(once == run(algdata, "report", name, cwd=parent), "from another directory")
    check(once == run(algdata, "report", ".", cwd=mesh), "from its own directory")
    for variables in ({"TZ": "Asia/Tokyo"}, {"LC_ALL": "de_DE.UTF-8"}, {"LC_ALL": "C.UTF-8", "LANG": "C"}):
        check(once == run(algdata, "report", mesh, env={**os.environ, **variables}), f"with {variables}")


def redacted(algdata, mesh, *snapshots):
    write(mesh, "delays of RE5 attic.txt", "0a4e00000001" + " 12" * 15 + "\n")
    for paths in ([mesh], snapshots):
        text = run(algdata, "report", "--redact", *paths).decode()
        left = [mac for mac in MAC.findall(re.sub(r"sha256-[^']*|[0-9a-f]{64}", "", text)) if mac != ROOT]
        check(not left, f"a MAC: {left[:3]}")
        for name in ("living room", "attic", "study", "hall"):
            check(name not in text, f"a name: {name}")
        check("M1" in text, "no short name")
        Page(text)


def write(directory, name, content):
    os.makedirs(directory, exist_ok=True)
    with open(os.path.join(os.fsencode(directory), os.fsencode(name)), "wb") as file:
        file.write(content if isinstance(content, bytes) else content.encode())


def node(mac, father):
    return f"{mac} {father} 56 14 16 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1000 0 0 0 0 0\n"


def mac_at(number):
    return f"{0x0a4e00000001 + number:012x}"


def hostile(algdata, parent, mesh):
    home = os.path.join(parent, "hostile")
    evil = EVIL.encode()
    with open(os.path.join(mesh, "score_re_0a4e00000004.txt"), "rb") as file:
        score = file.read()
    write(home, EVIL.replace("/", "_") + ".txt", node(mac_at(0), ROOT) + node(mac_at(3), mac_at(0)))
    write(home, b"bad\xff\x01\xe2\x80\xae_re_0a4e00000004.txt", score)
    write(home, "de\"'&<b>cision.txt", "0a4e00000004 0a4e00000002 2 60\n")
    damage = b"<script>x </script> 1\n0a4e00000003 \xe2\x80\xae\xff\x00abcdefg 1\n"
    ranks = "".join(f"{mac_at(i)} {mac_at(0)} 1\n" for i in range(8))
    write(home, "rank.txt", ranks.encode() + damage + evil.replace(b" ", b"") + b" x 1\n")
    write(home, "algdata.toml", "[names]\n\"0a4e00000001\" = \"" + EVIL.replace('"', "") + "\"\n")
    page = page_of(algdata, home)
    check(any("</script><script>window.pwned=1" in text for text in page.texts), "the name is not shown")
    check(page_of(algdata, "--redact", home), "redacted")
    write(os.path.join(parent, EVIL.replace("/", "_")), "rank.txt", f"{mac_at(0)} {ROOT} 0\n")
    page_of(algdata, os.path.join(parent, EVIL.replace("/", "_")))


def unusual(algdata, parent):
    def home(name, *files):
        for file, content in files:
            write(os.path.join(parent, name), file, content)
        return os.path.join(parent, name)

    page_of(algdata, home("empty", ("a.txt", "")))
    none = page_of(algdata, home("none", ("scan.txt", "0a4e00000001 0a6000000001  0   6  40\n" * 3)))
    check("No file of these lists a device." in none.texts, "no device")
    page_of(algdata, home("one", ("rank.txt", f"{mac_at(0)} {ROOT} 0\n")))
    fifty = "".join(node(mac_at(i), ROOT if i == 0 else mac_at((i - 1) // 3)) for i in range(50))
    check(len(page_of(algdata, home("fifty", ("node.txt", fifty))).rows("Devices")) == 50, "50 devices")
    chain = "".join(node(mac_at(i), ROOT if i == 0 else mac_at(i - 1)) for i in range(60))
    page_of(algdata, home("chain", ("node.txt", chain)))
    fathers = [ROOT, mac_at(2), mac_at(1), mac_at(99)]
    cycle = "".join(node(mac_at(i), father) for i, father in enumerate(fathers))
    page = page_of(algdata, home("cycle", ("node.txt", cycle)))
    check(any("in a cycle" in row["note"] for row in page.rows("Devices")), "a cycle")
    check(any("no file lists its father" in row["note"] for row in page.rows("Devices")), "an orphan")
    delays = "0a4e00000001 15 x 17 18 19 20 21 22 23 24 25 26\n"
    delays += "".join(mac_at(i) + " 12" * 15 + "\n" for i in (2, 3))
    missing = page_of(algdata, home("missing", ("delay_re_0a4e00000002.txt", delays)))
    row = missing.rows("Delays, as stored")[0]
    shown = [row["sample 0"], row["sample 1"], row["sample 14"]]
    check(shown == ["15", "\u2013", "\u2013"], f"missing values {row}")
    sightings = "".join(f"0a4e00000001 {0x0a6000000001 + i:012x}  0   6  40\n" for i in range(5000))
    page = page_of(algdata, home("many", ("scan.txt", sightings)))
    caption = next(name for name in page.tables if name.startswith("Sightings: "))
    check(caption == "Sightings: 2000 of 5000 rows", caption)
    check(len(page.tables[caption]["rows"]) == 2001, "2000 rows")


def snapshots(algdata, host, parent):
    rounds = []
    for i in range(1, 21):
        rounds.append(os.path.join(parent, "rounds", f"r{i}"))
        os.makedirs(rounds[-1])
        run(host, rounds[-1], "--rounds", str(i))
    page = page_of(algdata, *rounds)
    data = json.loads(page.scripts[0][1])
    check([one["name"] for one in data["snapshots"]] == [f"r{i}" for i in range(20, 0, -1)], "the order")
    check(all(one["id"] in page.ids for one in data["snapshots"]), "a snapshot is missing")
    together = run(algdata, "report", os.path.join(parent, "rounds"))
    check(together == run(algdata, "report", *reversed(rounds)), "the order of the paths")
    return rounds[:3]


def main():
    algdata, host = map(os.path.abspath, sys.argv[1:3])
    with tempfile.TemporaryDirectory() as parent:
        mesh = os.path.join(parent, "mesh")
        run(host, mesh)
        names = os.path.join(os.path.dirname(__file__), "../../examples/mesh_round/algdata.toml")
        with open(names, "rb") as file:
            write(mesh, "algdata.toml", file.read())
        page = page_of(algdata, mesh)
        check(page.charts >= 10, f"{page.charts} charts")
        decision = "RE3 workshop moves from FAP hall to RE1 living room, radical, within 60 s"
        check(decision in page.texts, "the decision")
        values_match(algdata, mesh, page)
        same_everywhere(algdata, mesh, parent)
        hostile(algdata, parent, mesh)
        unusual(algdata, parent)
        rounds = snapshots(algdata, host, parent)
        redacted(algdata, mesh, *rounds)
        subprocess.run(["tar", "czf", os.path.join(parent, "mesh.tar.gz"), "-C", parent, "mesh"], check=True)
        archived = page_of(algdata, os.path.join(parent, "mesh.tar.gz"))
        check(len(archived.rows("Clients")) == 14, "an archive")
    print(f"{checks} checks")


if __name__ == "__main__":
    main()
