// SPDX-License-Identifier: MIT
// Saving and restoring the whole selection: between the object and what saved_setting.h reads and builds.

#include <cstring>

#include "callback/py_locks.h"
#include "callback/python.h"
#include "overlay/keyframe_between.h"
#include "overlay/orvanel.h"
#include "overlay/python_values.h"
#include "overlay/saved_setting.h"
#include "overlay/texture_lock.h"
#include "overlay/types/placement.h"
#include "overlay/worth_letting_go.h"

namespace {

/// The pixel points of normalised ones.
std::vector<MPoint> placed(const std::vector<MPointF> &pointsF, const PixelRect &placement) {
    std::vector<MPoint> points;
    points.reserve(pointsF.size());
    for (const MPointF &point : pointsF)
        points.push_back(placePoint(point, placement));
    return points;
}

std::unique_ptr<Quill::KeyFrameMaskInfo> makeRecord(SavedKeyFrame &saved, const PixelRect &placement) {
    auto record = std::make_unique<Quill::KeyFrameMaskInfo>();
    record->duration = saved.duration;
    record->placement = placement;
    record->pointsF = saved.points.take();
    record->points = placed(record->pointsF, placement);
    return record;
}

/// The picture that hosts generate keyframes for.
constexpr PixelRect kGeneratedPlacement = {0, 0, 1920, 1080};

/// Byte strings made empty-handed, and where their contents come from. Making a string runs nobody's code.
class PointStrings {
  public:
    /// New reference, or null with an error pending. `points` must stay until fill().
    PyObject *add(const std::vector<MPointF> &points) {
        // Fresh memory takes its time too: the other threads get their turn before there is too much of it.
        if (m_bytes >= kBytesBetweenTurns)
            fill();
        const std::size_t bytes = points.size() * sizeof(MPointF);
        PyRef string = PyRef::adopt(PyString_FromStringAndSize(nullptr, static_cast<Py_ssize_t>(bytes)));
        if (string && bytes > 0) {
            m_copies.push_back({PyString_AS_STRING(string.get()), points.data(), bytes});
            m_bytes += bytes;
        }
        return string.release();
    }
    void fill() {
        const PyAllowThreads allowThreads(m_bytes >= kBytesWorthLettingGo);
        for (const Copy &copy : m_copies)
            std::memcpy(copy.to, copy.from, copy.bytes);
        m_copies.clear();
        m_bytes = 0;
    }

  private:
    struct Copy {
        char *to;
        const MPointF *from;
        std::size_t bytes;
    };
    std::vector<Copy> m_copies;
    std::size_t m_bytes = 0;
};

} // namespace

PyObject *Orvanel::GetCurrentPoints() const {
    const TextureLockGuard lock(m_textureLock);
    // Making a string runs nobody's code.
    if (!m_pointsF.empty())
        return buildPointBytes(m_pointsF);
    Py_INCREF(Py_None);
    return Py_None;
}

PyObject *Orvanel::GetCurrentDevSetting() const {
    SettingCopy copy;
    if (!copySetting(copy))
        return nullptr;
    return buildSetting(copy);
}

/// False with a Python error pending.
bool Orvanel::copySetting(SettingCopy &copy) const {
    const TextureLockGuard lock(m_textureLock);
    copy.isMask = m_isMask;
    copy.inverse = m_inverse;
    copy.hide = m_hide;
    copy.feathers = m_feathers;
    copy.featherShifts = m_featherShifts;
    PointStrings strings;
    if (!copy.isMask) {
        copy.outline = PyRef::adopt(strings.add(m_pointsF));
        if (!copy.outline)
            return false;
    } else {
        copy.keyFrames.reserve(m_keyFrames.size());
        for (const KeyFrame &keyFrame : m_keyFrames) {
            copy.keyFrames.push_back({keyFrame.duration, PyRef::adopt(strings.add(keyFrame.record->pointsF))});
            if (!copy.keyFrames.back().points)
                return false;
        }
        // A first keyframe without points has no centre and is saved as (0, 0).
        if (!m_keyFrames.empty())
            calculateCentroid(&m_keyFrames.front().record->pointsF, &copy.centroid);
    }
    strings.fill();
    return true;
}

