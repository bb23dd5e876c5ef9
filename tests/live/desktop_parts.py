"""Parts of a desktop that tests start and stop: a panel and a notification server; and the helper's
menu as a panel reads it."""

import json
import os
import pathlib
import subprocess

from processes import Program, run, wait_until

XFCONFD = "/usr/lib/x86_64-linux-gnu/xfce4/xfconf/xfconfd"
ITEM_INTERFACE = "org.kde.StatusNotifierItem"
HELPER = ("com.kestro.KestroHelper", "/com/kestro/KestroHelper")
HELPER_INTERFACE = "com.kestro.KestroHelper1"

PANEL = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="32"/>
      <property name="dark-mode" type="bool" value="{dark}"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/><value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray">
      <property name="square-icons" type="bool" value="true"/>
    </property>
  </property>
</channel>
"""

XSETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xsettings" version="1.0">
  <property name="Net" type="empty">
    <property name="ThemeName" type="string" value="{theme}"/>
  </property>
</channel>
"""

DUNST = """[global]
    frame_width = 1
    offset = 24x56
    width = (320, 420)
    mouse_left_click = do_action, close_current
    mouse_right_click = close_current
"""


def owns(name):
    """Whether somebody has the name on the session bus; not without a bus."""
    return "true" in subprocess.run(
        ["busctl", "--user", "call", "org.freedesktop.DBus", "/org/freedesktop/DBus",
         "org.freedesktop.DBus", "NameHasOwner", "s", name],
        capture_output=True, text=True, timeout=10).stdout


def configuration():
    return pathlib.Path(os.environ["XDG_CONFIG_HOME"])


class XfcePanel:
    def __init__(self, dark=False):
        folder = configuration() / "xfce4/xfconf/xfce-perchannel-xml"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "xfce4-panel.xml").write_text(PANEL.format(dark=str(dark).lower()))
        theme = "Adwaita-dark" if dark else "Adwaita"
        (folder / "xsettings.xml").write_text(XSETTINGS.format(theme=theme))
        self.settings = Program(XFCONFD)
        wait_until(lambda: owns("org.xfce.Xfconf"), "Xfce's settings")
        self.start()

    def start(self):
        self.panel = Program("xfce4-panel", "--disable-wm-check")
        wait_until(lambda: owns("org.kde.StatusNotifierWatcher"), "the panel's tray")

    def stop(self):
        self.panel.end()
        wait_until(lambda: not owns("org.kde.StatusNotifierWatcher"), "the panel's end")

    def items(self):
        answer = json.loads(run("busctl", "--user", "--json=short", "get-property",
                                "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                                "org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems"))
        return answer["data"]

    def end(self):
        self.panel.end()
        self.settings.end()


class Dunst:
    def __init__(self):
        folder = configuration() / "dunst"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "dunstrc").write_text(DUNST)
        self.start()

    def start(self):
        self.program = Program("dunst", "-conf", configuration() / "dunst/dunstrc")
        wait_until(lambda: owns("org.freedesktop.Notifications"), "the notification server")

    def stop(self):
        self.program.end()
        wait_until(lambda: not owns("org.freedesktop.Notifications"), "the server's end")

    def shown(self):
        return int(run("dunstctl", "count", "displayed"))

    def window(self):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "Dunst"],
                               capture_output=True, text=True, timeout=10).stdout.split()
        return found[0] if found else None

    def click(self, button="1"):
        window = wait_until(self.window, "a notification on the screen")
        run("xdotool", "mousemove", "--window", window, "60", "20", "click", button)

    def end(self):
        self.program.end()


class Menu:
    """The helper's menu over the bus, as panels read and click it."""

    def __init__(self, helper):
        self.name = f"org.kde.StatusNotifierItem-{helper.program.pid}-1"

    def call(self, method, signature, *arguments):
        answer = run("busctl", "--user", "--json=short", "call", "--", self.name, "/MenuBar",
                     "com.canonical.dbusmenu", method, signature, *arguments)
        return json.loads(answer) if answer.strip() else None

    def item(self, name):
        return json.loads(run("busctl", "--user", "--json=short", "get-property", self.name,
                              "/StatusNotifierItem", ITEM_INTERFACE, name))["data"]

    def rows(self, opened=True):
        """All rows, each with its number and properties, those of submenus included."""
        if opened:
            self.call("AboutToShow", "i", "0")
        found = []

        def take(row):
            number, properties, children = row
            found.append({"number": number,
                          **{name: value["data"] for name, value in properties.items()}})
            for child in children:
                take(child["data"])

        take(self.call("GetLayout", "iias", "0", "-1", "0")["data"][1])
        return found[1:]

    def row(self, label, **arguments):
        return next((row for row in self.rows(**arguments) if row.get("label") == label), None)

    def click(self, label):
        row = self.row(label)
        assert row, f"no row {label} among {self.rows()}"
        self.call("Event", "isvu", str(row["number"]), "clicked", "i", "0", "0")


def helper_property(name):
    return json.loads(run("busctl", "--user", "--json=short", "get-property", *HELPER,
                          HELPER_INTERFACE, name))["data"]


def window_named(title):
    """The id of a window on the screen whose title begins so."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}"],
                           capture_output=True, text=True, timeout=10).stdout.split()
    return found[0] if found else None


def wait_for_window(title, seconds=15):
    window = wait_until(lambda: window_named(title), f"the window {title}", seconds)
    run("xdotool", "windowactivate", "--sync", window)
    return window


def wait_for_no_window(title):
    wait_until(lambda: window_named(title) is None, f"the end of the window {title}")
