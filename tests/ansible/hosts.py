"""The hosts of the fleet: what stands on them, and what is to become of it."""

import subprocess

from fleet import golden, script

OLD = "5.44/obsolete-keys-deleted"
FOREIGN = "3.11/example-server"
CURRENT = "5.45/current-file-untouched"
ENTRIES = "5.45/com-entry-removed"
WARNING = "Warning: Cannot upgrade from Linux/x86-64 to X86-64(Ubuntu Linux)!"
INVALID = ("a.qpx", b"[Startup]\nVersion=5.44\n")
# Step "5.44" changes "AMD64" to "x86-64" in a record of 511 characters.
LONG = b"[ConfigFile]\nVersion=5.43\n\n[config]\noverview=" + b"Linux/AMD64~UNIX~5.43~".ljust(502, b"x") + b"\n"


class Made:
    """What is to become of a file that is no golden case."""

    def __init__(self, content, suffix):
        self.content, self.suffix = content, suffix


def expected(item, path):
    """What is to stand in the file."""
    return item.content() if isinstance(item, Made) else (golden(item) / "after" / path.name).read_bytes()


def suffix(item):
    """What the name of the backup ends with."""
    return item.suffix if isinstance(item, Made) else "_" + item.split("/")[0].replace(".", "")


def strange():
    """A file with bytes that are not UTF-8 or move a terminal, a carriage return, a backslash and no newline at its end."""
    before = (golden(OLD) / "before/a.qpx").read_bytes()
    return ("~caf\u00e9 $HOME 'one' \"two\".qpx", before.rstrip(b"\n") + b"\n\n[Old]\npath=C:\\caf\xe9\r\nbell=\x1b]0;x\x07\nlast=\\ No newline")


def strangeafter():
    after = (golden(OLD) / "after/a.qpx").read_bytes()
    return after.rstrip(b"\n") + b"\n\n[Old]\npath=C:\\caf\xe9\r\nbell=\x1b]0;x\x07\nlast=\\ No newline\n"


def oneentry():
    """A current file with one communication entry, which the platform check removes; the golden case has two."""
    before = (golden(ENTRIES) / "before/a.qpx").read_bytes()
    return ("a.qpx", before.replace(b"Com=OFF\n", b""))


def oneentryafter():
    return (golden(ENTRIES) / "after/a.qpx").read_bytes().replace(b"Com=OFF\n", b"")


def fill(folder):
    """Mounts a file system of a few pages at the folder and fills it. False where that is not allowed."""
    mount = ["mount", "-t", "tmpfs", "-o", "size=16k", "tmpfs", str(folder)]
    content = {path.name: path.read_bytes() for path in folder.iterdir()}
    if subprocess.run(mount, capture_output=True, check=False).returncode != 0:
        return False
    for name, bytes_ in content.items():
        (folder / name).write_bytes(bytes_)
    try:
        with open(folder / "filler", "wb", buffering=0) as filler:
            while True:
                filler.write(bytes(4096))
    except OSError:
        return True


def plain(fleet):
    fleet.add("upgraded", [OLD])
    fleet.add("several", ["2.0/minimal-file-gets-all-sections", "4.2/applications-user-and-samples", CURRENT])
    fleet.add("strange", [strange()])
    fleet.add("current", [CURRENT])
    fleet.add("entry_removed", [oneentry()])
    fleet.add("entries_left", [ENTRIES])
    fleet.add("refused", [FOREIGN])
    fleet.add("allowed", [FOREIGN], allow_platform=True)
    fleet.add("foreign_but_current", ["5.45/refused-platform-untouched"])
    fleet.add("old_backup", ["5.44/stale-files-replaced"])
    fleet.add("replaced_backup", ["5.44/stale-files-replaced"], replace_backup=True)
    fleet.add("no_files", [])
    one = str(fleet.add("one_name", [OLD])[0])
    fleet.hosts["one_name"]["files"] = one


