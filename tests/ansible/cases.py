"""Plays the role over a fleet: a check, a run and a second run; then over programs that do not do what they say.

Prints a line a case, and last "N passed, N failed".
"""

import importlib
import pathlib
import sys
import tempfile
import traceback

sys.dont_write_bytecode = True

from plays import CASES, Plays  # noqa: E402

for subject in sorted(pathlib.Path(__file__).parent.glob("cases_*.py")):
    importlib.import_module(subject.stem)


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
