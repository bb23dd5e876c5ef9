"""What people meet: tray, windows, notifications, calls, commands and the shortcut, with a real
panel, notification server, sound server and browser. Run by scripts/live-test."""

import datetime
import json
import os
import pathlib
import signal
import sqlite3
import subprocess
import unittest

import processes
from desktop_parts import (HELPER, HELPER_INTERFACE, Dunst, Menu, XfcePanel, configuration,
                           helper_property, owns, wait_for_no_window, wait_for_window)
from helper import Helper, write_preferences
from live_test import LiveTest
from processes import Program, press, run, wait_until
from sound import Sound

KESTROCTL = str(pathlib.Path(os.environ["KESTRO_HELPER"]).parent / "kestroctl")
QUESTION = "Kestro Tracker"


def kestroctl(*arguments, **environment):
    return subprocess.run([KESTROCTL, *arguments], capture_output=True, text=True, timeout=20,
                          env={**os.environ, **environment}, stdin=subprocess.DEVNULL)


def status():
    return json.loads(kestroctl("status", "--json").stdout)


def time_entries():
    path = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "kestro/Kestro.sqlite"
    with sqlite3.connect(f"file:{path}?mode=ro", uri=True) as database:
        return database.execute(
            "SELECT title, start, end, projects.name, provenance FROM time_entries"
            " LEFT JOIN projects ON projects.id = project_id ORDER BY time_entries.id").fetchall()


def wait_for_entry(title):
    return wait_until(lambda: next((entry for entry in time_entries() if entry[0] == title), None),
                      f"the time entry {title}")


class ShellTest(LiveTest):
    """Tests with a helper that has finished starting."""

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        wait_until(lambda: owns(HELPER[0]), "the helper's name on the bus")
        wait_until(lambda: status()["tracking"], "tracking")


class CommandsTest(ShellTest):
    def test_pause_and_resume(self):
        self.assertEqual(kestroctl("pause", "1h").returncode, 0)
        self.addCleanup(kestroctl, "resume")
        paused = status()
        self.assertFalse(paused["tracking"])
        until = datetime.datetime.fromisoformat(paused["pausedUntil"].replace("Z", "+00:00"))
        left = until - datetime.datetime.now(datetime.timezone.utc)
        self.assertAlmostEqual(left.total_seconds(), 3600, delta=20)
        self.assertIn("paused until", kestroctl("status").stdout)
        self.assertEqual(kestroctl("resume").returncode, 0)
        self.assertTrue(status()["tracking"])
        self.assertIsNone(status()["pausedUntil"])

    def test_timer(self):
        self.assertEqual(kestroctl("start", "Harbour lights", "--project", "Pier").returncode, 0)
        self.assertTrue(status()["timer"]["running"])
        self.assertTrue(helper_property("TimerRunning"))
        self.assertEqual(kestroctl("start", "Second").returncode, 0)
        self.assertEqual(wait_for_entry("Harbour lights")[3], "Pier")
        self.assertEqual(kestroctl("stop").returncode, 0)
        wait_for_entry("Second")
        again = kestroctl("stop")
        self.assertEqual((again.returncode, again.stderr),
                         (1, "kestroctl: No timer is running.\n"))

    def test_changes_are_announced(self):
        with subprocess.Popen(
                ["busctl", "--user", "--json=short", "monitor", HELPER[0]],
                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True) as monitor:
            self.addCleanup(monitor.kill)
            monitor.stderr.readline()  # it listens
            kestroctl("start", "Secret title")
            kestroctl("stop")
            changed = []
            while "TimerRunning" not in changed:
                message = json.loads(monitor.stdout.readline())
                if message.get("member") == "PropertiesChanged":
                    changed += message["payload"]["data"][1]
                    self.assertNotIn("Secret title", json.dumps(message))
            monitor.kill()

    def test_refusals(self):
        foreign = kestroctl("open", "https://example.com/")
        self.assertEqual(foreign.returncode, 1)
        self.assertEqual(len(foreign.stderr.splitlines()), 1)
        call = subprocess.run(
            ["dbus-send", "--session", "--print-reply", f"--dest={HELPER[0]}", HELPER[1],
             f"{HELPER_INTERFACE}.OpenURL", "string:file:///etc/passwd"],
            capture_output=True, text=True, timeout=10)
        self.assertIn(f"{HELPER_INTERFACE}.Error.InvalidArgument", call.stderr)
        self.assertEqual(kestroctl("pause", "5 apples").returncode, 2)
        self.assertEqual(kestroctl("nothing").returncode, 2)

    def test_addresses(self):
        address = "kestro://record?start=2026-03-02T09:00:00%2B01:00&end=2026-03-02T10:30:00Z"
        self.assertEqual(kestroctl("open", address).returncode, 0)
        wait_for_window("Record Time")
        run("xdotool", "type", "From a link")
        press("Return")
        _, start, end, _, _ = wait_for_entry("From a link")
        self.assertEqual((start, end), (1772438400.0, 1772447400.0))

    def test_only_one_helper(self):
        second = subprocess.run([os.environ["KESTRO_HELPER"]], capture_output=True, text=True,
                                timeout=10)
        self.assertEqual(second.returncode, 3)
        self.assertEqual(second.stderr, "KestroHelper: another helper is running in this session\n")
        self.helper.check_running()

    def test_today(self):
        day = json.loads(kestroctl("today", "--json").stdout)
        self.assertIn("applications", day)


