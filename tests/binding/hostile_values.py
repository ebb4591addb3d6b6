# SPDX-License-Identifier: MIT
"""Values that run code when an entry looks at them, and random arguments made of them."""

import weakref

import _Orvanel
import specimens
import support
import swig_peer
import valid_calls
from grammar import Grammar

HOSTILITY = 0.35


class Number(object):
    """Meddles while it is converted. What it converts to is small: sizes are read from such values, too."""

    def __init__(self, world):
        self.world = world

    def _convert(self, good):
        self.world.meddle()
        chance = self.world.random.random()
        if chance < 0.1:
            return self.world.random.choice((None, 'text', (), 10 ** 30))
        return good

    def __int__(self):
        return self._convert(self.world.random.randrange(-3, 80))

    def __long__(self):
        return self._convert(long(self.world.random.randrange(-3, 80)))

    def __float__(self):
        return self._convert(self.world.random.random())

    __index__ = __trunc__ = __int__

    def __nonzero__(self):
        self.world.meddle()
        return True

    def __del__(self):
        self.world.meddle()


class OldNumber:
    """The same as an instance of an old-style class: every look at it is a method call."""

    def __init__(self, world):
        self.world = world

    def __getattr__(self, name):
        self.world.meddle()
        if name in ('__int__', '__long__', '__trunc__'):
            return lambda: 3
        if name == '__float__':
            return lambda: 0.25
        raise AttributeError(name)


class IntNumber(int):
    """Passes for an int, with methods of its own."""
    world = None

    def __int__(self):
        self.world.meddle()
        return 5

    __long__ = __index__ = __int__


class Key(object):
    """Collides with a key of a setting, and meddles while it is compared."""

    def __init__(self, world, number):
        self.world, self.number = world, number

    def __hash__(self):
        return self.number

    def __eq__(self, other):
        self.world.meddle()
        return self.world.random.random() < 0.5

    def __ne__(self, other):
        return not self == other


class Finalised(object):
    """Harmless until its last reference goes."""

    def __init__(self, world):
        self.world = world

    def __del__(self):
        self.world.meddle()


class Cycle(object):
    """A circle that only the collector frees; with it goes something that has a finaliser or a watching weak reference."""

    def __init__(self, world):
        self.me = self
        self.last = Finalised(world)
        self.watch = weakref.ref(self.last, lambda _: world.meddle())


class Pointer(object):
    """A proxy whose "this" meddles, and is another one each time."""

    def __init__(self, world, make):
        self.world, self.make = world, make

    @property
    def this(self):
        made = self.make()
        self.world.meddle()
        return made

    def __del__(self):
        self.world.meddle()


class Callable(object):
    """The host's callable, or a part of its renderer."""

    def __init__(self, world, result=None):
        self.world, self.result = world, result

    def __call__(self, *arguments):
        self.world.meddle()
        return self.result

    def __del__(self):
        self.world.meddle()


class Renderer(object):
    """What Create asks for its window and its device. There is no device: an address from here would be followed."""

    def __init__(self, world):
        self.world = world

    def __getattr__(self, name):
        self.world.meddle()
        if name == 'GetWnd':
            return Callable(self.world, self.world.random.choice((specimens.valid_pointer('_p_int'), None, 5, Number(self.world))))
        if name == 'GetRenderName':
            return Callable(self.world, self.world.random.choice(('D3D9', 'D3D9x', None, u'D3D9')))
        if name in ('GetD3D', 'GetD3DDevice'):
            return Callable(self.world, self.world.random.choice((None, 5, 'text')))
        raise AttributeError(name)


def proxy_class(world):
    """A class for swigregister: wrapping a result and ending an object meddle."""

    class Proxy(support.Orvanel):
        def __new__(cls, *arguments):
            world.meddle()
            return object.__new__(cls)

        @staticmethod
        def __swig_destroy__(this):
            world.meddle()
            return _Orvanel.delete_Orvanel(this)

    return Proxy


