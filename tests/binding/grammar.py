# SPDX-License-Identifier: MIT
"""What the fuzzers of the entries share: random arguments, mostly of the declared types, and what they may not be."""

import random

import _Orvanel
import specimens
import valid_calls

# A display of these sizes is made and cleared again and again; larger ones test the machine's memory.
LARGEST_DISPLAY = 300


class Grammar(object):
    def __init__(self, seed):
        self.random = random.Random(seed)
        self.target = None

    def renew(self):
        self.target = valid_calls.make_object()

    def integer(self):
        kind = self.random.randrange(6)
        if kind == 0:
            return self.random.choice((0, 1, -1, 2, 5, 6, 255, 256))
        if kind == 1:
            return self.random.choice((2 ** 31 - 1, -2 ** 31, 2 ** 31, 2 ** 63 - 1, -2 ** 63, 2 ** 63, 2 ** 64))
        if kind == 2:
            return long(self.random.randrange(-200, 400))
        return self.random.randrange(-200, 400)

    def number(self):
        return self.random.choice((0.0, 0.5, 1.0, -0.25, 2.0, 1e-30, 1e30, 1e300, float('nan'), float('inf'), self.random.random()))

    def leaf(self):
        return self.random.choice((self.integer, self.number, lambda: None, lambda: True, lambda: 'text', lambda: u'\u4e2d',
                                   lambda: valid_calls.POINT_BYTES, lambda: self.random.choice(specimens.SPECIMENS).value))()

    def sequence(self, depth):
        items = [self.value(depth + 1) for _ in range(self.random.randrange(6))]
        return items if self.random.random() < 0.5 else tuple(items)

    def mapping(self, depth):
        return dict((self.random.randrange(11), self.value(depth + 1)) for _ in range(self.random.randrange(8)))

    def setting(self):
        """A device setting with something wrong in it, most of the time."""
        setting = _Orvanel.Orvanel_GetCurrentDevSetting(self.target)
        for _ in range(self.random.randrange(3)):
            setting[self.random.randrange(11)] = self.value(1)
        return setting

    def runs(self):
        return [(self.number(), self.number(), self.number()) for _ in range(self.random.randrange(5))]

    def value(self, depth=0):
        if depth < 3 and self.random.random() < 0.3:
            return self.random.choice((self.sequence, self.mapping))(depth)
        return self.leaf()

    def object(self):
        return self.random.choice((self.value, self.setting, self.runs, lambda: (self.integer(), self.integer()), lambda: (64, 64),
                                   lambda: list(valid_calls.POINTS), lambda: list(valid_calls.FEATHERS)))()

    def argument(self, shape):
        """Mostly what is declared, sometimes anything."""
        if self.random.random() < 0.08:
            return self.value()
        if shape.kind == 'object':
            return self.object()
        if shape.kind in ('int', 'longlong', 'bool'):
            return self.integer()
        if shape.kind == 'float':
            return self.number()
        if shape.type == '_p_Orvanel':
            return self.target
        return specimens.valid_pointer(shape.type) if self.random.random() < 0.9 else None

    def arguments(self, entry):
        valid = valid_calls.arguments(entry, self.target)
        made = [valid[index] if self.random.random() < 0.4 else self.argument(shape) for index, shape in enumerate(entry.arguments)]
        if self.random.random() < 0.05:
            del made[self.random.randrange(len(made) + 1):]
        elif self.random.random() < 0.05:
            made.append(self.value())
        return made


def drop_pending_error():
    """Raising replaces an error that a call has left to whoever comes next."""
    try:
        raise KeyError
    except KeyError:
        pass


class Silence(object):
    def write(self, text):
        pass


def harmless(entry, made):
    """Whether the call stays within the machine's memory and leaves the target alive."""
    if entry.name == 'delete_Orvanel':
        return not made or made[0] is None
    if entry.name in ('Orvanel_SetVideoCoordinate', 'Orvanel_DumpBitmap', 'Orvanel_Convert2SelectionLineUS', 'Orvanel_AdjustPoints'):
        flat = [part for item in made for part in (item if isinstance(item, (tuple, list)) else (item,))]
        return all(not isinstance(part, (int, long)) or part <= LARGEST_DISPLAY for part in flat)
    return True
