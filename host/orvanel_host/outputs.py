# SPDX-License-Identifier: MIT
"""Results appear under their final names all at once or not at all, and never in the place of anybody else's files."""
import os

from . import interrupts, staging
from .errors import HostError
from .manifest import FILE as MANIFEST
from .manifest import Manifest, digest_steps, records_of
from .messages import listed
from .progress import progress


def _is_same(a, b):
    """Whether two names stand for one file or folder, however they are written and linked."""
    try:
        return os.path.samefile(a, b)
    except OSError:
        return False


def _lies_at(path, place):
    """Whether `path` is `place` or lies below it."""
    for way in (os.path.abspath(path), os.path.realpath(path)):
        while way != os.path.dirname(way):
            if _is_same(way, place):
                return True
            way = os.path.dirname(way)
    return False


class OutputFolder(object):
    """Collects results in a hidden folder inside of the final one, and moves them out when all of them are complete.

    Used as a context manager; without commit() nothing is left behind, not even a final folder that was made for it.
    """

    def __init__(self, path, names=(), inputs=(), force=False):
        """`names` are those that results will have: what they would wrongly replace is found before the work begins.
        `inputs` are pairs of what a file is and its path: they are never replaced. `force` lets everything else be."""
        self.path = path
        self._names = names
        self._inputs = inputs
        self._force = force
        self._staging = self._lock = None
        self._made = []
        self._interruption = KeyboardInterrupt

    def __enter__(self):
        try:
            if os.path.isdir(self.path):
                staging.remove_leftovers(self.path, self._holds_input)
                self._refuse_to_replace(self._names)
            with interrupts.held_off():
                self._make_folders()
                self._staging, self._lock = staging.make(self.path)
        except EnvironmentError as error:
            self._close(failed=True)
            raise HostError("cannot write to '%s': %s" % (self.path, error.strerror))
        except BaseException:
            self._close(failed=True)
            raise
        return self

    def _make_folders(self):
        missing, path = [], os.path.abspath(self.path)
        while not os.path.lexists(path):
            missing.append(path)
            path = os.path.dirname(path)
        if not os.path.isdir(self.path):
            os.makedirs(self.path)
        self._made = missing

    def __exit__(self, kind, value, traceback):
        with interrupts.held_off(self._interruption):
            self._close(failed=kind is not None)

    def _close(self, failed):
        if self._staging:
            staging.remove(self._staging, self._lock)
            self._staging = None
        for path in self._made if failed else ():
            try:
                os.rmdir(path)
            except OSError:
                # Somebody else has put something there.
                break

    def file(self, name):
        """Where to write a result for now."""
        return os.path.join(self._staging, name)

    def folder(self, name):
        path = self.file(name)
        os.mkdir(path)
        return path

    def with_final_names(self, text):
        """A message with the names that results were to get, instead of where they waited."""
        return text.replace(self._staging + os.sep, os.path.join(self.path, '')) if self._staging else text

    def commit(self):
        """Moves everything to its final name. A folder of an earlier run is replaced as a whole."""
        names = staging.results(self._staging)
        with progress('checking', digest_steps(self._staging, names), 'MB') as advance:
            records = records_of(self._staging, names, advance)
        interrupts.check()
        try:
            with interrupts.held_off(interrupts.InterruptedAfterwards), staging.turn(self.path):
                self._refuse_to_replace(names)
                with open(self.file(MANIFEST), 'wb') as stream:
                    stream.write(Manifest(self.path).replaced_by(records))
                staging.move_out(self._staging, self.path, names + [MANIFEST])
                self._interruption = interrupts.InterruptedAfterwards
        except EnvironmentError as error:
            state = 'nothing was changed there' if staging.is_settled(self._staging) else (
                "not all of it could be put back: the rest is in '%s'" % self._staging)
            raise HostError("cannot write to '%s', and %s: %s" % (self.path, state, error.strerror))

    def _holds_input(self, path):
        return any(_lies_at(file_path, path) for _, file_path in self._inputs)

    def _refuse_to_replace(self, names):
        places = [(name, os.path.join(self.path, name)) for name in names]
        for _, place in places:
            for what, path in self._inputs:
                if os.path.lexists(place) and _lies_at(path, place):
                    raise HostError("the %s '%s' lies where a result goes ('%s'): choose another folder with --out" % (
                        what, path, place))
        if self._force:
            return
        manifest = Manifest(self.path)
        with progress('comparing', unit='MB') as advance:
            foreign = [found for name in list(names) + [MANIFEST] for found in manifest.foreign(name, advance)]
        if foreign:
            raise HostError("'%s' holds what this host did not make, or not as it is now: %s; choose another folder with "
                            '--out, or replace it with --force' % (self.path, listed(foreign)))
