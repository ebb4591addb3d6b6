# SPDX-License-Identifier: MIT
"""One process of two_modules_test.py: imports the modules in the order that ORVANEL_IMPORT_ORDER names and exchanges objects."""

import gc
import importlib
import os
import struct
import sys
import types
import unittest
import weakref

BUILD_DIR = os.environ['ORVANEL_BUILD_DIR']
sys.path.insert(0, os.path.join(BUILD_DIR, 'tests', 'binding'))
ORDER = os.environ['ORVANEL_IMPORT_ORDER'].split(',')
MODULES = dict((name, importlib.import_module(name)) for name in ORDER)

import _Orvanel
import support
from support import NewStyleProxy, OldStyleProxy, Orvanel

PEERS = [MODULES[name] for name in ORDER if name != '_Orvanel']
FULL_PEER = MODULES.get('swig_peer')
needs_full_peer = unittest.skipIf(FULL_PEER is None, 'swig_peer is not part of this order')
E_FAIL = -2147467259


def make_triangle():
    made = Orvanel()
    _Orvanel.Orvanel_SetVideoCoordinate(made, 100, 100, 0, 0, 100, 100)
    for x, y in ((10, 10), (90, 10), (50, 90)):
        _Orvanel.Orvanel_AddPoint(made, x, y)
    return made


class Case(unittest.TestCase):
    def refused(self, text, function, *arguments):
        with self.assertRaises(TypeError) as caught:
            function(*arguments)
        self.assertTrue(str(caught.exception).endswith(text), caught.exception)


