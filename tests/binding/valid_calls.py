# SPDX-License-Identifier: MIT
"""For every entry a call that succeeds, as the tests of reference counts and the fuzzer need it."""

import struct

import _Orvanel
import specimens
import support
import swig_peer

OUTLINE = ((10, 10), (90, 10), (50, 90))
FEATHERS = [[1L, 2, 3], [4L, 5, 6]]
POINTS = [(0.25, 0.5, 0, 0, 0), (0.5, 0.5, 1, 0, 0), (0.75, 0.5, 1, 0, 0)]
POINT_BYTES = struct.pack('<IffIII', 0, 0.5, 0.5, 0, 0, 0) * 9
# A square's runs. Large enough for the fit to come to rest: in a mask of few pixels every pair of anchors counts as far
# apart, and every fit adds anchors.
MASK_SIZE = (64, 64)
MASK_RUNS = [(0.25, row / 64.0, 0.5) for row in xrange(16, 48)]

_record = swig_peer.KeyFrameMaskInfo()
_slot = swig_peer.RecordSlot()
_syncer = swig_peer.TenUnitSyncer()
_point = swig_peer.MPoint()
_hover = swig_peer.HoverPoint()
_indices = swig_peer.UIntVector([0])
_points = swig_peer.MPointFVector()


def make_object():
    """An object with a closed outline and two keyframes."""
    made = support.Orvanel()
    _Orvanel.Orvanel_SetVideoCoordinate(made, 100, 100, 0, 0, 100, 100)
    _Orvanel.Orvanel_SetVideoInfo(made, 0, 0, 0, 10 ** 9)
    for x, y in OUTLINE + OUTLINE[:1]:
        _Orvanel.Orvanel_Interactive(made, _Orvanel.ECS_MOUSE_DOWN, x, y)
        _Orvanel.Orvanel_Interactive(made, _Orvanel.ECS_MOUSE_UP, x, y)
    _Orvanel.Orvanel_PrepareKeyframe(made, 1000)
    _Orvanel.Orvanel_CacheCurrentKeyframe(made)
    return made


def ignore(code):
    pass


def arguments(entry, target):
    """What follows from the types alone, and what a method reads from an object itself."""
    keyframe = {4: 0L, 5: POINT_BYTES}
    special = {
        'Orvanel_SetCallbackFunc': (target, ignore),
        'Orvanel_CallBack': (target, 3),
        'Orvanel_Convert2SelectionLineUS': (target, MASK_SIZE),
        'Orvanel_DumpBitmap': ([(0.0, 0.0, 0.5)], (0, 0), ''),
        'Orvanel_AdjustPoints': (target, (0.0, 0.0), MASK_RUNS, MASK_SIZE),
        'Orvanel_SetDevSetting': (target, {0: True, 1: False, 9: False, 3: [keyframe], 6: FEATHERS, 8: FEATHERS}),
        'Orvanel_SetDevSettingPoints': (POINTS[:0], _points),
        'Orvanel_SetDevSettingPointsBuf': (POINT_BYTES, _points),
        'Orvanel_SetFeathers': (target, FEATHERS),
        'Orvanel_SetFeatherShifts': (target, FEATHERS),
        'Orvanel_Create': (target, None, None, _syncer),
        'Orvanel_GenerateSpecificKeyFrame': (keyframe, {4: 9L, 5: POINT_BYTES}, 5L),
        'Orvanel_SetVideoCoordinate': (target, 100, 100, 0, 0, 100, 100),
        'Orvanel_PrepareKeyframe': (target, 500L, 0),
        'Orvanel_swigregister': (support.Orvanel,),
    }
    if entry.name in special:
        return special[entry.name]
    simple = {'object': None, 'int': 1, 'longlong': 1000L, 'bool': True, 'float': 1.25,
              '_p_Orvanel': target, '_p_MPoint': _point, '_p_HoverPoint': _hover, '_p_IVideoTextureSyncer': _syncer,
              '_p_Quill__KeyFrameMaskInfo': _record, '_p_p_Quill__KeyFrameMaskInfo': _slot.address(),
              '_p_std__vectorTunsigned_int_t': _indices, '_p_std__vectorTMPointF_t': _points}
    return tuple(simple[argument.type or argument.kind] for argument in entry.arguments)
