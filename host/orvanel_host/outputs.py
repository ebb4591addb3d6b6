# SPDX-License-Identifier: MIT
"""Results appear under their final names whole or not at all."""
import contextlib
import os
import shutil
import signal
import tempfile
import threading

from .errors import HostError


@contextlib.contextmanager
def _uninterrupted():
    """Puts Ctrl-C and a polite kill off until the block is left. Only the main thread gets them, and can do this."""
    waiting = []
    previous = {}
    if threading.current_thread().name == 'MainThread':
        for number in (signal.SIGINT, signal.SIGTERM):
            previous[number] = signal.signal(number, lambda *arguments: waiting.append(arguments))
    try:
        yield
    finally:
        for number, handler in previous.items():
            signal.signal(number, handler)
    if waiting:
        raise KeyboardInterrupt


class OutputFolder(object):
    """Collects results in a hidden folder inside of the final one, and moves them out when all of them are complete.

    Used as a context manager; without commit() nothing is left behind, not even a final folder that was made for it.
    """

    def __init__(self, path):
        self.path = path
        self._staging = None
        self._made = False

    def __enter__(self):
        try:
            if not os.path.isdir(self.path):
                os.makedirs(self.path)
                self._made = True
            self._staging = tempfile.mkdtemp(prefix='.unfinished-', dir=self.path)
        except EnvironmentError as error:
            raise HostError("cannot write to '%s': %s" % (self.path, error.strerror))
        return self

    def __exit__(self, kind, value, traceback):
        shutil.rmtree(self._staging, ignore_errors=True)
        if kind is not None and self._made and not os.listdir(self.path):
            os.rmdir(self.path)

    def file(self, name):
        """Where to write a result for now."""
        return os.path.join(self._staging, name)

    def folder(self, name):
        path = self.file(name)
        os.mkdir(path)
        return path

    def commit(self):
        """Moves everything to its final name. A folder of an earlier run is replaced as a whole."""
        with _uninterrupted():
            for name in sorted(os.listdir(self._staging)):
                self._move_out(name)

    def _move_out(self, name):
        final = os.path.join(self.path, name)
        try:
            if os.path.isdir(final):
                os.rename(final, self.file('replaced-' + name))
            os.rename(self.file(name), final)
        except EnvironmentError as error:
            raise HostError("cannot write '%s': %s" % (final, error.strerror))
