#!/usr/bin/python
"""Upgrades one configuration parameter file with tolvane, the way that automation needs it.

It trusts no exit status of `tolvane update`, whose 1 means that the command ran and whose 0 that it did not. What would
happen is asked of tolvane-preview first; what happened is read off the files afterwards.
"""

DOCUMENTATION = r"""
---
module: tolvane_upgrade
short_description: Upgrade a database server's configuration parameter file
description:
  - Previews the upgrade of one file with C(tolvane-preview), refuses what should not be upgraded unseen, runs
    C(tolvane update), and makes sure that the file is then, byte for byte, what the preview said, and that the backup
    is what the file was.
  - A file that is current is left alone.
  - In check mode it only previews. C(--diff) shows the lines that change, whatever they hold.
options:
  path:
    description:
      - The file, by its absolute name. A symbolic link is refused, for the link itself would become the backup.
    type: str
    required: true
  allow_platform:
    description:
      - Upgrade a file that another platform wrote, too. C(tolvane) converts it after the warning C(Cannot upgrade from
        ... to ...!), and it has to be looked at before the server starts with it.
    type: bool
    default: false
  replace_backup:
    description:
      - Let the backup replace an older one of the same name.
    type: bool
    default: false
  program:
    description:
      - The program C(tolvane), by name or by absolute name.
    type: path
    default: tolvane
  preview_program:
    description:
      - The program C(tolvane-preview), by name or by absolute name.
    type: path
    default: tolvane-preview
attributes:
  check_mode:
    support: full
  diff_mode:
    support: full
requirements:
  - Python 3 on the host
notes:
  - A file whose version C(tolvane) does not know is refused. Left to itself C(tolvane) would leave it as it is or, when
    the platform check has something to remove, call it current without a step.
"""

EXAMPLES = r"""
- name: Upgrade a server's file
  tolvane_upgrade:
    path: /srv/database/server.qpx
  register: upgrade

- name: Say where the old file is
  ansible.builtin.debug:
    var: upgrade.backup
  when: upgrade is changed
"""

RETURN = r"""
file:
  description: The file.
  returned: always
  type: str
version:
  description: The version that the file records before the run.
  returned: when the file can be read
  type: str
platform:
  description: The platform that the file records before the run.
  returned: when the file can be read
  type: str
steps:
  description: The version steps that were passed or, in check mode, would be.
  returned: success
  type: list
  elements: dict
  contains:
    version: {description: The version that the step leads to., type: str}
    phrase: {description: What the step is about., type: str}
    changes: {description: How many lines it changes., type: int}
lines:
  description:
    - Counts of lines, before, after, kept, changed, moved, removed and added.
  returned: success
  type: dict
messages:
  description: The messages of tolvane, line by line.
  returned: when the file can be previewed
  type: list
  elements: str
backup:
  description: Where the old file is kept or, in check mode, would be.
  returned: changed
  type: str
backup_replaced:
  description: Whether an older backup was, or would be, replaced.
  returned: changed
  type: bool
"""

import json
import os
import re
import stat

from ansible.module_utils.basic import AnsibleModule
from ansible.module_utils.common.text.converters import to_bytes, to_text

OUTCOMES = {0: "unchanged", 1: "changed", 2: "trouble"}  # of tolvane-preview, by its exit status
RAN = 1  # the exit status of a `tolvane update` that ran
FOREIGN = "Warning: Cannot upgrade from "
WAITING = b"tolvane: waiting for the lock on "
HUNK = re.compile(rb"@@ -(\d+)(?:,(\d+))? \+\d+(?:,\d+)? @@")


class Trouble(Exception):
    """Why the task fails."""


def shown(text):
    """Text for people: what is not UTF-8 stands as a replacement character, and what a terminal would obey as \\x1b."""
    readable = to_text(to_bytes(text), errors="replace")
    return "".join(
        character if character in "\n\t" or character.isprintable() else ascii(character)[1:-1] for character in readable
    )


def messagelines(text):
    return [line for line in shown(text).split("\n") if line]


def run(module, *words):
    # Neither "~" nor "$" in a file's name is for this command line to expand.
    return module.run_command(list(words), encoding=None, expand_user_and_vars=False)


def lines(text):
    """The lines of some bytes, each with its newline. Other ends of lines are part of them."""
    return re.findall(rb"[^\n]*\n|[^\n]+", text)


