#!/usr/bin/env python3
"""Counts the tests of a run of ctest: results.py FILE, written by `ctest --output-junit FILE`.

Names the tests that have not passed. The last line is "N passed, N failed"; skipped tests are in neither number.
"""
import sys
import xml.etree.ElementTree

SKIP = "SKIP_REGULAR_EXPRESSION_MATCHED"


def outcome(case):
    """Whatever ctest has not run for another reason than a skip, such as a missing program, has failed."""
    reason = case.find("skipped")
    if reason is None or reason.get("message") != SKIP:
        return "passed" if case.get("status") == "run" else "failed"
    # ctest ignores the exit status of a skipped test. What a sanitizer finds at the end stands behind the last line.
    last = case.findtext("system-out", "").rstrip().split("\n")[-1]
    return "skipped" if last.startswith("[  SKIPPED ] ") else "failed"


def main():
    counts = {"passed": 0, "failed": 0, "skipped": 0}
    for case in xml.etree.ElementTree.parse(sys.argv[1]).getroot().iter("testcase"):
        result = outcome(case)
        counts[result] += 1
        if result != "passed":
            print(result + ":", case.get("name"))
        if result == "failed" and case.find("skipped") is not None:
            print(case.findtext("system-out"))
    if counts["skipped"]:
        print(counts["skipped"], "skipped")
    print("%d passed, %d failed" % (counts["passed"], counts["failed"]))


main()
