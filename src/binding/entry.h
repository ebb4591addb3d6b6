// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "binding/argument.h"
#include "callback/python.h"

namespace binding {

/// How a declared argument looks to whoever describes the table.
struct ArgumentShape {
    const char *text; ///< as in the error texts
    ArgumentKind kind;
    std::size_t pointer; ///< index into kPointerTypes, or kNoPointer
    bool refusesNull;    ///< None is a ValueError
};

enum class ResultKind { Nothing, Int, LongLong, Bool, Object, Pointer, OwnedPointer };

struct ResultShape {
    ResultKind kind;
    std::size_t pointer = kNoPointer;
};

/// One function of the module.
struct Entry {
    const char *name;
    PyCFunction call;
    int flags;                                ///< how the interpreter calls it: METH_O or METH_VARARGS
    std::span<const ArgumentShape> arguments; ///< all of them, self included
    std::size_t required;                     ///< fewer than `arguments` in an overloaded entry
    ResultShape result;
    /// Names of the arguments in Python terms, "self, x, y".
    const char *argumentNames = "";
    /// One line: what it does, units, result codes.
    const char *meaning = "";

    bool isOverloaded() const { return required != arguments.size(); }
};

/// "in method 'NAME', argument N of type 'TEXT'", for a null reference behind "invalid null reference ". `number`
/// counts from 1.
std::string argumentText(const char *name, std::size_t number, const char *text, Refusal refusal);
/// The list of prototypes of an overloaded entry, the longest first.
std::string overloadText(const char *name, std::span<const ArgumentShape> arguments, std::size_t required);

/// The interpreter that the entries serve: the first of the process, to which PyGILState belongs. In another one an
/// event would take an interpreter lock that its thread has already, and wait for itself. Null before the first import.
extern const PyInterpreterState *servedInterpreter;

/// Whether the calling thread is in that interpreter. Lock held.
inline bool isServed() {
    return PyThreadState_GET()->interp == servedInterpreter;
}

// What the entries raise. Each returns null.

/// RuntimeError: called in an interpreter that is not served.
PyObject *refuseInterpreter();

/// TypeError in the interpreter's own words.
PyObject *refuseArgumentCount(const char *name, std::size_t expected, PyObject *args);
/// argumentText in the refusal's exception class.
PyObject *refuseArgument(const char *name, std::size_t number, const char *text, Refusal refusal);
/// NotImplementedError with overloadText.
PyObject *refuseOverload(const char *name, std::span<const ArgumentShape> arguments, std::size_t required);
/// Turns the C++ exception being handled into a Python one; only memory can run out.
PyObject *refuseException();

} // namespace binding
