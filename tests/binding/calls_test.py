# SPDX-License-Identifier: MIT
"""Calls that cross the boundary: texts written out, conversions at their limits, results, ownership."""

import sys
import unittest
import weakref

import _Orvanel
import support
import swig_peer
from support import run_script

E_FAIL = -2147467259
INTERACTIVE_TEXT = ("Wrong number of arguments for overloaded function 'Orvanel_Interactive'.\n  Possible C/C++ prototypes are:\n"
                    "    Interactive(INT,INT,INT)\n    Interactive(INT,INT)\n    Interactive(INT)\n")


class Case(unittest.TestCase):
    def setUp(self):
        self.proxy = support.Orvanel()
        self.object = self.proxy.this

    def refused(self, error, text, function, *arguments):
        with self.assertRaises(error) as caught:
            function(*arguments)
        self.assertIs(type(caught.exception), error)
        self.assertEqual(str(caught.exception), text)


class Texts(Case):
    """The texts as hosts know them."""

    def test_examples(self):
        call = _Orvanel
        for text, function, arguments in [
                ("in method 'Orvanel_AddPoint', argument 1 of type 'Orvanel *'", call.Orvanel_AddPoint, ('x', 1, 2)),
                ("in method 'Orvanel_HitTestPoint', argument 1 of type 'Orvanel const *'", call.Orvanel_HitTestPoint, ('x', None)),
                ("in method 'Orvanel_SetVideoInfo', argument 2 of type 'LONGLONG'", call.Orvanel_SetVideoInfo, (self.object, 1.0, 2, 3, 4)),
                ("in method 'Orvanel_MovePoints', argument 2 of type 'std::vector<UINT > const &'", call.Orvanel_MovePoints, (self.object, [0], 1, 2)),
                ("in method 'Orvanel_DrawSpecificKeyFrame', argument 2 of type 'Quill::KeyFrameMaskInfo *'", call.Orvanel_DrawSpecificKeyFrame, (self.object, 5, None, 0)),
                ("in method 'Orvanel_CallBack', argument 2 of type 'ECallBack_State'", call.Orvanel_CallBack, (self.object, 1.0)),
                ("in method 'Orvanel_SetSizeScaler', argument 2 of type 'float'", call.Orvanel_SetSizeScaler, (self.object, 'x')),
                ("in method 'delete_Orvanel', argument 1 of type 'Orvanel *'", call.delete_Orvanel, (5,))]:
            self.refused(TypeError, text, function, *arguments)

    def test_null_reference(self):
        self.refused(ValueError, "invalid null reference in method 'Orvanel_AddPointInLine', argument 2 of type 'HoverPoint const &'",
                     _Orvanel.Orvanel_AddPointInLine, self.object, None)
        self.refused(ValueError, "invalid null reference in method 'Orvanel_HitTestPoint', argument 2 of type 'MPoint const &'",
                     _Orvanel.Orvanel_HitTestPoint, self.object, None)
        self.refused(ValueError, "invalid null reference in method 'Orvanel_UpdateKeyFrameInCurrent', argument 2 of type 'Quill::KeyFrameMaskInfo *&'",
                     _Orvanel.Orvanel_UpdateKeyFrameInCurrent, self.object, None)
        self.refused(ValueError, "invalid null reference in method 'Orvanel_SetDevSettingPoints', argument 2 of type 'std::vector<MPointF > &'",
                     _Orvanel.Orvanel_SetDevSettingPoints, [], None)

    def test_overloads(self):
        for arguments in ((), (1, 2, 3, 4), (1.5,), (1, 'x'), (10 ** 12,)):
            self.refused(NotImplementedError, INTERACTIVE_TEXT, _Orvanel.Orvanel_Interactive, self.object, *arguments)
        self.refused(NotImplementedError, INTERACTIVE_TEXT, _Orvanel.Orvanel_Interactive)
        self.refused(NotImplementedError, INTERACTIVE_TEXT, _Orvanel.Orvanel_Interactive, 'x', 1)
        self.refused(NotImplementedError, "Wrong number of arguments for overloaded function 'Orvanel_PrepareKeyframe'.\n"
                     "  Possible C/C++ prototypes are:\n    PrepareKeyframe(LONGLONG,BOOL)\n    PrepareKeyframe(LONGLONG)\n",
                     _Orvanel.Orvanel_PrepareKeyframe, self.object, 1, 1.0)
        self.refused(NotImplementedError, "Wrong number of arguments for overloaded function 'Orvanel_SetPreviewMode'.\n"
                     "  Possible C/C++ prototypes are:\n    SetPreviewMode(bool)\n    SetPreviewMode()\n",
                     _Orvanel.Orvanel_SetPreviewMode, self.object, 1.0)
        self.refused(NotImplementedError, "Wrong number of arguments for overloaded function 'Orvanel_UpdateKeyFrameInCurrent'.\n"
                     "  Possible C/C++ prototypes are:\n    UpdateKeyFrameInCurrent(Quill::KeyFrameMaskInfo *&,LONGLONG)\n"
                     "    UpdateKeyFrameInCurrent(Quill::KeyFrameMaskInfo *&)\n",
                     _Orvanel.Orvanel_UpdateKeyFrameInCurrent, self.object, 5)

    def test_argument_count(self):
        self.refused(TypeError, 'Orvanel_AddPoint() takes exactly 3 arguments (1 given)', _Orvanel.Orvanel_AddPoint, self.object)
        self.refused(TypeError, 'new_Orvanel() takes exactly 0 arguments (1 given)', _Orvanel.new_Orvanel, 1)
        self.refused(TypeError, 'Orvanel_swigregister() takes exactly one argument (2 given)', _Orvanel.Orvanel_swigregister, 1, 2)

    def test_no_keywords(self):
        self.assertRaises(TypeError, lambda: _Orvanel.Orvanel_AddPoint(self.object, x=1, y=2))

    def test_a_null_object_is_refused(self):
        self.refused(ValueError, "invalid null reference in method 'Orvanel_AddPoint', argument 1 of type 'Orvanel *'",
                     _Orvanel.Orvanel_AddPoint, None, 1, 2)
        self.refused(ValueError, "invalid null reference in method 'Orvanel_IsMask', argument 1 of type 'Orvanel const *'",
                     _Orvanel.Orvanel_IsMask, None)
        self.refused(ValueError, "invalid null reference in method 'Orvanel_Interactive', argument 1 of type 'Orvanel *'",
                     _Orvanel.Orvanel_Interactive, None, 1)


