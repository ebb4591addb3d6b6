// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "callback/interpreter_gate.h"
#include "callback/py_ref.h"

/// An interpreter of a test's own, which can end and begin anew within the process.
class Interpreter {
  public:
    Interpreter() { start(); }
    ~Interpreter() { end(); }
    Interpreter(const Interpreter &) = delete;
    Interpreter &operator=(const Interpreter &) = delete;

    void start() {
        Py_InitializeEx(0);
        PyObject *const watch = watchInterpreter();
        ASSERT_TRUE(watch);
        // Where an extension module's dictionary would keep it.
        PyObject_SetAttrString(main(), "_interpreter_watch", watch);
        Py_DECREF(watch);
        run("import sys, StringIO\nsys.stderr = errors = StringIO.StringIO()\nseen = []");
    }
    static void end() {
        if (Py_IsInitialized())
            Py_Finalize();
    }

    /// Executes statements in __main__.
    static void run(const std::string &statements) {
        ASSERT_EQ(PyRun_SimpleString(statements.c_str()), 0) << statements;
    }
    /// The value of an expression in __main__.
    static PyRef value(const std::string &expression) {
        PyObject *const names = PyModule_GetDict(main());
        PyRef result = PyRef::adopt(PyRun_String(expression.c_str(), Py_eval_input, names, names));
        if (!result)
            PyErr_Print();
        return result;
    }
    static std::string text(const std::string &expression) {
        const PyRef result = value("str(" + expression + ")");
        return result ? PyString_AsString(result.get()) : "(error)";
    }
    static long number(const std::string &expression) {
        const PyRef result = value(expression);
        return result ? PyInt_AsLong(result.get()) : -999;
    }
    /// What was printed to the interpreter's error output.
    static std::string errors() { return text("errors.getvalue()"); }

  private:
    static PyObject *main() { return PyImport_AddModule("__main__"); }
};
