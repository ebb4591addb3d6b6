# SPDX-License-Identifier: MIT
"""Registries that runtimes of older releases have published, made by hand with ctypes."""

import unittest

from support import run_script

PRELUDE = '''
import ctypes, imp, sys

class TypeRecord(ctypes.Structure): pass
class CastRecord(ctypes.Structure): pass
class ModuleRecord(ctypes.Structure): pass
TypeRecord._fields_ = [('name', ctypes.c_char_p), ('text', ctypes.c_char_p), ('dynamicCast', ctypes.c_void_p),
                       ('casts', ctypes.POINTER(CastRecord)), ('classRecord', ctypes.c_void_p), ('owns', ctypes.c_int)]
CastRecord._fields_ = [('type', ctypes.POINTER(TypeRecord)), ('convert', ctypes.c_void_p), ('next', ctypes.POINTER(CastRecord)),
                       ('previous', ctypes.POINTER(CastRecord))]
ModuleRecord._fields_ = [('types', ctypes.POINTER(ctypes.POINTER(TypeRecord))), ('size', ctypes.c_size_t),
                         ('next', ctypes.POINTER(ModuleRecord)), ('ownTypes', ctypes.c_void_p), ('ownCasts', ctypes.c_void_p),
                         ('clientData', ctypes.c_void_p)]

point = TypeRecord('_p_MPoint', 'MPoint *')
cast = CastRecord(ctypes.pointer(point))
point.casts = ctypes.pointer(cast)
types = (ctypes.POINTER(TypeRecord) * 2)(ctypes.pointer(point))
head = ModuleRecord(types, 1)
head.next = ctypes.pointer(head)

def ring():
    modules, at = [], head.next
    while ctypes.addressof(at.contents) != ctypes.addressof(head):
        modules.append(at.contents)
        at = at.contents.next
    return modules

def names(module):
    return [module.types[index].contents.name for index in range(module.size)]

def publish(module, attribute, object):
    sys.modules.setdefault(module, imp.new_module(module))
    setattr(sys.modules[module], attribute, object)

new_cobject = ctypes.pythonapi.PyCObject_FromVoidPtr
new_cobject.restype, new_cobject.argtypes = ctypes.py_object, [ctypes.c_void_p, ctypes.c_void_p]
new_capsule = ctypes.pythonapi.PyCapsule_New
new_capsule.restype, new_capsule.argtypes = ctypes.py_object, [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p]
address = ctypes.addressof(head)
'''

JOINED = '''
import _Orvanel
assert len(ring()) == 1 and '_p_Orvanel' in names(ring()[0])
assert names(ring()[0]) == sorted(names(ring()[0]))
object = _Orvanel.new_Orvanel()
assert type(object).__name__ == %r, type(object)
assert repr(object).startswith("<Swig Object of type 'Orvanel *' at 0x")
_Orvanel.delete_Orvanel(object)
print 'done'
'''


class OldRuntimes(unittest.TestCase):
    def check(self, script):
        self.assertEqual(run_script(PRELUDE + script), ('done\n', '', 0))

    def test_version_three(self):
        self.check("publish('swig_runtime_data3', 'type_pointer', new_cobject(address, None))" + JOINED % 'PySwigObject')

    def test_version_four_before_capsules(self):
        self.check("publish('swig_runtime_data4', 'type_pointer', new_cobject(address, None))" + JOINED % 'SwigPyObject')

    def test_version_four(self):
        self.check("name = 'swig_runtime_data4.type_pointer_capsule'\n"
                   "publish('swig_runtime_data4', 'type_pointer_capsule', new_capsule(address, name, None))" + JOINED % 'SwigPyObject')

    def test_both_attributes_side_by_side(self):
        self.check("name = 'swig_runtime_data4.type_pointer_capsule'\n"
                   "other = ModuleRecord(types, 1)\n"
                   "other.next = ctypes.pointer(other)\n"
                   "publish('swig_runtime_data4', 'type_pointer', new_cobject(ctypes.addressof(other), None))\n"
                   "publish('swig_runtime_data4', 'type_pointer_capsule', new_capsule(address, name, None))" + JOINED % 'SwigPyObject')

    def test_version_five_is_another_registry(self):
        self.check("publish('swig_runtime_data5', 'type_pointer_capsule', new_capsule(address, 'swig_runtime_data5.type_pointer_capsule', None))\n"
                   "import _Orvanel\nassert ring() == []\nassert hasattr(sys.modules['swig_runtime_data4'], 'type_pointer_capsule')\nprint 'done'\n")


if __name__ == '__main__':
    unittest.main()