def broken(fleet):
    fleet.add("unknown_platform", ["5.45/lower-case-platform-unknown"])
    fleet.add("newer", ["unknown/newer-version-untouched"])
    fleet.add("misspelt", ["unknown/misspelt-version-stamped"])
    fleet.add("invalid", [INVALID])
    fleet.add("missing", [("a.qpx", None)])
    fleet.add("long", [("a.qpx", LONG)])
    fleet.add("one_of_two", [OLD, INVALID])
    fleet.add("relative", [])
    fleet.hosts["relative"]["files"] = ["server.qpx"]
    fleet.add("no_list", [])
    del fleet.hosts["no_list"]["files"]
    link = fleet.add("link", [OLD])[0]
    link.rename(link.with_name("target"))
    link.symlink_to("target")
    fleet.add("folder", [("a.qpx", None)])[0].mkdir()
    fleet.add("folder_for_backup", [OLD], replace_backup=True)
    backup = fleet.files("folder_for_backup")[0].with_name("a.qpx_544")
    backup.mkdir()
    (backup / "inside").touch()
    cut = fleet.add("cut_short", [("a.qpx", None)])[0]
    cut.with_name("a.qpx_tmp").touch()


def full(fleet):
    """Hosts whose disk is full at the second file. Returns what is mounted."""
    limit = script(fleet, "limited", 'exec prlimit --fsize=512 "$tolvane" "$@"')
    fleet.add("limited", [OLD, FOREIGN], allow_platform=True, program=limit)
    fleet.add("full", [OLD, "5.41/node-count-known", CURRENT])
    folder = fleet.files("full")[1].parent
    if fill(folder):
        return folder
    body = 'case $2 in */1/*) exec prlimit --fsize=256 "$tolvane" "$@" ;; *) exec "$tolvane" "$@" ;; esac'
    fleet.hosts["full"]["program"] = script(fleet, "full", body)
    return None


def refusals(fleet):
    """Host by host, the number of the file that cannot be upgraded and what the role says."""
    path = {host: str((fleet.files(host) + [""])[0]) for host in fleet.hosts if host != "no_list"}
    second = str(fleet.files("one_of_two")[1])
    preview = "tolvane-preview: %s: "
    return {
        "refused": (0, "refused, for allow_platform is not set: " + WARNING),
        "old_backup": (0, "refused, for replace_backup is not set: an older backup would be replaced: "
                       + "%s_544; see %s_tmp, which is left" % (path["old_backup"], path["old_backup"])),
        "unknown_platform": (0, preview % path["unknown_platform"] + "Unknown platform: x86-64(Ubuntu Linux)."),
        "newer": (0, 'version "6.0" is not known: tolvane brings a file up to 5.45'),
        "misspelt": (0, 'version "5.4.5" is not known: tolvane brings a file up to 5.45'),
        "invalid": (0, preview % path["invalid"] + "Invalid configuration file format"),
        "missing": (0, preview % path["missing"] + "Cannot open file %s for input. (No such file or directory)"
                    % path["missing"]),
        "long": (0, preview % path["long"] + "A line would grow beyond 511 characters in step 5.44 (names of 64-bit "
                 "platforms): line 5 of %s, \"overview\" in [config], 511 characters long" % path["long"]),
        "one_of_two": (1, preview % second + "Invalid configuration file format"),
        "relative": (0, "server.qpx: the file has to be given by its absolute name"),
        "link": (0, path["link"] + " is a symbolic link; name the file that it leads to"),
        "folder": (0, path["folder"] + " is no regular file"),
        "folder_for_backup": (0, "the old file would not be kept as %s_544: a folder that is not empty has this name"
                              % path["folder_for_backup"]),
        "cut_short": (0, preview % path["cut_short"] + "Cannot open file %s for input. (No such file or directory); "
                      "see %s_tmp, which is left" % (path["cut_short"], path["cut_short"])),
    }


UPGRADED = {  # host: of each of its files, the golden case or what is made of one
    "upgraded": [OLD],
    "several": ["2.0/minimal-file-gets-all-sections", "4.2/applications-user-and-samples", CURRENT],
    "strange": [Made(strangeafter, "_544")],
    "one_name": [OLD],
    "entry_removed": [Made(oneentryafter, "_545")],
    "entries_left": [ENTRIES],
    "allowed": [FOREIGN],
    "replaced_backup": ["5.44/stale-files-replaced"],
}
CALM = ["current", "foreign_but_current", "no_files"]
FAILS_ON_DISK = ["limited", "full"]
