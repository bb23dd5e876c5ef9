"""What all tests on the live desktop share: a helper for each class of tests."""

import unittest

from helper import Helper

# The helper's own bound on a sample, and some for a busy machine.
LONGEST_SAMPLE = 0.5 + 1.5
SAMPLING_INTERVAL = 1.0


class LiveTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.helper = Helper()

    @classmethod
    def tearDownClass(cls):
        cls.helper.program.end()

    def start(self, program):
        self.addCleanup(program.end)
        return program

    def check_that_samples_keep_coming(self, after, count=3):
        times = [after] + [sample["t"] for sample in self.helper.wait_for_samples(count, after)]
        gaps = [later - earlier for earlier, later in zip(times, times[1:])]
        self.assertLess(max(gaps), LONGEST_SAMPLE + SAMPLING_INTERVAL, times)
