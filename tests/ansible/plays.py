"""The plays that the cases look at, and what the cases share."""

import atexit
import subprocess

from fleet import Fleet
from hosts import CURRENT, OLD, broken, full, plain
from liars import lie

CASES = []


def case(function):
    CASES.append(function)
    return function


def check(value, expected):
    assert value == expected, "\n  is       %r\n  expected %r" % (value, expected)


def fact(play, host):
    return play.record(host, "Keep the names of the backups")["result"]["ansible_facts"]["tolvane_upgrade_backups"]


def failing(play):
    return {host for host, count in play.counts.items() if count["failures"]}


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
