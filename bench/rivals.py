"""The tools that are compared: tolvane, its floor, and the peers that edit the same file."""
import re

from measuring import FLOOR, HERE, TOLVANE, Tool

EDITS = 200
BEHIND = ", settings last"  # the second order of the sections
CALLS = 10  # of a tool that makes one call an edit; its time is scaled to all edits


def plain(count):
    """A file of as many lines that git can read: it takes no underscore in a key, and few characters elsewhere."""
    return "".join(f"[s{n // 100}]\n" if n % 100 == 0 else f"key{n}=value{n}\n" for n in range(count))


def edits(text):
    """200 keys that stand once in their section, evenly spread, and what they are set to."""
    found, seen, section = [], set(), ""
    for line in text.splitlines():
        key = line.partition("=")[0]
        if line.startswith("["):
            section = line
        elif (section, key) not in seen and re.fullmatch(r"\[[\w.]+\]", section) and re.fullmatch(r"\w+", key):
            found.append((section, key))
        seen.add((section, key))
    return [(*found[n * len(found) // EDITS], f"value{n}") for n in range(EDITS)]


def editors(bench, changes):
    """The peers that set keys of one file in one run. What each needs is written to the folder."""
    bench.write("edits", listed(changes))
    bench.write(
        "sed",
        "".join(f"/^{re.escape(section)}$/,/^\\[/ s/^{key}=.*/{key}={value}/\n" for section, key, value in changes),
    )
    path = f"/files{bench.folder}/a"
    bench.write(
        "script.aug",
        "".join(f"set {path}/{section[1:-1]}/{key} {value}\n" for section, key, value in changes) + "save\n",
    )
    commands = {
        "perl -i": ["perl", "-i", str(HERE / "peers/edit.pl"), "edits", "a"],
        "awk": ["sh", "-c", f"mawk -f {HERE}/peers/edit.awk edits a >a_new && mv a_new a"],
        "sed -i": ["sed", "-i", "-f", "sed", "a"],
        "configparser": ["/usr/bin/python3", str(HERE / "peers/edit.py"), "edits", "a"],
        "augtool": ["augtool", "-A", "-t", f"PHP incl {bench.folder}/a", "-f", "script.aug"],
    }
    return [Tool(name, command, changes=changes) for name, command in commands.items()]


def listed(changes):
    return "".join(f"{section}\t{key}\t{value}\n" for section, key, value in changes)


def callers(bench, changes, size):
    """The peers that take a call for each edit: a few of the edits, their time scaled to all."""
    few = changes[:: EDITS // CALLS]
    plainfew = [(f"[s{n // 100}]", f"key{n}", "set") for n in range(7, size, size // CALLS)]
    bench.write("few", listed(few))
    bench.write("plainfew", listed(plainfew))
    return [
        Tool("crudini --set", [str(HERE / "peers/crudiniset"), "few", "a"], None, 0, few, EDITS / len(few)),
        Tool(
            "git config",
            [str(HERE / "peers/gitconfig"), "plainfew", "a"],
            plain(size),
            0,
            plainfew,
            EDITS / len(plainfew),
        ),
    ]


def peers(bench, changes, size):
    """The peers that set many keys."""
    bench.write("ini", "".join(f"{section}\n{key}={value}\n" for section, key, value in changes))
    merge = Tool("crudini --merge", ["sh", "-c", "crudini --merge a <ini"], changes=changes)
    return [*editors(bench, changes), merge, *callers(bench, changes, size)]


def single(bench, change):
    """The peers that set one parameter, sed first."""
    section, key, value = change
    tools = editors(bench, [change])
    tools.sort(key=lambda tool: tool.name != "sed -i")
    return [*tools, Tool("crudini --set", ["crudini", "--set", "a", section[1:-1], key, value], changes=[change])]


def perl(bench, changes):
    """The quickest of the peers with the first change alone."""
    bench.write("one", listed(changes[:1]))
    return [Tool("perl -i, one edit", ["perl", "-i", str(HERE / "peers/edit.pl"), "one", "a"], changes=changes[:1])]


def both(command, changes=(), text=None, order=""):
    """tolvane and its floor, with the words behind the command and the file, on a text in an order that is named."""
    words = [word for change in changes for word in change]
    return [
        Tool("tolvane" + order, [TOLVANE, command, "a", *words], text, 1, changes),
        Tool("floor" + order, [FLOOR, command, "a", *words], text, 0, changes),
    ]
