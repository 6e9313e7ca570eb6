"""Prints the results of a play as JSON, one object a line: of each task on each host, and at the end the counts."""

import json

from ansible.plugins.callback import CallbackBase

DOCUMENTATION = """
name: records
type: stdout
short_description: one JSON object a result
description:
  - Prints an object with host, task, state and result for each task on each host, and one with the counts at the end.
"""


class CallbackModule(CallbackBase):
    CALLBACK_VERSION = 2.0
    CALLBACK_TYPE = "stdout"
    CALLBACK_NAME = "records"

    def record(self, state, result):
        line = {"host": result._host.get_name(), "task": result.task_name, "state": state, "result": result._result}
        print(json.dumps(line), flush=True)

    def v2_runner_on_ok(self, result):
        self.record("ok", result)

    def v2_runner_on_failed(self, result, ignore_errors=False):
        self.record("failed", result)

    def v2_runner_on_skipped(self, result):
        self.record("skipped", result)

    def v2_runner_on_unreachable(self, result):
        self.record("unreachable", result)

    def v2_playbook_on_stats(self, stats):
        print(json.dumps({"counts": {host: stats.summarize(host) for host in stats.processed}}), flush=True)
