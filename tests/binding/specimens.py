# SPDX-License-Identifier: MIT
"""Python objects of every kind, and what the entries make of them: an oracle that knows the rules and not the code."""

import weakref

import support
import swig_peer

INT32_MIN, INT32_MAX = -2 ** 31, 2 ** 31 - 1
INT64_MIN, INT64_MAX = -2 ** 63, 2 ** 63 - 1
FLOAT_MAX = 3.4028234663852886e38


class Specimen(object):
    """`pointer`: the registered name of the type whose pointer it carries, '' for null, None for no pointer."""

    def __init__(self, name, value, pointer=None, keep=None):
        self.name, self.value, self.pointer, self.keep = name, value, pointer, keep


def _opaque_objects():
    """One opaque object of each registered type that can stand alone, by its registered name, and its owner."""
    slot = swig_peer.RecordSlot()
    owners = [('_p_HoverPoint', swig_peer.HoverPoint()),
              ('_p_IVideoTextureSyncer', swig_peer.TenUnitSyncer()),
              ('_p_MPoint', swig_peer.MPoint()),
              ('_p_Orvanel', support.Orvanel()),
              ('_p_Quill__KeyFrameMaskInfo', swig_peer.KeyFrameMaskInfo()),
              ('_p_std__vectorTMPointF_t', swig_peer.MPointFVector()),
              ('_p_std__vectorTunsigned_int_t', swig_peer.UIntVector()),
              ('_p_Stranger', swig_peer.Stranger())]
    objects = [(name, owner.this, owner) for name, owner in owners]
    objects += [('_p_p_Quill__KeyFrameMaskInfo', slot.address(), slot)]
    objects += [(name, make(), None) for name, make in (
        ('_p_loom__IAllocator', swig_peer.anAllocator), ('_p__ECallBack_State', swig_peer.anEventCode),
        ('_p__EControlState', swig_peer.anInputCode), ('_p_double', swig_peer.aDouble), ('_p_float', swig_peer.aFloat),
        ('_p_int', swig_peer.anInt), ('_p_long', swig_peer.aLong), ('_p_long_long', swig_peer.aLongLong),
        ('_p_unsigned_char', swig_peer.bytes), ('_p_unsigned_int', swig_peer.anUnsignedInt),
        ('_p_unsigned_long', swig_peer.anUnsignedLong), ('_p_unsigned_long_long', swig_peer.anUnsignedLongLong),
        ('_p_unsigned_short', swig_peer.anUnsignedShort), ('_p_wchar_t', swig_peer.aWideChar),
        ('_p_signed_char', swig_peer.aSignedChar))]
    return objects


OPAQUE = _opaque_objects()


def valid_pointer(name):
    for registered, value, owner in OPAQUE:
        if registered == name:
            return value
    raise KeyError(name)


def _specimens():
    class IntSubclass(int):
        pass

    class FloatSubclass(float):
        pass

    class Empty(object):
        pass

    class Convertible(object):
        """Would convert where the interpreter asks politely; the entries do not."""
        __int__ = __long__ = __float__ = __nonzero__ = __index__ = lambda self: 1

    stranger = swig_peer.Stranger()
    gone = support.NewStyleProxy(stranger.this)
    dead = weakref.proxy(gone)
    del gone
    plain = [('None', None), ('True', True), ('False', False), ('int', 5), ('negative int', -7), ('zero', 0),
             ('largest INT', INT32_MAX), ('smallest INT', INT32_MIN), ('over INT', INT32_MAX + 1), ('under INT', INT32_MIN - 1),
             ('int 10**12', 10 ** 12), ('long', 5L), ('long 0', 0L), ('long over INT', long(INT32_MAX + 1)), ('long 10**12', 10L ** 12),
             ('long under INT', long(INT32_MIN - 1)), ('largest LONGLONG', long(INT64_MAX)), ('smallest LONGLONG', long(INT64_MIN)),
             ('over LONGLONG', INT64_MAX + 1), ('under LONGLONG', INT64_MIN - 1), ('long 10**30', 10 ** 30), ('long 10**400', 10 ** 400),
             ('long -10**400', -10 ** 400), ('int subclass', IntSubclass(9)), ('float', 1.5), ('float 0.0', 0.0),
             ('float subclass', FloatSubclass(2.5)), ('float 1e39', 1e39), ('float -1e39', -1e39), ('infinity', float('inf')),
             ('NaN', float('nan')), ('largest float', FLOAT_MAX), ('over float', FLOAT_MAX * (1 + 2.0 ** -50)), ('complex', 1j), ('str', 'text'), ('digits', '5'),
             ('unicode', u'text'), ('bytearray', bytearray('b')), ('list', []), ('list of int', [5]), ('tuple', ()),
             ('tuple of int', (5,)), ('dict', {}), ('dict with this', {'this': stranger.this}), ('set', set()), ('function', _specimens),
             ('builtin', len), ('class', Empty), ('instance', Empty()), ('module', support), ('generator', iter([])),
             ('convertible', Convertible()), ('ellipsis', Ellipsis), ('slice', slice(1)), ('type', int),
             ('"this" raises', support.RaisingProxy()), ('old-style "this" raises', support.OldStyleRaisingProxy()),
             ('"this" is itself', support.SelfProxy()), ('"this" is an int', support.NewStyleProxy(5)),
             ('"this" is None', support.NewStyleProxy(None)), ('dead weak proxy', dead)]
    specimens = [Specimen(name, value, '' if value is None else None) for name, value in plain]
    specimens += [Specimen('opaque ' + name, value, name, owner) for name, value, owner in OPAQUE]
    for description, value, owner in support.proxies_of(stranger.this):
        specimens.append(Specimen('stranger in ' + description, value, '_p_Stranger', (owner, stranger)))
    return specimens


SPECIMENS = _specimens()


def refusal(argument, specimen):
    """The exception class with which an argument of this shape refuses the specimen, or None."""
    value = specimen.value
    is_integer = isinstance(value, (int, long))
    if argument.kind == 'object':
        return None
    if argument.kind == 'int':
        return None if is_integer and INT32_MIN <= value <= INT32_MAX else TypeError
    if argument.kind == 'longlong':
        return None if is_integer and INT64_MIN <= value <= INT64_MAX else TypeError
    if argument.kind == 'bool':
        return None if is_integer else TypeError
    if argument.kind == 'float':
        if not is_integer and not isinstance(value, float):
            return TypeError
        return OverflowError if value == value and abs(value) > FLOAT_MAX else None
    if specimen.pointer is None:
        return TypeError
    if specimen.pointer == '':
        return ValueError if argument.refusesNull else None
    return None if specimen.pointer == argument.type else TypeError


def fits(argument, specimen):
    """Whether the specimen would convert by its type alone, which is what chooses among overloads."""
    return refusal(argument, specimen) in (None, ValueError)
