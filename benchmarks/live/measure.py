"""What a live sample costs, in CPU time of everyone involved. Run by scripts/bench-live.

Runs with a browser in front: nobody samples (the helper is stopped), the helper samples, a title
reader samples. What the browser, the buses and the X server do of their own in the first is taken
off the others; where they do little, the difference may fall below zero.
"""

import os
import pathlib
import signal
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "live"))

import processes  # noqa: E402
from helper import Helper  # noqa: E402

SECONDS = int(os.environ.get("KESTRO_BENCH_SECONDS", "20"))
ROUNDS = 4


def cpu_milliseconds(pid, threads="*"):
    """CPU time of a process's threads so far, from the scheduler's own account."""
    total = 0
    for task in pathlib.Path(f"/proc/{pid}/task").glob(str(threads)):
        try:
            total += int((task / "schedstat").read_text().split()[0])
        except OSError:
            pass
    return total / 1e6


class Meter:
    def __init__(self, groups):
        self.groups = groups

    def read(self):
        return {name: self.cost(name, pids) for name, pids in self.groups.items()}

    @staticmethod
    def cost(name, pids):
        # The browser answers on its first thread; the others do things of their own.
        if name == "browser":
            return sum(cpu_milliseconds(pid, threads=pid) for pid in pids)
        return sum(map(cpu_milliseconds, pids))

    def run(self, seconds):
        before = self.read()
        time.sleep(seconds)
        after = self.read()
        return {name: (after[name] - before[name]) / seconds for name in before}


def resident_kilobytes(pid):
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmRSS:"):
            return int(line.split()[1])
    return 0


def shared_groups(browser):
    return {
        "browser": [browser.pid],
        "accessibility bus": processes.processes_of_this_desktop("at-spi2/accessibility.conf"),
        "session bus": [int(os.environ["SESSION_BUS_PID"])],
        "X server": [int(os.environ["X_SERVER_PID"])],
    }


def mean(runs):
    return {name: sum(run[name] for run in runs) / len(runs) for name in runs[0]}


def alternate(helper, groups):
    """The cost without and with the helper, in turns, so that what the browser winds down from its
    start falls on both alike."""
    idle = Meter(groups)
    busy = Meter({"helper": [helper.program.pid], **groups})
    without, with_helper = [], []
    for _ in range(ROUNDS):
        helper.program.signal(signal.SIGSTOP)
        without.append(idle.run(SECONDS / ROUNDS))
        helper.program.signal(signal.SIGCONT)
        helper.wait_for_samples(1, helper.now())
        with_helper.append(busy.run(SECONDS / ROUNDS))
    return mean(without), mean(with_helper)


def report(title, cost, idle, note):
    parts = {name: cost[name] - idle.get(name, 0) for name in cost}
    text = ", ".join(f"{name} {value:.2f}" for name, value in parts.items())
    print(f"{title}: {sum(parts.values()):.2f} ms of CPU a sample ({text}); {note}")


def main():
    pages = processes.Pages()
    browser = processes.chromium(pages.address + "/index.html")
    helper = Helper()
    try:
        helper.wait_for_address(pages.address + "/index.html", seconds=30)
        # What the browser does after its start is over, and its tree is made.
        helper.wait_for_samples(20, helper.now(), seconds=40)
        begin = helper.now()
        idle, cost = alternate(helper, shared_groups(browser))
        requests = [sample["requests"] for sample in helper.samples(begin)]
        memory = resident_kilobytes(helper.program.pid)
        helper.terminate()

        reader = subprocess.Popen([os.environ["KESTRO_TITLE_READER"], str(SECONDS + 5)],
                                  stdout=subprocess.DEVNULL)
        time.sleep(1)
        floor = Meter({"reader": [reader.pid], **shared_groups(browser)}).run(SECONDS)
        reader.kill()
        reader.wait()

        report("title reader", floor, idle, "title and process only")
        report("helper", cost, idle,
               f"{sum(requests) / max(len(requests), 1):.1f} requests a sample, "
               f"{memory / 1024:.1f} MB resident")
    finally:
        helper.program.end()
        browser.end()
        pages.end()


main()
