"""Takes the pictures of the documentation: screenshots.py light|dark FOLDER. Run by
scripts/screenshots."""

import os
import pathlib
import sys
import time

import processes
from desktop_parts import (Dunst, Menu, XfcePanel, helper_property, wait_for_no_window,
                           wait_for_window)
from helper import Helper, write_preferences
from processes import press, run, wait_until
from sound import Sound


class Pictures:
    def __init__(self, colours, folder):
        self.colours = colours
        self.folder = pathlib.Path(folder)

    def path(self, name):
        return str(self.folder / f"{name}-{self.colours}.png")

    def window(self, name, window):
        time.sleep(0.4)  # drawn
        frame = run("xdotool", "getwindowgeometry", "--shell", window)
        place = dict(line.split("=") for line in frame.splitlines())
        # With the window manager's frame, which xdotool adds twice.
        self.area(name, int(place["WIDTH"]) + 12, int(place["HEIGHT"]) + 32,
                  int(place["X"]) - 6, int(place["Y"]) - 46)

    def area(self, name, width, height, left, top):
        run("import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "+repage",
            self.path(name))


def make_call():
    """A call of a browser, which has ended."""
    sound = Sound()
    front = processes.xterm("In front")
    browser = processes.chromium(
        "--use-fake-ui-for-media-stream", "--autoplay-policy=no-user-gesture-required",
        processes.Pages().address + "/call.html")
    wait_until(lambda: helper_property("InCall"), "the call", 30)
    time.sleep(3)
    browser.end()
    wait_until(lambda: not helper_property("InCall"), "the end of the call")
    front.end()
    sound.end()


def main(colours, folder):
    is_dark = colours == "dark"
    pictures = Pictures(colours, folder)
    run("xsetroot", "-solid", "#2b3947" if is_dark else "#8fa7bd")
    if is_dark:
        os.environ["GTK_THEME"] = "Adwaita:dark"
    panel = XfcePanel(dark=is_dark)
    notifications = Dunst()
    write_preferences("HelperPreferences",
                      RunningCallDetector_minimumCallDurationForNotifying=2.0)
    helper = Helper(asks=True)
    pictures.window("question-login", wait_for_window("Kestro Tracker"))
    press("Escape")
    wait_for_no_window("Kestro Tracker")
    menu = Menu(helper)
    wait_until(lambda: any(menu.name in item for item in panel.items()), "the item in the panel")
    helper.wait_for_samples(1, -1.0)

    run("xdotool", "mousemove", "1584", "16", "click", "1")
    time.sleep(1)
    pictures.area("menu", 300, 330, 1300, 0)
    press("Escape")
    run("xdotool", "mousemove", "800", "900")

    kestroctl = str(pathlib.Path(os.environ["KESTRO_HELPER"]).parent / "kestroctl")
    for name, command in (("tracking", ["resume"]), ("paused", ["pause"]), ("timer", ["resume"])):
        run(kestroctl, *command)
        if name == "timer":
            run(kestroctl, "start", "Harbour lights")
        time.sleep(0.6)
        pictures.area(f"tray-{name}", 120, 34, 1480, 0)
    run(kestroctl, "stop")

    run(kestroctl, "open", "kestro://record?start=2026-11-23T09:00:00Z&end=2026-11-23T09:32:00Z")
    editor = wait_for_window("Record Time")
    run("xdotool", "type", "Harbour planning")
    press("Tab")
    run("xdotool", "type", "Pier")
    pictures.window("editor", editor)
    press("Escape")
    wait_for_no_window("Record Time")

    menu.click("Quit Kestro Tracker")
    pictures.window("question-quit", wait_for_window("Kestro Tracker"))
    press("Return")

    make_call()
    wait_until(notifications.window, "the offer to record the call")
    time.sleep(0.4)
    pictures.area("notification", 460, 90, 1130, 44)
    helper.program.end()
    notifications.end()
    panel.end()


if __name__ == "__main__":
    processes.end_all_at_exit()
    main(*sys.argv[1:])
