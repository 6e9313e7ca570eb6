"""Cases of programs that do not do what they say."""

from fleet import PREVIEW, UPGRADE
from liars import PREVIEWS, PROGRAMS
from plays import case, check, fact


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
