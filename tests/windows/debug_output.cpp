// SPDX-License-Identifier: MIT
// _debug_output: what this process sends to the debugger, for tests in Python, and a registry of its own for the
// switches.
//
//   set_switches(dump, event_trace)    from here on this process has a HKEY_LOCAL_MACHINE of its own, with these two
//   remove_key()                       the switches' key is gone
//   start()                            from here on lines are kept
//   stop()                             the list of lines since start()

#include "callback/python.h"

#include <memory>

#include "platform/log_backend.h"
#include "platform/win32/test_debug_output.h"
#include "platform/win32/test_registry.h"

namespace {

std::unique_ptr<platform::PrivateLocalMachine> machine;
std::unique_ptr<platform::DebugOutputCapture> capture;

platform::PrivateLocalMachine &localMachine() {
    if (!machine) {
        machine = std::make_unique<platform::PrivateLocalMachine>();
        // The registry still works then; a static destructor would come too late.
        Py_AtExit([] { machine.reset(); });
    }
    return *machine;
}

PyObject *setSwitches(PyObject *, PyObject *arguments) {
    unsigned int dump = 0;
    unsigned int eventTrace = 0;
    if (!PyArg_ParseTuple(arguments, "II", &dump, &eventTrace))
        return nullptr;
    if (!localMachine().set(platform::kDefaultLogKey, platform::kDumpSwitch, dump) ||
        !localMachine().set(platform::kDefaultLogKey, platform::kEventTraceSwitch, eventTrace))
        return PyErr_SetFromWindowsErr(0);
    Py_RETURN_NONE;
}

PyObject *removeKey(PyObject *, PyObject *) {
    localMachine().remove(platform::kDefaultLogKey);
    Py_RETURN_NONE;
}

PyObject *start(PyObject *, PyObject *) {
    capture.reset();
    capture = std::make_unique<platform::DebugOutputCapture>();
    Py_RETURN_NONE;
}

PyObject *stop(PyObject *, PyObject *) {
    PyObject *const lines = PyList_New(0);
    if (lines && capture)
        for (const std::string &line : capture->narrow()) {
            PyObject *const text = PyString_FromStringAndSize(line.data(), static_cast<Py_ssize_t>(line.size()));
            if (text)
                PyList_Append(lines, text);
            Py_XDECREF(text);
        }
    capture.reset();
    return lines;
}

PyMethodDef methods[] = {{"set_switches", setSwitches, METH_VARARGS, nullptr},
                         {"remove_key", removeKey, METH_NOARGS, nullptr},
                         {"start", start, METH_NOARGS, nullptr},
                         {"stop", stop, METH_NOARGS, nullptr},
                         {nullptr, nullptr, 0, nullptr}};

} // namespace

PyMODINIT_FUNC init_debug_output() {
    Py_InitModule("_debug_output", methods);
}
