# SPDX-License-Identifier: MIT
"""Ctrl-C, a polite kill and a terminal that goes away, taken up where the job can stop.

An exception out of a signal's handler can come up anywhere: inside a callable that the module calls, which prints and
drops what its callable raises, or inside a finaliser, of which the same is true. So a signal is only noted, and the job
asks between two frames and between two gestures. A second signal does not wait.
"""
import contextlib
import signal
import threading

# A terminal that goes away sends SIGHUP, which not every system has.
_NAMES = ('SIGINT', 'SIGTERM', 'SIGHUP')
_SIGNALS = tuple(getattr(signal, name) for name in _NAMES if hasattr(signal, name))

_noted = []


class InterruptedAfterwards(KeyboardInterrupt):
    """The results had their final names already."""


def _note(number, frame):
    _noted.append(number)
    if len(_noted) > 1:
        raise KeyboardInterrupt


def pending():
    """Whether a signal was noted that nobody has asked about."""
    return bool(_noted)


def check():
    """Raises KeyboardInterrupt when a signal was noted."""
    if _noted:
        raise KeyboardInterrupt


@contextlib.contextmanager
def _handled_by(handler):
    """Has the signals handled by `handler`, except those that somebody told the process to ignore, as nohup does. Only
    the main thread gets signals, and can do this."""
    previous = {}
    try:
        if threading.current_thread().name == 'MainThread':
            for number in _SIGNALS:
                if signal.getsignal(number) != signal.SIG_IGN:
                    previous[number] = signal.signal(number, handler)
        yield
    finally:
        for number, old in previous.items():
            signal.signal(number, old)


@contextlib.contextmanager
def noted():
    """Notes signals for check() while the block runs."""
    del _noted[:]
    with _handled_by(_note):
        yield


@contextlib.contextmanager
def held_off(error=KeyboardInterrupt):
    """Puts signals off until the block is left, and raises `error` then."""
    waiting = []
    with _handled_by(lambda number, frame: waiting.append(number)):
        yield
    if waiting:
        raise error
