# SPDX-License-Identifier: MIT
"""The rows of the entry table, written out once more by hand: order, declared types as the texts spell them, results."""

import unittest

import _Orvanel
import support
import valid_calls

SELF = 'Orvanel *'
CONST = 'Orvanel const *'
RECORD = 'Quill::KeyFrameMaskInfo *'
ANY = 'PyObject *'

# name, declared types, result, how many of the last arguments may be left out
ROWS = [
    ('new_Orvanel', [], 'owned', 0),
    ('delete_Orvanel', [SELF], 'none', 0),
    ('Orvanel_Uninitialize', [SELF], 'int', 0),
    ('Orvanel_ResetBuffer', [SELF], 'int', 0),
    ('Orvanel_SetSizeScaler', [SELF, 'float'], 'none', 0),
    ('Orvanel_SetVideoInfo', [SELF, 'LONGLONG', 'LONGLONG', 'LONGLONG', 'LONGLONG'], 'int', 0),
    ('Orvanel_GetBufferLen', [CONST], 'int', 0),
    ('Orvanel_SetCallbackFunc', [SELF, ANY], 'int', 0),
    ('Orvanel_CallBack', [SELF, 'ECallBack_State'], 'none', 0),
    ('Orvanel_IsMask', [CONST], 'bool', 0),
    ('Orvanel_IsMouseDown', [CONST], 'bool', 0),
    ('Orvanel_Interactive', [SELF, 'INT', 'INT', 'INT'], 'int', 2),
    ('Orvanel_SetShiftPressed', [SELF, 'bool'], 'none', 0),
    ('Orvanel_ResetNewMask', [SELF], 'int', 0),
    ('Orvanel_SetVideoCoordinate', [SELF, 'INT', 'INT', 'INT', 'INT', 'INT', 'INT'], 'int', 0),
    ('Orvanel_HitTestPoint', [CONST, 'MPoint const &'], 'int', 0),
    ('Orvanel_MoveAllPoints', [SELF, 'INT', 'INT'], 'int', 0),
    ('Orvanel_MovePoints', [SELF, 'std::vector<UINT > const &', 'INT', 'INT'], 'int', 0),
    ('Orvanel_SelectAllPoints', [SELF], 'int', 0),
    ('Orvanel_AddPoint', [SELF, 'INT', 'INT'], 'int', 0),
    ('Orvanel_AddPointInLine', [SELF, 'HoverPoint const &'], 'int', 0),
    ('Orvanel_DeleteAllPoints', [SELF], 'int', 0),
    ('Orvanel_DeleteFocusPoint', [SELF], 'int', 0),
    ('Orvanel_DeleteLastPoint', [SELF], 'int', 0),
    ('Orvanel_Convert2Mask', [SELF, 'bool'], 'int', 0),
    ('Orvanel_Convert2SelectionLineUS', [CONST, ANY], 'object', 0),
    ('Orvanel_DumpBitmap', [ANY, ANY, ANY], 'int', 0),
    ('Orvanel_AdjustPoints', [SELF, ANY, ANY, ANY], 'object', 0),
    ('Orvanel_IsHoverControlPoint', [SELF], 'bool', 0),
    ('Orvanel_IsHoverPointInLine', [SELF], 'bool', 0),
    ('Orvanel_IsHoverSelectedPointInLine', [SELF], 'bool', 0),
    ('Orvanel_IsAnyPointSelected', [CONST], 'bool', 0),
    ('Orvanel_IsNeedHandleMouseEvent', [SELF], 'bool', 0),
    ('Orvanel_SetHoverCentralPoint', [SELF, 'bool'], 'bool', 0),
    ('Orvanel_IsBCPSelected', [CONST], 'bool', 0),
    ('Orvanel_IsAnyBezierControlPointChanged', [CONST], 'bool', 0),
    ('Orvanel_Show', [SELF], 'none', 0),
    ('Orvanel_Hide', [SELF], 'none', 0),
    ('Orvanel_IsVisible', [CONST], 'int', 0),
    ('Orvanel_SetPreviewMode', [SELF, 'bool'], 'none', 1),
    ('Orvanel_IsPreviewMode', [CONST], 'int', 0),
    ('Orvanel_ForceUpdateFrame', [SELF], 'none', 0),
    ('Orvanel_UpdateCentroid', [SELF], 'none', 0),
    ('Orvanel_GetCentroidUS', [SELF], 'object', 0),
    ('Orvanel_GetCurrentDevSetting', [CONST], 'object', 0),
    ('Orvanel_GetCurrentPoints', [CONST], 'object', 0),
    ('Orvanel_SetDevSettingPoints', [ANY, 'std::vector<MPointF > &'], 'none', 0),
    ('Orvanel_SetDevSettingPointsBuf', [ANY, 'std::vector<MPointF > &'], 'none', 0),
    ('Orvanel_SetDevSetting', [SELF, ANY], 'none', 0),
    ('Orvanel_GetInverse', [CONST], 'bool', 0),
    ('Orvanel_SetInverse', [SELF, 'bool'], 'none', 0),
    ('Orvanel_GetHide', [CONST], 'bool', 0),
    ('Orvanel_SetHide', [SELF, 'bool'], 'none', 0),
    ('Orvanel_GetFeathers', [CONST], 'object', 0),
    ('Orvanel_SetFeathers', [SELF, ANY], 'none', 0),
    ('Orvanel_GetFeatherShifts', [CONST], 'object', 0),
    ('Orvanel_SetFeatherShifts', [SELF, ANY], 'none', 0),
    ('Orvanel_Create', [SELF, ANY, ANY, 'IVideoTextureSyncer *'], 'int', 0),
    ('Orvanel_GetAllocator', [SELF], 'pointer', 0),
    ('Orvanel_VideoTextureSyncerClosed', [SELF], 'none', 0),
    ('Orvanel_LockTexture', [SELF], 'none', 0),
    ('Orvanel_UnlockTexture', [SELF], 'none', 0),
    ('Orvanel_GetKeyFrameMaskInfo', [SELF, 'LONGLONG'], 'pointer', 0),
    ('Orvanel_GetKeyFrameDurationList', [CONST], 'object', 0),
    ('Orvanel_DestroyAllKeyFrameMaskInfo', [SELF], 'int', 0),
    ('Orvanel_DrawSpecificKeyFrame', [SELF, RECORD, RECORD, 'LONGLONG'], 'int', 0),
    ('Orvanel_DrawExistKeyFrame', [SELF, RECORD], 'int', 0),
    ('Orvanel_UpdateKeyFrameInSize', [SELF, RECORD], 'none', 0),
    ('Orvanel_UpdateKeyFrameInCurrent', [SELF, RECORD + '&', 'LONGLONG'], 'none', 1),
    ('Orvanel_CacheCurrentKeyframe', [SELF], 'int', 0),
    ('Orvanel_RemoveSpecificKeyFrame', [SELF, 'LONGLONG'], 'int', 0),
    ('Orvanel_RemoveTrialingKeyFrames', [SELF, 'LONGLONG'], 'int', 0),
    ('Orvanel_ClearPointsAndKeyFrame', [SELF], 'none', 0),
    ('Orvanel_GetClosestKeyFramePos', [CONST, 'LONGLONG', 'IVideoTextureSyncer *'], 'longlong', 0),
    ('Orvanel_PrepareKeyframe', [SELF, 'LONGLONG', 'BOOL'], 'pointer', 1),
    ('Orvanel_GenerateSpecificKeyFrame', [ANY, ANY, 'LONGLONG'], 'object', 0),
    ('Orvanel_DrawHoverPoint', [SELF], 'none', 0),
    ('Orvanel_DrawSelectedRegion', [CONST], 'none', 0),
    ('Orvanel_HideAllPoints', [SELF], 'none', 0),
    ('Orvanel_ReDraw', [SELF], 'none', 0),
    ('Orvanel_IsDirty', [CONST], 'bool', 0),
    ('Orvanel_GetDirtyRect', [CONST], 'object', 0),
    ('Orvanel_ResetDirtyFlag', [SELF], 'int', 0),
    ('Orvanel_swigregister', [ANY], 'none', 0),
]

