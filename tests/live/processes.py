"""Starts programs on the private desktop and ends them, each with its whole process group."""

import atexit
import functools
import http.server
import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import threading
import time

HERE = pathlib.Path(__file__).parent


class Program:
    living = set()

    def __init__(self, *command, environment=None):
        self.process = subprocess.Popen(
            [str(part) for part in command],
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            start_new_session=True,
            env={**os.environ, **(environment or {})},
        )
        self.pid = self.process.pid
        Program.living.add(self)

    def signal(self, number):
        os.kill(self.pid, number)

    def signal_group(self, number):
        try:
            os.killpg(self.pid, number)
        except ProcessLookupError:
            pass

    def end(self):
        """Asks first, and kills what has not gone after two seconds."""
        self.signal_group(signal.SIGCONT)
        self.signal_group(signal.SIGTERM)
        try:
            self.process.wait(2)
        except subprocess.TimeoutExpired:
            pass
        return self.kill()

    def kill(self):
        self.signal_group(signal.SIGKILL)
        Program.living.discard(self)
        return self.process.wait(5)


def end_all_at_exit():
    """What still runs when the suite ends, by a signal too, is killed: in sessions of their own, the
    programs would outlive it, and write into folders that are being removed."""
    def end_all():
        for program in list(Program.living):
            program.kill()

    numbers = (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)

    def leave(received, _):
        for number in numbers:  # one Ctrl-C arrives more than once
            signal.signal(number, signal.SIG_IGN)
        sys.exit(128 + received)

    atexit.register(end_all)
    for number in numbers:
        signal.signal(number, leave)


def mousepad(path):
    return Program("mousepad", "--disable-server", path)


def xterm(title):
    return Program("xterm", "-xrm", "XTerm.vt100.utf8Title: false", "-T", title, "-e", "sleep", "100",
                   environment={"LC_ALL": "C.UTF-8"})


@functools.cache
def browser_starts():
    """Whether the browser can start at all: some containers lack what it needs."""
    with tempfile.TemporaryDirectory(dir=os.environ["HOME"]) as user_data:
        try:
            return b"<html>" in subprocess.run(
                ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--dump-dom",
                 f"--user-data-dir={user_data}", "about:blank"],
                stdin=subprocess.DEVNULL, capture_output=True, timeout=60, check=False).stdout
        except subprocess.TimeoutExpired:
            return False


def qt_application(title):
    return Program(sys.executable, HERE / "qt_application.py", title)


def chromium(*arguments, user_data=None):
    """A browser of its own, with an address among its arguments."""
    user_data = user_data or tempfile.mkdtemp(dir=os.environ["HOME"])
    return Program(
        "chromium",
        # Its own sandbox refuses to run as root; the desktop is private and off the network.
        "--no-sandbox", "--test-type", "--no-first-run", "--disable-gpu", "--disable-quic",
        "--disable-background-networking", "--disable-component-update", "--disable-sync",
        "--password-store=basic", f"--user-data-dir={user_data}", *arguments,
    )


def chromium_profiles(first, second):
    """A directory of user data with two profiles of these names, of which the second was used last;
    its directory is "Profile 1"."""
    directory = pathlib.Path(tempfile.mkdtemp(dir=os.environ["HOME"]))
    names = {"Default": first, "Profile 1": second}
    for profile in names:
        (directory / profile).mkdir()
    profiles = {profile: {"name": name, "is_using_default_name": False}
                for profile, name in names.items()}
    (directory / "Local State").write_text(json.dumps(
        {"profile": {"info_cache": profiles, "last_used": "Profile 1", "profiles_created": 2}}))
    return directory


def chromium_application(address, window_class):
    """A window without the browser's controls, of the given class."""
    return chromium(f"--app={address}", f"--class={window_class}")


FIREFOX_PREFERENCES = """
user_pref("browser.aboutwelcome.enabled", false);
user_pref("browser.shell.checkDefaultBrowser", false);
user_pref("datareporting.policy.dataSubmissionEnabled", false);
user_pref("toolkit.telemetry.reportingpolicy.firstRun", false);
user_pref("termsofuse.bypassNotification", true);
"""


def firefox(*arguments):
    profile = pathlib.Path(tempfile.mkdtemp(dir=os.environ["HOME"]))
    (profile / "user.js").write_text(FIREFOX_PREFERENCES)
    return Program("firefox-esr", "--no-remote", "--profile", profile, *arguments)


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True, timeout=10).stdout


def press(key):
    run("xdotool", "key", "--clearmodifiers", key)


def active_window():
    return run("xdotool", "getactivewindow").strip()


def wait_until(condition, what, seconds=15):
    """Waits for a fact and returns it, and fails when it does not come about in time."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError(f"not within {seconds} s: {what}")


def processes_of_this_desktop(word):
    """The ids of processes with the word in their command line that belong to this desktop."""
    mark = f"DESKTOP_DIRECTORY={os.environ['DESKTOP_DIRECTORY']}".encode()
    found = []
    for directory in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            command = (directory / "cmdline").read_bytes()
            environment = (directory / "environ").read_bytes()
        except OSError:
            continue
        if word.encode() in command and mark in environment.split(b"\0"):
            found.append(int(directory.name))
    return found


class Pages:
    """The folder of pages, served on the loopback interface; every path gives the first page."""

    def __init__(self):
        class Handler(http.server.SimpleHTTPRequestHandler):
            def __init__(self, *arguments):
                super().__init__(*arguments, directory=str(HERE / "www"))

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        self.address = f"http://127.0.0.1:{self.server.server_port}"

    def end(self):
        self.server.shutdown()
        self.server.server_close()