def content(path):
    with open(to_bytes(path), "rb") as file:
        return file.read()


def checked(path):
    """The path, which must be one that does not mean anything else to the programs, and no link."""
    if not os.path.isabs(path):
        raise Trouble("%s: the file has to be given by its absolute name" % path)
    if os.path.islink(to_bytes(path)):
        raise Trouble("%s is a symbolic link; name the file that it leads to" % path)
    if os.path.exists(to_bytes(path)) and not stat.S_ISREG(os.stat(to_bytes(path)).st_mode):
        raise Trouble("%s is no regular file" % path)
    return path


def plain(value):
    """A value of a preview, in which text that is not UTF-8 is an object: such bytes stand as they do in file names."""
    if isinstance(value, list):
        return [plain(item) for item in value]
    if not isinstance(value, dict):
        return value
    if list(value) == ["latin1"]:
        return to_text(value["latin1"].encode("latin-1"), errors="surrogateescape")
    return {key: plain(item) for key, item in value.items()}


def previewed(module, program, path):
    """What `tolvane update` would do."""
    status, out, complaint = run(module, program, "--json", path)
    try:
        preview = plain(json.loads(out.decode("utf-8")))
        agrees = preview["outcome"] == OUTCOMES.get(status)
    except (ValueError, KeyError, TypeError):
        agrees = False
    if not agrees:
        raise Trouble("%s ended with status %d and no preview: %s" % (program, status, shown(out + complaint).strip()))
    preview["complaint"] = shown(complaint).strip()
    return preview


def identify(preview, result):
    source = preview["files"][0]
    if source["version"] is not None:
        result.update(version=shown(source["version"]), platform=shown(source["platform"]))
    result["messages"] = [shown(message) for message in preview["messages"]]


def account(preview, result):
    result["lines"] = preview["lines"]
    result["steps"] = [
        {"version": part["version"], "phrase": part["phrase"], "changes": len(part["changes"])}
        for part in preview["parts"]
        if part["version"]
    ]


def currentversion(module, program):
    status, out, complaint = run(module, program, "--version")
    words = shown(out).split()
    if status != 0 or len(words) != 2:
        raise Trouble("%s does not tell its version: %s" % (program, shown(out + complaint).strip()))
    return words[1]


def requireknown(preview, current):
    version = preview["files"][0]["version"]
    if preview["pending"] == 0 and version != current:
        raise Trouble('version "%s" is not known: tolvane brings a file up to %s' % (shown(version), current))


def requireplatform(preview, allowed):
    foreign = [message for message in preview["messages"] if message.startswith(FOREIGN)]
    if foreign and not allowed:
        raise Trouble("refused, for allow_platform is not set: %s" % shown(foreign[0]))


def requirebackup(backup, allowed):
    if backup["obstacle"]:
        raise Trouble("the old file would not be kept as %s: %s" % (backup["name"], backup["obstacle"]))
    if backup["replaces"] and not allowed:
        raise Trouble("refused, for replace_backup is not set: an older backup would be replaced: %s" % backup["name"])


def hunkbegin(heading):
    """How many lines of the old file stand before those that the hunk is about."""
    first, count = HUNK.match(heading).groups()
    return int(first) - (count != b"0")


def requiresame(line, text):
    if [item.rstrip(b"\n") for item in line] != [text.rstrip(b"\n")]:
        raise Trouble("the file changed while it was previewed")


def patched(old, diff):
    """The lines after the exact diff is applied. Trouble when it is not for these lines."""
    new, position, mark = [], 0, b""
    for line in diff[2:]:
        last = mark
        mark, text = line[:1], line[1:]
        if mark == b"@":
            begin = hunkbegin(line)
            new += old[position:begin]
            position = begin
        elif mark == b"\\":  # the line before has no newline
            if last != b"-":
                new[-1] = new[-1].rstrip(b"\n")
        else:
            if mark != b"+":
                requiresame(old[position:position + 1], text)
                position += 1
            if mark != b"-":
                new.append(text)
    return new + old[position:]


def foretold(module, program, path, before):
    """The unified diff, and what the file will hold."""
    status, diff, complaint = run(module, program, "--diff", path)
    if status != 1:
        raise Trouble("%s ended with status %d and no diff: %s" % (program, status, shown(complaint).strip()))
    return diff, b"".join(patched(lines(before), lines(diff)))


