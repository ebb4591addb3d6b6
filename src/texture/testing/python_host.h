// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "callback/py_locks.h"
#include "callback/py_ref.h"
#include "callback/python.h"
#include "texture/pointer_extraction.h"

/// A host's Python object: answers given results by method name and remembers the order in which it was asked.
///
/// Owned and used without the interpreter lock; the lock is taken where it is needed.
class PythonHostObject {
  public:
    /// What a method does: answers a pointer, answers the value of a Python expression, or raises one.
    struct Answer {
        enum class Kind { Pointer, Expression, Raise } kind;
        void *pointer = nullptr;
        const char *expression = "None";
    };
    static Answer pointer(void *value) { return {Answer::Kind::Pointer, value, nullptr}; }
    static Answer value(const char *expression) { return {Answer::Kind::Expression, nullptr, expression}; }
    static Answer raising(const char *exception) { return {Answer::Kind::Raise, nullptr, exception}; }

    PythonHostObject(std::initializer_list<std::pair<const char *, Answer>> methods) {
        const PyGILGuard interpreter;
        m_namespace = PyRef::adopt(PyDict_New());
        PyDict_SetItemString(m_namespace.get(), "__builtins__", PyEval_GetBuiltins());
        std::string source = "calls = []\nclass Host(object):\n    pass\n";
        for (const auto &[name, answer] : methods) {
            const std::string method = name;
            std::string body = std::string("raise ") + (answer.expression ? answer.expression : "");
            if (answer.kind == Answer::Kind::Pointer) {
                const PyRef carrier = PyRef::adopt(PyCObject_FromVoidPtr(answer.pointer, nullptr));
                PyDict_SetItemString(m_namespace.get(), ("pointer_" + method).c_str(), carrier.get());
                body = "return pointer_" + method;
            } else if (answer.kind == Answer::Kind::Expression) {
                body = std::string("return ") + answer.expression;
            }
            source += "def " + method + "(self):\n    calls.append('" + method + "')\n    " + body + "\nHost." +
                      method + " = " + method + "\n";
        }
        source += "host = Host()\n";
        const PyRef done =
            PyRef::adopt(PyRun_String(source.c_str(), Py_file_input, m_namespace.get(), m_namespace.get()));
        if (!done)
            PyErr_Print();
    }
    PythonHostObject(const PythonHostObject &) = delete;
    PythonHostObject &operator=(const PythonHostObject &) = delete;
    ~PythonHostObject() {
        const PyGILGuard interpreter;
        PyDict_Clear(m_namespace.get());
        m_namespace = {};
    }

    /// Borrowed.
    PyObject *get() const {
        const PyGILGuard interpreter;
        return PyDict_GetItemString(m_namespace.get(), "host");
    }
    /// The names of the methods called so far, separated by blanks.
    std::string calls() const {
        const PyGILGuard interpreter;
        const PyRef joined =
            PyRef::adopt(PyRun_String("' '.join(calls)", Py_eval_input, m_namespace.get(), m_namespace.get()));
        return joined ? PyString_AsString(joined.get()) : "";
    }

  private:
    PyRef m_namespace;
};

/// Makes the map read the carriers that PythonHostObject hands out, for the life of the object.
class CObjectExtractor {
  public:
    CObjectExtractor() : m_earlier(registerPointerExtractor(&extract)) {}
    ~CObjectExtractor() { registerPointerExtractor(m_earlier); }
    CObjectExtractor(const CObjectExtractor &) = delete;
    CObjectExtractor &operator=(const CObjectExtractor &) = delete;

  private:
    static bool extract(PyObject *object, void **pointer) {
        if (!PyCObject_Check(object))
            return false;
        *pointer = PyCObject_AsVoidPtr(object);
        return true;
    }

    PointerExtractor m_earlier;
};
