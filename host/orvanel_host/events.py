# SPDX-License-Identifier: MIT
"""The host's callable: it keeps what the module reports."""
import collections
import thread

from .orvanel import EVENT_NAMES

Event = collections.namedtuple('Event', 'code thread')


class EventLog(object):
    """Receives event codes. The module calls it on the thread that edits, and on its own worker thread."""

    def __init__(self):
        self.events = []
        self._listeners = []

    def __call__(self, code):
        # Appending to a list is one step under the interpreter lock: no lock of our own is needed.
        self.events.append(Event(code, thread.get_ident()))
        for listener in self._listeners:
            listener(code)

    def listen(self, listener):
        """Calls `listener(code)` after each event, on the event's thread."""
        self._listeners.append(listener)

    def codes(self):
        return [event.code for event in list(self.events)]

    def counts(self):
        """Pairs of (name, number of events) for all six codes, in code order."""
        counted = collections.Counter(self.codes())
        return [(EVENT_NAMES[code], counted[code]) for code in sorted(EVENT_NAMES)]
