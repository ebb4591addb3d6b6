// SPDX-License-Identifier: MIT
#include "overlay/python_values.h"

#include <cstring>

#include "callback/py_ref.h"
#include "callback/python.h"
#include "overlay/python_list.h"
#include "overlay/texture_lock.h"

namespace {

/// PyArg_Parse with the failure forgotten: the value keeps its default.
template <typename... Outputs>
bool parseQuietly(PyObject *object, const char *format, Outputs *...outputs) {
    TextureLockGuard::assertNoneHeld();
    // Converting can run Python code that drops the container's reference.
    const PyRef held = PyRef::share(object);
    const bool parsed = object && PyArg_Parse(object, format, outputs...);
    if (!parsed)
        PyErr_Clear();
    return parsed;
}

/// A tuple of floats, built without a format string; it is the unit of lists with thousands of entries.
PyObject *buildRun(const Quill::MaskRunF &run) {
    PyObject *const tuple = PyTuple_New(3);
    if (!tuple)
        return nullptr;
    const auto store = [tuple](Py_ssize_t index, float value) {
        PyObject *const object = PyFloat_FromDouble(static_cast<double>(value));
        PyTuple_SET_ITEM(tuple, index, object);
        return object != nullptr;
    };
    if (store(0, run.x) && store(1, run.y) && store(2, run.length))
        return tuple;
    Py_DECREF(tuple);
    return nullptr;
}

} // namespace

bool parseIntPair(PyObject *object, int &first, int &second) {
    TextureLockGuard::assertNoneHeld();
    int a = 0;
    int b = 0;
    if (!PyArg_ParseTuple(object, "ii", &a, &b))
        return false;
    first = a;
    second = b;
    return true;
}

std::vector<Quill::MaskRunF> readRunList(PyObject *list) {
    TextureLockGuard::assertNoneHeld();
    std::vector<Quill::MaskRunF> runs;
    if (!list || !PyList_Check(list))
        return runs;
    for (Py_ssize_t index = 0; index < PyList_GET_SIZE(list); ++index) {
        const PyRef item = PyRef::share(PyList_GET_ITEM(list, index));
        Quill::MaskRunF run;
        if (!PyTuple_Check(item.get()) || !PyArg_ParseTuple(item.get(), "fff", &run.x, &run.y, &run.length)) {
            PyErr_Clear();
            run = {};
        }
        runs.push_back(run);
    }
    return runs;
}

PyObject *buildRunList(const std::vector<Quill::MaskRunF> &runs) {
    return buildList(runs, buildRun);
}

PyObject *buildPointBytes(const std::vector<MPointF> &points) {
    return PyString_FromStringAndSize(points.empty() ? "" : reinterpret_cast<const char *>(points.data()),
                                      static_cast<Py_ssize_t>(points.size() * sizeof(MPointF)));
}

PyObject *buildPointTuples(const std::vector<MPointF> &points) {
    return buildList(points, [](const MPointF &point) {
        return Py_BuildValue("(f,f,i,i,i)", static_cast<double>(point.x), static_cast<double>(point.y),
                             static_cast<int>(point.type), static_cast<int>(point.curveIn),
                             static_cast<int>(point.curveOut));
    });
}

void appendPointTuples(PyObject *list, std::vector<MPointF> &points) {
    if (!list || !PyList_Check(list))
        return;
    // The size is asked again each time: converting an item can run Python code that changes the list.
    for (Py_ssize_t index = 0; index < PyList_GET_SIZE(list); ++index) {
        const PyRef held = PyRef::share(PyList_GET_ITEM(list, index));
        PyObject *const item = held.get();
        if (!PyTuple_Check(item) || PyTuple_GET_SIZE(item) != 5)
            continue;
        MPointF point;
        int type = 0;
        int curveIn = 0;
        int curveOut = 0;
        parseQuietly(PyTuple_GET_ITEM(item, 0), "f", &point.x);
        parseQuietly(PyTuple_GET_ITEM(item, 1), "f", &point.y);
        parseQuietly(PyTuple_GET_ITEM(item, 2), "i", &type);
        parseQuietly(PyTuple_GET_ITEM(item, 3), "i", &curveIn);
        parseQuietly(PyTuple_GET_ITEM(item, 4), "i", &curveOut);
        point.type = static_cast<std::uint32_t>(type);
        point.curveIn = static_cast<std::uint32_t>(curveIn);
        point.curveOut = static_cast<std::uint32_t>(curveOut);
        points.push_back(point);
    }
}

void readPointBytes(PyObject *bytes, std::vector<MPointF> &points) {
    if (!bytes || !PyString_Check(bytes))
        return;
    const auto length = static_cast<std::size_t>(PyString_GET_SIZE(bytes));
    if (length == 0 || length % sizeof(MPointF) != 0)
        return;
    points.resize(length / sizeof(MPointF));
    std::memcpy(points.data(), PyString_AS_STRING(bytes), length);
}

PyRef settingValue(PyObject *dictionary, int key) {
    TextureLockGuard::assertNoneHeld();
    const PyRef keyObject = PyRef::adopt(PyInt_FromLong(key));
    return PyRef::share(keyObject ? PyDict_GetItem(dictionary, keyObject.get()) : nullptr);
}

bool storeSetting(PyObject *dictionary, int key, PyObject *value) {
    const PyRef owned = PyRef::adopt(value);
    const PyRef keyObject = PyRef::adopt(PyInt_FromLong(key));
    return keyObject && value && PyDict_SetItem(dictionary, keyObject.get(), value) == 0;
}

PyObject *buildFeathers(const std::vector<FeatherRecord> &records) {
    return buildList(records, [](const FeatherRecord &record) {
        return Py_BuildValue("[L,i,i]", static_cast<PY_LONG_LONG>(record.duration), static_cast<int>(record.first),
                             static_cast<int>(record.second));
    });
}

std::optional<std::vector<FeatherRecord>> readFeathers(PyObject *list) {
    if (!list || !PyList_Check(list))
        return std::nullopt;
    std::vector<FeatherRecord> read;
    for (Py_ssize_t index = 0; index < PyList_GET_SIZE(list); ++index) {
        const PyRef held = PyRef::share(PyList_GET_ITEM(list, index));
        PyObject *const item = held.get();
        if (!PyList_Check(item))
            continue;
        FeatherRecord record;
        PY_LONG_LONG duration = 0;
        int values[2] = {record.first, record.second};
        if (PyList_GET_SIZE(item) > 0)
            parseQuietly(PyList_GET_ITEM(item, 0), "L", &duration);
        for (Py_ssize_t value = 0; value < 2; ++value) {
            if (PyList_GET_SIZE(item) > value + 1)
                parseQuietly(PyList_GET_ITEM(item, value + 1), "i", &values[value]);
        }
        record.duration = duration;
        record.first = values[0];
        record.second = values[1];
        read.push_back(record);
    }
    return read;
}

bool readDuration(PyObject *object, std::int64_t &duration) {
    PY_LONG_LONG value = 0;
    if (!parseQuietly(object, "L", &value))
        return false;
    duration = value;
    return true;
}