class Conversions(Case):
    def test_int_beyond_32_bits_is_a_type_error(self):
        text = "in method 'Orvanel_AddPoint', argument 2 of type 'INT'"
        for value in (10 ** 12, 10L ** 12, 2 ** 31, -2 ** 31 - 1, 2L ** 31, 2 ** 100):
            self.refused(TypeError, text, _Orvanel.Orvanel_AddPoint, self.object, value, 0)
        for value in (2 ** 31 - 1, -2 ** 31, long(2 ** 31 - 1), True):
            self.assertEqual(_Orvanel.Orvanel_AddPoint(self.object, value, 0), E_FAIL)

    def test_float(self):
        self.refused(OverflowError, "in method 'Orvanel_SetSizeScaler', argument 2 of type 'float'", _Orvanel.Orvanel_SetSizeScaler, self.object, 1e39)
        self.refused(OverflowError, "in method 'Orvanel_SetSizeScaler', argument 2 of type 'float'", _Orvanel.Orvanel_SetSizeScaler, self.object, 10 ** 400)
        for value in (2, 2L, True, 1.5, 3.4028234663852886e38, float('nan')):
            self.assertIsNone(_Orvanel.Orvanel_SetSizeScaler(self.object, value))

    def test_bool(self):
        inverse = lambda value: (_Orvanel.Orvanel_SetInverse(self.object, value), _Orvanel.Orvanel_GetInverse(self.object))[1]
        for value in (True, 1, 2, -1, 1L, 2 ** 100, -2 ** 100, 2 ** 32, 2 ** 64):
            self.assertIs(inverse(value), True, value)
        for value in (False, 0, 0L):
            self.assertIs(inverse(value), False, value)
        self.assertIsNone(_Orvanel.Orvanel_SetShiftPressed(self.object, 2))
        self.refused(TypeError, "in method 'Orvanel_SetShiftPressed', argument 2 of type 'bool'", _Orvanel.Orvanel_SetShiftPressed, self.object, 1.0)

    def test_left_out_arguments(self):
        mode = lambda: _Orvanel.Orvanel_IsPreviewMode(self.object)
        self.assertEqual(mode(), 0)
        _Orvanel.Orvanel_SetPreviewMode(self.object)
        self.assertEqual(mode(), 1)
        _Orvanel.Orvanel_SetPreviewMode(self.object, False)
        self.assertEqual(mode(), 0)
        self.assertEqual(_Orvanel.Orvanel_Interactive(self.object, 3), 1)
        self.assertEqual(_Orvanel.Orvanel_Interactive(self.object, 3, 5), 1)
        self.assertEqual(_Orvanel.Orvanel_Interactive(self.object, 3, 5, 6), 1)

    def test_interactive_leaves_out_coordinates_as_zero(self):
        _Orvanel.Orvanel_SetVideoCoordinate(self.object, 100, 100, 0, 0, 100, 100)
        _Orvanel.Orvanel_Interactive(self.object, _Orvanel.ECS_MOUSE_DOWN, 50)
        where = swig_peer.MPoint()
        where.x, where.y = 50, 0
        self.assertEqual(_Orvanel.Orvanel_HitTestPoint(self.object, where), 0)


