# SPDX-License-Identifier: MIT
"""The longest time that one call of an entry keeps the interpreter lock from a thread that wants it.

A second thread sleeps and wakes, again and again; what it waits beyond its sleep is what somebody kept the lock. While a
call of the entry runs nobody else does. The figure is the smallest of several calls' longest waits: whatever else the
machine does only adds to one. Accepts --benchmark_out, --benchmark_out_format and --quick."""

import sys
import threading
import time

import editor
import report

NAP = 0.0001
SHORT = 0.002
LIMIT = 0.010
OPERATIONS = (
    ('GetCurrentDevSetting', editor.save), ('SetDevSetting', editor.load), ('Convert2Mask(True)', editor.convert_all),
    ('Convert2SelectionLineUS', editor.convert), ('Convert2SelectionLineUS, 8K', editor.convert_8k),
    ('PrepareKeyframe, between two', editor.prepare_between), ('PrepareKeyframe, past the end', editor.prepare_past_the_end),
    ('ReDraw', editor.entry('ReDraw')), ('HideAllPoints', editor.entry('HideAllPoints')), ('AdjustPoints', editor.fit),
    ('GetCurrentPoints', editor.entry('GetCurrentPoints')), ('GetKeyFrameDurationList', editor.entry('GetKeyFrameDurationList')),
    ('CacheCurrentKeyframe', editor.entry('CacheCurrentKeyframe')), ('GetCentroidUS', editor.entry('GetCentroidUS')),
    ('MoveAllPoints', lambda subject: subject.call('MoveAllPoints', 1 - subject.turn % 3, 0)),
    ('SelectAllPoints', editor.entry('SelectAllPoints')), ('Interactive, pointer move', editor.pointer_move),
    ('Interactive, drag step', editor.drag), ('DeleteAllPoints', editor.entry('DeleteAllPoints')),
    ('Uninitialize', editor.entry('Uninitialize')))
#: After which the editor is not what it was.
ONCE = ('DeleteAllPoints', 'Uninitialize')


class Waiter(threading.Thread):
    """Remembers the longest time that it waited for the interpreter lock."""

    def __init__(self):
        threading.Thread.__init__(self)
        self.daemon = True
        self.longest = 0.0
        self.ends = False

    def run(self):
        while not self.ends:
            start = editor.now()
            time.sleep(NAP)
            self.longest = max(self.longest, editor.now() - start - NAP)


def measured(waiter, subject, operation):
    """(longest wait, length) of one call, in seconds."""
    time.sleep(10 * NAP)
    waiter.longest = 0.0
    start = editor.now()
    result = operation(subject)
    length = editor.now() - start
    # The waiter gets its turn before the result is dropped, which is the caller's work.
    time.sleep(10 * NAP)
    longest = waiter.longest
    del result
    subject.turn += 1
    # So short a call counts as one hold: the waiter may have slept through it.
    return min(longest, length) if length > SHORT else length, length


def hold(waiter, anchors, keyframes, name, operation, calls):
    """(longest wait, length) of a call; each the best of several."""
    results = []
    subject = None
    for _ in range(calls):
        if subject is None:
            subject = editor.Editor(anchors, keyframes)
            if name not in ONCE:
                operation(subject)
                subject.turn = 1
        results.append(measured(waiter, subject, operation))
        if name in ONCE:
            subject.close()
            subject = None
    if subject:
        subject.close()
    return min(wait for wait, _ in results), min(length for _, length in results)


def section(anchors, keyframes, rows):
    return ['The longest time that one call keeps the interpreter lock from a second thread that wants it, with %d anchors and %d' % (
        anchors, keyframes), 'keyframes on an 8K display, beside the length of the call; each the best of several calls.', ''] + report.table(
            ['entry', 'longest hold', 'one call', ''],
            [['`%s`' % name, report.readable(wait), report.readable(length), 'above 10 ms' if wait > LIMIT else '']
             for name, wait, length in rows])


def main():
    options = report.arguments(__doc__)
    anchors, keyframes, calls = (100, 200, 2) if options.quick else (1000, 10000, 7)
    # A thread that runs Python code gives way as soon as it is asked, so that only calls keep the lock.
    sys.setcheckinterval(1)
    waiter = Waiter()
    waiter.start()
    rows = [(name,) + hold(waiter, anchors, keyframes, name, operation, 3 if name in ONCE else calls) for name, operation in OPERATIONS]
    waiter.ends = True
    waiter.join()
    rows.sort(key=lambda row: -row[1])
    report.write(options, section(anchors, keyframes, rows),
                 [figure for name, wait, length in rows for figure in (('hold/' + name, wait), ('call/' + name, length))])


if __name__ == '__main__':
    main()
