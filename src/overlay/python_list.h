// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "callback/py_ref.h"
#include "overlay/texture_lock.h"

/// A list with one item made from each record; null with an error pending when an item could not be made.
///
/// Making an item can start a collection, and that any code of the host's: the records are the caller's own copy, and
/// the list is kept from the collector's eyes until no place in it is empty.
template <typename Record, typename Build>
PyObject *buildList(const std::vector<Record> &records, Build build) {
    TextureLockGuard::assertNoneHeld();
    PyRef list = PyRef::adopt(PyList_New(static_cast<Py_ssize_t>(records.size())));
    if (!list)
        return nullptr;
    PyObject_GC_UnTrack(list.get());
    for (std::size_t index = 0; index < records.size(); ++index) {
        PyObject *const item = build(records[index]);
        if (!item)
            return nullptr;
        PyList_SET_ITEM(list.get(), static_cast<Py_ssize_t>(index), item);
    }
    PyObject_GC_Track(list.get());
    return list.release();
}
