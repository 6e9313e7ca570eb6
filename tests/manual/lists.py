"""Compares what tolvane.qpx(5) lists (versions, steps, platforms) with what the sources have."""

import re
import sys
from pathlib import Path

page = Path("man/tolvane.qpx.5").read_text()
failures = 0


def source(path):
    return Path("src", path).read_text()


def part(begin, end):
    """The page from the line `begin` to the next line that starts with `end`."""
    text = page[page.index(begin + "\n") + len(begin) + 1 :]
    return text[: text.index("\n" + end) + 1]


def plain(text):
    for written, meant in (("\\%", ""), ("\\ ", " "), ("\\-", "-"), ("\\&", "")):
        text = text.replace(written, meant)
    return text


def compare(what, expected, actual):
    global failures
    if not expected or expected != actual:
        failures += 1
        print(f"{what}:\n  sources {expected}\n  page    {actual}")


def rows(text):
    """The tag and the first sentence of each item."""
    return [(tag, first.rstrip(".")) for tag, first in re.findall(r"^\.It (\S+)\n(.*)", text, re.M)]


def table(text):
    """The versions and phrases of a ladder; the phrase stands in the row or in the comment behind it."""
    found = re.findall(r'^ +\{"([\d.]+)",.*?(?:"([^"\d].*?)"\s*\}|\},?\s*// (.*)$)', text, re.M)
    return [(version, (phrase or comment).strip()) for version, phrase, comment in found]


versions = re.search(r"sVersions\[\] = \{(.*?)\};", source("document/versions.h"), re.S).group(1)
known = re.findall(r'"([\d.]+)"', versions)
compare("versions", known, re.findall(r"[\d.]+", part(".Bd -ragged -offset indent", ".Ed")))

sameheading = [(version, phrase[0].upper() + phrase[1:]) for version, phrase in table(source("ladder/ladder.h"))]
compare("steps", sameheading, rows(part(".Sh STEPS", ".El")))

for ladder, heading in (("system", "system file"), ("network", "network file")):
    steps = [version for version, _ in table(source(f"legacy/convert{ladder}.cc"))]
    compare(f"steps of the {heading}", steps, [tag for tag, _ in rows(part(f".Ss Steps of the {heading}", ".El"))])

platforms = source("ladder/platforms.h")
names = re.findall(r'^    "(.*)",\s+// \d+$', platforms, re.M)[1:]
legacynames = re.findall(r'\{\d+, "(.*?)"\s*\}', platforms)
for what, expected, begin in (
    ("platforms", names, "Of the current releases:"),
    ("older platforms", legacynames, "Of older ones:"),
):
    listed = plain(part(begin + "\n.Bd -ragged -offset indent", ".Ed"))
    compare(what, expected, re.split(r";\s+", listed.strip().replace("\n", " ")))

renames = re.findall(r'^ +\{"(\w[\w ]*)", +"(.+?)", +"(.+?)" *\},?$', source("ladder/steps_3_12_to_3_3.cc"), re.M)
listed = re.findall(r"^\.It (.+) Ta (.+) Ta (.+)$", page, re.M)
compare("new names", sorted(renames), sorted(row for row in listed if row[1] != "(any)"))
compare("families with any name", [("Windows 95", "(any)", "Windows 95/98")], [row for row in listed if row[1] == "(any)"])

current = known[-1]
for path in sorted(Path("man").glob("*.[1-9]")):
    compare(f"current version in {path}", [current], re.findall(rf"Version=({re.escape(current)})$", path.read_text(), re.M)[:1])

sys.exit(1 if failures else 0)
