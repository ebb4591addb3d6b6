# SPDX-License-Identifier: MIT
"""Arguments whose conversion runs Python code that ends what an earlier argument of the same call stands for."""

import ctypes
import sys
import unittest
import weakref

import _Orvanel
import specimens
import support
import swig_peer
import valid_calls

TABLE = support.load_table()


class Callable(object):
    """Goes with the object that it is registered at."""

    def __call__(self, code):
        pass


def watched_object():
    """An object that nothing but its carrier owns, and a function that tells whether it is gone."""
    carrier = valid_calls.make_object().this
    told = Callable()
    _Orvanel.Orvanel_SetCallbackFunc(carrier, told)
    alive = weakref.ref(told)
    return [carrier], lambda: alive() is None


def pointer_positions(entry):
    return [index for index, argument in enumerate(entry.arguments) if index > 0 and argument.kind in ('pointer', 'reference')]


def methods():
    """The entries that run on an object and take a pointer behind it."""
    return [entry for entry in TABLE.entries
            if entry.arguments and entry.arguments[0].type == '_p_Orvanel' and pointer_positions(entry)]


class LaterArguments(unittest.TestCase):
    def check(self, entry, index, end):
        """Calls with a proxy at `index` that ends the object when its pointer is asked for."""
        holder, gone = watched_object()
        seen = []
        arguments = list(valid_calls.arguments(entry, holder[0]))
        valid = arguments[index]

        def this():
            if not seen:
                end(holder)
                seen.append(gone())
            return valid if repr(valid).startswith('<Swig Object') else valid.this
        arguments[index] = support.PropertyProxy(this)
        # A drop is the end only where nothing but the entry holds the carrier.
        arguments[0] = support.PropertyProxy(lambda carrier=[arguments[0]]: carrier.pop()) if end is drop else arguments[0]
        call = getattr(_Orvanel, entry.name)
        call(*arguments)
        description = '%s, argument %d' % (entry.name, index + 1)
        self.assertEqual(seen, [False], description + ': gone in the middle of the call')
        del arguments
        self.assertTrue(gone(), description + ': still there after the call')

    def test_there_are_such_entries(self):
        self.assertGreaterEqual(sum(len(pointer_positions(entry)) for entry in methods()), 10)

    def test_an_object_deleted_while_a_later_argument_is_converted(self):
        for entry in methods():
            for index in pointer_positions(entry):
                self.check(entry, index, delete)

    def test_an_object_dropped_while_a_later_argument_is_converted(self):
        for entry in methods():
            for index in pointer_positions(entry):
                self.check(entry, index, drop)

    def test_an_object_deleted_through_another_carrier(self):
        for entry in methods():
            self.check(entry, pointer_positions(entry)[0], delete_by_address)

    def test_an_object_deleted_before_a_refusal(self):
        """The object is let go on that way, too."""
        holder, gone = watched_object()
        seen = []

        def this():
            delete(holder)
            seen.append(gone())
            return swig_peer.Stranger().this
        with self.assertRaises(TypeError):
            _Orvanel.Orvanel_HitTestPoint(holder[0], support.PropertyProxy(this))
        self.assertEqual(seen, [False])
        self.assertTrue(gone())


def delete(holder):
    _Orvanel.delete_Orvanel(holder[0])


def delete_by_address(holder):
    holder[0].disown()
    _Orvanel.delete_Orvanel(swig_peer.orvanelAt(int(holder[0])))


def drop(holder):
    del holder[:]


class Carriers(unittest.TestCase):
    """What a foreign module owns lives as long as its carrier."""

    def setUp(self):
        self.object = valid_calls.make_object()

    def records_with(self, first, change):
        """DrawSpecificKeyFrame with `first`, and a second record in front of whose conversion `change` runs."""
        other = swig_peer.KeyFrameMaskInfo()

        def this():
            change()
            return other.this
        self.assertEqual(_Orvanel.Orvanel_DrawSpecificKeyFrame(self.object, first, support.PropertyProxy(this), 5L), 0)

    def test_a_proxy_that_loses_its_carrier(self):
        proxy = support.NewStyleProxy(swig_peer.KeyFrameMaskInfo().this)
        alive = []

        def lose():
            alive.append(sys.getrefcount(proxy.this))
            proxy.this = None
        self.records_with(proxy, lose)
        # The attribute, the call's own reference and getrefcount's argument.
        self.assertEqual(alive, [3])

    def test_a_link_of_a_chain_that_is_replaced(self):
        chain = swig_peer.Stranger()
        chain.this.append(swig_peer.KeyFrameMaskInfo().this)
        alive = []

        def replace():
            alive.append(sys.getrefcount(chain.this.next()))
            chain.this.append(swig_peer.Stranger().this)
        self.records_with(chain, replace)
        self.assertEqual(alive, [3])

    def test_a_vector_that_the_conversion_of_its_items_ends(self):
        vector = support.NewStyleProxy(swig_peer.MPointFVector().this)

        class Number(object):
            def __float__(self):
                vector.this = None
                return 0.5
        _Orvanel.Orvanel_SetDevSettingPoints([(Number(), 0.5, 0, 0, 0)] * 100, vector)
        self.assertIsNone(vector.this)

    def test_a_record_whose_pointer_is_taken_away(self):
        """A pointer is read after all conversions: by then there is none."""
        record = swig_peer.KeyFrameMaskInfo()
        # A pointer stands behind the two fields that every object has.
        field = ctypes.c_void_p.from_address(id(record.this) + object.__basicsize__)
        self.assertEqual(field.value, int(record.this))
        before = _Orvanel.Orvanel_GetCurrentPoints(self.object)

        def take():
            address.append(field.value)
            field.value = None
        address = []
        self.records_with(record, take)
        field.value = address[0]
        self.assertEqual(_Orvanel.Orvanel_GetCurrentPoints(self.object), before)

    def test_an_object_that_its_own_conversion_deletes(self):
        second = support.Orvanel()
        carrier = swig_peer.orvanelAt(int(second.this)).this

        class Once(object):
            @property
            def this(self):
                _Orvanel.delete_Orvanel(carrier)
                return carrier
        second.this.disown()
        self.assertIsNone(_Orvanel.delete_Orvanel(Once()))
        self.assertEqual(int(carrier), 0)


if __name__ == '__main__':
    unittest.main()
