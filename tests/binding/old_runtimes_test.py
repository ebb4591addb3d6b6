# SPDX-License-Identifier: MIT
"""Registries that runtimes of older releases have published, made by hand with ctypes."""

import itertools
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


# What a module does that was built before 2.0.4: it knows one attribute, by which it joins or publishes.
OLD_RELEASE = '''
import os
sys.path.insert(0, os.path.join(os.environ['ORVANEL_BUILD_DIR'], 'tests', 'binding'))
import_cobject = ctypes.pythonapi.PyCObject_Import
import_cobject.restype, import_cobject.argtypes = ctypes.c_void_p, [ctypes.c_char_p, ctypes.c_char_p]

def join_as_before_capsules():
    published = sys.modules.get('swig_runtime_data4')
    if not hasattr(published, 'type_pointer'):
        publish('swig_runtime_data4', 'type_pointer', new_cobject(address, None))
        return
    found = ModuleRecord.from_address(import_cobject('swig_runtime_data4', 'type_pointer'))
    head.next = found.next
    found.next = ctypes.pointer(head)
'''

ONE_RING = '''
assert len(ring()) == 2, [names(module) for module in ring()]
for wanted in '_p_Orvanel', '_p_Stranger':
    assert any(wanted in names(module) for module in ring()), wanted
made = _Orvanel.new_Orvanel()
assert _Orvanel.Orvanel_HitTestPoint(made, swig_peer.MPoint()) == -1
_Orvanel.delete_Orvanel(made)
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

    def test_between_an_older_and_a_newer_release(self):
        """Each of the two looks for one attribute only; in whichever order they come, there is one ring."""
        steps = {'old': 'join_as_before_capsules()', 'new': 'import swig_peer', 'own': 'import _Orvanel'}
        for order in itertools.permutations(sorted(steps)):
            # Two that come one after the other without us in between do not find each other; nobody could mend that.
            if order[-1] == 'own':
                continue
            self.check(OLD_RELEASE + '\n'.join(steps[step] for step in order) + ONE_RING)

    def test_version_five_is_another_registry(self):
        self.check("publish('swig_runtime_data5', 'type_pointer_capsule', new_capsule(address, 'swig_runtime_data5.type_pointer_capsule', None))\n"
                   "import _Orvanel\nassert ring() == []\nassert hasattr(sys.modules['swig_runtime_data4'], 'type_pointer_capsule')\nprint 'done'\n")


if __name__ == '__main__':
    unittest.main()