CONSTANTS = [('CONST_DEFAULT_IDX', -1), ('ECB_POINT_ADD', 0), ('ECB_POINT_REMOVE', 1), ('ECB_MASK_CREATE', 2),
             ('ECB_MASK_UPDATE', 3), ('ECB_MASK_REMOVE', 4), ('ECB_POINT_UPDATE', 5), ('ECS_MOUSE_MOVE', 0),
             ('ECS_MOUSE_DOWN', 1), ('ECS_MOUSE_UP', 2), ('ECS_MOUSE_DBCLICK', 3), ('ECS_DELETE', 4),
             ('ECS_DELETE_LAST_POINT', 5)]

TYPES = [('_p_Quill__KeyFrameMaskInfo', 'Quill::KeyFrameMaskInfo *'), ('_p_HoverPoint', 'HoverPoint *'),
         ('_p_IVideoTextureSyncer', 'IVideoTextureSyncer *'), ('_p_MPoint', 'MPoint *'), ('_p_Orvanel', 'Orvanel *'),
         ('_p__ECallBack_State', 'enum _ECallBack_State *|ECallBack_State *'),
         ('_p__EControlState', 'enum _EControlState *|EControlState *'), ('_p_loom__IAllocator', 'loom::IAllocator *'),
         ('_p_p_Quill__KeyFrameMaskInfo', 'Quill::KeyFrameMaskInfo **'),
         ('_p_std__vectorTMPointF_t', 'std::vector<MPointF > *'),
         ('_p_std__vectorTunsigned_int_t', 'std::vector<unsigned int > *|std::vector<UINT > *'),
         ('_p_unsigned_char', 'unsigned char *|BYTE *')]