class Results(Case):
    def test_result_codes_are_signed(self):
        result = _Orvanel.Orvanel_AddPoint(self.object, 1, 2)
        self.assertEqual(result, E_FAIL)
        self.assertIs(type(result), int)

    def test_lengths_are_never_negative(self):
        _Orvanel.Orvanel_SetVideoCoordinate(self.object, 1, 1, 0, 0, 1, 1)
        self.assertEqual(_Orvanel.Orvanel_GetBufferLen(self.object), 4)
        self.assertIs(type(_Orvanel.Orvanel_GetBufferLen(self.object)), int)

    def test_longlong_is_an_int_when_it_fits_32_bits(self):
        closest = lambda duration: _Orvanel.Orvanel_GetClosestKeyFramePos(self.object, duration, None)
        for duration in (0, -1, 2 ** 31 - 1, -2 ** 31, 5L):
            self.assertEqual(closest(duration), duration)
            self.assertIs(type(closest(duration)), int, duration)
        for duration in (2 ** 31, -2 ** 31 - 1, 2 ** 63 - 1, -2 ** 63):
            self.assertEqual(closest(duration), duration)
            self.assertIs(type(closest(duration)), long, duration)

    def test_flags_are_bools_and_methods_without_result_give_none(self):
        self.assertIs(_Orvanel.Orvanel_IsMask(self.object), False)
        self.assertIs(_Orvanel.Orvanel_SetHoverCentralPoint(self.object, 0), True)
        self.assertIsNone(_Orvanel.Orvanel_Show(self.object))
        self.assertIs(type(_Orvanel.Orvanel_IsVisible(self.object)), int)

    def test_null_pointers_are_none(self):
        self.assertIsNone(_Orvanel.Orvanel_GetAllocator(self.object))

    def test_pointers_are_not_owned(self):
        _Orvanel.Orvanel_SetVideoCoordinate(self.object, 64, 64, 0, 0, 64, 64)
        for pointer, text in ((_Orvanel.Orvanel_PrepareKeyframe(self.object, 0), 'BYTE *'),):
            self.assertFalse(pointer.own())
            self.assertRegexpMatches(repr(pointer), r"^<Swig Object of type '%s' at 0x[0-9a-f]+>$" % text.replace('*', r'\*'))

    def test_an_object_given_to_a_method_comes_back_untouched(self):
        self.assertEqual(_Orvanel.Orvanel_GetDirtyRect(self.object), (0, 0, 0, 0))
        self.assertEqual(_Orvanel.Orvanel_GetKeyFrameDurationList(self.object), [])

    def test_a_short_outline_takes_a_reference_from_none(self):
        before = sys.getrefcount(None)
        for _ in xrange(1000):
            _Orvanel.Orvanel_Convert2SelectionLineUS(self.object, (10, 10))
        self.assertAlmostEqual(before - sys.getrefcount(None), 1000, delta=20)

    def test_none_has_references_to_spare(self):
        self.assertGreater(sys.getrefcount(None), 2 ** 39)


