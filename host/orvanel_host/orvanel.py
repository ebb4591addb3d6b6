# SPDX-License-Identifier: MIT
"""The proxy class over the flat entries of `_Orvanel`.

Every entry `Orvanel_Name(self, ...)` becomes a method `Name(...)`. The class is registered with the module, so an
`Orvanel *` that the module hands out arrives as an instance of it.
"""
import contextlib
import types

import _Orvanel

from . import hostkit

_ENTRY_PREFIX = 'Orvanel_'
# Entries that take no object: their first argument is already the first one of their own.
_STATIC_ENTRIES = frozenset(('DumpBitmap', 'GenerateSpecificKeyFrame', 'SetDevSettingPoints', 'SetDevSettingPointsBuf'))
# Not a method of the object.
_REGISTRATION = 'swigregister'


class Orvanel(object):
    """One video preview's selection overlay. See the module's API reference for the methods."""

    __swig_destroy__ = _Orvanel.delete_Orvanel

    def __init__(self):
        self.this = _Orvanel.new_Orvanel()

    def __repr__(self):
        return '<orvanel_host.orvanel.Orvanel over %r>' % (self.this,)

    def GetKeyFrameMaskInfo(self, duration):
        """A record of the current outline. The module forgets it, so it is freed with the Python object."""
        record = _Orvanel.Orvanel_GetKeyFrameMaskInfo(self, duration)
        if record is not None:
            record.thisown = True
        return record

    @contextlib.contextmanager
    def texture_locked(self):
        """Holds off every change of the overlay buffer, as long as somebody reads it."""
        self.LockTexture()
        try:
            yield
        finally:
            self.UnlockTexture()


def _add_entries():
    for entry, function in vars(_Orvanel).items():
        name = entry[len(_ENTRY_PREFIX):]
        if not entry.startswith(_ENTRY_PREFIX) or name == _REGISTRATION or name in vars(Orvanel):
            continue
        # A built-in function does not bind to an instance by itself.
        method = staticmethod(function) if name in _STATIC_ENTRIES else types.MethodType(function, None, Orvanel)
        setattr(Orvanel, name, method)


_add_entries()
_Orvanel.Orvanel_swigregister(Orvanel)

EVENT_NAMES = dict((getattr(_Orvanel, name), name) for name in (
    'ECB_POINT_ADD', 'ECB_POINT_REMOVE', 'ECB_MASK_CREATE', 'ECB_MASK_UPDATE', 'ECB_MASK_REMOVE', 'ECB_POINT_UPDATE'))
