# SPDX-License-Identifier: MIT
"""Types shared with modules that SWIG built, in every order of import. Each case runs in an interpreter of its own."""

import itertools
import os
import subprocess
import sys
import unittest

import support

MODULES = ('_Orvanel', 'swig_peer', 'swig_plain_peer')
PRELUDE = '''
import sys
sys.path.insert(0, %r)
%s
class Orvanel(object):
    __swig_destroy__ = _Orvanel.delete_Orvanel
    def __init__(self): self.this = _Orvanel.new_Orvanel()
_Orvanel.Orvanel_swigregister(Orvanel)
from _Orvanel import *
def raises(error, text, function, *arguments):
    try:
        function(*arguments)
    except error as raised:
        assert type(raised) is error and text in str(raised), raised
    else:
        assert False, 'nothing was raised'
'''


class TwoModules(unittest.TestCase):
    def check(self, script, modules=MODULES):
        for order in itertools.permutations(modules):
            text = PRELUDE % (support.PEER_DIR, '\n'.join('import ' + name for name in order)) + script + "\nprint 'done'\n"
            process = subprocess.Popen([sys.executable, '-B', '-c', text], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, universal_newlines=True)
            out = process.communicate()[0]
            self.assertEqual((process.returncode, [line for line in out.splitlines() if not line.startswith('[')]), (0, ['done']),
                             'imported in the order %s:\n%s' % (', '.join(order), out))

    def test_points_and_hovers(self):
        for peer in ('swig_peer', 'swig_plain_peer'):
            self.check('peer = %s' % peer + '''
object = Orvanel()
Orvanel_SetVideoCoordinate(object, 100, 100, 0, 0, 100, 100)
for x, y in ((10, 10), (90, 10), (50, 90)):
    Orvanel_AddPoint(object, x, y)
point = peer.MPoint()
point.x, point.y = 91, 12
assert Orvanel_HitTestPoint(object, point) == 3
assert Orvanel_HitTestPoint(object, point.this) == 3
hover = peer.HoverPoint()
hover.lineIndex = 0
assert Orvanel_AddPointInLine(object, hover) == 0
hover.lineIndex = 1000
assert Orvanel_AddPointInLine(object, hover.this) == -2147467259
raises(TypeError, "argument 2 of type 'MPoint const &'", Orvanel_HitTestPoint, object, hover)
raises(TypeError, "argument 2 of type 'HoverPoint const &'", Orvanel_AddPointInLine, object, point)
''')

    def test_vectors(self):
        for peer in ('swig_peer', 'swig_plain_peer'):
            self.check('peer = %s' % peer + '''
import struct
points = peer.MPointFVector()
Orvanel_SetDevSettingPoints([(0.25, 0.5, 0, 0, 1), (0.75, 0.5, 1, 0, 0)], points)
assert points.size() == 2
Orvanel_SetDevSettingPointsBuf(struct.pack('<IffIII', 1, 0.5, 0.25, 1, 0, 1), points.this)
assert points.size() == 1
indices = peer.UIntVector()
indices.push_back(0)
object = Orvanel()
assert Orvanel_MovePoints(object, indices, 1, 1) == -2147467259
assert Orvanel_MovePoints(object, indices.this, 1, 1) == -2147467259
raises(TypeError, "argument 2 of type 'std::vector<UINT > const &'", Orvanel_MovePoints, object, points, 1, 1)
raises(TypeError, "argument 2 of type 'std::vector<MPointF > &'", Orvanel_SetDevSettingPoints, [], indices)
''')

    def test_the_peers_own_vectors_still_work(self):
        self.check('''
vector = swig_peer.UIntVector([1, 2, 3])
assert list(vector) == [1, 2, 3]
assert list(swig_peer.UIntVector(vector)) == [1, 2, 3]
points = swig_peer.MPointFVector([swig_peer.MPointF()])
assert len(swig_peer.MPointFVector(points)) == 1
record = swig_peer.KeyFrameMaskInfo()
record.pointsF = points
assert len(record.pointsF) == 1
assert list(swig_peer.MPointVector([swig_peer.MPoint()]))[0].x == 0
''')

    def test_records_both_ways(self):
        self.check('''
object = Orvanel()
Orvanel_SetVideoCoordinate(object, 100, 100, 0, 0, 100, 100)
for x, y in ((10, 10), (90, 10), (50, 90)):
    Orvanel_AddPoint(object, x, y)
record = Orvanel_GetKeyFrameMaskInfo(object, 40)
assert type(record) is swig_peer.KeyFrameMaskInfo, type(record)
assert not record.thisown
assert (record.duration, len(record.points), swig_peer.pointCount(record)) == (40, 7, 7)
record.thisown = True
assert record.this.own()
mine = swig_peer.KeyFrameMaskInfo()
mine.duration = 50
assert Orvanel_DrawExistKeyFrame(object, mine) == 0
assert Orvanel_DrawSpecificKeyFrame(object, record, record, 40L) == 0
Orvanel_UpdateKeyFrameInSize(object, mine)
slot = swig_peer.RecordSlot()
Orvanel_UpdateKeyFrameInCurrent(object, slot.address(), 60)
assert slot.record.duration == 60
raises(NotImplementedError, 'UpdateKeyFrameInCurrent', Orvanel_UpdateKeyFrameInCurrent, object, record)
raises(TypeError, "argument 2 of type 'Quill::KeyFrameMaskInfo *'", Orvanel_DrawExistKeyFrame, object, slot.address())
''')

    def test_a_syncer_of_a_subclass(self):
        self.check('''
object = Orvanel()
syncer = swig_peer.TenUnitSyncer()
assert Orvanel_GetClosestKeyFramePos(object, 7, syncer) == 7
assert Orvanel_GetClosestKeyFramePos(object, 7, syncer.this) == 7
Orvanel_SetVideoCoordinate(object, 100, 100, 0, 0, 100, 100)
for x, y in ((10, 10), (90, 10), (50, 90)):
    Orvanel_AddPoint(object, x, y)
Orvanel_PrepareKeyframe(object, 42)
Orvanel_Convert2Mask(object, True)
Orvanel_CacheCurrentKeyframe(object)
assert Orvanel_GetKeyFrameDurationList(object) == [42]
assert Orvanel_GetClosestKeyFramePos(object, 47, syncer) == 42
raises(TypeError, "argument 3 of type 'IVideoTextureSyncer *'", Orvanel_GetClosestKeyFramePos, object, 7, swig_peer.Stranger())
''')

    def test_a_subclass_whose_base_lies_behind_another(self):
        self.check('''
object = Orvanel()
Orvanel_SetVideoCoordinate(object, 100, 100, 0, 0, 100, 100)
Orvanel_AddPoint(object, 30, 40)
tagged = swig_peer.TaggedPoint()
tagged.tag, tagged.x, tagged.y = 77, 30, 40
assert Orvanel_HitTestPoint(object, tagged) == 0
tagged.x = 60
for _ in range(3):
    assert Orvanel_HitTestPoint(object, tagged.this) == -1
''')

    def test_our_objects_there(self):
        self.check('''
object = Orvanel()
assert swig_peer.addressOf(object) == swig_peer.addressOf(object.this) == int(object.this)
Orvanel_SetVideoCoordinate(object, 16, 16, 0, 0, 16, 16)
buffer = Orvanel_PrepareKeyframe(object, 0)
if buffer is not None:
    assert swig_peer.addressOf(buffer) == int(buffer)
raises(TypeError, 'MPoint', setattr, swig_peer.HoverPoint(), 'point', object)
# Seen from there an object of ours is one of its own kind.
there = swig_peer.orvanelAt(int(object.this))
assert type(there) is Orvanel, type(there)
assert there.this == object.this and object.this == there.this
assert not (there.this != object.this)
assert Orvanel_IsMask(there) is False
''')

    def test_every_kind_of_proxy(self):
        self.check('''
import weakref
class Old:
    def __init__(self, this): self.this = this
class New(object):
    def __init__(self, this): self.this = this
object = Orvanel()
Orvanel_SetVideoCoordinate(object, 100, 100, 0, 0, 100, 100)
Orvanel_AddPoint(object, 0, 0)
point = swig_peer.MPoint()
new = New(point.this)
for proxy in (point, point.this, Old(point.this), new, Old(point), New(Old(point)), weakref.proxy(new), weakref.proxy(point)):
    assert Orvanel_HitTestPoint(object, proxy) == 0
this = object.this
for proxy in (object, this, Old(this), New(this), Old(object), weakref.proxy(object)):
    assert Orvanel_IsMask(proxy) is False
    assert swig_peer.addressOf(proxy) == int(this)
''')

    def test_ownership_there_of_objects_from_here(self):
        self.check('''
object = Orvanel()
heard = []
Orvanel_SetCallbackFunc(object, heard.append)
import sys
count = sys.getrefcount(heard)
this = object.this
del object
del this
assert sys.getrefcount(heard) == count - 1
''')

    def test_an_old_style_proxy_class_wraps_results(self):
        self.check('''
import types
class OldRecord: pass
swig_peer._swig_peer.KeyFrameMaskInfo_swigregister(OldRecord)
object = Orvanel()
Orvanel_SetVideoCoordinate(object, 100, 100, 0, 0, 100, 100)
Orvanel_AddPoint(object, 1, 1)
record = Orvanel_GetKeyFrameMaskInfo(object, 3)
assert isinstance(record, OldRecord) and type(record) is types.InstanceType
assert swig_peer.pointCount(record) == 1
assert Orvanel_DrawExistKeyFrame(object, record) == 0
''')

    def test_a_proxy_class_that_cannot_be_made_raises(self):
        self.check('''
class Stubborn(object):
    def __new__(cls): raise KeyError('no')
swig_peer._swig_peer.KeyFrameMaskInfo_swigregister(Stubborn)
object = Orvanel()
raises(KeyError, 'no', Orvanel_GetKeyFrameMaskInfo, object, 3)
''')

    def test_there_is_one_registry(self):
        self.check('''
assert [name for name in sys.modules if name.startswith('swig_runtime_data')] == ['swig_runtime_data4']
assert sorted(name for name in vars(sys.modules['swig_runtime_data4']) if not name.startswith('__')) == ['type_pointer_capsule']
''')

    def test_without_proxy_classes(self):
        self.check('''
import imp
object = _Orvanel.new_Orvanel()
peer = swig_peer._swig_peer
point = peer.new_MPoint()
Orvanel_SetVideoCoordinate(object, 100, 100, 0, 0, 100, 100)
Orvanel_AddPoint(object, 5, 5)
assert Orvanel_HitTestPoint(object, point) == 0
peer.delete_MPoint(point)
''')


class HostModule(unittest.TestCase):
    """The reference host's module is one more peer."""

    def test_hostkit_vectors(self):
        if not os.path.exists(os.path.join(support.BUILD_DIR, 'python', '_hostkit.so')):
            print 'skipped: _hostkit is not built'
            return
        TwoModules('check').check('''
import orvanel_host.hostkit as kit
points = kit.MPointFVector()
Orvanel_SetDevSettingPoints([(0.25, 0.5, 0, 0, 1)], points)
assert points.size() == 1
''', ('_Orvanel', 'orvanel_host.hostkit', 'swig_peer'))


if __name__ == '__main__':
    unittest.main()
