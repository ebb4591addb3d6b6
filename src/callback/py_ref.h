// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "callback/python.h"

/// Owns one reference to a Python object, or nothing. Used with the interpreter lock held.
class PyRef {
  public:
    PyRef() = default;
    /// Takes over a new reference (null after a failed call).
    static PyRef adopt(PyObject *object) { return PyRef(object); }
    /// Takes a reference of its own.
    static PyRef share(PyObject *object) {
        Py_XINCREF(object);
        return PyRef(object);
    }
    PyRef(PyRef &&other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    PyRef &operator=(PyRef &&other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    PyRef(const PyRef &) = delete;
    PyRef &operator=(const PyRef &) = delete;
    ~PyRef() { Py_XDECREF(m_object); }

    PyObject *get() const { return m_object; }
    /// Hands the reference on.
    PyObject *release() { return std::exchange(m_object, nullptr); }
    explicit operator bool() const { return m_object != nullptr; }

  private:
    explicit PyRef(PyObject *object) : m_object(object) {}

    PyObject *m_object = nullptr;
};