class HostileGrammar(Grammar):
    """Random arguments of which many run code. They remember what they are made of, so that it can be changed later."""

    def __init__(self, seed, world):
        Grammar.__init__(self, seed)
        self.world = world

    @property
    def target(self):
        return self.world.target()

    @target.setter
    def target(self, value):
        pass

    def is_hostile(self):
        return self.random.random() < HOSTILITY

    def leaf(self):
        if not self.is_hostile():
            return Grammar.leaf(self)
        number = IntNumber(7)
        number.world = self.world
        return self.random.choice((lambda: Number(self.world), lambda: OldNumber(self.world), lambda: number,
                                   lambda: Finalised(self.world), lambda: Callable(self.world), lambda: Renderer(self.world),
                                   lambda: Pointer(self.world, self.world.target), lambda: Cycle(self.world)))()

    def number(self):
        return Number(self.world) if self.is_hostile() else Grammar.number(self)

    def sequence(self, depth):
        made = Grammar.sequence(self, depth)
        return self.world.keep(made) if isinstance(made, list) else made

    def mapping(self, depth):
        made = self.world.keep(Grammar.mapping(self, depth))
        for _ in range(self.random.randrange(3)):
            made[Key(self.world, self.random.randrange(11))] = self.value(depth + 1)
        return made

    def setting(self):
        made = self.world.attempt(_Orvanel.Orvanel_GetCurrentDevSetting, self.target) or {0: True}
        if self.is_hostile():
            made = dict((Key(self.world, key), value) for key, value in made.items())
        for _ in range(self.random.randrange(4)):
            made[self.random.randrange(11)] = self.value(1)
        for item in made.values():
            if isinstance(item, (list, dict)):
                self.world.keep(item)
        return self.world.keep(made)

    def runs(self):
        return self.world.keep([(self.number(), self.number(), self.number()) for _ in range(self.random.randrange(9))])

    def pair(self):
        return tuple(self.random.choice((lambda: Number(self.world), lambda: 64))() for _ in range(2))

    def triples(self):
        return self.world.keep([self.world.keep([self.leaf(), self.leaf(), self.leaf()]) for _ in range(self.random.randrange(5))])

    def points(self):
        return self.world.keep([(self.number(), self.number(), self.leaf(), self.leaf(), self.leaf()) for _ in range(self.random.randrange(6))])

    def keyframe(self):
        return self.world.keep({4: self.leaf(), 5: self.random.choice((self.points, lambda: valid_calls.POINT_BYTES))()})

    def object(self):
        if not self.is_hostile():
            return Grammar.object(self)
        return self.random.choice((self.setting, self.runs, self.pair, self.triples, self.points, self.keyframe,
                                   lambda: Callable(self.world), lambda: Renderer(self.world)))()

    def pointer(self, name):
        """What the pointers of a caller's own objects are made with."""
        made = {'_p_Orvanel': lambda: self.world.target(),
                '_p_MPoint': lambda: self.world.own(swig_peer.MPoint()),
                '_p_HoverPoint': self.hover_point,
                '_p_std__vectorTunsigned_int_t': lambda: self.world.own(swig_peer.UIntVector([self.random.randrange(12) for _ in range(3)])),
                '_p_std__vectorTMPointF_t': lambda: self.world.own(swig_peer.MPointFVector()),
                '_p_Quill__KeyFrameMaskInfo': self.world.record}
        return made.get(name, lambda: specimens.valid_pointer(name))

    def hover_point(self):
        made = self.world.own(swig_peer.HoverPoint())
        made.lineIndex = self.random.randrange(-2, 14)
        return made

    def argument(self, shape):
        if shape.kind == 'object' or self.random.random() < 0.08:
            return Grammar.argument(self, shape)
        if not shape.type:
            # Only numbers are taken; anything else has to be refused, whatever it would convert to.
            return self.leaf() if self.random.random() < 0.1 else Grammar.argument(self, shape)
        make = self.pointer(shape.type)
        return Pointer(self.world, make) if self.is_hostile() else make()
