"""What an idle minute costs the helper with everything connected: a panel, a notification server, a
sound server, the buses and an application in front that does nothing. Run by scripts/bench-live."""

import os
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "tests/live"))

import processes  # noqa: E402
from desktop_parts import Dunst, Menu, XfcePanel  # noqa: E402
from helper import Helper  # noqa: E402
from processes import run, wait_until  # noqa: E402
from sound import Sound  # noqa: E402

SECONDS = int(os.environ.get("KESTRO_BENCH_IDLE_SECONDS", "60"))
KESTROCTL = str(pathlib.Path(os.environ["KESTRO_HELPER"]).parent / "kestroctl")
TICK = os.sysconf("SC_CLK_TCK")


def state(process):
    """CPU seconds, wake-ups of all its threads, resident kilobytes, those of its own among them."""
    directory = pathlib.Path(f"/proc/{process}")
    fields = (directory / "stat").read_text().rsplit(") ", 1)[1].split()
    wakeups = 0
    for thread in (directory / "task").iterdir():
        status = dict(line.split(":", 1) for line in (thread / "status").read_text().splitlines())
        wakeups += int(status["voluntary_ctxt_switches"])
    memory = dict(line.split(":", 1) for line in (directory / "status").read_text().splitlines())
    return (int(fields[11]) + int(fields[12])) / TICK, wakeups, *(
        int(memory[name].split()[0]) for name in ("VmRSS", "RssAnon"))


def main():
    panel, notifications, sound = XfcePanel(), Dunst(), Sound()
    front = processes.xterm("In front")
    # Without a transcript, as it runs all day.
    helper = Helper(KESTRO_TRANSCRIPT="")
    menu = Menu(helper)
    wait_until(lambda: any(menu.name in item for item in panel.items()), "the item in the panel")
    time.sleep(20)  # what starts has started
    cpu, wakeups, *_ = state(helper.program.pid)
    time.sleep(SECONDS)
    cpu_then, wakeups_then, resident, own = state(helper.program.pid)
    run(KESTROCTL, "pause")
    time.sleep(2)
    _, before, *_ = state(helper.program.pid)
    time.sleep(SECONDS / 2)
    _, after, *_ = state(helper.program.pid)
    print(f"An idle minute with panel, notifications and sound connected ({SECONDS} s measured):")
    print(f"  CPU        {(cpu_then - cpu) * 60 / SECONDS * 1000:6.0f} ms")
    print(f"  wake-ups   {(wakeups_then - wakeups) / SECONDS:6.1f} a second, the sample's included")
    print(f"             {(after - before) * 2 / SECONDS:6.1f} a second without samples (paused)")
    print(f"  resident   {resident / 1024:6.1f} MB, {own / 1024:.1f} of them no file's")
    for part in (helper.program, front, sound, notifications, panel):
        part.end()


if __name__ == "__main__":
    processes.end_all_at_exit()
    main()
