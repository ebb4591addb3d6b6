// SPDX-License-Identifier: MIT
#include "texture/host_objects.h"

#include "callback/py_locks.h"
#include "callback/py_ref.h"
#include "callback/python.h"
#include "texture/pointer_extraction.h"

namespace {

PyRef ask(PyObject *object, const char *method) {
    return PyRef::adopt(PyObject_CallMethod(object, const_cast<char *>(method), nullptr));
}

} // namespace

bool isGiven(PyObject *object) {
    return object && object != Py_None;
}

void *askPointer(PyObject *object, const char *method) {
    const PyGILGuard interpreter;
    if (!interpreter)
        return nullptr;
    const PyRef answer = ask(object, method);
    void *pointer = nullptr;
    if (!answer || !extractPointer(answer.get(), &pointer))
        pointer = nullptr;
    PyErr_Clear();
    return pointer;
}

std::string askText(PyObject *object, const char *method) {
    const PyGILGuard interpreter;
    if (!interpreter)
        return {};
    const PyRef answer = ask(object, method);
    const char *text = "";
    if (!answer || !PyString_Check(answer.get()) || !PyArg_Parse(answer.get(), "s", &text))
        text = "";
    PyErr_Clear();
    return text;
}
