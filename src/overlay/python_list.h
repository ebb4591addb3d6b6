// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "callback/py_ref.h"

/// A list with one item made from each record; null with an error pending when an item could not be made.
template <typename Record, typename Build>
PyObject *buildList(const std::vector<Record> &records, Build build) {
    PyRef list = PyRef::adopt(PyList_New(static_cast<Py_ssize_t>(records.size())));
    if (!list)
        return nullptr;
    for (std::size_t index = 0; index < records.size(); ++index) {
        PyObject *const item = build(records[index]);
        if (!item)
            return nullptr;
        PyList_SET_ITEM(list.get(), static_cast<Py_ssize_t>(index), item);
    }
    return list.release();
}
