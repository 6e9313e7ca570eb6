"""A fleet for tests: folders that stand for hosts, the files on them, and plays over them."""

import json
import os
import pathlib
import shutil
import stat
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
CONTRIB = ROOT / "contrib/ansible"
GOLDEN = ROOT / "tests/golden"
BUILD = ROOT / "build/release"
PREVIEW = "Preview every file, so that nothing is written where one is refused"
UPGRADE = "Upgrade every file"
VARIABLE = "tolvane_upgrade_"


def golden(case):
    """The folder of a golden case, whose files were worked out by hand."""
    folder = GOLDEN / case
    assert (folder / "before").is_dir(), "no golden case " + case
    return folder


def script(fleet, name, body):
    """A program that stands in for another one, the real ones being $tolvane and $preview."""
    path = fleet.folder.parent / ("%s-%s" % (fleet.folder.name, name))
    path.write_text("#!/bin/bash\ntolvane=%s/tolvane preview=%s/tolvane-preview\n%s\n" % (BUILD, BUILD, body))
    path.chmod(0o755)
    return str(path)


def state(folder):
    """All that must not change where nothing is written."""
    found = {}
    for path in [folder, *sorted(folder.rglob("*"))]:
        status = path.lstat()
        content = path.read_bytes() if stat.S_ISREG(status.st_mode) else None
        found[str(path)] = (content, status.st_mode, status.st_ino, status.st_mtime_ns)
    return found


class Play:
    """What a play reported, and the states of the hosts' folders before and after it."""

    def __init__(self, status, out, err, before, after):
        self.status, self.out, self.err, self.before, self.after = status, out, err, before, after
        objects = [json.loads(line) for line in out.splitlines() if line.startswith("{")]
        self.records = [item for item in objects if "task" in item]
        self.counts = next((item["counts"] for item in objects if "counts" in item), {})

    def record(self, host, task):
        found = [item for item in self.records if item["host"] == host and item["task"] == task]
        assert len(found) == 1, "%d results of '%s' on %s\n%s%s" % (len(found), task, host, self.out, self.err)
        return found[0]

    def items(self, host, task):
        """The results of a task, file by file."""
        return self.record(host, task)["result"]["results"]

    def item(self, host, task):
        items = self.items(host, task)
        assert len(items) == 1, items
        return items[0]

    def ran(self, host, task):
        return any((item["host"], item["task"]) == (host, task) and item["state"] != "skipped" for item in self.records)

    def untouched(self, host):
        assert self.before[host] == self.after[host], "something changed on %s" % host


class Fleet:
    """Hosts in a folder. `vars` of a host are the role's variables without their common prefix."""

    def __init__(self, folder):
        self.folder = folder
        self.hosts = {}
        folder.mkdir()

    def add(self, host, files, **variables):
        """A host; a file is a golden case, or its name on the host with its bytes (None: there is none)."""
        root = self.folder / host
        root.mkdir()
        paths = [self.place(root / str(number), item) for number, item in enumerate(files)]
        self.hosts[host] = {"files": paths, **variables}
        return [pathlib.Path(path) for path in paths]

    def place(self, folder, item):
        if isinstance(item, str):
            case = golden(item)
            shutil.copytree(case / "before", folder)
            return str(folder / (case / "command").read_text().splitlines()[1])
        folder.mkdir()
        name, content = item
        if content is not None:
            (folder / name).write_bytes(content)
        return str(folder / name)

    def files(self, host):
        paths = self.hosts[host]["files"]
        return [pathlib.Path(path) for path in ([paths] if isinstance(paths, str) else paths)]

    def inventory(self):
        hosts = {}
        for host, variables in self.hosts.items():
            hosts[host] = {VARIABLE + name: value for name, value in variables.items()}
        local = {"ansible_connection": "local", "ansible_python_interpreter": "/usr/bin/python3"}
        path = self.folder.parent / (self.folder.name + ".json")
        path.write_text(json.dumps({"database_servers": {"hosts": hosts, "vars": local}}))
        return str(path)

    def states(self):
        return {host: state(self.folder / host) for host in self.hosts}

    def play(self, *options, callback="records", playbook="upgrade.yml"):
        before = self.states()
        command = ["ansible-playbook", "-i", self.inventory(), *options, playbook]
        done = ansible(self.folder.parent, command, ANSIBLE_STDOUT_CALLBACK=callback)
        return Play(done.returncode, done.stdout, done.stderr, before, self.states())


def ansible(home, command, **settings):
    """Runs a command of Ansible beside the example playbook, with nothing of the caller's own settings."""
    environment = {
        "PATH": "%s:/usr/bin:/bin:/usr/sbin:/sbin" % BUILD,
        "HOME": str(home),
        "ANSIBLE_REMOTE_TMP": str(home / "remote"),
        "LC_ALL": "C.UTF-8",
        "PYTHONDONTWRITEBYTECODE": "1",
        "ANSIBLE_CALLBACK_PLUGINS": str(ROOT / "tests/ansible/callback_plugins"),
        "ANSIBLE_LOCALHOST_WARNING": "false",
        "ANSIBLE_NOCOLOR": "1",
        "ANSIBLE_FORKS": os.environ.get("ANSIBLE_FORKS", "2"),
        **settings,
    }
    return subprocess.run(command, cwd=CONTRIB, env=environment, capture_output=True, text=True, check=False)
