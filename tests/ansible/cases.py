"""Plays the role over a fleet: a check, a run and a second run; then over programs that do not do what they say.

Prints a line a case, and last "N passed, N failed".
"""

import atexit
import pathlib
import subprocess
import sys
import tempfile
import traceback

sys.dont_write_bytecode = True

from fleet import CONTRIB, PREVIEW, UPGRADE, Fleet, ansible  # noqa: E402
from hosts import (  # noqa: E402
    CALM, CURRENT, FAILS_ON_DISK, OLD, UPGRADED, WARNING, broken, expected, full, plain, refusals, suffix,
)
from liars import PREVIEWS, PROGRAMS, lie  # noqa: E402

CASES = []


def case(function):
    CASES.append(function)
    return function


def check(value, expected):
    assert value == expected, "\n  is       %r\n  expected %r" % (value, expected)


class Plays:
    """The plays that the cases look at."""

    def __init__(self, folder):
        self.fleet = Fleet(folder / "fleet")
        plain(self.fleet)
        broken(self.fleet)
        self.mounted = full(self.fleet)
        atexit.register(self.close)
        self.originals = self.fleet.states()
        self.checked = self.fleet.play("--check", "--diff")
        self.run = self.fleet.play()
        self.again = self.fleet.play()
        self.liars = Fleet(folder / "liars")
        lie(self.liars)
        self.lied = self.liars.play()
        self.people = Fleet(folder / "people")
        self.people.add("db1", [OLD])
        self.people.add("db2", [CURRENT])

    def old(self, path):
        host = path.relative_to(self.fleet.folder).parts[0]
        return self.originals[host][str(path)][0]

    def close(self):
        if self.mounted:
            subprocess.run(["umount", str(self.mounted)], check=True)
        self.mounted = None


# Check mode.


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


# The run.


@case
def the_run_writes_what_was_worked_out_by_hand(plays):
    for host, items in UPGRADED.items():
        for path, item in zip(plays.fleet.files(host), items):
            check((str(path), path.read_bytes()), (str(path), expected(item, path)))


@case
def the_run_reports_the_change_and_the_backup_of_each_file(plays):
    for host, items in UPGRADED.items():
        backups = {}
        for path, item, result in zip(plays.fleet.files(host), items, plays.run.items(host, UPGRADE)):
            check((host, result["changed"], "diff" in result), (host, item != CURRENT, False))
            if item == CURRENT:
                assert "backup" not in result, result
                continue
            backups[str(path)] = str(path) + suffix(item)
            check(result["backup"], backups[str(path)])
            check(pathlib.Path(result["backup"]).read_bytes(), plays.old(path))
        check(fact(plays.run, host), backups)
        check((host, plays.run.counts[host]["changed"], plays.run.counts[host]["failures"]), (host, 1, 0))


def fact(play, host):
    return play.record(host, "Keep the names of the backups")["result"]["ansible_facts"]["tolvane_upgrade_backups"]


@case
def the_playbook_says_where_the_old_files_are(plays):
    said = plays.run.record("several", "Say where the old files are")["result"]["tolvane_upgrade_backups"]
    check(len(said), 2)
    check(said, fact(plays.run, "several"))
    check(plays.run.record("current", "Say where the old files are")["state"], "skipped")


@case
def current_files_are_left_alone(plays):
    for host in CALM:
        plays.run.untouched(host)
        check((host, plays.run.counts[host]["changed"], plays.run.counts[host]["failures"]), (host, 0, 0))
    check(fact(plays.run, "current"), {})
    check(plays.run.item("foreign_but_current", UPGRADE)["messages"], [WARNING, "Contact Tessvar."])


@case
def a_platform_that_is_allowed_is_warned_of(plays):
    path = str(plays.fleet.files("allowed")[0])
    check(plays.run.item("allowed", UPGRADE)["messages"], [WARNING, "Contact Tessvar."])
    check(plays.run.record("allowed", UPGRADE)["result"]["warnings"], ["%s: %s Contact Tessvar." % (path, WARNING)])


@case
def a_backup_is_replaced_where_that_is_allowed(plays):
    result = plays.run.item("replaced_backup", UPGRADE)
    check((result["backup_replaced"], plays.run.item("upgraded", UPGRADE)["backup_replaced"]), (True, False))


