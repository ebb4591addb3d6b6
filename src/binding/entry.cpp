// SPDX-License-Identifier: MIT
// The texts that entries raise: the cold side of a call.

#include "binding/entry.h"

#include <exception>
#include <new>
#include <string>

namespace binding {

namespace {

/// Runs what raises a Python exception; one of C++ on the way is raised in its place.
template <typename Raise>
PyObject *refusing(Raise raise) {
    try {
        raise();
        return nullptr;
    } catch (...) {
        return refuseException();
    }
}

} // namespace

const PyInterpreterState *servedInterpreter = nullptr;

PyObject *refuseInterpreter() {
    PyErr_SetString(PyExc_RuntimeError, "_Orvanel serves the main interpreter only, this is a sub-interpreter");
    return nullptr;
}

PyObject *refuseArgumentCount(const char *name, std::size_t expected, PyObject *args) {
    return refusing([&] {
        // With a wrong count the interpreter's parser refuses before it stores anything, and words it as for any other
        // function.
        const std::string format = std::string(expected, 'O') + ":" + name;
        if (PyArg_ParseTuple(args, format.c_str()))
            PyErr_BadInternalCall();
    });
}

std::string argumentText(const char *name, std::size_t number, const char *text, Refusal refusal) {
    return std::string(refusal == Refusal::Null ? "invalid null reference " : "") + "in method '" + name +
           "', argument " + std::to_string(number) + " of type '" + text + "'";
}

PyObject *refuseArgument(const char *name, std::size_t number, const char *text, Refusal refusal) {
    PyObject *const type = refusal == Refusal::Null    ? PyExc_ValueError
                           : refusal == Refusal::Range ? PyExc_OverflowError
                                                       : PyExc_TypeError;
    return refusing([&] { PyErr_SetString(type, argumentText(name, number, text, refusal).c_str()); });
}

std::string overloadText(const char *name, std::span<const ArgumentShape> arguments, std::size_t required) {
    const std::string entry = name;
    // "Orvanel_Interactive" overloads the method Interactive.
    const std::string method = entry.substr(entry.find('_') + 1);
    std::string text =
        "Wrong number of arguments for overloaded function '" + entry + "'.\n  Possible C/C++ prototypes are:\n";
    for (std::size_t count = arguments.size(); count >= required; --count) {
        text += "    " + method + "(";
        for (std::size_t index = 1; index < count; ++index)
            text += std::string(index > 1 ? "," : "") + arguments[index].text;
        text += ")\n";
    }
    return text;
}

PyObject *refuseOverload(const char *name, std::span<const ArgumentShape> arguments, std::size_t required) {
    return refusing(
        [&] { PyErr_SetString(PyExc_NotImplementedError, overloadText(name, arguments, required).c_str()); });
}

PyObject *refuseException() {
    try {
        throw;
    } catch (const std::bad_alloc &) {
        return PyErr_NoMemory();
    } catch (const std::exception &exception) {
        PyErr_SetString(PyExc_RuntimeError, exception.what());
    } catch (...) {
        PyErr_SetString(PyExc_RuntimeError, "unknown C++ exception");
    }
    return nullptr;
}

} // namespace binding
