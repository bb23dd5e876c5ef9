"""Web-view applications: small pages with the landmarks of the real ones, in windows of Chromium that
are identified as theirs. Run by scripts/live-test."""

import os
import pathlib
import plistlib
import tempfile
import unittest
from typing import NamedTuple
from urllib.parse import quote

import processes
from helper import Helper
from live_test import LiveTest


# A class is looked for at every element, also at the browser's controls; reading these one by one
# costs twice as much.
MOST_REQUESTS = 400


class Application(NamedTuple):
    name: str
    bundle_identifier: str
    # Of its desktop file, and with it of the window.
    desktop_identifier: str
    page: str
    # Fields of the sample; None: absent.
    expected: dict


def titled(title):
    return "title.html#" + quote(title)


APPLICATIONS = [
    Application("slack", "com.tinyspeck.slackmacgap", "slack",
                titled("* harbour (Channel) - Pier Team - 3 new items - Slack"),
                {"contextPath": ["Pier Team", "harbour (Channel)"], "windowTitle": None}),
    Application("discord", "com.hnc.Discord", "discord",
                titled("#tides | Harbour crew - Discord"),
                {"contextPath": ["Harbour crew", "#tides"], "windowTitle": None}),
    Application("microsoft_teams", "com.microsoft.teams2", "teams-for-linux",
                titled("Chat | Mara Lind (Guest) | Microsoft Teams"),
                {"contextPath": ["Mara Lind"],
                 "windowTitle": "Chat | Mara Lind (Guest) | Microsoft Teams"}),
    Application("web_area_title", "com.canva.CanvaDesktop", "canva",
                titled("Harbour poster • canva"), {"windowTitle": "Harbour poster"}),
    Application("web_area_address", "org.getstation.DesktopApp", "station",
                titled("Pier"),
                {"documentPath": "PAGE", "documentTitle": "Pier", "windowTitle": "Pier"}),
    Application("signal", "org.whispersystems.signal-desktop", "signal-desktop", "signal.html",
                {"contextPath": ["Mara Lind"], "windowTitle": "Signal"}),
    Application("spark_reading", "com.readdle.SparkDesktop", "com.readdle.SparkDesktop",
                "spark-reading.html", {"contextPath": ["To: Mara Lind, Jo Arden"]}),
    Application("spark_composer", "com.readdle.SparkDesktop", "com.readdle.SparkDesktop",
                "spark-composer.html",
                {"contextPath": ["To: Mara Lind, jo@example.com", "Harbour lights"]}),
    Application("spark_letter", "com.readdle.SparkDesktop", "com.readdle.SparkDesktop",
                "spark-composer.html#no-subject",
                {"contextPath": ["To: Mara Lind, jo@example.com"]}),
    Application("github_desktop", "com.github.GitHubClient", "github-desktop",
                "github-desktop.html", {"contextPath": ["harbour-site", "tide-tables"]}),
    Application("claude", "com.anthropic.claudefordesktop", "claude-desktop", "claude.html",
                {"contextPath": ["Harbour guide", "Tide tables"], "windowTitle": "Claude"}),
    Application("cursor", "com.todesktop.230313mzl4w4u92", "cursor", "cursor.html",
                {"contextPath": ["Harbour", "Tide tables"], "windowTitle": "harbour-site"}),
    Application("codex", "com.openai.codex", "com.openai.codex", "codex.html",
                {"contextPath": ["harbour-site", "Fix tide tables"]}),
    Application("notion", "notion.id", "notion", "notion.html",
                {"contextPath": ["Harbour guide", "Tide tables"], "windowTitle": "Tide tables"}),
]


def write_desktop_file(application):
    """Without it the window would be the browser's."""
    directory = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "applications"
    directory.mkdir(parents=True, exist_ok=True)
    identifier = application.desktop_identifier
    (directory / f"{identifier}.desktop").write_text(
        f"[Desktop Entry]\nType=Application\nName={identifier}\nExec=/opt/{identifier}/start\n"
        f"StartupWMClass={identifier}\n")


def configuration(preferences):
    """A new configuration directory with these preferences of the helper's."""
    directory = pathlib.Path(tempfile.mkdtemp(dir=os.environ["HOME"]))
    (directory / "kestro").mkdir()
    (directory / "kestro" / "KestroHelper.plist").write_bytes(plistlib.dumps(preferences))
    return directory


@unittest.skipUnless(processes.browser_starts(), "chromium does not start here")
class WebApplicationTest(LiveTest):
    @classmethod
    def setUpClass(cls):
        cls.pages = processes.Pages()
        for application in APPLICATIONS:
            write_desktop_file(application)
        preferences = {"ClaudeInfoExtractor_serviceAddress": cls.pages.address}
        cls.helper = Helper(XDG_CONFIG_HOME=str(configuration(preferences)))

    @classmethod
    def tearDownClass(cls):
        super().tearDownClass()
        cls.pages.end()

    def check(self, application):
        page = f"{self.pages.address}/applications/{application.page}"
        self.start(processes.chromium_application(page, application.desktop_identifier))
        expected = {field: page if value == "PAGE" else value
                    for field, value in application.expected.items()}
        # Of a web-view application the page is no document.
        expected.setdefault("documentPath", None)
        sample = self.helper.wait_for_activity(
            f"{expected} of {application.name}",
            lambda each: each["applicationBundleIdentifier"] == application.bundle_identifier
            and {field: each.get(field) for field in expected} == expected, seconds=40)
        self.assertTrue(sample["accessibilityWindows"])
        self.assertLess(sample["requests"], MOST_REQUESTS)


def make_test(application):
    return lambda self: self.check(application)


for each_application in APPLICATIONS:
    setattr(WebApplicationTest, f"test_{each_application.name}", make_test(each_application))
