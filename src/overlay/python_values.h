// SPDX-License-Identifier: MIT
#pragma once

// Values that cross the boundary inside Python containers. Everything here runs with the interpreter lock held; objects
// returned are new references, or null with an error pending.

//
// Converting, comparing and dropping objects can run any code of the host's. What is walked meanwhile is held, sizes
// are asked anew at every step, and nobody calls these inside the texture lock.

#include <cstdint>
#include <optional>
#include <vector>

#include "callback/py_ref.h"
#include "mask/mask_handler.h"
#include "overlay/orvanel.h"

/// Reads a tuple of two integers. On failure both stay as they are and the interpreter's error stays pending.
bool parseIntPair(PyObject *object, int &first, int &second);

/// The runs of a list of (x, y, length) tuples; a malformed item becomes a run of zeroes, anything but a list no runs.
std::vector<Quill::MaskRunF> readRunList(PyObject *list);
/// List of (x, y, length) tuples of floats.
PyObject *buildRunList(const std::vector<Quill::MaskRunF> &runs);

/// The records as a byte string, 24 bytes each.
PyObject *buildPointBytes(const std::vector<MPointF> &points);
/// List of (x, y, type, curveIn, curveOut) tuples.
PyObject *buildPointTuples(const std::vector<MPointF> &points);
/// Appends the records of a list of such tuples; items of any other form are skipped.
void appendPointTuples(PyObject *list, std::vector<MPointF> &points);
/// Replaces `points` by the records of a byte string; any length but a multiple of 24 above 0 leaves them as they are.
void readPointBytes(PyObject *bytes, std::vector<MPointF> &points);

/// Dictionary look-up by a small integer key; null when there is none.
PyRef settingValue(PyObject *dictionary, int key);
/// Stores a value under a small integer key and drops the caller's reference to it; false with an error pending.
bool storeSetting(PyObject *dictionary, int key, PyObject *value);

/// List of [duration, first, second] lists.
PyObject *buildFeathers(const std::vector<FeatherRecord> &records);
/// The records of such a list; what fails to parse keeps its default. Nothing when it is no list.
std::optional<std::vector<FeatherRecord>> readFeathers(PyObject *list);
/// A 64-bit integer from an int or a long; false, without an error pending, for anything else.
bool readDuration(PyObject *object, std::int64_t &duration);
