// SPDX-License-Identifier: MIT
#include "binding/opaque_object.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <string>
#include <utility>

#include "binding/opaque_chain.h"
#include "binding/type_registry.h"
#include "binding/type_table.h"
#include "callback/py_ref.h"
#include "overlay/orvanel.h"

namespace binding {

namespace {

OpaqueObject *cast(PyObject *object) {
    return reinterpret_cast<OpaqueObject *>(object);
}

/// Hands the pointee to the destroy function that the proxy class brought, in an object that does not own it. An error
/// that is pending when an object is released, in a stack that is being unwound for instance, outlives this.
void destroyPointee(const OpaqueObject &object) {
    const ClassRecord *const record = object.type ? static_cast<ClassRecord *>(object.type->classRecord) : nullptr;
    // A reference of our own: the function may register another class.
    const PyRef destroy = PyRef::share(record ? record->destroy : nullptr);
    if (!destroy) {
        std::printf("swig/python detected a memory leak of type '%s', no destructor found.\n",
                    object.type ? shownName(object.type) : "unknown");
        std::fflush(stdout);
        return;
    }
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    // Nobody will have anything to unlock the texture with.
    if (object.pointer && object.type == typeRecordOf<Orvanel>())
        static_cast<Orvanel *>(object.pointer)->UnlockTextureOfThread();
    const PyRef argument = PyRef::adopt(makeOpaque(object.pointer, object.type, Ownership::Borrowed));
    const PyRef result =
        PyRef::adopt(argument ? PyObject_CallFunctionObjArgs(destroy.get(), argument.get(), nullptr) : nullptr);
    if (!result)
        PyErr_WriteUnraisable(destroy.get());
    PyErr_Restore(type, value, traceback);
}

void release(PyObject *self) {
    OpaqueObject *const object = cast(self);
    PyObject *const next = object->next;
    if (object->owns)
        destroyPointee(*object);
    PyObject_Del(self);
    releaseChain(next);
}

bool appendText(std::string &text, OpaqueObject *object) {
    const PyRef link = PyRef::adopt(PyString_FromFormat("<Swig Object of type '%s' at %p>",
                                                        object->type ? shownName(object->type) : "unknown",
                                                        static_cast<void *>(object)));
    if (!link)
        return false;
    text += PyString_AS_STRING(link.get());
    return true;
}

/// The texts of all objects of the chain.
PyObject *represent(PyObject *self) {
    try {
        std::string text;
        OpaqueObject *object = cast(self);
        for (std::size_t left = chainLength(object); left > 0; --left, object = nextInChain(object)) {
            if (!appendText(text, object))
                return nullptr;
        }
        return PyString_FromStringAndSize(text.data(), static_cast<Py_ssize_t>(text.size()));
    } catch (const std::exception &) {
        return PyErr_NoMemory();
    }
}

PyObject *compare(PyObject *left, PyObject *right, int operation) {
    const OpaqueObject *const first = asOpaque(left);
    const OpaqueObject *const second = asOpaque(right);
    if (!first || !second || (operation != Py_EQ && operation != Py_NE)) {
        Py_INCREF(Py_NotImplemented);
        return Py_NotImplemented;
    }
    return PyBool_FromLong((first->pointer == second->pointer) == (operation == Py_EQ));
}

PyObject *address(PyObject *self) {
    return PyLong_FromVoidPtr(cast(self)->pointer);
}

PyObject *setOwnership(PyObject *self, int owns) {
    cast(self)->owns = owns;
    Py_RETURN_NONE;
}

PyObject *disown(PyObject *self, PyObject *) {
    return setOwnership(self, 0);
}

PyObject *acquire(PyObject *self, PyObject *) {
    return setOwnership(self, 1);
}

PyObject *own(PyObject *self, PyObject *args) {
    PyObject *flag = nullptr;
    if (!PyArg_UnpackTuple(args, "own", 0, 1, &flag))
        return nullptr;
    const int owns = flag ? PyObject_IsTrue(flag) : cast(self)->owns;
    if (owns < 0)
        return nullptr;
    PyObject *const before = PyBool_FromLong(cast(self)->owns);
    cast(self)->owns = owns;
    return before;
}

PyObject *append(PyObject *self, PyObject *object) {
    OpaqueObject *const head = asOpaque(object);
    if (!head) {
        PyErr_SetString(PyExc_TypeError, "append() takes an opaque pointer object");
        return nullptr;
    }
    if (chainReaches(head, cast(self))) {
        PyErr_SetString(PyExc_ValueError, "append() would close a circle");
        return nullptr;
    }
    Py_INCREF(object);
    releaseChain(std::exchange(cast(self)->next, object));
    Py_RETURN_NONE;
}

PyObject *next(PyObject *self, PyObject *) {
    PyObject *const following = cast(self)->next ? cast(self)->next : Py_None;
    Py_INCREF(following);
    return following;
}

PyMethodDef methods[] = {
    {"disown", disown, METH_NOARGS, "Releasing the object leaves the pointee alone."},
    {"acquire", acquire, METH_NOARGS, "Releasing the object destroys the pointee."},
    {"own", own, METH_VARARGS, "own([flag]) -> bool: whether the object owned its pointee; sets the flag when given."},
    {"append", append, METH_O, "Chains another opaque object of the same proxy."},
    {"next", next, METH_NOARGS, "The next object of the chain, or None."},
    {nullptr, nullptr, 0, nullptr},
};

PyNumberMethods numberMethods;

} // namespace

PyTypeObject opaqueType = {PyVarObject_HEAD_INIT(nullptr, 0)};
const PyTypeObject *lastForeignOpaqueType = nullptr;

bool prepareOpaqueType() {
    if (opaqueType.tp_flags & Py_TPFLAGS_READY)
        return true;
    numberMethods.nb_int = address;
    numberMethods.nb_long = address;
    opaqueType.tp_name = typeRegistry.runtimeVersion() == RuntimeVersion::Three ? "PySwigObject" : "SwigPyObject";
    opaqueType.tp_doc = "Carries a pointer of the extension's own types.";
    opaqueType.tp_basicsize = sizeof(OpaqueObject);
    opaqueType.tp_flags = Py_TPFLAGS_DEFAULT;
    opaqueType.tp_dealloc = release;
    opaqueType.tp_repr = represent;
    opaqueType.tp_richcompare = compare;
    opaqueType.tp_hash = PyObject_HashNotImplemented;
    opaqueType.tp_as_number = &numberMethods;
    opaqueType.tp_methods = methods;
    opaqueType.tp_getattro = PyObject_GenericGetAttr;
    return PyType_Ready(&opaqueType) == 0;
}

PyObject *makeOpaque(void *pointer, TypeRecord *pointerType, Ownership ownership) {
    OpaqueObject *const object = PyObject_New(OpaqueObject, &opaqueType);
    if (!object)
        return nullptr;
    object->pointer = pointer;
    object->type = pointerType;
    object->owns = ownership == Ownership::Owned;
    object->next = nullptr;
    return reinterpret_cast<PyObject *>(object);
}

OpaqueObject *recogniseOpaque(PyObject *object) {
    const PyTypeObject *const objectType = Py_TYPE(object);
    // A class that a script gave one of these names has another layout.
    if ((objectType->tp_flags & Py_TPFLAGS_HEAPTYPE) ||
        objectType->tp_basicsize < static_cast<Py_ssize_t>(sizeof(OpaqueObject)))
        return nullptr;
    if (std::strcmp(objectType->tp_name, "SwigPyObject") != 0 && std::strcmp(objectType->tp_name, "PySwigObject") != 0)
        return nullptr;
    lastForeignOpaqueType = objectType;
    return cast(object);
}

} // namespace binding