class FromPeers(Case):
    """What a peer made is taken here, with its proxy and without."""

    def test_points(self):
        for peer in PEERS:
            point = peer.MPoint()
            point.x, point.y = 91, 12
            self.assertEqual(_Orvanel.Orvanel_HitTestPoint(make_triangle(), point), 3)
            self.assertEqual(_Orvanel.Orvanel_HitTestPoint(make_triangle(), point.this), 3)
            self.refused("argument 2 of type 'MPoint const &'", _Orvanel.Orvanel_HitTestPoint, make_triangle(), peer.HoverPoint())

    def test_hovers(self):
        for peer in PEERS:
            hover = peer.HoverPoint()
            hover.lineIndex = 0
            self.assertEqual(_Orvanel.Orvanel_AddPointInLine(make_triangle(), hover), 0)
            hover.lineIndex = 1000
            self.assertEqual(_Orvanel.Orvanel_AddPointInLine(make_triangle(), hover.this), E_FAIL)
            self.refused("argument 2 of type 'HoverPoint const &'", _Orvanel.Orvanel_AddPointInLine, make_triangle(), peer.MPoint())

    def test_vectors_of_points(self):
        for peer in PEERS:
            points = peer.MPointFVector()
            _Orvanel.Orvanel_SetDevSettingPoints([(0.25, 0.5, 0, 0, 1), (0.75, 0.5, 1, 0, 0)], points)
            self.assertEqual(points.size(), 2)
            _Orvanel.Orvanel_SetDevSettingPointsBuf(struct.pack('<IffIII', 1, 0.5, 0.25, 1, 0, 1), points.this)
            self.assertEqual(points.size(), 1)
            self.refused("argument 2 of type 'std::vector<MPointF > &'", _Orvanel.Orvanel_SetDevSettingPoints, [], peer.UIntVector())

    def test_vectors_of_indices(self):
        for peer in PEERS:
            indices = peer.UIntVector()
            indices.push_back(0)
            made = make_triangle()
            self.assertEqual(_Orvanel.Orvanel_MovePoints(made, indices, 1, 1), E_FAIL)
            self.assertEqual(_Orvanel.Orvanel_MovePoints(made, indices.this, 1, 1), E_FAIL)
            self.refused("argument 2 of type 'std::vector<UINT > const &'", _Orvanel.Orvanel_MovePoints, made, peer.MPointFVector(), 1, 1)

    @needs_full_peer
    def test_records(self):
        made, mine = make_triangle(), FULL_PEER.KeyFrameMaskInfo()
        mine.duration = 50
        self.assertEqual(_Orvanel.Orvanel_DrawExistKeyFrame(made, mine), 0)
        self.assertEqual(_Orvanel.Orvanel_DrawSpecificKeyFrame(made, mine, mine.this, 40L), 0)
        self.assertIsNone(_Orvanel.Orvanel_UpdateKeyFrameInSize(made, mine))
        self.refused("argument 2 of type 'Quill::KeyFrameMaskInfo *'", _Orvanel.Orvanel_DrawExistKeyFrame, made, FULL_PEER.RecordSlot().address())

    @needs_full_peer
    def test_pointers_to_records(self):
        made, slot = make_triangle(), FULL_PEER.RecordSlot()
        _Orvanel.Orvanel_UpdateKeyFrameInCurrent(made, slot.address(), 60)
        self.assertEqual(slot.record.duration, 60)
        self.assertEqual(len(slot.record.points), 7)
        self.assertRaises(NotImplementedError, _Orvanel.Orvanel_UpdateKeyFrameInCurrent, made, FULL_PEER.KeyFrameMaskInfo())

    @needs_full_peer
    def test_a_syncer_of_a_subclass(self):
        made, syncer = make_triangle(), FULL_PEER.TenUnitSyncer()
        self.assertEqual(_Orvanel.Orvanel_GetClosestKeyFramePos(made, 7, syncer), 7)
        _Orvanel.Orvanel_PrepareKeyframe(made, 42)
        _Orvanel.Orvanel_Convert2Mask(made, True)
        _Orvanel.Orvanel_CacheCurrentKeyframe(made)
        self.assertEqual(_Orvanel.Orvanel_GetKeyFrameDurationList(made), [42])
        self.assertEqual(_Orvanel.Orvanel_GetClosestKeyFramePos(made, 47, syncer), 42)
        self.assertEqual(_Orvanel.Orvanel_GetClosestKeyFramePos(made, 47, syncer.this), 42)
        self.refused("argument 3 of type 'IVideoTextureSyncer *'", _Orvanel.Orvanel_GetClosestKeyFramePos, made, 7, FULL_PEER.Stranger())

    @needs_full_peer
    def test_a_base_class_that_lies_behind_another(self):
        made, tagged = make_triangle(), FULL_PEER.TaggedPoint()
        tagged.tag, tagged.x, tagged.y = 77, 10, 10
        self.assertEqual(_Orvanel.Orvanel_HitTestPoint(made, tagged), 0)
        tagged.x = 60
        for _ in range(3):
            self.assertEqual(_Orvanel.Orvanel_HitTestPoint(made, tagged.this), -1)
            # Other look-ups in between move other entries to the list's front.
            self.assertEqual(_Orvanel.Orvanel_HitTestPoint(made, FULL_PEER.MPoint()), 0)

    def test_proxies_of_every_kind(self):
        for peer in PEERS:
            point = peer.MPoint()
            point.x = point.y = 10
            new = NewStyleProxy(point.this)
            for proxy in (point, point.this, OldStyleProxy(point.this), new, OldStyleProxy(point), NewStyleProxy(OldStyleProxy(point)),
                          weakref.proxy(new), weakref.proxy(point)):
                self.assertEqual(_Orvanel.Orvanel_HitTestPoint(make_triangle(), proxy), 0)

    @needs_full_peer
    def test_without_proxy_classes(self):
        flat = FULL_PEER._swig_peer
        point = flat.new_MPoint()
        flat.MPoint_x_set(point, 10)
        flat.MPoint_y_set(point, 10)
        self.assertEqual(_Orvanel.Orvanel_HitTestPoint(make_triangle(), point), 0)
        flat.delete_MPoint(point)


