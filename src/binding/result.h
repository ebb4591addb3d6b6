// SPDX-License-Identifier: MIT
#pragma once

// How a method's result becomes a Python object. Overloads of toPython give a new reference, or null with an error
// pending.

#include <concepts>
#include <cstdint>
#include <memory>
#include <utility>

#include "binding/pointer_conversion.h"
#include "binding/type_registry.h"
#include "platform/win_types.h"

namespace binding {

/// A pointer that the Python object will own.
template <typename T>
struct Owned {
    std::unique_ptr<T> pointee;
};

/// Nothing, or the Python error that is pending.
struct Outcome {
    bool succeeded;
};

inline PyObject *toPython(Outcome outcome) {
    if (!outcome.succeeded)
        return nullptr;
    Py_RETURN_NONE;
}

inline PyObject *toPython(bool value) {
    return PyBool_FromLong(value);
}

/// INT, BOOL and HRESULT: 32 bits and signed, on every platform an int.
template <std::signed_integral T>
requires(sizeof(T) == 4) PyObject *toPython(T value) {
    return PyInt_FromLong(static_cast<long>(value));
}

/// UINT: never negative, so beyond 31 bits a long where the interpreter's int has no more.
inline PyObject *toPython(UINT value) {
    return PyInt_FromSize_t(value);
}

/// LONGLONG: an int when it fits 32 bits, else a long, on every platform.
template <std::signed_integral T>
requires(sizeof(T) == 8) PyObject *toPython(T value) {
    if (std::in_range<std::int32_t>(value))
        return PyInt_FromLong(static_cast<long>(value));
    return PyLong_FromLongLong(value);
}

/// A method that builds a Python object itself: its reference is passed on.
inline PyObject *toPython(PyObject *object) {
    return object;
}

template <typename T>
PyObject *toPython(T *pointer) {
    return wrapPointer(pointer, typeRecordOf<T>());
}

template <typename T>
PyObject *toPython(Owned<T> owned) {
    if (!owned.pointee)
        Py_RETURN_NONE;
    PyObject *const object = makeOpaque(owned.pointee.get(), typeRecordOf<T>(), Ownership::Owned);
    if (object)
        owned.pointee.release();
    return object;
}

} // namespace binding
