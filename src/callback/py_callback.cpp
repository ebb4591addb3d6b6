// SPDX-License-Identifier: MIT
#include "callback/py_callback.h"

#include <exception>
#include <utility>

#include "callback/interpreter_gate.h"
#include "callback/pending_error.h"
#include "callback/py_locks.h"
#include "callback/py_ref.h"
#include "callback/python.h"
#include "platform/environment.h"
#include "platform/fork.h"

namespace {

/// The argument tuple of a call, or null: without arguments, or after an error (then one is pending).
PyObject *buildArguments(const char *format, std::va_list arguments) {
    if (!format || !*format)
        return nullptr;
    char single[32];
    if (format[1] == '\0') {
        std::snprintf(single, sizeof single, "(%c)", format[0]);
        format = single;
    }
    return Py_VaBuildValue(const_cast<char *>(format), arguments);
}

void printError() {
    if (!PyErr_Occurred())
        return;
    if (!PyErr_ExceptionMatches(PyExc_SystemExit)) {
        PyErr_Print();
        return;
    }
    // PyErr_Print would end the process here, below a method of an object that the end destroys.
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    PyErr_Display(type, value, traceback);
    Py_XDECREF(type);
    Py_XDECREF(value);
    Py_XDECREF(traceback);
    PyErr_Clear();
}

/// Runs a conversion; memory that it cannot have is Python's MemoryError.
template <typename Conversion>
void raisingMemoryError(Conversion convert) {
    try {
        convert();
    } catch (const std::exception &) {
        PyErr_NoMemory();
    }
}

} // namespace

PyCallback::PyCallback() {
    m_fields.hostMainWindow = platform::environmentNumber("loom main window");
}

PyCallback::~PyCallback() {
    SetCallback(nullptr);
}

PyObject *PyCallback::SetCallback(PyObject *callable) {
    PyObject *const stored = callable == Py_None ? nullptr : callable;
    Py_XINCREF(stored);
    PyObject *const before = m_fields.callable.exchange(stored);
    // Last, since dropping a callable can run Python code that comes back here. Without the lock, which means without
    // an interpreter, it is left alone.
    if (before && holdsInterpreterLock())
        Py_DECREF(before);
    return stored;
}

template <typename Consume>
void PyCallback::deliver(const char *format, std::va_list arguments, Consume consume) const {
    if (!m_fields.callable)
        return;
    const PyGILGuard lock;
    if (!lock || interpreterIsEnding())
        return;
    const Use use(*this);
    const PendingError pending;
    // A reference of its own: the callable may unregister itself, and with it the last reference, while it runs.
    const PyRef callable = PyRef::share(m_fields.callable);
    if (!callable)
        return;
    const PyRef tuple = PyRef::adopt(buildArguments(format, arguments));
    const PyRef result = PyRef::adopt(PyErr_Occurred() ? nullptr : PyObject_CallObject(callable.get(), tuple.get()));
    printError();
    if (result) {
        consume(result.get());
        printError();
    }
}

void PyCallback::Call(const char *format, ...) const {
    std::va_list arguments;
    va_start(arguments, format);
    deliver(format, arguments, [](PyObject *) {});
    va_end(arguments);
}

std::int32_t PyCallback::CallInt(const char *format, ...) const {
    std::int32_t value = 0;
    std::va_list arguments;
    va_start(arguments, format);
    deliver(format, arguments, [&value](PyObject *result) {
        const long wide = PyLong_AsLong(result);
        if (PyErr_Occurred())
            return;
        if (std::in_range<std::int32_t>(wide))
            value = static_cast<std::int32_t>(wide);
        else
            PyErr_SetString(PyExc_OverflowError, "Python int too large to convert to 32 bits");
    });
    va_end(arguments);
    return value;
}

double PyCallback::CallDouble(const char *format, ...) const {
    double value = 0;
    std::va_list arguments;
    va_start(arguments, format);
    deliver(format, arguments, [&value](PyObject *result) {
        const double converted = PyFloat_AsDouble(result);
        if (!PyErr_Occurred())
            value = converted;
    });
    va_end(arguments);
    return value;
}

std::string PyCallback::CallString(const char *format, ...) const {
    std::string value;
    std::va_list arguments;
    va_start(arguments, format);
    deliver(format, arguments, [&value](PyObject *result) {
        if (PyString_Check(result))
            raisingMemoryError(
                [&] { value.assign(PyString_AS_STRING(result), static_cast<std::size_t>(PyString_GET_SIZE(result))); });
        else
            PyErr_Format(PyExc_TypeError, "expected a byte string, %.200s found", Py_TYPE(result)->tp_name);
    });
    va_end(arguments);
    return value;
}

std::wstring PyCallback::CallWString(const char *format, ...) const {
    std::wstring value;
    std::va_list arguments;
    va_start(arguments, format);
    deliver(format, arguments, [&value](PyObject *result) {
        if (!PyUnicode_Check(result)) {
            PyErr_Format(PyExc_TypeError, "expected a unicode text, %.200s found", Py_TYPE(result)->tp_name);
            return;
        }
        raisingMemoryError([&] {
            value.resize(static_cast<std::size_t>(PyUnicode_GET_SIZE(result)));
            PyUnicode_AsWideChar(reinterpret_cast<PyUnicodeObject *>(result), value.data(), PyUnicode_GET_SIZE(result));
        });
    });
    va_end(arguments);
    return value;
}

PyObject *PyCallback::CallObject(const char *format, ...) const {
    PyObject *value = nullptr;
    std::va_list arguments;
    va_start(arguments, format);
    deliver(format, arguments, [&value](PyObject *result) {
        Py_INCREF(result);
        value = result;
    });
    va_end(arguments);
    return value;
}

void PyCallback::destroyWith(void (*destroy)(PyCallback *)) {
    if (m_fields.uses != 0) {
        m_fields.doomed = true;
        return;
    }
    const PendingError pending;
    // The destructor may deliver a last event, whose Use must not end in another destruction.
    m_fields.uses = 1;
    if (m_fields.madeIn == platform::forkCount())
        destroy(this);
    else
        SetCallback(nullptr);
}