/// Needs neither lock.
std::vector<Orvanel::KeyFrame> Orvanel::makeKeyFrames(SavedSetting &saved, const PixelRect &placement) {
    // The mask size stays 0 x 0, so that the first drawing re-places the points. Durations are taken as they come.
    std::vector<KeyFrame> keyFrames;
    keyFrames.reserve(saved.keyFrames.size());
    for (SavedKeyFrame &keyFrame : saved.keyFrames)
        keyFrames.push_back({keyFrame.duration, makeRecord(keyFrame, placement)});
    return keyFrames;
}

void Orvanel::SetDevSetting(PyObject *setting) {
    if (!setting || !PyDict_Check(setting))
        return;
    SavedSetting saved = readSetting(setting);
    const PyAllowThreads allowThreads(saved.bytes() >= kBytesWorthLettingGo);
    PixelRect placement;
    {
        const TextureLockGuard lock(m_textureLock);
        placement = m_videoRect;
    }
    std::vector<KeyFrame> keyFrames = makeKeyFrames(saved, placement);
    std::vector<MPointF> outline = saved.outline.take();
    std::vector<MPoint> outlinePoints = placed(outline, placement);

    std::vector<KeyFrame> before;
    {
        const TextureLockGuard lock(m_textureLock);
        if (placement != m_videoRect) {
            // Another thread gave the picture another place meanwhile.
            outlinePoints = placed(outline, m_videoRect);
            for (const KeyFrame &keyFrame : keyFrames) {
                keyFrame.record->placement = m_videoRect;
                keyFrame.record->points = placed(keyFrame.record->pointsF, m_videoRect);
            }
        }
        before.swap(m_keyFrames);
        ClearPointsAndKeyFrame();
        m_isMask = saved.isMask;
        m_inverse = saved.inverse;
        m_hide = saved.hide;
        if (saved.feathers)
            m_feathers.swap(*saved.feathers);
        if (saved.featherShifts)
            m_featherShifts.swap(*saved.featherShifts);
        m_keyFrames.swap(keyFrames);
        m_points.swap(outlinePoints);
        m_pointsF.swap(outline);
        markEdited();
    }
    // Nobody waits for the lock while it is freed.
    truncate(before, 0);
}

void Orvanel::SetDevSettingPoints(PyObject *list, std::vector<MPointF> &points) {
    appendPointTuples(list, points);
}

void Orvanel::SetDevSettingPointsBuf(PyObject *bytes, std::vector<MPointF> &points) {
    readPointBytes(bytes, points);
}

PyObject *Orvanel::feathersOf(const std::vector<FeatherRecord> &records) const {
    std::vector<FeatherRecord> copy;
    {
        const TextureLockGuard lock(m_textureLock);
        copy = records;
    }
    return buildFeathers(copy);
}

void Orvanel::replaceFeathers(std::vector<FeatherRecord> &records, PyObject *list) {
    auto read = readFeathers(list);
    if (!read)
        return;
    const TextureLockGuard lock(m_textureLock);
    records.swap(*read);
}

PyObject *Orvanel::GetFeathers() const {
    return feathersOf(m_feathers);
}

void Orvanel::SetFeathers(PyObject *list) {
    replaceFeathers(m_feathers, list);
}

PyObject *Orvanel::GetFeatherShifts() const {
    return feathersOf(m_featherShifts);
}

void Orvanel::SetFeatherShifts(PyObject *list) {
    replaceFeathers(m_featherShifts, list);
}

PyObject *Orvanel::GenerateSpecificKeyFrame(PyObject *first, PyObject *second, LONGLONG duration) {
    if (!first || !second || !PyDict_Check(first) || !PyDict_Check(second)) {
        Py_INCREF(Py_None);
        return Py_None;
    }
    SavedKeyFrame earlier;
    SavedKeyFrame later;
    // What is no keyframe counts as one without points.
    if (!readKeyFrame(first, earlier))
        earlier = {};
    if (!readKeyFrame(second, later))
        later = {};
    Quill::KeyFrameMaskInfo generated;
    generated.duration = duration;
    generated.placement = kGeneratedPlacement;
    generated.maskWidth = static_cast<std::uint16_t>(kGeneratedPlacement.width);
    generated.maskHeight = static_cast<std::uint16_t>(kGeneratedPlacement.height);
    fillBetween(*makeRecord(earlier, kGeneratedPlacement), *makeRecord(later, kGeneratedPlacement), generated);
    return buildKeyFrame(duration, buildPointTuples(generated.pointsF));
}
