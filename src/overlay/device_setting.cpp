// SPDX-License-Identifier: MIT
// The saved form of a whole selection: a dictionary with small integers as keys.

#include "callback/py_ref.h"
#include "callback/python.h"
#include "overlay/orvanel.h"
#include "overlay/python_list.h"
#include "overlay/python_values.h"
#include "overlay/texture_lock_guard.h"
#include "overlay/types/placement.h"

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
    return settingValue(setting, key) == Py_True;
}

bool storeFlag(PyObject *setting, SettingKey key, bool value) {
    return storeSetting(setting, key, PyBool_FromLong(value));
}

/// A record of normalised points placed in a rectangle.
void fillRecord(Quill::KeyFrameMaskInfo &record, std::vector<MPointF> points, const PixelRect &placement) {
    record.placement = placement;
    record.pointsF = std::move(points);
    record.points.clear();
    for (const MPointF &point : record.pointsF)
        record.points.push_back(placePoint(point, placement));
}

/// Reads a keyframe's dictionary; false when it is none.
bool readKeyFrame(PyObject *item, Quill::KeyFrameMaskInfo &record, const PixelRect &placement) {
    if (!PyDict_Check(item))
        return false;
    // Held, since converting what the host put in there can run Python code.
    const PyRef duration = PyRef::share(settingValue(item, kDuration));
    const PyRef pointList = PyRef::share(settingValue(item, kPoints));
    std::vector<MPointF> points;
    if (!duration || !readPoints(pointList.get(), points))
        return false;
    fillRecord(record, std::move(points), placement);
    readDuration(duration.get(), record.duration);
    return true;
}

/// Takes over the reference to `points`.
PyObject *buildKeyFrameDictionary(std::int64_t duration, PyObject *points) {
    PyRef dictionary = PyRef::adopt(PyDict_New());
    PyRef ownedPoints = PyRef::adopt(points);
    const bool complete = dictionary && storeSetting(dictionary.get(), kDuration, PyLong_FromLongLong(duration)) &&
                          storeSetting(dictionary.get(), kPoints, ownedPoints.release());
    return complete ? dictionary.release() : nullptr;
}

PyObject *buildKeyFrame(const Quill::KeyFrameMaskInfo &record) {
    return buildKeyFrameDictionary(record.duration, buildPointBytes(record.pointsF));
}

/// The picture that hosts generate keyframes for.
constexpr PixelRect kGeneratedPlacement = {0, 0, 1920, 1080};

} // namespace

PyObject *Orvanel::GetCurrentPoints() const {
    const TextureLockGuard lock(m_textureLock);
    if (!m_pointsF.empty())
        return buildPointBytes(m_pointsF);
    Py_INCREF(Py_None);
    return Py_None;
}

PyObject *Orvanel::GetCurrentDevSetting() const {
    const TextureLockGuard lock(m_textureLock);
    PyRef owned = PyRef::adopt(PyDict_New());
    PyObject *const setting = owned.get();
    const bool complete =
        setting && storeFlag(setting, kIsMask, m_isMask) && storeFlag(setting, kInverse, m_inverse) &&
        storeFlag(setting, kHide, m_hide) && storeSetting(setting, kFeathers, buildFeathers(m_feathers)) &&
        storeSetting(setting, kFeatherShifts, buildFeathers(m_featherShifts)) &&
        (m_isMask ? storeKeyFrames(setting) : storeSetting(setting, kOpenOutline, buildPointBytes(m_pointsF)));
    return complete ? owned.release() : nullptr;
}

bool Orvanel::storeKeyFrames(PyObject *setting) const {
    PyRef list =
        PyRef::adopt(buildList(m_keyFrames, [](const KeyFrame &keyFrame) { return buildKeyFrame(*keyFrame.record); }));
    if (!storeSetting(setting, kKeyFrames, list.release()))
        return false;
    if (m_keyFrames.empty())
        return true;
    // A first keyframe without points has no centre and is saved as (0, 0).
    Centroid centroid;
    calculateCentroid(&m_keyFrames.front().record->pointsF, &centroid);
    return storeSetting(setting, kCentroid,
                        Py_BuildValue("(f,f)", static_cast<double>(centroid.x), static_cast<double>(centroid.y)));
}

void Orvanel::SetDevSetting(PyObject *setting) {
    if (!setting || !PyDict_Check(setting))
        return;
    const TextureLockGuard lock(m_textureLock);
    ClearPointsAndKeyFrame();
    m_isMask = isTrue(setting, kIsMask);
    m_inverse = isTrue(setting, kInverse);
    m_hide = isTrue(setting, kHide);
    readFeathers(settingValue(setting, kFeathers), m_feathers);
    readFeathers(settingValue(setting, kFeatherShifts), m_featherShifts);
    if (m_isMask)
        loadKeyFrames(settingValue(setting, kKeyFrames));
    else
        loadOpenOutline(settingValue(setting, kOpenOutline));
    markEdited();
}

void Orvanel::loadKeyFrames(PyObject *list) {
    if (!list || !PyList_Check(list))
        return;
    for (Py_ssize_t index = 0; index < PyList_GET_SIZE(list); ++index) {
        // The mask size stays 0 x 0, so that the first drawing re-places the points. Durations are taken as they come.
        auto record = std::make_unique<Quill::KeyFrameMaskInfo>();
        const PyRef item = PyRef::share(PyList_GET_ITEM(list, index));
        if (readKeyFrame(item.get(), *record, m_videoRect))
            m_keyFrames.push_back({record->duration, std::move(record)});
    }
}

void Orvanel::loadOpenOutline(PyObject *points) {
    if (!readPoints(points, m_pointsF))
        return;
    m_points.clear();
    for (const MPointF &point : m_pointsF)
        m_points.push_back(placePoint(point, m_videoRect));
}

void Orvanel::SetDevSettingPoints(PyObject *list, std::vector<MPointF> &points) {
    appendPointTuples(list, points);
}

void Orvanel::SetDevSettingPointsBuf(PyObject *bytes, std::vector<MPointF> &points) {
    readPointBytes(bytes, points);
}

PyObject *Orvanel::GetFeathers() const {
    return buildFeathers(m_feathers);
}

void Orvanel::SetFeathers(PyObject *list) {
    readFeathers(list, m_feathers);
}

PyObject *Orvanel::GetFeatherShifts() const {
    return buildFeathers(m_featherShifts);
}

void Orvanel::SetFeatherShifts(PyObject *list) {
    readFeathers(list, m_featherShifts);
}

PyObject *Orvanel::GenerateSpecificKeyFrame(PyObject *first, PyObject *second, LONGLONG duration) {
    if (!first || !second || !PyDict_Check(first) || !PyDict_Check(second)) {
        Py_INCREF(Py_None);
        return Py_None;
    }
    Quill::KeyFrameMaskInfo earlier;
    Quill::KeyFrameMaskInfo later;
    readKeyFrame(first, earlier, kGeneratedPlacement);
    readKeyFrame(second, later, kGeneratedPlacement);
    Quill::KeyFrameMaskInfo generated;
    generated.duration = duration;
    generated.placement = kGeneratedPlacement;
    generated.maskWidth = static_cast<std::uint16_t>(kGeneratedPlacement.width);
    generated.maskHeight = static_cast<std::uint16_t>(kGeneratedPlacement.height);
    CalcKeyFrame(earlier, later, generated, false);
    return buildKeyFrameDictionary(duration, buildPointTuples(generated.pointsF));
}
