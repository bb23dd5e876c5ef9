"""Real applications on a real display, read by the real helper. Run by scripts/live-test."""

import os
import pathlib
import signal
import socket
import subprocess
import sys
import time
import unittest

import processes
from audio_test import AudioTest
from helper import Helper
from live_test import LiveTest
from processes import press, run, wait_until
from shell_test import (BusLossTest, CallTest, CommandsTest, NoHelperTest, QuestionsTest,
                        ShortcutTest, TrayTest)
from web_applications import WebApplicationTest


class MousepadTest(LiveTest):
    def write_note(self, name):
        path = pathlib.Path(os.environ["HOME"]) / name
        path.write_text("A note.\n")
        return path

    def start_mousepad(self, name):
        program = self.start(processes.mousepad(self.write_note(name)))
        sample = self.helper.wait_for_activity(
            f"the window of {name}",
            lambda each: name in each.get("windowTitle", "") and each.get("accessibilityWindows"))
        return program, sample


class EditorTest(MousepadTest):
    def test_title_and_identity(self):
        _, sample = self.start_mousepad("title.txt")
        self.assertEqual(sample["applicationBundleIdentifier"], "org.xfce.mousepad")
        self.assertFalse(sample["isFullscreen"])
        self.assertNotIn("documentPath", sample)
        self.assertLessEqual(sample["requests"], 20)

    def test_window_dump(self):
        self.start_mousepad("dump.txt")
        dump = subprocess.run(
            [os.environ["KESTRO_HELPER"], "--dumpApplicationWindows", "org.xfce.mousepad"],
            capture_output=True, text=True, timeout=60)
        self.assertEqual(dump.returncode, 0)
        self.assertTrue(dump.stdout.startswith("\n\nMain Window:\nrole='AXWindow'"),
                        dump.stdout[:200])
        self.assertIn("dump.txt", dump.stdout)
        self.assertIn("=== Info Extractor Result ===", dump.stdout)
        self.assertIn("Dump finished; exiting.", dump.stderr)
        self.assertNotIn("exiting", dump.stdout)

    def test_two_monitors(self):
        self.start_mousepad("monitors.txt")
        run("xrandr", "--setmonitor", "LEFT", "800/210x1000/260+0+0", "screen")
        self.addCleanup(run, "xrandr", "--delmonitor", "LEFT")
        run("xrandr", "--setmonitor", "RIGHT", "800/210x1000/260+800+0", "none")
        self.addCleanup(run, "xrandr", "--delmonitor", "RIGHT")
        before = self.helper.now()
        press("F11")
        self.helper.wait_for_activity("full screen on one monitor of two",
                                      lambda sample: sample["isFullscreen"], after=before)
        before = self.helper.now()
        press("F11")
        self.helper.wait_for_activity("no full screen again",
                                      lambda sample: not sample["isFullscreen"], after=before)

    def test_title_in_compound_text(self):
        """An old client gives its title in no encoding that others use."""
        self.start(processes.xterm("Logs – today"))
        sample = self.helper.wait_for_title("Logs")
        self.assertEqual(sample["windowTitle"], "Logs – today")

    def test_stopped_application(self):
        editor, _ = self.start_mousepad("stopped.txt")
        editor.signal(signal.SIGSTOP)
        before = self.helper.now()
        self.check_that_samples_keep_coming(before)
        # The window server still knows the title.
        self.helper.wait_for_activity("the title of the stopped application",
                                      lambda each: "stopped.txt" in each.get("windowTitle", ""),
                                      after=before)
        self.start(processes.qt_application("Another application"))
        sample = self.helper.wait_for_title("Another application", after=before)
        self.assertTrue(sample["accessibilityWindows"])
        editor.signal(signal.SIGCONT)


