# SPDX-License-Identifier: MIT
"""One entry with its first allocations failing one by one, first those of C++, then all: entries_run.py NAME COUNT. Prints how
many failures of each kind were met."""

import sys

import _failing
import _Orvanel
import support
import swig_peer
import valid_calls
from grammar import drop_pending_error

ENTRIES = dict((entry.name, entry) for entry in support.load_table().entries)


def check_usable(target):
    """The object has as many points as twins and takes an outline from the first point to the mask."""
    slot = swig_peer.RecordSlot()
    _Orvanel.Orvanel_UpdateKeyFrameInCurrent(target, slot.address())
    assert slot.record.points.size() == slot.record.pointsF.size(), (slot.record.points.size(), slot.record.pointsF.size())
    _Orvanel.Orvanel_ReDraw(target)
    _Orvanel.Orvanel_DeleteAllPoints(target)
    for x, y in valid_calls.OUTLINE + valid_calls.OUTLINE[:1]:
        _Orvanel.Orvanel_Interactive(target, _Orvanel.ECS_MOUSE_DOWN, x, y)
        _Orvanel.Orvanel_Interactive(target, _Orvanel.ECS_MOUSE_UP, x, y)
    assert _Orvanel.Orvanel_IsMask(target)
    assert len(_Orvanel.Orvanel_Convert2SelectionLineUS(target, (10, 10))) > 0
    assert _Orvanel.Orvanel_GetCurrentDevSetting(target)[0] is True


def try_once(entry, kind, granted):
    """Whether an allocation failed in a call, what was raised, and the result."""
    target = valid_calls.make_object()
    function, arguments = getattr(_Orvanel, entry.name), valid_calls.arguments(entry, target)
    raised = result = None
    _failing.arm(kind, granted)
    try:
        result = function(*arguments)
    except MemoryError as error:
        raised = error
    finally:
        failed = _failing.disarm()
    drop_pending_error()
    if entry.name == 'Orvanel_swigregister':
        _Orvanel.Orvanel_swigregister(support.Orvanel)
    elif entry.name not in ('delete_Orvanel', 'Orvanel_Uninitialize'):
        check_usable(target)
    return failed, raised, result


def main(name, count):
    entry = ENTRIES[name]
    undisturbed = try_once(entry, 0, -1)[2]
    for kind in range(_failing.kinds):
        met = 0
        for number in range(count):
            print 'kind %d, allocation %d' % (kind, number)
            sys.stdout.flush()
            failed, raised, result = try_once(entry, kind, number)
            met += failed
            assert failed or raised is None, raised
            # An object is built whole, or the failure is told.
            if entry.result == 'object' and raised is None:
                assert result == undisturbed, result
        print 'met %d %d' % (kind, met)


if __name__ == '__main__':
    main(sys.argv[1], int(sys.argv[2]))