@case
def refused_hosts_are_untouched_while_the_others_go_on(plays):
    for host, (number, message) in refusals(plays.fleet).items():
        result = plays.run.items(host, PREVIEW)[number]
        check((host, result["failed"], result["changed"], result["msg"]), (host, True, False, message))
        plays.run.untouched(host)
        assert not plays.run.ran(host, UPGRADE), host
        check((host, plays.run.counts[host]["failures"]), (host, 1))
    check(plays.run.status, 2)


@case
def nothing_is_written_on_a_host_of_which_one_file_is_refused(plays):
    good, bad = plays.run.items("one_of_two", PREVIEW)
    check((good["failed"], good["backup"].endswith("_544"), bad["failed"]), (False, True, True))
    plays.run.untouched("one_of_two")


@case
def a_full_disk_fails_with_the_message_and_leaves_the_file(plays):
    result = plays.run.items("full", UPGRADE)[1]
    check((result["failed"], result["changed"], result["msg"]),
          (True, False, "Error writing output file; the file is as it was"))
    path = plays.fleet.files("full")[1]
    check(path.read_bytes(), plays.old(path))
    check(sorted(entry.name for entry in path.parent.iterdir() if entry.name != "filler"), ["a.qpx"])


@case
def a_file_size_limit_fails_as_a_full_disk_does(plays):
    result = plays.run.items("limited", UPGRADE)[1]
    check((result["failed"], result["changed"], result["msg"]),
          (True, False, WARNING + "; Contact Tessvar.; Error writing output file; the file is as it was"))
    path = plays.fleet.files("limited")[1]
    check(path.read_bytes(), plays.old(path))


@case
def the_files_beside_the_one_that_fails_are_upgraded_and_their_backups_known(plays):
    for host in FAILS_ON_DISK:
        first = plays.fleet.files(host)[0]
        check(first.read_bytes(), expected(OLD, first))
        check(fact(plays.run, host), {str(first): str(first) + "_544"})
        check((host, plays.run.counts[host]["failures"]), (host, 1))
    check(plays.run.items("full", UPGRADE)[2]["changed"], False)


@case
def a_list_of_files_has_to_be_given(plays):
    assert "missing required arguments: tolvane_upgrade_files" in plays.run.out, plays.run.out
    check(plays.run.counts["no_list"]["failures"], 1)


# The second run.


@case
def the_second_run_changes_nothing(plays):
    for host, count in plays.again.counts.items():
        check((host, count["changed"]), (host, 0))
    for host in set(plays.fleet.hosts) - set(FAILS_ON_DISK):
        plays.again.untouched(host)
    for host in set(UPGRADED) - {"entries_left"}:
        check((host, plays.again.counts[host]["failures"]), (host, 0))
        check((host, fact(plays.again, host)), (host, {}))


def failing(play):
    return {host for host, count in play.counts.items() if count["failures"]}


@case
def the_second_run_fails_where_the_first_one_did(plays):
    check(failing(plays.again) - {"entries_left"}, failing(plays.run))


@case
def a_file_that_a_further_run_would_change_is_warned_of_and_its_backup_kept(plays):
    path = str(plays.fleet.files("entries_left")[0])
    warned = plays.run.record("entries_left", UPGRADE)["result"]["warnings"]
    check(warned, [path + ": a further run would change it again"])
    check(plays.again.item("entries_left", PREVIEW)["msg"],
          "refused, for replace_backup is not set: an older backup would be replaced: %s_545" % path)
    assert "warnings" not in plays.run.record("entry_removed", UPGRADE)["result"]


# Programs that do not do what they say.


@case
def what_tolvane_did_is_read_off_the_files_and_not_off_its_status(plays):
    for host, (_, message, changed, kept) in PROGRAMS.items():
        path = str(plays.liars.files(host)[0])
        result = plays.lied.item(host, UPGRADE)
        check((host, result["msg"]), (host, message.replace("PATH", path)))
        check((host, result["failed"], result["changed"]), (host, True, changed))
        check((host, fact(plays.lied, host)), (host, {path: path + "_544"} if kept else {}))
    for host in ("honest", "waiting"):
        check((host, plays.lied.item(host, UPGRADE)["changed"]), (host, True))
        assert not plays.lied.item(host, UPGRADE).get("failed"), host


