"""Cases of check mode: what it shows, and that it changes nothing."""

import pathlib
import subprocess
import tempfile

from fleet import PREVIEW, UPGRADE
from hosts import CURRENT, FAILS_ON_DISK, UPGRADED, expected, refusals
from plays import case, check, failing


@case
def check_mode_changes_not_a_byte_nor_a_time(plays):
    for host in plays.fleet.hosts:
        plays.checked.untouched(host)
        assert not plays.checked.ran(host, UPGRADE), host


@case
def check_mode_tells_which_hosts_would_change(plays):
    changing = {host for host, count in plays.checked.counts.items() if count["changed"]}
    check(changing, set(UPGRADED) | set(FAILS_ON_DISK))
    check(failing(plays.checked), set(refusals(plays.fleet)) | {"no_list"})


@case
def check_mode_shows_a_diff_that_patch_turns_into_what_the_run_writes(plays):
    for host in set(UPGRADED) - {"strange"}:  # whose diff is made fit for a terminal
        for path, result, item in zip(plays.fleet.files(host), plays.checked.items(host, PREVIEW), UPGRADED[host]):
            if item == CURRENT:
                assert "diff" not in result, result
                continue
            check(patched(plays.old(path), result["diff"]["prepared"].encode()), expected(item, path))


@case
def check_mode_shows_nothing_that_a_terminal_obeys(plays):
    diff = plays.checked.item("strange", PREVIEW)["diff"]["prepared"]
    assert "\\x1b]0;x\\x07" in diff, diff
    check([character for character in diff if not (character.isprintable() or character == "\n")], [])


def patched(old, diff):
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder, "file")
        file.write_bytes(old)
        subprocess.run(["patch", "--quiet", str(file)], input=diff, check=True)
        return file.read_bytes()


@case
def check_mode_names_the_backup_and_the_steps(plays):
    result = plays.checked.item("upgraded", PREVIEW)
    path = str(plays.fleet.files("upgraded")[0])
    check((result["changed"], result["backup"], result["backup_replaced"]), (True, path + "_544", False))
    check((result["version"], result["platform"], result["messages"]), ("5.44", "X86-64(Ubuntu Linux)", []))
    check(result["steps"], [{"version": "5.45", "phrase": "obsolete keys", "changes": 2}])
    check(result["lines"], dict(before=16, after=14, kept=12, changed=2, moved=0, removed=2, added=0))


@case
def check_mode_refuses_what_the_run_refuses(plays):
    for host, (number, message) in refusals(plays.fleet).items():
        check((host, plays.checked.items(host, PREVIEW)[number]["msg"]), (host, message))
