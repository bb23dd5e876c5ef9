"""The helper under test, and what its transcript says."""

import json
import os
import pathlib
import plistlib
import signal

from processes import Program, wait_until


def folder_of(environment):
    return pathlib.Path(environment.get("XDG_CONFIG_HOME", os.environ["XDG_CONFIG_HOME"]))


def write_preferences(store="KestroHelper", folder=None, **values):
    """Adds the values to a store of preferences."""
    path = (folder or folder_of({})) / "kestro" / f"{store}.plist"
    path.parent.mkdir(parents=True, exist_ok=True)
    known = plistlib.loads(path.read_bytes()) if path.exists() else {}
    path.write_bytes(plistlib.dumps({**known, **values}))


class Helper:
    def __init__(self, asks=False, **environment):
        """`asks`: as at its first start."""
        if not asks:
            write_preferences(folder=folder_of(environment), dontAskToLaunchAtLogin=True,
                              dontNotifyAboutDisabledAccessibilityAPI=True)
        self.transcript = pathlib.Path(os.environ["DESKTOP_DIRECTORY"]) / "transcript.jsonl"
        self.transcript.unlink(missing_ok=True)
        self.program = Program(
            os.environ["KESTRO_HELPER"],
            environment={"KESTRO_TRANSCRIPT": str(self.transcript), **environment},
        )

    def events(self, after=-1.0):
        """The complete lines so far, without those up to the given time."""
        if not self.transcript.exists():
            return []
        lines = self.transcript.read_text().split("\n")[:-1]
        return [event for event in map(json.loads, lines) if event["t"] > after]

    def now(self):
        """The time of the last event."""
        events = self.events()
        return events[-1]["t"] if events else -1.0

    def samples(self, after=-1.0):
        return [event for event in self.events(after)
                if event["kind"] in ("activity", "noActivity")]

    def wait_for_activity(self, what, condition, after=-1.0, seconds=15):
        """The first activity after the given time that meets the condition."""
        def find():
            self.check_running()
            return next((sample for sample in self.samples(after)
                         if sample["kind"] == "activity" and condition(sample)), None)

        try:
            return wait_until(find, what, seconds)
        except AssertionError as error:
            raise AssertionError(f"{error}; the last samples were {self.samples()[-2:]}") from None

    def wait_for_title(self, title, **arguments):
        return self.wait_for_activity(
            f"a title that begins with {title}",
            lambda sample: sample.get("windowTitle", "").startswith(title), **arguments)

    def wait_for_address(self, address, **arguments):
        return self.wait_for_activity(
            f"the address {address}",
            lambda sample: sample.get("documentPath") == address, **arguments)

    def wait_for_samples(self, count, after, seconds=15):
        return wait_until(
            lambda: len(self.samples(after)) >= count and self.samples(after),
            f"{count} samples", seconds)

    def check_running(self):
        status = self.program.process.poll()
        if status is not None:
            raise AssertionError(f"the helper has ended with status {status}")

    def terminate(self):
        """Ends it as a session does; the exit status."""
        self.program.signal(signal.SIGTERM)
        return self.program.process.wait(10)
