"""Cases of what people read: the README, the output of a play, the documentation and the linters."""

from fleet import CONTRIB, Fleet, ansible
from hosts import OLD, expected
from plays import case, check


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
