// SPDX-License-Identifier: MIT
#pragma once

#include "binding/opaque_object.h"
#include "callback/py_ref.h"

namespace binding {

/// Where in a Python object a pointer was found. What owns its pointee is the carrier, so that one lives as long as
/// this does, and the pointer is read when it is needed: converting a later argument may have run code that took it
/// away.
struct PointerArgument {
    /// What carries the pointer, borrowed; null for None.
    OpaqueObject *carrier = nullptr;
    /// How the carried pointer becomes one of the type asked for; null: it is one.
    void *(*convert)(void *pointer, int *newMemory) = nullptr;
    /// Keeps the carrier alive when it is not itself one of the call's arguments.
    PyRef keptAlive;

    void *pointer() const {
        if (!carrier)
            return nullptr;
        int newMemory = 0;
        return convert ? convert(carrier->pointer, &newMemory) : carrier->pointer;
    }
};

/// The long way of convertPointer: casts, subclasses, chains, proxies.
bool searchPointer(PyObject *object, TypeRecord *type, PointerArgument &result);

/// The short way: the object if it is an opaque one of exactly that type, else null.
inline OpaqueObject *exactCarrier(PyObject *object, TypeRecord *type) {
    if (Py_TYPE(object) != &opaqueType && Py_TYPE(object) != lastForeignOpaqueType)
        return nullptr;
    OpaqueObject *const opaque = reinterpret_cast<OpaqueObject *>(object);
    return opaque->type == type ? opaque : nullptr;
}

/// Takes a pointer of that type out of an opaque object, a proxy whose "this" leads to one, or None (a null pointer).
/// False, without a Python error pending, for anything else.
inline bool convertPointer(PyObject *object, TypeRecord *type, PointerArgument &result) {
    if (OpaqueObject *const opaque = exactCarrier(object, type)) {
        result.carrier = opaque;
        return true;
    }
    return object == Py_None || searchPointer(object, type, result);
}

/// The address that an opaque object of any type, or a proxy of one, carries. False, without a Python error pending,
/// for anything else, None included.
bool carriedAddress(PyObject *object, void **address);

/// What Python gets for a pointer that a method returns: None for null, else an opaque object without ownership, inside
/// an instance of the proxy class registered for the type when there is one. New reference, or null with an error
/// pending.
PyObject *wrapPointer(void *pointer, TypeRecord *type);

/// Records the class in which pointers to Orvanel are wrapped, and its destroy function if it has one. False with an
/// error pending.
bool registerProxyClass(PyObject *proxyClass);

/// Forgets the recorded class without touching it: it belonged to an interpreter that is gone.
void forgetProxyClass();

} // namespace binding
