"""Prints every name of a member that the schema of tolvane-preview's JSON has."""

import json
from pathlib import Path


def members(schema):
    if isinstance(schema, dict):
        properties = schema.get("properties", {})
        yield from properties
        for part in schema.values():
            yield from members(part)
    elif isinstance(schema, list):
        for part in schema:
            yield from members(part)


print(*sorted(set(members(json.loads(Path("docs/preview.schema.json").read_text())))), sep="\n")