class ToPeers(Case):
    """What is made here is taken by a peer, and wrapped in the classes that peers registered."""

    @needs_full_peer
    def test_objects(self):
        made = Orvanel()
        new = NewStyleProxy(made.this)
        for proxy in (made, made.this, OldStyleProxy(made.this), new, weakref.proxy(made), weakref.proxy(new)):
            self.assertEqual(FULL_PEER.addressOf(proxy), int(made.this))
            self.assertIs(_Orvanel.Orvanel_IsMask(proxy), False)
        self.assertRaises(TypeError, setattr, FULL_PEER.HoverPoint(), 'point', made)

    @needs_full_peer
    def test_an_object_that_comes_back(self):
        made = Orvanel()
        back = FULL_PEER.orvanelAt(int(made.this))
        self.assertIs(type(back), Orvanel)
        self.assertTrue(back.this == made.this and made.this == back.this)
        self.assertFalse(back.this != made.this or made.this != back.this)
        self.assertIs(_Orvanel.Orvanel_IsMask(back), False)

    @needs_full_peer
    def test_buffers(self):
        buffer = _Orvanel.Orvanel_PrepareKeyframe(make_triangle(), 0)
        self.assertEqual(FULL_PEER.addressOf(buffer), int(buffer))
        self.assertFalse(buffer.own())

    @needs_full_peer
    def test_texture_maps(self):
        made = make_triangle()
        _Orvanel.Orvanel_Create(made, None, None, FULL_PEER.TenUnitSyncer())
        allocator = _Orvanel.Orvanel_GetAllocator(made)
        self.assertEqual(FULL_PEER.addressOf(allocator), int(allocator))
        self.assertFalse(allocator.own())

    def test_records(self):
        peer = PEERS[-1] if hasattr(PEERS[-1], 'KeyFrameMaskInfo') else PEERS[0]
        record = _Orvanel.Orvanel_GetKeyFrameMaskInfo(make_triangle(), 40)
        self.assertIs(type(record), peer.KeyFrameMaskInfo)
        self.assertFalse(record.thisown)
        self.assertEqual((record.duration, len(record.points), len(record.pointsF)), (40, 7, 7))
        # The peer's own destroy function ends it.
        record.thisown = True
        self.assertTrue(record.this.own())

    def test_ownership(self):
        heard = []
        made = Orvanel()
        _Orvanel.Orvanel_SetCallbackFunc(made, heard.append)
        count = sys.getrefcount(heard)
        del made
        self.assertEqual(sys.getrefcount(heard), count - 1)

    @needs_full_peer
    def test_other_proxy_classes(self):
        class OldRecord:
            pass

        class Stubborn(object):
            def __new__(cls):
                raise KeyError('no')

        class WithoutDictionary(object):
            __slots__ = ('this',)
        register = FULL_PEER._swig_peer.KeyFrameMaskInfo_swigregister
        made = make_triangle()
        try:
            register(OldRecord)
            record = _Orvanel.Orvanel_GetKeyFrameMaskInfo(made, 3)
            self.assertIs(type(record), types.InstanceType)
            self.assertIsInstance(record, OldRecord)
            self.assertEqual(FULL_PEER.pointCount(record), 7)
            self.assertEqual(_Orvanel.Orvanel_DrawExistKeyFrame(made, record), 0)
            register(WithoutDictionary)
            record = _Orvanel.Orvanel_GetKeyFrameMaskInfo(made, 3)
            self.assertIs(type(record), WithoutDictionary)
            self.assertEqual(FULL_PEER.pointCount(record), 7)
            register(Stubborn)
            self.assertRaises(KeyError, _Orvanel.Orvanel_GetKeyFrameMaskInfo, made, 3)
        finally:
            register(FULL_PEER.KeyFrameMaskInfo)


class Registry(Case):
    def test_there_is_one(self):
        self.assertEqual([name for name in sys.modules if name.startswith('swig_runtime_data')], ['swig_runtime_data4'])
        public = sorted(name for name in vars(sys.modules['swig_runtime_data4']) if not name.startswith('__'))
        self.assertEqual(public, ['type_pointer', 'type_pointer_capsule'])

    def test_the_peers_vectors_still_work(self):
        for peer in PEERS:
            if not hasattr(peer, 'SwigPyIterator'):
                continue
            vector = peer.UIntVector([1, 2, 3])
            self.assertEqual(list(vector), [1, 2, 3])
            self.assertEqual(list(peer.UIntVector(vector)), [1, 2, 3])
            points = peer.MPointFVector([peer.MPointF()])
            self.assertEqual(len(peer.MPointFVector(points)), 1)
            record = peer.KeyFrameMaskInfo()
            record.pointsF = points
            self.assertEqual(len(record.pointsF), 1)
            self.assertEqual(list(peer.MPointVector([peer.MPoint()]))[0].x, 0)

    def test_an_owner_of_both_kinds_is_released(self):
        for peer in PEERS:
            chained = peer.MPoint()
            chained.this.append(_Orvanel.new_Orvanel())
            self.assertIs(_Orvanel.Orvanel_IsMask(chained), False)
            del chained
        gc.collect()


if __name__ == '__main__':
    unittest.main()