class QtTest(LiveTest):
    def start_window(self, title):
        self.start(processes.qt_application(title))
        return self.helper.wait_for_activity(
            f"the window {title}",
            lambda sample: sample.get("windowTitle") == title
            and sample.get("accessibilityWindows"))

    def test_modal_dialog(self):
        first = self.start_window("Document window")
        main = processes.active_window()
        before = self.helper.now()
        press("d")
        wait_until(lambda: processes.active_window() != main, "the dialog has the focus")
        sample = self.helper.wait_for_activity(
            "the dialog",
            lambda each: each["accessibilityWindows"] != first["accessibilityWindows"],
            after=before)
        # A modal dialog stands for the one window that it belongs to.
        self.assertEqual(sample["windowTitle"], "Document window")

    def test_slow_application(self):
        """One that answers every few seconds is read whole now and then, and sampled every second."""
        self.start_window("Slow window")
        before = self.helper.now()
        press("s")
        self.helper.wait_for_activity("a sample that ran out of its budget",
                                      lambda each: each.get("budgetUsedUp"), after=before)
        start = self.helper.now()
        samples = self.helper.wait_for_samples(12, start, seconds=20)
        times = [sample["t"] for sample in samples]
        self.assertLess(max(later - earlier for earlier, later in zip(times, times[1:])), 2.0, times)
        self.assertEqual({each.get("windowTitle") for each in samples}, {"Slow window"})
        # Most of them ask nothing.
        self.assertLess(len([each for each in samples if each["requests"] > 0]), 6, samples)

    def test_ends_at_once(self):
        """Also while it waits for an answer."""
        self.start_window("Last window")
        press("h")
        time.sleep(1.0)
        before = time.monotonic()
        helper, type(self).helper = self.helper, None
        self.assertEqual(helper.terminate(), 0)
        self.assertLess(time.monotonic() - before, 1.0)
        type(self).helper = Helper()

    def test_hanging_application(self):
        self.start_window("Hanging window")
        before = self.helper.now()
        press("h")
        self.check_that_samples_keep_coming(before, count=5)
        hanging = [each for each in self.helper.samples(before)
                   if not each.get("accessibilityWindows")]
        self.assertTrue(hanging, "no sample found the application hanging")
        self.assertEqual({each.get("windowTitle") for each in hanging}, {"Hanging window"})
        # Not every sample waits for the application again.
        self.assertIn(0, [each["requests"] for each in hanging])
        self.helper.wait_for_activity("the application is read again",
                                      lambda each: each.get("accessibilityWindows"),
                                      after=hanging[-1]["t"])


@unittest.skipUnless(processes.browser_starts(), "chromium does not start here")
class BrowserTest(LiveTest):
    def setUp(self):
        self.pages = processes.Pages()
        self.addCleanup(self.pages.end)

    def check_navigation(self):
        address = self.pages.address + "/index.html"
        sample = self.helper.wait_for_address(address, seconds=25)
        self.helper.wait_for_title("First page")
        run("xdotool", "mousemove", "800", "600", "click", "1")
        self.press_and_expect_address("h", address + "#part")
        self.press_and_expect_address("n", address + "#nowhere")
        self.press_and_expect_address("p", self.pages.address + "/pushed")
        self.helper.wait_for_title("Pushed page")
        return sample

    def press_and_expect_address(self, key, address):
        """A key that comes before the page has the focus is lost: it may take some."""
        for _ in range(5):
            before = self.helper.now()
            press(key)
            samples = self.helper.wait_for_samples(2, before)
            if any(sample.get("documentPath") == address for sample in samples):
                return
        self.fail(f"{address} is not seen; the last sample was {samples[-1]}")

    def test_chromium(self):
        browser = self.start(processes.chromium(self.pages.address + "/index.html"))
        sample = self.check_navigation()
        self.assertEqual(sample["applicationBundleIdentifier"], "org.chromium.Chromium")
        self.assertFalse(sample["isPrivateBrowsing"])
        before = self.helper.now()
        press("F11")
        self.helper.wait_for_activity("full screen", lambda each: each["isFullscreen"],
                                      after=before)
        before = self.helper.now()
        press("F11")
        self.helper.wait_for_activity("no full screen", lambda each: not each["isFullscreen"],
                                      after=before)
        before = self.helper.now()
        browser.signal_group(signal.SIGKILL)
        self.check_that_samples_keep_coming(before)
        self.helper.check_running()

    def test_chromium_incognito(self):
        self.start(processes.chromium("--incognito", self.pages.address + "/index.html"))
        # The toolbar's button is called so, as it is after a profile elsewhere.
        self.check_private_window({"windowTitle": "First page - Chromium (Incognito) – Incognito"})

    def check_private_window(self, fields):
        expected = {"documentPath": self.pages.address + "/index.html", **fields}
        self.helper.wait_for_activity(
            f"a private window with {expected}",
            lambda each: each.get("windowTitle", "").startswith("First page")
            and each["isPrivateBrowsing"]
            and {field: each.get(field) for field in expected} == expected, seconds=40)

    def start_profile(self, user_data, directory, name):
        """The title with the profile's name, which stands in it once."""
        browser = self.start(processes.chromium(
            f"--profile-directory={directory}", self.pages.address + "/index.html",
            user_data=user_data))
        title = f"First page - Chromium - {name}"
        self.helper.wait_for_activity(
            title, lambda each: each.get("windowTitle") == title
            and each["isPrivateBrowsing"] is False, seconds=40)
        return browser

    def test_chromium_profiles(self):
        user_data = processes.chromium_profiles("Harbour office", "Pier")
        self.start_profile(user_data, "Profile 1", "Pier").end()
        self.start_profile(user_data, "Default", "Harbour office")

    def test_frame(self):
        self.start(processes.chromium(self.pages.address + "/framed.html"))
        self.helper.wait_for_address(self.pages.address + "/framed.html")

    def test_search(self):
        """Searching by the application's own means finds what reading everything finds."""
        check = pathlib.Path(os.environ["KESTRO_HELPER"]).with_name("search_check")
        if not check.exists():
            self.skipTest("search_check is not built")
        self.start(processes.chromium(self.pages.address + "/search.html"))
        self.helper.wait_for_title("Search page", seconds=40)
        result = subprocess.run([check], capture_output=True, text=True, timeout=120)
        self.assertEqual(result.returncode, 0, result.stdout)

    def test_firefox(self):
        self.start(processes.firefox(self.pages.address + "/index.html"))
        sample = self.check_navigation()
        self.assertEqual(sample["applicationBundleIdentifier"], "org.mozilla.firefox")
        self.assertFalse(sample["isPrivateBrowsing"])

    def test_firefox_private(self):
        self.start(processes.firefox("--private-window", self.pages.address + "/index.html"))
        self.check_private_window({"documentTitle": "First page"})