def contentorwhy(path):
    try:
        return content(path), ""
    except OSError as error:
        return None, "%s: %s" % (path, error.strerror)


def ending(status, out, complaint):
    """How `tolvane update` ended, in its own words where it had some."""
    said = messagelines(out + complaint)
    if status < 0:
        said.append("tolvane was ended by signal %d" % -status)
    return "; ".join(said) or "tolvane ended with status %d and said nothing" % status


def withoutwaiting(complaint):
    """Standard error without the line that says that the run has waited for another one."""
    return b"".join(line for line in lines(complaint) if not line.startswith(WAITING))


def convert(module, path, preview, before, after, result):
    """Runs `tolvane update` and compares what is there afterwards, whatever the exit status was."""
    status, out, complaint = run(module, module.params["program"], "update", path)
    complaint = withoutwaiting(complaint)
    now, why = contentorwhy(path)
    backup = preview["backup"]["name"]
    kept = contentorwhy(backup)[0] == before
    if now == before:
        raise Trouble("%s; the file is as it was" % ending(status, out, complaint))
    result.update(changed=True, backup_replaced=preview["backup"]["replaces"])
    if kept:
        result["backup"] = backup
    where = "the old file is kept as %s" % backup if kept else "what was in the file is not in %s" % backup
    if now != after:
        why = why or "the file is not what the preview said"
        raise Trouble("%s; %s; %s" % (ending(status, out, complaint), why, where))
    if not kept:
        raise Trouble("the file is upgraded, but %s" % where)
    if status != RAN or complaint or messagelines(out) != result["messages"]:
        raise Trouble("the file is upgraded, but tolvane ended otherwise than the preview said (status %d): %s; %s"
                      % (status, ending(status, out, complaint), where))


def warnofmore(module, path):
    """Each run removes one of several communication entries: only the next one tells that there are more."""
    if previewed(module, module.params["preview_program"], path)["outcome"] == "changed":
        module.warn("%s: a further run would change it again" % path)


def carryout(module, path, preview, result):
    before = content(path)
    diff, after = foretold(module, module.params["preview_program"], path, before)
    if module.check_mode:
        result.update(changed=True, backup=preview["backup"]["name"], backup_replaced=preview["backup"]["replaces"])
    else:
        convert(module, path, preview, before, after, result)
        warnofmore(module, path)
    if module._diff:
        result["diff"] = {"prepared": shown(diff)}


def upgrade(module, result):
    path = checked(module.params["path"])
    program = module.params["preview_program"]
    preview = previewed(module, program, path)
    identify(preview, result)
    if preview["outcome"] == "trouble":
        raise Trouble(preview["complaint"])
    requireknown(preview, currentversion(module, program))
    if preview["outcome"] == "changed":
        requireplatform(preview, module.params["allow_platform"])
        requirebackup(preview["backup"], module.params["replace_backup"])
        carryout(module, path, preview, result)
    account(preview, result)
    if result["messages"]:
        module.warn("%s: %s" % (path, " ".join(result["messages"])))


def leftover(path):
    """What a run that was cut short, or that could not rename, leaves beside the file."""
    temporary = path + "_tmp"
    return "; see %s, which is left" % temporary if os.path.lexists(to_bytes(temporary)) else ""


def main():
    module = AnsibleModule(
        argument_spec={
            "path": {"type": "str", "required": True},  # as it stands: "~" and "$" are parts of a name
            "allow_platform": {"type": "bool", "default": False},
            "replace_backup": {"type": "bool", "default": False},
            "program": {"type": "path", "default": "tolvane"},
            "preview_program": {"type": "path", "default": "tolvane-preview"},
        },
        supports_check_mode=True,
    )
    for name in ("program", "preview_program"):
        module.params[name] = module.get_bin_path(module.params[name], required=True)
    # Not "path": Ansible looks that one up for itself, and expands it before.
    result = {"changed": False, "file": module.params["path"]}
    try:
        upgrade(module, result)
    except (Trouble, OSError) as trouble:
        module.fail_json(msg=str(trouble) + leftover(module.params["path"]), **result)
    module.exit_json(**result)


if __name__ == "__main__":
    main()
