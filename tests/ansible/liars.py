"""Hosts with programs that do not do what they say, and what the role says of them."""

from fleet import script
from hosts import OLD

REAL = '"$tolvane" "$@"'
# Host: what stands in for tolvane, what the role says, whether something changed, whether a backup is kept.
PROGRAMS = {
    "idle": ("exit 1", "tolvane ended with status 1 and said nothing; the file is as it was", False, False),
    "fatal": ("echo 'Insufficient memory'; exit 0", "Insufficient memory; the file is as it was", False, False),
    "usage": ("\"$tolvane\"", "Syntax: tolvane update  <filename.qpx>;         tolvane merge   <filename.qpx> "
              "<config.def> <network.def>;         tolvane fdbms   <filename.qpx>;         tolvane install "
              "<filename.qpx>; the file is as it was", False, False),
    "aborted": ("echo no; kill -ABRT $$", "no; tolvane was ended by signal 6; the file is as it was", False, False),
    "killed": ('mv "$2" "$2_544"; kill -KILL $$', "tolvane was ended by signal 9; PATH: No such file or directory; "
               "the old file is kept as PATH_544", True, True),
    "truncating": (REAL + '; truncate --size=20 "$2"; exit 1', "tolvane ended with status 1 and said nothing; the "
                   "file is not what the preview said; the old file is kept as PATH_544", True, True),
    "meddled": ('echo "k=1" >>"$2"; exec ' + REAL, "tolvane ended with status 1 and said nothing; the file is not "
                "what the preview said; what was in the file is not in PATH_544", True, False),
    "unkept": (REAL + '; rm "$2_544"; exit 1', "the file is upgraded, but what was in the file is not in PATH_544",
               True, False),
    "talking": (REAL + "; echo 'Unknown o/s type Q'; exit 1", "the file is upgraded, but tolvane ended otherwise than "
                "the preview said (status 1): Unknown o/s type Q; the old file is kept as PATH_544", True, True),
    "zero": (REAL + "; exit 0", "the file is upgraded, but tolvane ended otherwise than the preview said (status 0): "
             "tolvane ended with status 0 and said nothing; the old file is kept as PATH_544", True, True),
}
# Host: what stands in for tolvane-preview, what the role says.
PREVIEWS = {
    "babbling": ("echo nonsense; exit 1", "PROGRAM ended with status 1 and no preview: nonsense"),
    "disagreeing": ('"$preview" "$@"; exit 0', "PROGRAM ended with status 0 and no preview: {"),
    "killed_preview": ("kill -SEGV $$", "PROGRAM ended with status -11 and no preview:"),
    "nameless": ('[ "$1" != --version ] || exit 2; exec "$preview" "$@"', "PROGRAM does not tell its version:"),
    "diffless": ('[ "$1" != --diff ] || { echo no >&2; exit 2; }; exec "$preview" "$@"',
                 "PROGRAM ended with status 2 and no diff: no"),
    "other_diff": ('[ "$1" != --diff ] || { sed s/rbufsiz=64/rbufsiz=63/ "$2" >"$2.x"; "$preview" "$1" "$2.x"; '
                   'rm "$2.x"; exit 1; }; exec "$preview" "$@"', "the file changed while it was previewed"),
}


def lie(fleet):
    for host, (body, *_) in PROGRAMS.items():
        fleet.add(host, [OLD], program=script(fleet, host, body))
    for host, (body, _) in PREVIEWS.items():
        fleet.add(host, [OLD], preview_program=script(fleet, host, body))
    fleet.add("absent", [OLD], program="tolvane-that-is-not-there")
    fleet.add("honest", [OLD], program=script(fleet, "honest", "exec " + REAL))
    waiting = "echo 'tolvane: waiting for the lock on ./' >&2; exec " + REAL
    fleet.add("waiting", [OLD], program=script(fleet, "waiting", waiting))
