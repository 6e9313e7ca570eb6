"""Runs of tools that take turns, each on a fresh copy of a file: their times, peak memory and instructions."""
import collections
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
QUICK = "--quick" in sys.argv
BUILD = pathlib.Path(sys.argv[-1]).resolve()
TOLVANE, FLOOR, EMPTY, MEASURE = (str(BUILD / name) for name in ("tolvane", "floor", "empty", "measure"))
LIMIT = 60  # seconds for one run

figures = []  # name, limit, value

# What is measured: its command line, the file's text where it is not the table's, the status of success, the changes
# that then stand in the file, and how many times that work the table's is.
Tool = collections.namedtuple("Tool", "name command text success changes times", defaults=(None, 0, (), 1))


def generate(family, count):
    return subprocess.run([HERE / "generate", family, str(count)], check=True, capture_output=True, text=True).stdout


def unset(text, changes):
    """Those changes that do not stand in a file: what a tool has not done."""
    values, section = {}, ""
    for line in text.splitlines():
        key, equals, value = (part.strip() for part in line.partition("="))
        if line.startswith("["):
            section = key
        elif equals:
            values.setdefault((section, key), value)
    return [change for change in changes if values.get(change[:2]) != change[2]]


class Bench:
    """A folder with the files of one size, and the runs in it."""

    def __init__(self, text, folder="/dev/shm"):
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=folder, prefix="tolvane-bench-"))
        self.text = text
        os.chdir(self.folder)

    def close(self):
        os.chdir("/")
        shutil.rmtree(self.folder)

    def write(self, name, text):
        (self.folder / name).write_text(text)

    def once(self, command, text=None):
        """Seconds, peak KB and status of a run on a fresh copy. None when it takes too long."""
        for path in self.folder.glob("a*"):
            path.unlink()
        self.write("a", self.text if text is None else text)
        run = subprocess.run([MEASURE, str(LIMIT), *command], capture_output=True, text=True)
        if not run.stdout:
            return None
        seconds, memory, status = run.stdout.split()
        return float(seconds), int(memory), int(status)

    def instructions(self, command, limit=None):
        """None when counting takes more seconds than the limit."""
        for path in self.folder.glob("a*"):
            path.unlink()
        self.write("a", self.text)
        counted = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *command]
        try:
            run = subprocess.run(counted, capture_output=True, text=True, timeout=limit)
        except subprocess.TimeoutExpired:
            return None
        return int(re.search(r"Collected : (\d+)", run.stderr).group(1))


class Result:
    def __init__(self, runs, times=1):
        self.known = bool(runs) and None not in runs
        if self.known:
            self.times = [run[0] * times for run in runs]
            self.time = statistics.median(self.times)
            self.memory = statistics.median(run[1] for run in runs)

    def row(self):
        if not self.known:
            return f"{f'> {LIMIT} s':>34}"
        times = [1000 * time for time in (self.time, min(self.times), max(self.times))]
        return f"{times[0]:10.2f} [{times[1]:8.2f} {times[2]:9.2f}] {self.memory / 1024:9.1f}"


def checked(bench, tool, run):
    """The run, which has done its work: a tool that failed is not measured."""
    if run is not None and run[2] != tool.success:
        sys.exit(f"{tool.name} ended with {run[2]}: {tool.command}")
    if run is not None and (left := unset((bench.folder / "a").read_text(), tool.changes)):
        sys.exit(f"{tool.name} left {len(left)} keys unset, the first {left[0]}: {tool.command}")
    return run


def turns(bench, tools, rounds):
    """The results of tools that take turns."""
    runs = {tool.name: [] for tool in tools}
    for _ in range(rounds):
        for tool in tools:
            if None not in runs[tool.name]:
                runs[tool.name].append(checked(bench, tool, bench.once(tool.command, tool.text)))
    return {tool.name: Result(runs[tool.name], tool.times) for tool in tools}
