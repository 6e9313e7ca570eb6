"""Cases of a run and of a second run."""

import pathlib

from fleet import PREVIEW, UPGRADE
from hosts import CALM, CURRENT, FAILS_ON_DISK, OLD, UPGRADED, WARNING, expected, refusals, suffix
from plays import case, check, fact, failing


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