PRIMITIVES = ['char', 'double', 'float', 'int', 'long', 'long_long', 'unsigned_int', 'unsigned_long',
              'unsigned_long_long', 'unsigned_short', 'wchar_t']
ALIASES = ['TCHAR', 'DOUBLE', 'FLOAT', 'INT_PTR', 'LRESULT', 'int64', 'WPARAM', 'ULONG_PTR', 'uint64', 'WORD', 'WCHAR']


class Rows(unittest.TestCase):
    table = support.load_table()

    def test_every_row_is_as_declared(self):
        self.assertEqual(len(ROWS), 84)
        rows = [(entry.name, [argument.text for argument in entry.arguments], entry.result, len(entry.arguments) - entry.required)
                for entry in self.table.entries]
        for found, declared in zip(rows, ROWS):
            self.assertEqual(found, declared)
        self.assertEqual(len(rows), len(ROWS))

    def test_the_module_has_these_functions_and_no_others(self):
        functions = [name for name in dir(_Orvanel) if callable(getattr(_Orvanel, name)) and name != 'SwigPyObject']
        self.assertEqual(sorted(functions), sorted(row[0] for row in ROWS))

    def test_the_module_has_these_constants_and_no_others(self):
        integers = [(name, value) for name, value in vars(_Orvanel).items() if isinstance(value, (int, long))]
        self.assertEqual(sorted(integers), sorted(CONSTANTS))
        for name, value in integers:
            self.assertIs(type(value), int, name)

    def test_the_module_has_no_documentation_string(self):
        self.assertIsNone(_Orvanel.__doc__)

    def test_types_are_registered_under_their_names(self):
        registered = dict(self.table.types)
        for name, text in TYPES:
            self.assertEqual(registered[name], text)
        texts = [text for name in PRIMITIVES for text in registered['_p_' + name].split('|')]
        for name in PRIMITIVES:
            self.assertIn(name.replace('_', ' ').replace('wchar t', 'wchar_t') + ' *', texts)
        for alias in ALIASES:
            self.assertIn(alias + ' *', texts)

    def test_nothing_is_still_to_come(self):
        missing = []
        for entry in self.table.entries:
            arguments = () if entry.name == 'new_Orvanel' else valid_calls.arguments(entry, valid_calls.make_object())
            try:
                getattr(_Orvanel, entry.name)(*arguments)
            except NotImplementedError:
                missing.append(entry.name)
        self.assertEqual(missing, [])


if __name__ == '__main__':
    unittest.main()
