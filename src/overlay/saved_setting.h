// SPDX-License-Identifier: MIT
#pragma once

// The saved form of a whole selection, a dictionary with small integers as keys, and what of it the object keeps.
//
// Reading and building run code of the host's, so neither sees the object: settings are read into plain values before
// the object changes, and built from copies. With the interpreter lock held unless something else is said; what holds
// references is dropped with it held, too.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "callback/py_ref.h"
#include "overlay/centroid.h"
#include "overlay/orvanel.h"
#include "overlay/types/outline_points.h"

/// The points of one outline as the host gave them. A byte string is kept as it is, and copied once.
class SavedPoints {
  public:
    /// A list of tuples or a byte string; false for anything else.
    bool read(PyObject *object);
    /// The records, once. Needs no interpreter lock: a byte string that is held does not change.
    std::vector<MPointF> take();
    /// How much take() copies.
    std::size_t bytes() const;

  private:
    PyRef m_string;
    std::vector<MPointF> m_points; ///< of a list
};

struct SavedKeyFrame {
    SavedPoints points;
    std::int64_t duration = 0;
};

/// Reads a keyframe's dictionary; false when it is none.
bool readKeyFrame(PyObject *item, SavedKeyFrame &keyFrame);
/// Takes over the reference to `points`, which may be null after a failure. New reference, or null with an error.
PyObject *buildKeyFrame(std::int64_t duration, PyObject *points);

/// What SetDevSetting takes out of a dictionary.
struct SavedSetting {
    bool isMask = false;
    bool inverse = false;
    bool hide = false;
    std::optional<std::vector<FeatherRecord>> feathers;
    std::optional<std::vector<FeatherRecord>> featherShifts;
    std::vector<SavedKeyFrame> keyFrames; ///< of a mask
    SavedPoints outline;                  ///< of an open outline

    /// How much is going to be copied out of byte strings.
    std::size_t bytes() const;
};

SavedSetting readSetting(PyObject *dictionary);

/// What GetCurrentDevSetting puts into one. The byte strings are filled already.
struct SettingCopy {
    struct KeyFrame {
        std::int64_t duration;
        PyRef points;
    };

    bool isMask = false;
    bool inverse = false;
    bool hide = false;
    std::vector<FeatherRecord> feathers;
    std::vector<FeatherRecord> featherShifts;
    PyRef outline;                   ///< of an open outline
    std::vector<KeyFrame> keyFrames; ///< of a mask
    Centroid centroid;               ///< of the first keyframe
};

/// New reference, or null with an error pending.
PyObject *buildSetting(const SettingCopy &copy);
