# SPDX-License-Identifier: MIT
"""Chains of opaque objects, as long as a host makes them and as crooked as other modules let them become."""

import ctypes
import itertools
import unittest

import _Orvanel
import support
import swig_peer

MANY = 100000


class Chains(unittest.TestCase):
    def setUp(self):
        self.proxy = support.Orvanel()
        _Orvanel.Orvanel_SetVideoCoordinate(self.proxy, 8, 8, 0, 0, 8, 8)

    def buffer(self):
        """An opaque object of the module's own."""
        return _Orvanel.Orvanel_PrepareKeyframe(self.proxy, 0)

    def chain(self, make):
        head = last = make()
        for _ in xrange(MANY - 1):
            link = make()
            last.append(link)
            last = link
        return head

    def test_a_long_chain_of_our_own(self):
        chain = self.chain(self.buffer)
        self.assertEqual(repr(chain).count('<Swig Object of type '), MANY)
        # Not what is asked for, at any of its links.
        self.assertRaises(TypeError, _Orvanel.Orvanel_HitTestPoint, self.proxy, chain)
        del chain

    def test_a_long_chain_of_both_kinds(self):
        """A peer releases its objects by recursion: behind ours it is never asked to."""
        makers = itertools.cycle((self.buffer, swig_peer.bytes))
        chain = self.chain(lambda: next(makers)())
        del chain

    def circle(self):
        """Peers close circles without a look."""
        link = swig_peer.MPoint().this
        link.append(link)
        if link.next() is not link:
            self.fail('the peer has become more careful')
        return link

    def test_a_circle_that_does_not_hold_what_is_asked_for(self):
        circle = self.circle()
        self.assertRaises(TypeError, _Orvanel.Orvanel_AddPointInLine, self.proxy, circle)
        self.assertRaises(TypeError, _Orvanel.Orvanel_IsMask, circle)
        self.assertEqual(_Orvanel.Orvanel_HitTestPoint(self.proxy, circle), -1)
        self.open(circle)

    def test_a_circle_behind_an_object_of_our_own(self):
        circle, buffer = self.circle(), self.buffer()
        buffer.append(circle)
        self.assertEqual(repr(buffer).count('<Swig Object of type '), 2)
        self.assertEqual(_Orvanel.Orvanel_HitTestPoint(self.proxy, buffer), -1)
        self.assertRaises(TypeError, _Orvanel.Orvanel_AddPointInLine, self.proxy, buffer)
        self.open(circle)

    @staticmethod
    def open(link):
        """Takes the reference to itself from a circle of one."""
        class Opaque(ctypes.Structure):
            _fields_ = [('pointer', ctypes.c_void_p), ('type', ctypes.c_void_p), ('owns', ctypes.c_int), ('next', ctypes.c_void_p)]
        fields = Opaque.from_address(id(link) + object.__basicsize__)
        assert fields.next == id(link)
        fields.next = None
        ctypes.pythonapi.Py_DecRef(ctypes.py_object(link))


if __name__ == '__main__':
    unittest.main()