class NoHelperTest(LiveTest):
    @classmethod
    def setUpClass(cls):
        pass

    @classmethod
    def tearDownClass(cls):
        pass

    def test_commands(self):
        for command in (["status"], ["pause"], ["resume"], ["start"], ["stop"],
                        ["open", "kestro://day"]):
            answer = kestroctl(*command)
            self.assertEqual((answer.returncode, answer.stderr),
                             (3, "kestroctl: no helper is running\n"), command)
        self.assertFalse(status()["running"])
        self.assertEqual(kestroctl("status", DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere").returncode,
                         3)

    def test_helper_without_a_bus(self):
        helper = Helper(DBUS_SESSION_BUS_ADDRESS="unix:path=/nowhere")
        helper.wait_for_samples(2, -1.0)
        self.assertEqual(helper.terminate(), 0)


class TrayTest(ShellTest):
    @classmethod
    def setUpClass(cls):
        cls.panel = XfcePanel()
        super().setUpClass()
        cls.menu = Menu(cls.helper)

    @classmethod
    def tearDownClass(cls):
        super().tearDownClass()
        cls.panel.end()

    def wait_for_registration(self):
        wait_until(lambda: any(self.menu.name in item for item in self.panel.items()),
                   "the item in the panel")

    def test_item(self):
        self.wait_for_registration()
        self.assertEqual(self.menu.item("Id"), "KestroHelper")
        self.assertEqual(self.menu.item("Category"), "ApplicationStatus")
        self.assertEqual(self.menu.item("IconName"), "kestro-tracking-symbolic")
        self.assertTrue(self.menu.item("ItemIsMenu"))
        kestroctl("pause")
        self.addCleanup(kestroctl, "resume")
        self.assertEqual(self.menu.item("IconName"), "kestro-paused-symbolic")

    def test_rows(self):
        rows = self.menu.rows()
        labels = [row.get("label") for row in rows]
        self.assertEqual(labels[:3], ["Time Tracked Today", labels[1], "No Timer Running"])
        self.assertEqual([row["enabled"] for row in rows[:3]], [False] * 3)
        durations = self.menu.row("Pause App Tracking for…")
        self.assertEqual(durations["children-display"], "submenu")
        self.assertFalse(self.menu.row("Stop Timer")["visible"])
        self.assertEqual(self.menu.row("Launch at Login")["toggle-state"], 0)
        self.assertEqual(self.menu.row("Pause until Tomorrow")["icon-name"],
                         "media-playback-pause-symbolic")

    def test_pause_by_menu(self):
        self.menu.click("5 Minutes")
        self.addCleanup(kestroctl, "resume")
        wait_until(lambda: not status()["tracking"], "the pause")
        self.assertIsNotNone(self.menu.row("Resume App Tracking"))
        self.assertTrue(any(row.get("label", "").startswith("Paused for the next")
                            for row in self.menu.rows()))
        self.menu.click("Resume App Tracking")
        wait_until(lambda: status()["tracking"], "tracking")

    def test_launch_at_login(self):
        self.menu.click("Launch at Login")
        entry = configuration() / "autostart/com.kestro.KestroHelper.desktop"
        wait_until(lambda: "Hidden=false" in entry.read_text() if entry.exists() else False,
                   "the autostart file")
        self.assertEqual(self.menu.row("Launch at Login")["toggle-state"], 1)
        self.menu.click("Launch at Login")
        wait_until(lambda: "Hidden=true" in entry.read_text(), "the autostart file that is off")

    def test_opened_by_the_mouse(self):
        """A click on the item in the real panel."""
        self.wait_for_registration()
        run("xdotool", "mousemove", "1584", "16", "click", "1")
        wait_until(lambda: any(event["kind"] == "analytics" and
                               event["name"] == "Setapp.Interaction.menuWillOpen"
                               for event in self.helper.events()), "the opening of the menu")
        press("Escape")

    def test_panel_restarts(self):
        self.wait_for_registration()
        before = self.helper.now()
        self.panel.stop()
        self.check_that_samples_keep_coming(before)
        self.panel.start()
        self.wait_for_registration()
        self.assertTrue(self.menu.rows())


class QuestionsTest(LiveTest):
    """Each with preferences of its own, and the helper's own name on the bus."""

    @classmethod
    def setUpClass(cls):
        pass

    @classmethod
    def tearDownClass(cls):
        pass

    def start_helper(self, **environment):
        self.folder = pathlib.Path(os.environ["HOME"]) / self.id().rsplit(".", 1)[-1]
        self.folder.mkdir()
        helper = Helper(XDG_CONFIG_HOME=str(self.folder), asks=True, **environment)
        self.addCleanup(helper.program.end)
        return helper

    def stored(self, key):
        path = self.folder / "kestro/KestroHelper.plist"
        return path.exists() and f"<key>{key}</key>" in path.read_text()

    def test_launch_at_login_yes(self):
        helper = self.start_helper()
        wait_for_window(QUESTION)
        self.assertEqual(helper.samples(), [])
        press("Return")
        helper.wait_for_samples(1, -1.0)
        entry = self.folder / "autostart/com.kestro.KestroHelper.desktop"
        self.assertIn("Hidden=false", entry.read_text())
        self.assertEqual(helper.terminate(), 0)

    def test_launch_at_login_never(self):
        helper = self.start_helper()
        wait_for_window(QUESTION)
        press("shift+Tab")  # from the first button to the box
        press("space")
        press("Escape")
        helper.wait_for_samples(1, -1.0)
        wait_until(lambda: self.stored("dontAskToLaunchAtLogin"), "the box's preference")
        self.assertFalse((self.folder / "autostart").exists())

    def test_crashed_window(self):
        helper = self.start_helper()
        wait_for_window(QUESTION)
        for process in processes.processes_of_this_desktop("KestroDialogs"):
            os.kill(process, signal.SIGSEGV)
        helper.wait_for_samples(1, -1.0)
        self.assertFalse((self.folder / "autostart").exists())

    def test_terminated_while_asking(self):
        helper = self.start_helper()
        wait_for_window(QUESTION)
        self.assertEqual(helper.terminate(), 0)
        wait_for_no_window(QUESTION)

    def test_accessibility(self):
        """On a session bus without accessibility: the second question, in German."""
        directory = pathlib.Path(os.environ["DESKTOP_DIRECTORY"])
        address = f"unix:path={directory}/plain-bus"
        configuration_text = (directory / "session.conf").read_text()
        lines = [line for line in configuration_text.splitlines() if "servicedir" not in line]
        plain = directory / "plain.conf"
        plain.write_text("\n".join(lines).replace(f"unix:path={directory}/run/bus", address))
        bus = Program("dbus-daemon", f"--config-file={plain}", "--nofork", "--nopidfile")
        self.addCleanup(bus.end)
        wait_until((directory / "plain-bus").exists, "the plain bus")
        helper = self.start_helper(DBUS_SESSION_BUS_ADDRESS=address, LANGUAGE="de",
                                   LANG="de_DE.UTF-8")
        wait_for_window(QUESTION)
        press("Escape")  # launch at login
        wait_for_no_window(QUESTION)
        wait_for_window(QUESTION)
        press("Return")  # there are no settings to open: it says what to do
        helper.wait_for_samples(1, -1.0)
        wait_for_window(QUESTION)
        press("Return")
        wait_for_no_window(QUESTION)
        self.assertFalse(self.stored("dontNotifyAboutDisabledAccessibilityAPI"))

    def test_quit(self):
        write_preferences(folder=pathlib.Path(os.environ["HOME"]) / "test_quit_preferences",
                          dontAskToLaunchAtLogin=True)
        helper = Helper(XDG_CONFIG_HOME=str(pathlib.Path(os.environ["HOME"]) /
                                            "test_quit_preferences"))
        self.addCleanup(helper.program.end)
        helper.wait_for_samples(1, -1.0)
        menu = Menu(helper)
        menu.click("Quit Kestro Tracker")
        wait_for_window(QUESTION)
        self.helper = helper
        self.check_that_samples_keep_coming(helper.now())
        press("shift+Tab")
        press("space")  # the box that is checked
        press("Return")  # keeps tracking
        wait_for_no_window(QUESTION)
        helper.check_running()
        menu.click("Quit Kestro Tracker")
        wait_for_window(QUESTION)
        press("Escape")
        self.assertEqual(helper.program.process.wait(10), 0)


class ShortcutTest(LiveTest):
    @classmethod
    def setUpClass(cls):
        write_preferences("HelperPreferences",
                          startTaskShortcut={"key": "t", "modifiers": ["control", "option"]})
        super().setUpClass()
        wait_until(lambda: status()["tracking"], "tracking")

    @classmethod
    def tearDownClass(cls):
        super().tearDownClass()
        (configuration() / "kestro/HelperPreferences.plist").unlink()

    def start_by_shortcut(self, title):
        press("ctrl+alt+t")
        wait_for_window("Start Timer")
        run("xdotool", "type", title)
        press("Return")
        wait_until(lambda: status()["timer"]["running"], "the timer")

    def test_starts_edits_and_stops(self):
        self.start_by_shortcut("By key")
        press("ctrl+alt+shift+t")
        wait_for_window("Edit Running Timer")
        press("Escape")
        wait_for_no_window("Edit Running Timer")
        press("ctrl+alt+t")
        wait_for_entry("By key")
        self.assertFalse(status()["timer"]["running"])

    def test_after_a_new_layout(self):
        run("setxkbmap", "de")
        self.addCleanup(run, "setxkbmap", "us")
        press("ctrl+alt+t")
        wait_for_window("Start Timer")
        press("Escape")
        wait_for_no_window("Start Timer")

    def test_taken_by_another_program(self):
        """The window manager has Alt+Tab."""
        folder = pathlib.Path(os.environ["HOME"]) / "taken"
        write_preferences("HelperPreferences", folder=folder,
                          startTaskShortcut={"key": "tab", "modifiers": ["option"]})
        write_preferences(folder=folder, dontAskToLaunchAtLogin=True)
        self.helper.terminate()
        with open(folder / "log", "w") as log:
            program = subprocess.Popen([os.environ["KESTRO_HELPER"]], stderr=log,
                                       env={**os.environ, "XDG_CONFIG_HOME": str(folder)})
            self.addCleanup(program.wait)
            self.addCleanup(program.terminate)
            wait_until(lambda: "another program has the shortcut Alt+tab" in
                       (folder / "log").read_text(), "the log line")
        type(self).helper = Helper()
        wait_until(lambda: status()["running"], "the helper")


class CallTest(ShellTest):
    @classmethod
    def setUpClass(cls):
        if not processes.browser_starts():
            raise unittest.SkipTest("the browser cannot start here")
        write_preferences("HelperPreferences",
                          RunningCallDetector_minimumCallDurationForNotifying=2.0)
        # Calls are looked for while something is in front.
        cls.editor = processes.xterm("In front")
        cls.sound = Sound()
        cls.notifications = Dunst()
        super().setUpClass()

    @classmethod
    def tearDownClass(cls):
        super().tearDownClass()
        cls.notifications.end()
        cls.sound.end()
        cls.editor.end()
        (configuration() / "kestro/HelperPreferences.plist").unlink()

    def setUp(self):
        subprocess.run(["dunstctl", "close-all"], timeout=10, check=False)

    def start_call(self):
        pages = processes.Pages()
        browser = self.start(processes.chromium(
            "--use-fake-ui-for-media-stream", "--autoplay-policy=no-user-gesture-required",
            pages.address + "/call.html"))
        wait_until(lambda: status()["inCall"], "the call", 30)
        return browser

    def wait_for_offer(self):
        wait_until(lambda: not status()["inCall"], "the end of the call")
        wait_until(self.notifications.window, "the offer")

    def test_offered_and_recorded(self):
        begun = datetime.datetime.now().timestamp()
        browser = self.start_call()
        self.assertIn("call", kestroctl("status").stdout.lower())
        known = helper_property("InCall")
        after = self.helper.now()
        self.helper.wait_for_samples(4, after)
        browser.end()
        ended = datetime.datetime.now().timestamp()
        self.assertTrue(known)
        self.wait_for_offer()
        self.notifications.click()
        wait_for_window("Record Meeting Details")
        run("xdotool", "type", "Planning by keyboard")
        press("Tab")
        run("xdotool", "type", "Pier")
        press("Return")
        _, start, end, project, provenance = wait_for_entry("Planning by keyboard")
        self.assertEqual((project, provenance), ("Pier", "org.chromium.Chromium"))
        self.assertTrue(begun - 2 <= start <= ended, (begun, start, ended))
        self.assertEqual(end - start, 60)  # the shortest that is recorded

    def test_survives_muting_a_headset_and_the_server(self):
        self.start_call()
        for output in self.sound.streams("source-outputs"):
            run("pactl", "set-source-output-mute", output, "1")
        for stream in self.sound.streams("sink-inputs"):
            run("pactl", "move-sink-input", stream, "headset")
        after = self.helper.now()
        self.helper.wait_for_samples(4, after)
        self.assertTrue(status()["inCall"])

    def test_dismissed_and_shown_again(self):
        """The server goes while it shows the offer: the next one shows it, and the answer counts."""
        browser = self.start_call()
        self.helper.wait_for_samples(4, self.helper.now())
        browser.end()
        self.wait_for_offer()
        self.notifications.stop()
        self.notifications.start()
        wait_until(self.notifications.window, "the offer once more")
        before = self.helper.now()
        self.notifications.click("3")
        answers = wait_until(
            lambda: [event for event in self.helper.events(before)
                     if event.get("name") == "RunningCallDetector.notificationResponse"],
            "the answer")
        self.assertEqual([answer["attributes"]["action"] for answer in answers], ["dismiss"])

    def test_answered_after_a_restart(self):
        browser = self.start_call()
        self.helper.wait_for_samples(4, self.helper.now())
        browser.end()
        self.wait_for_offer()
        self.assertEqual(self.helper.terminate(), 0)
        type(self).helper = Helper()
        wait_until(lambda: status()["tracking"], "the helper's restart")
        self.notifications.click()
        wait_for_window("Record Meeting Details")
        press("Escape")
        wait_for_no_window("Record Meeting Details")

    def test_no_notification_server(self):
        """Nobody can be asked: the editor opens at once."""
        self.notifications.stop()
        self.addCleanup(self.notifications.start)
        browser = self.start_call()
        self.helper.wait_for_samples(4, self.helper.now())
        browser.end()
        wait_for_window("Record Meeting Details")
        press("Escape")
        wait_for_no_window("Record Meeting Details")

    def test_sound_server_restarts(self):
        before = self.helper.now()
        self.sound.stop_server()
        self.check_that_samples_keep_coming(before)
        self.sound.start_server()
        self.start_call()


class BusLossTest(ShellTest):
    def test_session_bus_restarts(self):
        """The last test: applications do not outlive their bus."""
        before = self.helper.now()
        directory = os.environ["DESKTOP_DIRECTORY"]
        os.kill(int(os.environ["SESSION_BUS_PID"]), signal.SIGKILL)
        self.check_that_samples_keep_coming(before)
        pathlib.Path(directory, "run/bus").unlink(missing_ok=True)
        bus = self.start(Program("dbus-daemon", f"--config-file={directory}/session.conf",
                                 "--nofork", "--nopidfile"))
        wait_until(pathlib.Path(directory, "run/bus").exists, "the new bus")
        wait_until(lambda: owns(HELPER[0]), "the helper's name on the new bus", 45)
        self.assertTrue(status()["running"])
        bus.end()
