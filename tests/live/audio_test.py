"""Calls from what programs play and record, with a real sound server. Run by scripts/live-test."""

import os
import re
import shutil
import signal
import subprocess
import unittest

import processes
from live_test import LiveTest
from processes import Program, run, wait_until
from sound import Sound

PROGRAMS = ("pipewire", "wireplumber", "pipewire-pulse", "pactl", "paplay", "parecord", "pw-cat")
MISSING = [name for name in PROGRAMS if not shutil.which(name)]


def dump():
    """The process ids that play, those that record, and the bundle identifiers in a call, as a helper
    that has just started sees it."""
    text = subprocess.run([os.environ["KESTRO_HELPER"], "--dumpPMAssertions"], capture_output=True,
                          text=True, timeout=20, check=True).stdout

    def numbers(name):
        listed = re.search(rf"pidsOfAppsWith{name}Assertion: \[(.*)\]", text).group(1)
        return [int(number) for number in listed.split(", ") if number]

    meetings = text.split("\tappsWithMeetingRelatedPMAssertions:\n")[1].split("\n\nInfo for")[0]
    return (numbers("AudioOut"), numbers("AudioIn"),
            re.findall(r"PIDAndRunningApplication.*?bundleIdentifier: ([^,)]*)", meetings))


def native_recording():
    return Program("pw-cat", "-r", os.devnull)


@unittest.skipIf(MISSING, f"not installed: {', '.join(MISSING)}")
class AudioTest(LiveTest):
    @classmethod
    def setUpClass(cls):
        cls.sound = Sound()
        # Without a window at the front nothing is sampled.
        cls.window = processes.xterm("Front window")
        super().setUpClass()
        cls.helper.wait_for_title("Front window")

    @classmethod
    def tearDownClass(cls):
        super().tearDownClass()
        cls.window.end()
        cls.sound.end()

    def setUp(self):
        """What the test before has left is over."""
        self.sound.wait_for_streams(0)
        wait_until(lambda: len(self.calls("started")) == len(self.calls("ended")), "no call")

    def calls(self, what, after=-1.0):
        """The bundle identifiers of calls that have "started", or "ended", since then."""
        return [event[what] for event in self.helper.events(after)
                if event["kind"] == "call" and what in event]

    def wait_for_call(self, what, identifier, after, seconds=15):
        wait_until(lambda: identifier in self.calls(what, after),
                   f"the call of {identifier} has {what}", seconds)

    def check_no_call(self, after):
        self.helper.wait_for_samples(3, self.helper.now())
        self.assertEqual(self.calls("started", after), [])

    def check_call_goes_on(self, after):
        # Longer than what is remembered of a lost server, and than a call lasts unseen.
        self.helper.wait_for_samples(7, self.helper.now())
        self.assertEqual(self.calls("ended", after), [])

    def start_phone(self):
        before = self.helper.now()
        phone = self.start(self.sound.phone())
        self.wait_for_call("started", "phone", before)
        return phone

    def test_phone(self):
        phone = self.start_phone()
        self.assertEqual(dump(), ([phone.pid], [phone.pid], ["phone"]))
        before = self.helper.now()
        for stream in self.sound.streams("source-outputs"):
            run("pactl", "set-source-output-mute", stream, "1")
        for stream in self.sound.streams("sink-inputs"):
            run("pactl", "move-sink-input", stream, "headset")
        self.check_call_goes_on(before)
        phone.end()
        self.wait_for_call("ended", "phone", before)

    def test_no_calls(self):
        """What looks like a call to those who look at less."""
        peaks = ("--property=resample.peaks=true", "--format=float32le", "--channels=1", "--rate=25")
        sound = self.sound
        for name, start in (
                ("music", lambda: [sound.play()]),
                ("a recording", lambda: [sound.record()]),
                ("a recording by PipeWire's own means", lambda: [native_recording()]),
                ("one program each", lambda: [sound.play(), sound.record(), native_recording()]),
                ("a screen recorder", lambda: [sound.record(), sound.record("spk.monitor")]),
                ("a level meter", lambda: [sound.record("fakemic", *peaks)]),
                ("a program that plays and records what is played",
                 lambda: [sound.phone(PULSE_SOURCE="spk.monitor")])):
            with self.subTest(name):
                before = self.helper.now()
                programs = [self.start(program) for program in start()]
                sound.wait_for_streams(2 if "plays and" in name else len(programs))
                self.check_no_call(before)
                for program in programs:
                    program.end()
                sound.wait_for_streams(0)

    def test_loopback(self):
        """The server's own streams are nobody's."""
        module = run("pactl", "load-module", "module-loopback").strip()
        self.addCleanup(run, "pactl", "unload-module", module)
        self.sound.wait_for_streams(2)
        self.assertEqual(dump(), ([], [], []))

    def test_server_restarts(self):
        self.start_phone()
        before = self.helper.now()
        self.sound.kill_server()
        self.helper.wait_for_samples(2, before)
        self.sound.start_server()
        self.sound.wait_for_streams(2)
        self.check_call_goes_on(before)

    def test_server_that_hangs(self):
        phone = self.start_phone()
        self.sound.server.signal(signal.SIGSTOP)
        self.addCleanup(self.sound.server.signal, signal.SIGCONT)
        before = self.helper.now()
        self.check_that_samples_keep_coming(before)
        self.assertEqual(dump(), ([], [], []))
        # It tells of no end; the phone is gone all the same.
        phone.end()
        self.wait_for_call("ended", "phone", before)
        self.sound.server.signal(signal.SIGCONT)

    def test_browser(self):
        if not processes.browser_starts():
            self.skipTest("chromium does not start here")
        pages = processes.Pages()
        self.addCleanup(pages.end)
        before = self.helper.now()
        browser = self.start(processes.chromium(
            "--use-fake-ui-for-media-stream", "--autoplay-policy=no-user-gesture-required",
            pages.address + "/call.html"))
        self.wait_for_call("started", "org.chromium.Chromium", before, seconds=40)
        # The process that has the sound is another one.
        self.assertEqual(dump(), ([browser.pid], [browser.pid], ["org.chromium.Chromium"]))
        run("xdotool", "mousemove", "800", "600", "click", "1")
        self.wait_for_call("ended", "org.chromium.Chromium", before)
        self.assertEqual(dump(), ([browser.pid], [], []))


if __name__ == "__main__":
    processes.end_all_at_exit()
    unittest.main(verbosity=2)