class Opaque(Case):
    def test_representation(self):
        self.assertEqual(repr(self.object), "<Swig Object of type 'Orvanel *' at 0x%x>" % id(self.object))

    def test_numbers(self):
        self.assertEqual(int(self.object), swig_peer.addressOf(self.object))
        self.assertEqual(long(self.object), int(self.object))

    def test_comparison(self):
        other = swig_peer.MPoint()
        again = support.OldStyleProxy(other.this)
        self.assertTrue(self.object == self.object)
        self.assertFalse(self.object != self.object)
        self.assertFalse(self.object == other.this)
        self.assertTrue(other.this == again.this)
        for stranger in (None, 0, int(self.object), 'text', [], support.RaisingProxy()):
            self.assertFalse(self.object == stranger)
            self.assertTrue(self.object != stranger)

    def test_unhashable(self):
        self.assertRaises(TypeError, hash, self.object)

    def test_ownership(self):
        self.assertTrue(self.object.own())
        self.assertTrue(self.object.own(False))
        self.assertFalse(self.object.own(True))
        self.assertIsNone(self.object.disown())
        self.assertFalse(self.object.own())
        self.assertIsNone(self.object.acquire())
        self.assertTrue(self.object.own())
        self.assertRaises(TypeError, self.object.own, 1, 2)

    def test_chain(self):
        point, hover = swig_peer.MPoint(), swig_peer.HoverPoint()
        self.assertIsNone(self.object.next())
        self.object.append(point.this)
        self.assertTrue(self.object.next() == point.this)
        # Whatever is in the chain is found.
        self.assertEqual(_Orvanel.Orvanel_HitTestPoint(self.object, self.object), -1)
        self.assertEqual(repr(self.object), "<Swig Object of type 'Orvanel *' at 0x%x>%r" % (id(self.object), point.this))
        for wrong in (None, 5, point):
            self.assertRaises(TypeError, self.object.append, wrong)
        self.assertRaises(ValueError, self.object.append, self.object)
        borrowed = _Orvanel.Orvanel_PrepareKeyframe(self.object, 0)
        if borrowed is not None:
            borrowed.append(self.object)
            self.assertRaises(ValueError, self.object.append, borrowed)

    def test_every_kind_of_proxy_is_accepted(self):
        for name, proxy, keep in support.proxies_of(self.object):
            self.assertIs(_Orvanel.Orvanel_IsMask(proxy), False, name)

    def test_a_proxy_that_is_its_own_pointer_is_refused(self):
        self.refused(TypeError, "in method 'Orvanel_IsMask', argument 1 of type 'Orvanel const *'", _Orvanel.Orvanel_IsMask, support.SelfProxy())

    def test_a_class_named_like_an_opaque_object_is_refused(self):
        for name in ('SwigPyObject', 'PySwigObject'):
            pretender = type(name, (object,), {'__slots__': ('a', 'b', 'c', 'd')})()
            self.assertRaises(TypeError, _Orvanel.Orvanel_IsMask, pretender)

    def test_a_pointer_that_exists_for_the_call_only(self):
        proxy = support.PropertyProxy(_Orvanel.new_Orvanel)
        self.assertEqual(_Orvanel.Orvanel_AddPoint(proxy, 1, 2), E_FAIL)
        seen = []
        self.assertEqual(_Orvanel.Orvanel_SetCallbackFunc(proxy, seen.append), 0)


