// SPDX-License-Identifier: MIT
#pragma once

#include "binding/type_record.h"
#include "callback/python.h"

namespace binding {

/// A Python object that carries a raw pointer, its type and an ownership flag. The layout is shared with the opaque
/// objects of other modules, which read and write ours and whose objects are read here.
struct OpaqueObject {
    PyObject_HEAD void *pointer;
    TypeRecord *type;
    int owns;       ///< releasing the object destroys the pointee
    PyObject *next; ///< further opaque objects of the same proxy (several base classes), or null
};

/// Makes the Python type of this module's opaque objects ready. False with a Python error pending.
bool prepareOpaqueType();

/// The Python type of this module's opaque objects; call prepareOpaqueType first.
extern PyTypeObject opaqueType;
/// The type of another module's opaque objects that was met last; null before the first. Such types are never freed.
extern const PyTypeObject *lastForeignOpaqueType;

enum class Ownership { Borrowed, Owned };

/// New reference, or null with an error pending.
PyObject *makeOpaque(void *pointer, TypeRecord *type, Ownership ownership);

/// The long way of asOpaque: by the type's name.
OpaqueObject *recogniseOpaque(PyObject *object);

/// The object as an opaque one, whichever module made it; null when it is something else.
inline OpaqueObject *asOpaque(PyObject *object) {
    if (Py_TYPE(object) == &opaqueType || Py_TYPE(object) == lastForeignOpaqueType)
        return reinterpret_cast<OpaqueObject *>(object);
    return recogniseOpaque(object);
}

} // namespace binding
