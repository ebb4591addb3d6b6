// SPDX-License-Identifier: MIT
// What happens when the module is imported.

#include "binding/initialise.h"

#include <memory>
#include <vector>

#include "binding/constants.h"
#include "binding/entry.h"
#include "binding/entry_table.h"
#include "binding/opaque_object.h"
#include "binding/pointer_conversion.h"
#include "binding/type_registry.h"
#include "callback/interpreter_gate.h"
#include "callback/py_locks.h"
#include "callback/python.h"
#include "texture/pointer_extraction.h"

namespace binding {

namespace {

/// The interpreter's form of the table. It keeps pointing to it, so it is built once and never freed.
PyMethodDef *methodTable() {
    static const std::vector<PyMethodDef> *const methods = [] {
        auto table = std::make_unique<std::vector<PyMethodDef>>();
        table->reserve(entryTable().size() + 1);
        for (const Entry &entry : entryTable())
            table->push_back(
                {const_cast<char *>(entry.name), entry.call, entry.flags, const_cast<char *>(entry.meaning)});
        table->push_back({nullptr, nullptr, 0, nullptr});
        return table.release();
    }();
    return const_cast<PyMethodDef *>(methods->data());
}

/// Convert2SelectionLineUS hands out None without a reference for a short outline, and hosts have come to rely on how
/// that entry behaves. Each such call takes one reference from None, which would bring the interpreter down after some
/// thousands of them. A reserve that no host can use up keeps None alive.
void endowNone() {
    constexpr Py_ssize_t kReserve = Py_ssize_t{1} << 40;
    Py_REFCNT(Py_None) += kReserve;
}

void addModule() {
    if (!holdsInterpreterLock()) {
        // The thread has the lock, but not by the state that PyGILState knows.
        PyErr_SetString(PyExc_ImportError, "_Orvanel cannot be imported by a sub-interpreter before the main one");
        return;
    }
    if (!typeRegistry.join() || !prepareOpaqueType())
        return;
    servedInterpreter = PyThreadState_GET()->interp;
    forgetProxyClass();
    registerPointerExtractor(&carriedAddress);
    constexpr int kApiVersion = 1013;
    PyObject *const module = Py_InitModule4("_Orvanel", methodTable(), nullptr, nullptr, kApiVersion);
    if (!module)
        return;
    PyTypeObject *const type = &opaqueType;
    Py_INCREF(type);
    if (PyModule_AddObject(module, type->tp_name, reinterpret_cast<PyObject *>(type)) != 0)
        return;
    PyObject *const watch = watchInterpreter();
    if (!watch || PyModule_AddObject(module, "_interpreter_watch", watch) != 0)
        return;
    for (const Constant &constant : kConstants) {
        if (PyModule_AddIntConstant(module, constant.name, constant.value) != 0)
            return;
    }
    endowNone();
}

} // namespace

void initialiseModule() {
    try {
        addModule();
    } catch (...) {
        refuseException();
    }
}

} // namespace binding
