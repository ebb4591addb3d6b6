# SPDX-License-Identifier: MIT
"""What the tests of the scripting interface share: the entry table as data, and an object of every kind."""

import json
import os
import sys
import weakref

BUILD_DIR = os.environ['ORVANEL_BUILD_DIR']
PEER_DIR = os.path.join(BUILD_DIR, 'tests', 'binding')
if PEER_DIR not in sys.path:
    sys.path.insert(0, PEER_DIR)

import _Orvanel

LONG_TESTS = os.environ.get('ORVANEL_LONG_TESTS') == '1'


class Orvanel(object):
    """The least that a proxy class needs."""
    __swig_destroy__ = _Orvanel.delete_Orvanel

    def __init__(self):
        self.this = _Orvanel.new_Orvanel()


_Orvanel.Orvanel_swigregister(Orvanel)


class Record(object):
    """A dictionary whose keys are attributes."""

    def __init__(self, data):
        self.__dict__.update(data)

    def __repr__(self):
        return 'Record(%r)' % self.__dict__


def _as_records(data):
    if isinstance(data, dict):
        return Record(dict((str(key), _as_records(value)) for key, value in data.items()))
    if isinstance(data, list):
        return [_as_records(item) for item in data]
    return str(data) if isinstance(data, unicode) else data


def load_table():
    """The entry table as the module's own sources describe it."""
    with open(os.path.join(BUILD_DIR, 'python', '_Orvanel.json')) as source:
        return _as_records(json.load(source))


class OldStyleProxy:
    def __init__(self, this):
        self.this = this


class NewStyleProxy(object):
    def __init__(self, this):
        self.this = this


class SlotProxy(object):
    __slots__ = ('this',)

    def __init__(self, this):
        self.this = this


class PropertyProxy(object):
    """Makes what "this" gives anew each time it is asked."""

    def __init__(self, make):
        self.make = make

    this = property(lambda self: self.make())


class RaisingProxy(object):
    @property
    def this(self):
        raise RuntimeError('no pointer for you')


class OldStyleRaisingProxy:
    def __getattr__(self, name):
        raise KeyError(name)


class SelfProxy(object):
    """Is its own "this"."""

    @property
    def this(self):
        return self


def proxies_of(this):
    """The same pointer in every kind of proxy. The weak one comes with what keeps its referent alive."""
    strong = NewStyleProxy(this)
    return [('old-style proxy', OldStyleProxy(this), None),
            ('new-style proxy', strong, None),
            ('proxy with slots', SlotProxy(this), None),
            ('proxy with a property', PropertyProxy(lambda: this), None),
            ('proxy in a proxy', NewStyleProxy(OldStyleProxy(this)), None),
            ('weak proxy', weakref.proxy(strong), strong)]
