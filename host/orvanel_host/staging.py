# SPDX-License-Identifier: MIT
"""The hidden folder that results wait in, and how they all get their names at once.

Beside the folder lies a file that is locked as long as the run lives. The lock ends with the process, however that ends,
so whoever gets it has the proof that nobody uses the folder. What is replaced is moved into the folder first, and a journal
there says what is about to happen: whoever finds it, the run itself after an error or a later one after a kill, can put
everything back.
"""
import contextlib
import errno
import fcntl
import json
import os
import re
import shutil
import tempfile

_PREFIX = '.unfinished-'
_LOCK = '.lock'
_LEFTOVER = re.compile(re.escape(_PREFIX) + r'\w+' + re.escape(_LOCK) + r'\Z')
# Held by whoever gives results their names.
_TURN = '.unfinished' + _LOCK
_JOURNAL, _REPLACED = '.journal', '.replaced'

_BUSY = (errno.EAGAIN, errno.EACCES)


class Lock(object):
    """A file that is locked, and goes away when it is released."""

    def __init__(self, path, number):
        self._path = path
        self._number = number

    def release(self, keep=False):
        """`keep` leaves the file, as a killed process would."""
        if not keep:
            os.unlink(self._path)
        os.close(self._number)


def _still_there(path, number):
    """Whether the open file is the one at `path`: who had the lock before may have removed it."""
    try:
        there, opened = os.lstat(path), os.fstat(number)
        return (there.st_dev, there.st_ino) == (opened.st_dev, opened.st_ino)
    except OSError:
        return False


def lock(path, wait=False, strict=False):
    """The Lock, or None when somebody has it. `strict` is for a proof: where the file system has no locks, there is none."""
    while True:
        number = os.open(path, os.O_RDWR | os.O_CREAT | os.O_NOFOLLOW, 0o600)
        fcntl.fcntl(number, fcntl.F_SETFD, fcntl.FD_CLOEXEC)
        try:
            fcntl.flock(number, fcntl.LOCK_EX | (0 if wait else fcntl.LOCK_NB))
        except EnvironmentError as error:
            if error.errno == errno.EINTR:
                os.close(number)
                continue
            if error.errno in _BUSY or strict:
                os.close(number)
                return None
        if _still_there(path, number):
            return Lock(path, number)
        os.close(number)


def make(folder):
    """A staging folder in `folder` and its Lock."""
    while True:
        number, path = tempfile.mkstemp(suffix=_LOCK, prefix=_PREFIX, dir=folder)
        os.close(number)
        path = os.path.join(folder, os.path.basename(path))
        held = lock(path)
        # A run that looks for leftovers may have been quicker than this one.
        if held:
            break
    staging = path[:-len(_LOCK)]
    try:
        os.mkdir(staging)
    except EnvironmentError:
        held.release()
        raise
    return staging, held


@contextlib.contextmanager
def turn(folder):
    """Runs that end at the same time give their results names one after the other."""
    held = lock(os.path.join(folder, _TURN), wait=True)
    try:
        yield
    finally:
        held.release()


def remove(staging, held):
    """Removes a staging folder and its lock. One that cannot be removed, or holds what could not be put back, keeps its
    lock file, for a later run to try."""
    if is_settled(staging):
        shutil.rmtree(staging, ignore_errors=True)
    held.release(keep=os.path.lexists(staging))


def results(staging):
    return sorted(name for name in os.listdir(staging) if not name.startswith('.'))


def is_settled(staging):
    """Whether no move has stopped half way."""
    return not os.path.lexists(os.path.join(staging, _JOURNAL))


def move_out(staging, folder, names):
    """Gives results their names; what had the names before goes with the staging folder. After an error, which is raised
    again, everything is as before, or else the journal is still there."""
    os.mkdir(os.path.join(staging, _REPLACED))
    with open(os.path.join(staging, _JOURNAL + '.new'), 'wb') as stream:
        json.dump([(name, os.lstat(os.path.join(staging, name)).st_ino) for name in names], stream)
    os.rename(os.path.join(staging, _JOURNAL + '.new'), os.path.join(staging, _JOURNAL))
    try:
        for name in names:
            final = os.path.join(folder, name)
            if os.path.lexists(final):
                os.rename(final, os.path.join(staging, _REPLACED, name))
            os.rename(os.path.join(staging, name), final)
        os.unlink(os.path.join(staging, _JOURNAL))
    except EnvironmentError:
        put_back(staging, folder)
        raise


def put_back(staging, folder):
    """Undoes a move that did not come to its end. False when that cannot be done, because a name has been taken meanwhile
    say: then what belongs there stays in the staging folder, and so does the journal."""
    try:
        with open(os.path.join(staging, _JOURNAL), 'rb') as stream:
            moved = json.load(stream)
    except (EnvironmentError, ValueError):
        # No move had begun, or it had ended.
        return is_settled(staging)
    complete = True
    for name, inode in reversed(moved):
        complete = _put_back(staging, folder, name, inode) and complete
    if complete:
        os.unlink(os.path.join(staging, _JOURNAL))
    return complete


def _put_back(staging, folder, name, inode):
    final, new, old = (os.path.join(*parts) for parts in ((folder, name), (staging, name), (staging, _REPLACED, name)))
    try:
        if os.path.lexists(final) and not os.path.lexists(new) and os.lstat(final).st_ino == inode:
            os.rename(final, new)
        if os.path.lexists(old):
            if os.path.lexists(final):
                return False
            os.rename(old, final)
        return True
    except EnvironmentError:
        return False


def remove_leftovers(folder, keep):
    """Removes what killed runs have left in `folder`, after undoing what they had half done. `keep(path)` says what is to
    stay all the same."""
    for name in sorted(os.listdir(folder)):
        if not _LEFTOVER.match(name):
            continue
        path = os.path.join(folder, name)
        staging = path[:-len(_LOCK)]
        try:
            held = None if keep(staging) or os.path.islink(staging) else lock(path, strict=True)
        except EnvironmentError:
            continue
        if not held:
            continue
        with turn(folder):
            put_back(staging, folder)
        remove(staging, held)
