"""Converts the examples and looks every entry that a step changes up in the row that tolvane.qpx(5) has for the step.

The argument is tolvane-preview, which tells what a step changes. Lists of standard entries are named as a whole, and so are
the sections that the steps of the legacy layout move or remove.
"""

import json
import re
import subprocess
import sys
from pathlib import Path

page = Path("man/tolvane.qpx.5").read_text()
wholes = {
    "[SqlSysDatatypes]": "data types",
    "[ZPG.Applications]": "web applications",
    "[Namespaces]": "namespace",
    "[Datasets]": "VELM",
}
headings = {"main": ".Sh STEPS", "system": ".Ss Steps of the system file", "network": ".Ss Steps of the network file"}


def row(ladder, version):
    text = page[page.index(headings[ladder] + "\n") :]
    text = text[: text.index("\n.El")] + "\n.It"
    return text[text.index(f"\n.It {version}\n") :].split("\n.It", 2)[1].replace("\n", " ")


def previewed(*words):
    done = subprocess.run([sys.argv[1], "--json", *words], capture_output=True, text=True, check=False)
    return json.loads(done.stdout)["parts"]


def named(change, ladder, text):
    line, section = change["line"], change["section"]
    key = line.split("=", 1)[0]
    series = re.sub(r"_.*", "_", key)
    if section in wholes and wholes[section] in text:
        return True
    if line.startswith("[NspMap."):
        return "[NspMap.NAME]" in text
    if ladder != "main" and section in text:
        return True
    return key in text or (series != key and series in text)


parts = previewed("examples/server-3.11.qpx")
parts += previewed("merge", "examples/legacy/config.def", "examples/legacy/network.def")
seen = set()
missing = set()
for part in parts:
    if part["version"] is None:
        continue
    for change in part["changes"]:
        seen.add((part["ladder"], part["version"]))
        if change["kind"] != "moved" and not named(change, part["ladder"], row(part["ladder"], part["version"])):
            missing.add((part["ladder"], part["version"], change["section"], change["line"]))
for ladder, version, section, line in sorted(missing, key=str):
    print(f"{ladder} step {version} changes {line!r} of {section}, of which its row says nothing")
steps = sum(page[page.index(h) :].split("\n.El")[0].count("\n.It ") for h in headings.values())
print(f"{len(seen)} of {steps} steps change the examples")
sys.exit(1 if missing or len(seen) < steps - 1 else 0)
