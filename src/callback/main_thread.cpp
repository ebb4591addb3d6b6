// SPDX-License-Identifier: MIT
// The interpreter does not tell when a script has run to its end. The threading module does: the first thing its exit
// function does, before it waits for the threads that are left, is to mark the main thread's object as stopped.

#include "callback/main_thread.h"

#include "callback/py_locks.h"
#include "callback/py_ref.h"
#include "callback/python.h"

bool mainThreadHasLeft() {
    const PyGILGuard lock;
    if (!lock)
        return false;
    PyObject *const modules = PyImport_GetModuleDict();
    const PyRef threading = PyRef::share(modules ? PyDict_GetItemString(modules, "threading") : nullptr);
    const auto attribute = [](const PyRef &object, const char *name) {
        return PyRef::adopt(object ? PyObject_GetAttrString(object.get(), name) : nullptr);
    };
    const PyRef mainThread = attribute(attribute(threading, "_shutdown"), "__self__");
    const PyRef stopped = attribute(mainThread, "_Thread__stopped");
    PyErr_Clear();
    return stopped.get() == Py_True;
}
