// SPDX-License-Identifier: MIT
#include "overlay/saved_setting.h"

#include <utility>

#include "callback/python.h"
#include "overlay/python_list.h"
#include "overlay/python_values.h"

namespace {

enum SettingKey {
    kIsMask = 0,
    kInverse = 1,
    kOpenOutline = 2,
    kKeyFrames = 3,
    kDuration = 4,
    kPoints = 5,
    kFeathers = 6,
    kCentroid = 7,
    kFeatherShifts = 8,
    kHide = 9,
};

/// Only True itself counts; hosts store these flags as bools.
bool isTrue(PyObject *setting, SettingKey key) {
    return settingValue(setting, key).get() == Py_True;
}

bool storeFlag(PyObject *setting, SettingKey key, bool value) {
    return storeSetting(setting, key, PyBool_FromLong(value));
}

bool storeShared(PyObject *dictionary, SettingKey key, const PyRef &value) {
    return storeSetting(dictionary, key, PyRef::share(value.get()).release());
}

std::vector<SavedKeyFrame> readKeyFrames(PyObject *list) {
    std::vector<SavedKeyFrame> keyFrames;
    if (!list || !PyList_Check(list))
        return keyFrames;
    for (Py_ssize_t index = 0; index < PyList_GET_SIZE(list); ++index) {
        const PyRef item = PyRef::share(PyList_GET_ITEM(list, index));
        SavedKeyFrame keyFrame;
        if (readKeyFrame(item.get(), keyFrame))
            keyFrames.push_back(std::move(keyFrame));
    }
    return keyFrames;
}

bool storeMask(PyObject *setting, const SettingCopy &copy) {
    PyRef list = PyRef::adopt(buildList(copy.keyFrames, [](const SettingCopy::KeyFrame &keyFrame) {
        return buildKeyFrame(keyFrame.duration, PyRef::share(keyFrame.points.get()).release());
    }));
    if (!storeSetting(setting, kKeyFrames, list.release()))
        return false;
    if (copy.keyFrames.empty())
        return true;
    return storeSetting(
        setting, kCentroid,
        Py_BuildValue("(f,f)", static_cast<double>(copy.centroid.x), static_cast<double>(copy.centroid.y)));
}

} // namespace

bool SavedPoints::read(PyObject *object) {
    if (object && PyList_Check(object))
        appendPointTuples(object, m_points);
    else if (object && PyString_Check(object))
        m_string = PyRef::share(object);
    else
        return false;
    return true;
}

std::vector<MPointF> SavedPoints::take() {
    readPointBytes(m_string.get(), m_points);
    return std::move(m_points);
}

std::size_t SavedPoints::bytes() const {
    return m_string ? static_cast<std::size_t>(PyString_GET_SIZE(m_string.get())) : 0;
}

bool readKeyFrame(PyObject *item, SavedKeyFrame &keyFrame) {
    if (!PyDict_Check(item))
        return false;
    const PyRef duration = settingValue(item, kDuration);
    const PyRef points = settingValue(item, kPoints);
    if (!duration || !keyFrame.points.read(points.get()))
        return false;
    readDuration(duration.get(), keyFrame.duration);
    return true;
}

PyObject *buildKeyFrame(std::int64_t duration, PyObject *points) {
    PyRef dictionary = PyRef::adopt(PyDict_New());
    PyRef ownedPoints = PyRef::adopt(points);
    const bool complete = dictionary && storeSetting(dictionary.get(), kDuration, PyLong_FromLongLong(duration)) &&
                          storeSetting(dictionary.get(), kPoints, ownedPoints.release());
    return complete ? dictionary.release() : nullptr;
}

std::size_t SavedSetting::bytes() const {
    std::size_t sum = outline.bytes();
    for (const SavedKeyFrame &keyFrame : keyFrames)
        sum += keyFrame.points.bytes();
    return sum;
}

SavedSetting readSetting(PyObject *dictionary) {
    SavedSetting saved;
    saved.isMask = isTrue(dictionary, kIsMask);
    saved.inverse = isTrue(dictionary, kInverse);
    saved.hide = isTrue(dictionary, kHide);
    saved.feathers = readFeathers(settingValue(dictionary, kFeathers).get());
    saved.featherShifts = readFeathers(settingValue(dictionary, kFeatherShifts).get());
    if (saved.isMask)
        saved.keyFrames = readKeyFrames(settingValue(dictionary, kKeyFrames).get());
    else
        saved.outline.read(settingValue(dictionary, kOpenOutline).get());
    return saved;
}

PyObject *buildSetting(const SettingCopy &copy) {
    PyRef owned = PyRef::adopt(PyDict_New());
    PyObject *const setting = owned.get();
    const bool complete = setting && storeFlag(setting, kIsMask, copy.isMask) &&
                          storeFlag(setting, kInverse, copy.inverse) && storeFlag(setting, kHide, copy.hide) &&
                          storeSetting(setting, kFeathers, buildFeathers(copy.feathers)) &&
                          storeSetting(setting, kFeatherShifts, buildFeathers(copy.featherShifts)) &&
                          (copy.isMask ? storeMask(setting, copy) : storeShared(setting, kOpenOutline, copy.outline));
    return complete ? owned.release() : nullptr;
}
