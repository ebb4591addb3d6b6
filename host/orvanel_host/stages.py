# SPDX-License-Identifier: MIT
"""Where the time of a job goes."""
import collections
import contextlib
import time


class Stages(object):
    """Adds up seconds by stage, in the order in which the stages first ran."""

    def __init__(self):
        self.seconds = collections.OrderedDict()

    @contextlib.contextmanager
    def stage(self, name):
        start = time.time()
        yield
        self.seconds[name] = self.seconds.get(name, 0.0) + time.time() - start

    def total(self, names):
        return sum(self.seconds.get(name, 0.0) for name in names)