class LossTest(MousepadTest):
    """What the desktop loses, one part after the other: each test leaves it poorer."""

    def test_1_accessibility_bus_comes_back(self):
        self.start_mousepad("before.txt")
        before = self.helper.now()
        for word in ("at-spi2/accessibility.conf", "at-spi-bus-launcher"):
            for pid in processes.processes_of_this_desktop(word):
                os.kill(pid, signal.SIGKILL)
        self.check_that_samples_keep_coming(before)
        self.helper.wait_for_activity("the title without accessibility",
                                      lambda each: "before.txt" in each.get("windowTitle", ""),
                                      after=before)
        self.start_mousepad("after.txt")

    def test_2_no_window_manager(self):
        manager = int(os.environ["WINDOW_MANAGER_PID"])
        os.kill(manager, signal.SIGKILL)
        wait_until(lambda: not processes.processes_of_this_desktop("openbox"), "no window manager")
        self.start_mousepad("unmanaged.txt")

    def test_3_no_x_server(self):
        before = self.helper.now()
        os.kill(int(os.environ["X_SERVER_PID"]), signal.SIGKILL)
        samples = self.helper.wait_for_samples(2, before)
        self.assertEqual(samples[-1]["kind"], "noActivity")
        self.assertEqual(self.helper.terminate(), 0)

    def test_4_x_server_that_says_nothing(self):
        """It accepts the connection and never answers: samples go on without windows."""
        path = pathlib.Path(os.environ["DESKTOP_DIRECTORY"]) / "silent"
        with socket.socket(socket.AF_UNIX) as server:
            server.bind(str(path))
            server.listen()
            helper = Helper(DISPLAY=f"unix:{path}")
            samples = helper.wait_for_samples(2, -1.0)
            self.assertEqual({sample["kind"] for sample in samples}, {"noActivity"})
            self.assertEqual(helper.terminate(), 0)


def load_tests(loader, _, __):
    order = [EditorTest, QtTest, BrowserTest, WebApplicationTest, NoHelperTest, CommandsTest,
             TrayTest, QuestionsTest, ShortcutTest, AudioTest, CallTest, LossTest,
             BusLossTest]
    return unittest.TestSuite(loader.loadTestsFromTestCase(case) for case in order)


def report(result):
    """By name, what could not run here; then the numbers."""
    failed = len(result.failures) + len(result.errors) + len(result.unexpectedSuccesses)
    for test, reason in result.skipped:
        print(f"not run here: {test.id().removeprefix('__main__.')}: {reason}")
    skipped = len(result.skipped)
    print(f"{result.testsRun - failed - skipped} passed, {failed} failed, {skipped} skipped")
    return failed == 0 and result.testsRun > 0


if __name__ == "__main__":
    processes.end_all_at_exit()
    program = unittest.main(verbosity=2, exit=False)
    sys.exit(0 if report(program.result) else 1)
