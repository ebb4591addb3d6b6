// SPDX-License-Identifier: MIT
#include "callback/py_callback.h"

#include <cstdarg>

#include "callback/py_locks.h"
#include "callback/python.h"
#include "platform/environment.h"

namespace {

/// The argument tuple of a call, or null: without arguments, or after an error (then one is pending).
PyObject *buildArguments(const char *format, va_list arguments) {
    if (!format || !*format)
        return nullptr;
    char single[32];
    if (format[1] == '\0') {
        std::snprintf(single, sizeof single, "(%c)", format[0]);
        format = single;
    }
    return Py_VaBuildValue(const_cast<char *>(format), arguments);
}

/// Calls with the interpreter lock held. New reference, or null with the error printed.
PyObject *callWithLock(PyObject *callable, const char *format, va_list arguments) {
    // The callable may unregister itself, and with it the last reference, while it runs.
    Py_INCREF(callable);
    PyObject *const tuple = buildArguments(format, arguments);
    PyObject *const result = PyErr_Occurred() ? nullptr : PyObject_CallObject(callable, tuple);
    Py_XDECREF(tuple);
    if (PyErr_Occurred())
        PyErr_Print();
    Py_DECREF(callable);
    return result;
}

} // namespace

PyCallback::PyCallback() : m_hostMainWindow(platform::environmentNumber("loom main window")) {}

PyCallback::~PyCallback() {
    SetCallback(nullptr);
}

PyObject *PyCallback::SetCallback(PyObject *callable) {
    PyObject *const old = m_callable;
    m_callable = callable == Py_None ? nullptr : callable;
    Py_XINCREF(m_callable);
    PyObject *const stored = m_callable;
    // Last, since dropping the old callable can run Python code that comes back here.
    Py_XDECREF(old);
    return stored;
}

void PyCallback::Call(const char *format, ...) const {
    if (!m_callable)
        return;
    const PyGILGuard lock;
    va_list arguments;
    va_start(arguments, format);
    PyObject *const result = m_callable ? callWithLock(m_callable, format, arguments) : nullptr;
    Py_XDECREF(result);
    va_end(arguments);
}

void PyCallback::DestroyWhenUnused() {
    m_doomed = true;
    if (m_uses == 0)
        destroyKeepingError();
}

void PyCallback::destroyKeepingError() const {
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    delete this;
    PyErr_Restore(type, value, traceback);
}