@case
def a_preview_that_cannot_be_trusted_ends_the_host_before_anything_is_written(plays):
    for host, (_, message) in PREVIEWS.items():
        said = plays.lied.item(host, PREVIEW)["msg"]
        start = message.replace("PROGRAM", plays.liars.hosts[host]["preview_program"])
        check((host, said[: len(start)]), (host, start))
        assert not plays.lied.ran(host, UPGRADE), host
        names = [path.name for path in plays.liars.files(host)[0].parent.iterdir()]
        check((host, names), (host, ["a.qpx"]))


@case
def a_host_without_the_program_fails_before_anything_is_written(plays):
    message = plays.lied.item("absent", PREVIEW)["msg"]
    assert message.startswith("Failed to find required executable \"tolvane-that-is-not-there\""), message
    plays.lied.untouched("absent")


# What people read.


@case
def the_readme_shows_the_playbook_and_the_inventory_that_are_there(plays):
    del plays
    text = (CONTRIB / "README.md").read_text()
    for name in ("upgrade.yml", "inventory.example.yml"):
        content = (CONTRIB / name).read_text().replace("---\n", "", 1)
        assert content in text, "README.md does not show " + name
    for name in ("allow_platform", "replace_backup", "program", "preview_program", "files"):
        assert "`tolvane_upgrade_%s`" % name in text, name


@case
def the_commands_of_the_readme_show_the_diff_once_and_then_upgrade(plays):
    text = (CONTRIB / "README.md").read_text()
    commands = [line.split() for line in text.splitlines() if line.startswith("    ansible-playbook ")]
    check([command[1:3] for command in commands], [["-i", "inventory.yml"]] * 2)
    path = plays.people.files("db1")[0]
    shown = plays.people.play(*commands[0][3:-1], callback="default", playbook=commands[0][-1])
    check((shown.status, shown.out.count("\n-Version=5.44\n+Version=5.45\n")), (0, 1))
    shown.untouched("db1")
    done = plays.people.play(*commands[1][3:-1], callback="default", playbook=commands[1][-1])
    check((done.status, "Version=5.45" in done.out, path.read_bytes()), (0, False, expected(OLD, path)))
    assert '"%s": "%s_544"' % (path, path) in done.out, done.out
    assert "changed=1" in done.out and "failed=1" not in done.out, done.out


@case
def a_run_with_diff_shows_it_once(plays):
    fleet = Fleet(plays.fleet.folder.parent / "diff")
    fleet.add("db1", [OLD])
    done = fleet.play("--diff", callback="default")
    check((done.status, done.out.count("\n-Version=5.44\n+Version=5.45\n")), (0, 1))


@case
def the_example_inventory_gives_each_host_its_files(plays):
    listed = ansible(plays.fleet.folder.parent, ["ansible-inventory", "-i", "inventory.example.yml", "--list"])
    check(listed.returncode, 0)
    for path in ("/srv/database/server.qpx", "/srv/sales/server.qpx", "/srv/stock/server.qpx"):
        assert path in listed.stdout, listed.stdout


@case
def the_module_is_documented(plays):
    words = ["ansible-doc", "-t", "module", "-M", "roles/tolvane_upgrade/library", "tolvane_upgrade"]
    shown = ansible(plays.fleet.folder.parent, words)
    check((shown.returncode, shown.stderr), (0, ""))
    for word in ("allow_platform", "replace_backup", "preview_program", "backup_replaced", "messages"):
        assert word in shown.stdout, word


@case
def the_linters_are_content(plays):
    files = sorted(str(path.relative_to(CONTRIB)) for path in CONTRIB.rglob("*.yml"))
    assert len(files) >= 5, files
    for command in (["yamllint", "--strict", "."], ["ansible-lint", "--offline", "--strict", *files]):
        linted = ansible(plays.fleet.folder.parent, command)
        check((command[0], linted.returncode, linted.stdout), (command[0], 0, linted.stdout))


def succeeds(function, plays):
    name = function.__name__.replace("_", " ")
    try:
        function(plays)
    except Exception:  # whatever it is, the case has failed
        print("FAILED  %s\n%s" % (name, traceback.format_exc()), flush=True)
        return False
    print("ok      " + name, flush=True)
    return True


def main():
    with tempfile.TemporaryDirectory() as folder:
        plays = Plays(pathlib.Path(folder))
        try:
            passed = sum([succeeds(function, plays) for function in CASES])
        finally:
            plays.close()
    failed = len(CASES) - passed
    print("%d passed, %d failed" % (passed, failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