class Ownership(Case):
    def deleted(self):
        """Whether the object went: its callable goes with it."""
        def callable(code):
            pass
        _Orvanel.Orvanel_SetCallbackFunc(self.object, callable)
        gone = weakref.ref(callable)
        del callable
        return lambda: gone() is None

    def test_the_last_reference_destroys(self):
        deleted = self.deleted()
        self.proxy = None
        self.assertFalse(deleted())
        self.object = None
        self.assertTrue(deleted())

    def test_delete_takes_ownership_away_first(self):
        deleted = self.deleted()
        self.assertIsNone(_Orvanel.delete_Orvanel(self.proxy))
        self.assertTrue(deleted())
        self.assertFalse(self.object.own())
        self.proxy = self.object = None

    def test_a_deleted_object_is_refused(self):
        _Orvanel.delete_Orvanel(self.object)
        self.assertRaises(ValueError, _Orvanel.Orvanel_AddPoint, self.proxy, 1, 2)
        self.assertIsNone(_Orvanel.delete_Orvanel(self.proxy))

    def test_delete_of_none(self):
        self.assertIsNone(_Orvanel.delete_Orvanel(None))

    def test_a_disowned_object_is_not_destroyed(self):
        deleted = self.deleted()
        address = int(self.object)
        self.object.disown()
        self.proxy = self.object = None
        self.assertFalse(deleted())
        # Nobody holds it any more; a peer gives it a carrier again.
        carrier = swig_peer.orvanelAt(address)
        _Orvanel.delete_Orvanel(carrier)
        self.assertTrue(deleted())

    def test_a_pending_error_survives_the_destruction(self):
        def fail():
            doomed = _Orvanel.new_Orvanel()
            raise KeyError(len(repr(doomed)))
        self.assertRaises(KeyError, fail)
        sys.exc_clear()

    def test_a_destructor_that_raises_is_reported_and_dropped(self):
        script = ('import _Orvanel\n'
                  'class Proxy(object):\n'
                  '    @staticmethod\n'
                  '    def __swig_destroy__(this): raise ValueError("not today")\n'
                  '_Orvanel.Orvanel_swigregister(Proxy)\n'
                  'a = _Orvanel.new_Orvanel(); del a\n'
                  'print "alive"\n')
        out, errors, status = run_script(script)
        self.assertEqual((out.strip(), status), ('alive', 0))
        self.assertIn('not today', errors)

    def test_without_a_destructor_a_leak_is_reported(self):
        out, errors, status = run_script('import _Orvanel\na = _Orvanel.new_Orvanel()\ndel a\nprint "alive"\n')
        self.assertEqual(out, "swig/python detected a memory leak of type 'Orvanel *', no destructor found.\nalive\n")
        self.assertEqual((errors, status), ('', 0))

    def test_a_class_without_a_destructor_is_accepted(self):
        out, errors, status = run_script('import _Orvanel\nclass P(object): pass\nprint _Orvanel.Orvanel_swigregister(P)\n'
                                         'a = _Orvanel.new_Orvanel()\ndel a\n')
        self.assertEqual(out, "None\nswig/python detected a memory leak of type 'Orvanel *', no destructor found.\n")
        self.assertEqual((errors, status), ('', 0))

    def test_any_object_can_be_registered(self):
        for thing in ('None', '5', 'len', 'type("Old", (), {})', 'object()', '__import__("types").ClassType("Old", (), {})'):
            out, errors, status = run_script('import _Orvanel\nprint _Orvanel.Orvanel_swigregister(%s)\n_Orvanel.new_Orvanel().disown()\n' % thing)
            self.assertEqual((out, errors, status), ('None\n', '', 0), thing)

    def test_registering_again_replaces(self):
        script = ('import _Orvanel, gc, weakref\n'
                  'def make(name):\n'
                  '    def destroy(this): print name; _Orvanel.delete_Orvanel(this)\n'
                  '    return type(name, (object,), {"__swig_destroy__": staticmethod(destroy)})\n'
                  'first = make("first"); _Orvanel.Orvanel_swigregister(first); a = _Orvanel.new_Orvanel()\n'
                  'gone = weakref.ref(first); del first\n'
                  '_Orvanel.Orvanel_swigregister(make("second")); gc.collect()\n'
                  'print gone() is None\n'
                  'del a\n')
        self.assertEqual(run_script(script), ('True\nsecond\n', '', 0))


if __name__ == '__main__':
    unittest.main()
