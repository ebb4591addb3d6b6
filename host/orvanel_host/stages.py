# SPDX-License-Identifier: MIT
"""Where the time of a job goes."""
import collections
import contextlib
import time


class Stages(object):
    """Wall-clock seconds by stage, in the order in which the stages first ran."""

    def __init__(self):
        self._samples = collections.OrderedDict()

    @contextlib.contextmanager
    def stage(self, name):
        start = time.time()
        yield
        self.add(name, time.time() - start)

    def add(self, name, seconds):
        """Notes what was measured elsewhere, on another thread say."""
        self._samples.setdefault(name, []).append(seconds)

    def totals(self):
        """Pairs of (stage, seconds)."""
        return [(name, sum(samples)) for name, samples in self._samples.items()]

    def together(self, names):
        """Seconds that several stages took in each of their rounds."""
        return [sum(samples) for samples in zip(*(self._samples[name] for name in names))]


def median(values):
    """What other programs on the machine disturb least."""
    ordered = sorted(values)
    return (ordered[(len(ordered) - 1) // 2] + ordered[len(ordered) // 2]) / 2.0
