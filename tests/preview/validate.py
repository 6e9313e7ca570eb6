"""Checks the output of `tolvane-preview --json` against its schema, and that its accounts add up.

Usage: validate.py SCHEMA FILE. Prints how many objects there were, or what is wrong.
"""

import json
import sys

import jsonschema


def counted(document, kind):
    return sum(change["kind"] == kind for part in document["parts"] for change in part["changes"])


def check(document):
    """Asserts what the schema cannot say."""
    lines = document["lines"]
    stay = lines["kept"] + lines["changed"] + lines["moved"]
    assert stay + lines["removed"] == lines["before"], "the lines before do not add up"
    assert stay + lines["added"] == lines["after"], "the lines after do not add up"
    assert (document["trouble"] is not None) == (document["outcome"] == "trouble")
    if document["outcome"] == "unchanged":
        assert not any(part["changes"] for part in document["parts"]), "changes that are not written"
    if document["outcome"] == "changed":
        # Step by step as much comes and goes as in the whole.
        grown = counted(document, "added") - counted(document, "removed")
        assert grown == lines["after"] - lines["before"], "the parts do not add up to the whole"
        assert sum(part["version"] is not None for part in document["parts"]) == document["pending"]
    if document["command"] == "update":
        assert (document["backup"] is not None) == (document["outcome"] == "changed")


def main(schemapath, path):
    with open(schemapath, encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    count = 0
    with open(path, encoding="utf-8") as file:  # strict: anything but UTF-8 is an error
        for count, line in enumerate(file, 1):
            document = json.loads(line)
            validator.validate(document)
            check(document)
    print(count, "objects")


if __name__ == "__main__":
    main(*sys.argv[1:])
