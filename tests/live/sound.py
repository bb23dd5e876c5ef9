"""A private sound server, PipeWire with loudspeakers and a microphone that are none, and programs that
play and record."""

import os
import pathlib
import shutil
import signal
import subprocess
import sys

from processes import HERE, Program, run, wait_until


class Sound:
    def __init__(self):
        self.programs = [Program("pipewire")]
        wait_until((pathlib.Path(os.environ["XDG_RUNTIME_DIR"]) / "pipewire-0").exists, "PipeWire")
        self.programs.append(Program("wireplumber"))
        self.start_server()

    def start_server(self):
        """Starts what speaks PulseAudio's protocol; the devices are its own and go with it."""
        self.server = Program("pipewire-pulse")
        wait_until(self.answers, "the sound server")
        for name in ("spk", "headset"):
            run("pactl", "load-module", "module-null-sink", f"sink_name={name}")
        run("pactl", "load-module", "module-null-sink", "media.class=Audio/Source/Virtual",
            "sink_name=fakemic")
        run("pactl", "set-default-sink", "spk")
        run("pactl", "set-default-source", "fakemic")

    @staticmethod
    def answers():
        try:
            return subprocess.run(["pactl", "info"], capture_output=True, check=False,
                                  timeout=2).returncode == 0
        except subprocess.TimeoutExpired:
            return False

    def stop_server(self):
        self.server.end()

    def kill_server(self):
        self.server.signal(signal.SIGKILL)
        self.server.end()

    @staticmethod
    def play():
        return Program("paplay", "--raw", "/dev/zero")

    @staticmethod
    def record(device="fakemic", *arguments):
        return Program("parecord", "--raw", "-d", device, *arguments, "/dev/null")

    @staticmethod
    def phone(*directions, **environment):
        """One program that does both, or what is said of "in" and "out". With an executable file of
        its own: an interpreter's would be the test's, too."""
        program = pathlib.Path(os.environ["HOME"]) / "phone"
        if not program.exists():
            shutil.copy(os.path.realpath(sys.executable), program)
        return Program(program, HERE / "phone.py", *(directions or ("in", "out")),
                       environment=environment)

    @staticmethod
    def streams(kind):
        """The numbers of its "sink-inputs" or "source-outputs"."""
        return [line.split()[0] for line in run("pactl", "list", kind, "short").splitlines()]

    def count(self):
        return len(self.streams("sink-inputs")) + len(self.streams("source-outputs"))

    def wait_for_streams(self, count, seconds=15):
        wait_until(lambda: self.count() == count, f"{count} streams", seconds)

    def end(self):
        for program in [self.server, *reversed(self.programs)]:
            program.end()
